#include "measurement/downloadtest.h"

#include "data/testserver.h"
#include "figures/loadfigures.h"
#include "measurement/measurementcontext.h"
#include "measurement/requestparameters.h"
#include "utils/sockets.h"
#include "utils/utils.h"

#include <QTcpSocket>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// As much as one wake-up takes from the kernel: enough to keep up with a fast link, small enough
/// to stay in the processor's cache, since it is discarded at once.
constexpr qint64 readBufferBytes = 262'144;

/// What is longer is the head of no service of ours.
constexpr qsizetype maxHead = 2048;
constexpr QByteArrayView endOfHead = "\r\n\r\n";

/// What the service says that it sends with; empty where it says nothing, or no such name.
QString control(const QByteArray &head)
{
    constexpr QByteArrayView field = "\r\nVelometer-Congestion: ";
    const qsizetype end = head.indexOf(endOfHead);
    const qsizetype begin = head.indexOf(field);
    if (begin < 0 || begin >= end) {
        return {};
    }
    const QByteArray value = head.sliced(begin + field.size());
    const QString name = QString::fromLatin1(value.first(value.indexOf("\r\n")));
    return LoadFigures::isCongestionControl(name) ? name : QString();
}

} // namespace

DownloadTest::DownloadTest(MeasurementContext *context, QObject *parent, qlonglong testIdOffset)
    : ThroughputTest(context, u"DownloadTest"_s, Result::Download, testIdOffset, parent)
{
    socket->setReadBufferSize(readBufferBytes);
    connect(socket, &QTcpSocket::readyRead, this, &DownloadTest::readyRead);
}

void DownloadTest::doMeasurement(int seconds)
{
    Utils::addLogEntry(u"doMeasurement()"_s);
    ThroughputTest::doMeasurement(seconds);
}

QString DownloadTest::requestText() const
{
    const QString &control = congestionControlWanted();
    return u"GET /velometer/downloadtest.php?mss=%1&logtraffic=%2&%3%4 HTTP/1.0\r\n"
           "Host: %5\r\n"
           "Connection: Close\r\n\r\n"_s.arg(QString::number(controller->getMSS()),
                                             QString::number(testduration),
                                             testParameters(*controller, testIdOffset()),
                                             control.isEmpty() ? QString() : "&cc="_L1 + control,
                                             controller->getTestServer()->getHostHeader());
}

void DownloadTest::readyRead()
{
    if (bytesRead == 0) {
        begin();
    }
    takeTime();
    if (head.size() < maxHead && !head.contains(endOfHead)) {
        const QByteArray answer = socket->read(maxHead - head.size());
        bytesRead += answer.size();
        if (!takeAnswer(answer)) {
            return;
        }
        head += answer;
        setSendersControl(control(head));
    }
    bytesRead += socket->skip(socket->bytesAvailable());
    recordInterval(bytesRead, old_bytesRead);
    if (bytesRead >= byteLimit()) {
        return finish(true);
    }
    holdToLimit();
}

void DownloadTest::slotConnected()
{
    holdToLimit();
    ThroughputTest::slotConnected();
}

void DownloadTest::holdToLimit()
{
    if (byteLimit() == unlimited) {
        return;
    }
    // Neither the network nor the socket brings what may not be read. The server is slowed down by
    // neither: the end of what it may send does not move.
    const qint64 left = byteLimit() - bytesRead;
    socket->setReadBufferSize(std::min(readBufferBytes, left));
    Sockets::limitWindow(*socket, left);
}

} // namespace velometer
