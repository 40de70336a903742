#include "measurement/controlrequests.h"

#include "data/testcontext.h"
#include "data/testserver.h"
#include "measurement/requestparameters.h"
#include "utils/cleantext.h"
#include "utils/deployment.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString get(const QString &target, const QString &host)
{
    return "GET /velometer/"_L1 + target + " HTTP/1.1\r\nHost: "_L1 + host +
           "\r\nConnection: Close\r\n\r\n"_L1;
}

} // namespace

QString ControlRequests::userId(const QString &uuid)
{
    return get("getIDwithUUID.jsp?UUID="_L1 + QString::fromLatin1(QUrl::toPercentEncoding(uuid)),
               Endpoint::bracketed(Deployment::current().webHost));
}

QString ControlRequests::initialise(const TestContext &context)
{
    return get("initialise.php?logtraffic=0.1&"_L1 +
                   testParameters(context, TestIdOffset::initialise),
               context.getTestServer()->getHostHeader());
}

QString ControlRequests::uploadResult(const TestContext &context)
{
    return get("getuploadresult.php?"_L1 + testParameters(context, TestIdOffset::upload),
               context.getTestServer()->getHostHeader());
}

QString ControlRequests::report(const QString &hostHeader, const QString &document)
{
    const QByteArray body = document.toUtf8();
    return "POST /velometer/redirect_iphone.php HTTP/1.1\r\nHost: "_L1 + hostHeader +
           "\r\nConnection: Close\r\n"
           "Content-Type: application/x-www-form-urlencoded\r\n"
           "Content-Length: "_L1 +
           QString::number(body.size()) + "\r\n\r\n"_L1 + QString::fromLatin1(body);
}

QString ControlRequests::refusal(const QString &header, const QString &body)
{
    const bool isSentence = header.section(u'\r', 0, 0).contains(" 503"_L1) &&
                            header.contains("content-type: text/plain"_L1, Qt::CaseInsensitive);
    // The requester reads bytes as characters.
    return isSentence ? cleanText(QString::fromUtf8(body.toLatin1()).simplified()) : QString();
}

} // namespace velometer
