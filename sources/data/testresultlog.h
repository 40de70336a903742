#pragma once

#include "platform/networkstate.h"
#include "utils/clocktimer.h"

#include <QAbstractSocket>
#include <QObject>
#include <QString>

class QTcpSocket;

namespace velometer {

class LocationHelper;
class NetworkInfoHelper;
class TestContext;

/// One sample of a test's surroundings: phase, position, connection type, signal, cell, and the
/// time of one TCP connect to the test server. Reports to the context's testResultLogReady exactly
/// once for each takeMeasurement, from the event loop. Owned by its parent, usually the test's
/// record.
class TestResultLog : public QObject
{
    Q_OBJECT

public:
    /// The helpers and @p controller are borrowed and outlive the entry.
    TestResultLog(NetworkInfoHelper *networkinfo, LocationHelper *locationinfo, QString phasename,
                  TestContext *controller, QObject *parent);
    ~TestResultLog() override;

    /// Starts the sample; a connect that takes longer than @p timeout ms counts as failed.
    void takeMeasurement(int timeout);
    /// Forgets a running sample; it will not be reported.
    void cancel();

    /// Samples position and network now, without a connect.
    void fillInGPSAndNetworkData();

    void setLogid(int id) { logid = id; }
    int getLogid() const { return logid; }
    QString getPhasename() const { return phasename; }
    QString getConnectionType() const { return connectionType; } ///< network mode code
    double getSignalStrength() const { return signalStrength; }  ///< percent, -1 when unknown
    qlonglong getCellId() const { return cellId; }               ///< up to 36 bits, 0 when unknown
    /// Of the modem when the test runs over it, else nothing.
    const RadioSignal &getRadio() const { return radio; }
    qlonglong getRTT() const { return rtt; } ///< ns, -1 when the connect failed

    /// The "<LogEntry>" element of the report. Round-trip time in whole microseconds (a failed
    /// connect is 0), positions with six decimals.
    QString appendXmlToMutableString() const;

private Q_SLOTS:
    void slotConnected();
    void slotDisconnected();
    void slotError(QAbstractSocket::SocketError code);
    void rttTimeoutOccourd();

private:
    void doRTTTest();
    void rttmeasurementFinished();
    void getGPSData();

    int logid = 0;
    qint64 date = 0;
    QString phasename;
    double latitude = 0;
    double longitude = 0;
    double altitude = 0;
    double vAccuracy = 0;
    double hAccuracy = 0;
    bool gpslock = false;
    qint64 rtt = -1;
    QString connectionType;
    double signalStrength = -1;
    qlonglong cellId = 0;
    RadioSignal radio;
    TestContext *controller;
    NetworkInfoHelper *networkinfo;
    LocationHelper *locationinfo;
    ClockTimer timer;
    QTcpSocket *socket = nullptr;
    qint64 rttstart = 0;
    qint64 rttstop = 0;
    int timeout = 0;
};

} // namespace velometer
