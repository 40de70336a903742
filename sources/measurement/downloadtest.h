#pragma once

#include "measurement/requestparameters.h"
#include "measurement/throughputtest.h"

namespace velometer {

/// Download throughput: asks the test server for a stream and discards what comes. The measured
/// period begins with the first byte, so connecting and asking are not part of it.
class DownloadTest : public ThroughputTest
{
    Q_OBJECT

public:
    DownloadTest(MeasurementContext *controller, QObject *parent,
                 qlonglong testIdOffset = TestIdOffset::download);

    void doMeasurement(int seconds) override;

protected:
    qint64 totalBytes() const override { return bytesRead; }
    QString requestText() const override;

protected Q_SLOTS:
    void slotConnected() override;

private Q_SLOTS:
    void readyRead();

private:
    void holdToLimit();

    qint64 bytesRead = 0; ///< the answer's header included
    qint64 old_bytesRead = 0;
    QByteArray head; ///< its beginning, or all of it
};

} // namespace velometer
