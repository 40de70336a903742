#include "measurement/uploadtest.h"

#include "data/testserver.h"
#include "measurement/measurementcontext.h"
#include "measurement/requestparameters.h"
#include "utils/sockets.h"
#include "utils/utils.h"

#include <QRandomGenerator>
#include <QTcpSocket>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// Larger than any segment; a service that names more does not get to choose our memory.
constexpr int maxBlockBytes = 1'048'576;
/// What a server may tell an uploading client before the rest is ignored.
constexpr qsizetype maxResponse = 65'536;
/// Lets the kernel hold little more than what is under way: enough for a fast link to find its next
/// segment ready, little on a slow one, where a buffer that fills would count as uploaded.
constexpr int maxUnsentBytes = 131'072;
/// How exactly the end of a limited upload is seen.
constexpr auto deliveryPeriod = 1ms;
/// Far more than a mobile link takes in one measurement, so that the server keeps reading.
constexpr qint64 announcedBytes = 163840000;

QByteArray randomDigits(int count)
{
    QRandomGenerator generator(static_cast<quint32>(Utils::getTimeInMs() % 1000));
    QByteArray digits;
    digits.reserve(count);
    for (int i = 0; i < count; ++i) {
        digits.append(static_cast<char>('0' + generator.bounded(10)));
    }
    return digits;
}

} // namespace

UploadTest::UploadTest(MeasurementContext *context, QObject *parent, qlonglong testIdOffset)
    : ThroughputTest(context, u"UploadTest"_s, Result::Upload, testIdOffset, parent)
{
    socket->setReadBufferSize(maxResponse);
    connect(socket, &QTcpSocket::bytesWritten, this, &UploadTest::bytesWritten);
    delivery.setTimerType(Qt::PreciseTimer);
    connect(&delivery, &QTimer::timeout, this, &UploadTest::endWhenDelivered);
    connect(socket, &QTcpSocket::readyRead, this, &UploadTest::readyRead);
}

void UploadTest::doMeasurement(int seconds)
{
    randomvalues = randomDigits(qBound(0, controller->getMSS(), maxBlockBytes));
    Utils::addLogEntry(u"doMeasurement(). Random size: %1"_s.arg(randomvalues.size()));
    ThroughputTest::doMeasurement(seconds);
}

QString UploadTest::requestText() const
{
    return u"POST /velometer/uploadtest.php?logtraffic=%1&%2 HTTP/1.0\r\n"
           "Host: %3\r\n"
           "Content-Type: application/x-www-form-urlencoded\r\n"
           "Content-Length: %4\r\n\r\n"_s.arg(
               QString::number(testduration), testParameters(*controller, testIdOffset()),
               controller->getTestServer()->getHostHeader(), QString::number(announcedBytes));
}

void UploadTest::slotConnected()
{
    Sockets::dropUnsentOnClose(*socket);
    Sockets::limitUnsent(*socket, maxUnsentBytes);
    ThroughputTest::slotConnected();
}

void UploadTest::bytesWritten(qint64 count)
{
    if (bytesSent == 0) {
        begin();
    }
    takeTime();
    bytesSent += count;
    const qint64 left = byteLimit() - bytesSent - socket->bytesToWrite();
    if (left > 0) {
        socket->write(randomvalues.constData(), std::min(left, qint64(randomvalues.size())));
    }
    recordInterval(bytesSent, old_bytesSent);
    // What the kernel has taken has not gone anywhere yet: a limit may be smaller than its buffer.
    if (bytesSent >= byteLimit()) {
        endProbes();
        delivery.start(deliveryPeriod);
    }
}

std::optional<qint64> UploadTest::confirmedBytes() const
{
    return bytesSent - Sockets::missingBytes(*socket);
}

void UploadTest::endWhenDelivered()
{
    if (!socket) {
        delivery.stop();
    } else if (Sockets::unconfirmedBytes(*socket) == 0) {
        finish(true);
    }
}

void UploadTest::readyRead()
{
    const QByteArray bytes = socket->readAll();
    const qsizetype nul = bytes.indexOf('\0');
    if (response.size() < maxResponse) {
        response += QString::fromLatin1(nul < 0 ? bytes : bytes.left(nul));
    }
    Utils::addLogEntry(u"Ready Read: %1"_s.arg(response.size()), u"Ready Read"_s);
    takeAnswer(bytes);
}

} // namespace velometer
