#pragma once

#include "data/delayplan.h"
#include "utils/clocktimer.h"

#include <QAbstractSocket>
#include <QHash>
#include <QObject>
#include <QString>

class QTcpSocket;

namespace velometer {

class MeasurementContext;
class Result;

/// Round-trip time as TCP connect time: four connects, or more, with a pause between them, each
/// timed from start to connected, at the socket where the kernel tells. The first resolves the name
/// and warms the path and is not counted. A connect that fails within its 3 s counts as -1; the
/// test itself cannot fail. Calls measurementDone() of its controller exactly once, from the event
/// loop, unless it is cancelled.
class RttTest : public QObject
{
    Q_OBJECT

public:
    /// @p controller is borrowed and outlives the test; @p parent owns the test and its result.
    /// Counts @p connects after the first.
    RttTest(MeasurementContext *controller, QObject *parent,
            int connects = DelayPlan::countedSamples);
    ~RttTest() override;

    /// Starts the next connect; the test itself starts all but the first.
    void doMeasurement();
    /// Ends without a result.
    void cancel();

private Q_SLOTS:
    void rttTimeoutOccourd();
    void pauseOver();
    void slotConnected();
    void slotDisconnected();
    void slotError(QAbstractSocket::SocketError code);

private:
    void rttmeasurementFinished();
    void testExecuted();

    MeasurementContext *controller;
    ClockTimer timer;
    ClockTimer timerPause;
    QTcpSocket *socket = nullptr;
    Result *result = nullptr;
    qint64 rttstart = 0;
    qint64 rttstop = 0;
    QHash<int, int> responsetimes; ///< ns by number of the connect
    qint64 rtt = -1;
    QString ipadress; ///< learnt from the first connect that succeeds
    const int lastConnect;
    int testsexecuted = 0;
    bool cancelled = false;
};

} // namespace velometer
