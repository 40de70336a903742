#include "measurement/httpgetrequester.h"

#include "measurement/measurementcontext.h"
#include "utils/sockets.h"
#include "utils/utils.h"

#include <QTcpSocket>

#include <chrono>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// No answer of the service comes near it; what does is no answer of the service.
constexpr qsizetype maxAnswer = 1'048'576;

} // namespace

HttpGetRequester::HttpGetRequester(MeasurementContext *context, QObject *parent)
    : QObject(parent)
    , controller(context)
{
    connect(&timer, &ClockTimer::timeout, this, &HttpGetRequester::timeoutOccourd);
}

HttpGetRequester::~HttpGetRequester()
{
    Sockets::release(socket, this);
}

void HttpGetRequester::doRequest(QString host, int serverPort, QString text, int timeoutMs)
{
    Sockets::release(socket, this);
    socket = new QTcpSocket(this);
    socket->setReadBufferSize(maxAnswer);
    response.clear();
    hostname = std::move(host);
    port = serverPort;
    request = std::move(text);
    timeout = timeoutMs;
    connect(socket, &QTcpSocket::connected, this, &HttpGetRequester::slotConnected);
    connect(socket, &QTcpSocket::disconnected, this, &HttpGetRequester::slotDisconnected);
    connect(socket, &QTcpSocket::errorOccurred, this, &HttpGetRequester::slotError);
    connect(socket, &QTcpSocket::readyRead, this, &HttpGetRequester::readyRead);
    connect(socket, &QTcpSocket::bytesWritten, this, &HttpGetRequester::bytesWritten);
    timer.start(std::chrono::milliseconds(timeout));
    Sockets::connectToHost(*socket, hostname, port);
}

void HttpGetRequester::cancel()
{
    timer.stop();
    Sockets::release(socket, this);
}

void HttpGetRequester::slotConnected()
{
    localip = socket->localAddress().toString();
    Utils::addLogEntry(u"HttpGetRequester Connected()"_s);
    const qint64 written = socket->write(request.toUtf8());
    Utils::addLogEntry(u"Written: %1"_s.arg(written));
}

void HttpGetRequester::bytesWritten(qint64 count)
{
    Utils::addLogEntry(u"Bytes Written: %1"_s.arg(count), u"Bytes Written"_s);
}

void HttpGetRequester::readyRead()
{
    const QByteArray bytes = socket->readAll();
    const qsizetype nul = bytes.indexOf('\0');
    response += QString::fromLatin1(nul < 0 ? bytes : bytes.left(nul));
    Utils::addLogEntry(u"Ready Read: %1"_s.arg(response.size()), u"Ready Read"_s);
    if (response.size() > maxAnswer) {
        Utils::addLogEntry(u"HttpGetRequester answer too large: %1"_s.arg(response.size()));
        response.truncate(maxAnswer);
        finish();
    }
}

void HttpGetRequester::slotDisconnected()
{
    Utils::addLogEntry(u"HttpGetRequester slotDisconnected()"_s);
    finish();
}

void HttpGetRequester::slotError(QAbstractSocket::SocketError code)
{
    Utils::addLogEntry(u"HttpGetRequester slotError(): %1"_s.arg(code));
    finish();
}

void HttpGetRequester::timeoutOccourd()
{
    Utils::addLogEntry(
        u"HttpGetRequester timeout, num bytes available: %1"_s.arg(socket->bytesAvailable()));
    finish();
}

void HttpGetRequester::finish()
{
    cancel();
    decodeAnswer(response);
}

void HttpGetRequester::decodeAnswer(const QString &answer)
{
    const QStringList parts = answer.trimmed().split(u"\r\n\r\n"_s);
    if (parts.size() < 2) {
        controller->httpRequestDone(false, QString(), QString());
    } else {
        controller->httpRequestDone(true, parts.first(), parts.mid(1).join(u"\r\n"_s));
    }
}

} // namespace velometer
