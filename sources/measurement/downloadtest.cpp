#include "measurement/downloadtest.h"

#include "data/testserver.h"
#include "measurement/measurementcontext.h"
#include "measurement/requestparameters.h"
#include "utils/utils.h"

#include <QTcpSocket>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// As much as one wake-up takes from the kernel: enough to keep up with a fast link, small enough
/// to stay in the processor's cache, since it is discarded at once.
constexpr qint64 readBufferBytes = 262'144;

} // namespace

DownloadTest::DownloadTest(MeasurementContext *context, QObject *parent)
    : ThroughputTest(context, u"DownloadTest"_s, Result::Download, parent)
{
    connect(m_socket, &QTcpSocket::readyRead, this, &DownloadTest::readyRead);
}

void DownloadTest::doMeasurement(int seconds)
{
    Utils::addLogEntry(u"doMeasurement()"_s);
    m_socket->setReadBufferSize(std::min(readBufferBytes, byteLimit()));
    ThroughputTest::doMeasurement(seconds);
}

QString DownloadTest::requestText() const
{
    return u"GET /velometer/downloadtest.php?mss=%1&logtraffic=%2&%3 HTTP/1.0\r\n"
           "Host: %4\r\n"
           "Connection: Close\r\n\r\n"_s.arg(QString::number(controller->getMSS()),
                                             QString::number(testduration),
                                             testParameters(*controller, TestIdOffset::download),
                                             controller->getTestServer()->getHostHeader());
}

void DownloadTest::readyRead()
{
    if (bytesRead == 0)
        begin();
    takeTime();
    bytesRead += m_socket->skip(m_socket->bytesAvailable());
    recordInterval(bytesRead, old_bytesRead);
    const qint64 left = byteLimit() - bytesRead;
    if (left <= 0)
        return testFinished();
    // The socket never fetches what may not be read.
    m_socket->setReadBufferSize(std::min(readBufferBytes, left));
}
