#include "measurement/controlrequests.h"

#include "data/testcontext.h"
#include "data/testserver.h"
#include "measurement/requestparameters.h"
#include "utils/cleantext.h"
#include "utils/deployment.h"

#include <QRegularExpression>
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

namespace {

bool isFull(const QString &header)
{
    const QString status = header.section(u'\r', 0, 0);
    return status.contains(" 503"_L1) || status.contains(" 429"_L1);
}

} // namespace

std::optional<std::chrono::seconds> ControlRequests::comeBack(const QString &header)
{
    constexpr int longest = 120;
    static const QRegularExpression line(u"\r\nretry-after: *([0-9]{1,3}) *\r\n"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    const int wait = isFull(header) ? line.match(header + "\r\n"_L1).captured(1).toInt() : 0;
    return wait >= 1 && wait <= longest ? std::optional(std::chrono::seconds(wait)) : std::nullopt;
}

QString ControlRequests::refusal(const QString &header, const QString &body)
{
    const bool isSentence =
        isFull(header) && header.contains("content-type: text/plain"_L1, Qt::CaseInsensitive);
    // The requester reads bytes as characters.
    return isSentence ? cleanText(QString::fromUtf8(body.toLatin1()).simplified()) : QString();
}

} // namespace velometer
