#pragma once

#include "measurement/requestparameters.h"
#include "measurement/throughputtest.h"

#include <QByteArray>
#include <QTimer>

namespace velometer {

/// Upload throughput: announces a large body and sends one more block of random digits whenever the
/// network has taken some. The measured period begins when the request has been taken; with a limit
/// it ends when the server's end has confirmed all of it.
class UploadTest : public ThroughputTest
{
    Q_OBJECT

public:
    UploadTest(MeasurementContext *controller, QObject *parent,
               qlonglong testIdOffset = TestIdOffset::upload);

    /// Builds the block first: as many bytes as the segment size, so that a block fills a segment.
    void doMeasurement(int seconds) override;

protected:
    qint64 totalBytes() const override { return bytesSent; }
    std::optional<qint64> confirmedBytes() const override;
    QString requestText() const override;

protected Q_SLOTS:
    void slotConnected() override;

private Q_SLOTS:
    void bytesWritten(qint64 count);
    void endWhenDelivered();
    void readyRead();

private:
    qint64 bytesSent = 0; ///< the request's header included
    qint64 old_bytesSent = 0;
    QTimer delivery;
    QByteArray randomvalues;
    QString response; ///< what the server sends back; for the log alone
};

} // namespace velometer
