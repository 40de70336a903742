#pragma once

#include "data/result.h"
#include "measurement/loadprobe.h"
#include "utils/clocktimer.h"

#include <QAbstractSocket>
#include <QByteArray>
#include <QObject>

#include <limits>
#include <optional>

class QTcpSocket;

namespace velometer {

class MeasurementContext;

/// What the download and the upload have in common: one connection to the test server, a period
/// that begins with the first data, a deadline, and the credit of bytes to intervals of 100 ms.
///
/// All bytes since the last recorded boundary are credited to the interval just before the one in
/// which they are seen; intervals without data keep 0; what comes after the last interval is
/// counted in the total alone. A stream counts when it is answered with 200, or, of an upload, with
/// nothing: the end of any other is its result, without a rate. Times are ns, missing ones -1. An
/// object serves one measurement and ends in exactly one measurementDone() of its controller, from
/// the event loop, unless it is cancelled: with the figures so far when the connection fails, is
/// closed early, or has moved as many bytes as it may.
class ThroughputTest : public QObject
{
    Q_OBJECT

public:
    ~ThroughputTest() override;

    /// Moves at most @p bytes, headers included, and ends as soon as they are moved; the result
    /// then says so. None: no limit. Takes effect before doMeasurement().
    void setByteLimit(std::optional<qint64> bytes);

    /// Takes the round-trip time while the stream runs, with at most @p bytes, which come on top of
    /// the byte limit; none: as many as probes need. Takes effect before doMeasurement(); without
    /// it there are no probes.
    void setProbes(std::optional<qint64> bytes);

    /// Of the end that sends the stream, where its kernel has it; empty: BBR. Takes effect before
    /// doMeasurement().
    void setCongestionControl(const QString &control) { wantedControl = control; }

    /// Measures for @p seconds from the first data on; waits as long for it.
    virtual void doMeasurement(int seconds);
    /// Ends without a result.
    void cancel();

protected:
    /// @p controller is borrowed and outlives the test; @p parent owns the test and its result. The
    /// test id of the request is the test's and @p testIdOffset.
    ThroughputTest(MeasurementContext *controller, QString name, Result::Type type,
                   qlonglong testIdOffset, QObject *parent);

    virtual qint64 totalBytes() const = 0;
    /// What the other end has confirmed of them, where that is told.
    virtual std::optional<qint64> confirmedBytes() const { return std::nullopt; }
    virtual QString requestText() const = 0;

    /// What the server answers, from its beginning on and in any pieces. False: the stream is
    /// refused, and the test has ended.
    bool takeAnswer(const QByteArray &bytes);
    /// Which congestion control sends the stream, as the other end says.
    void setSendersControl(const QString &control) { sendersControl = control; }
    const QString &congestionControlWanted() const { return wantedControl; }
    qlonglong testIdOffset() const { return idOffset; }
    /// The first data is there: the measured period begins.
    void begin();
    /// Takes the clock for data that is there now.
    void takeTime();
    /// Credits what has come since @p oldTotal when an interval boundary was passed, and reports
    /// progress.
    void recordInterval(qint64 total, qint64 &oldTotal);

    static constexpr qint64 unlimited = std::numeric_limits<qint64>::max();
    qint64 byteLimit() const { return limit; }
    /// Ends with the figures so far; @p cut: because the limit is reached.
    void finish(bool cut = false);

    /// No more round-trip times: all that the stream may move is moved.
    void endProbes() { probe.stop(); }

    MeasurementContext *controller;
    QTcpSocket *socket; ///< null when the test has ended
    int testduration = 0;

protected Q_SLOTS:
    virtual void slotConnected();

private Q_SLOTS:
    void timeoutOccourd();
    void timeoutOccourdRepaint();
    void slotDisconnected();
    void slotError(QAbstractSocket::SocketError code);

private:
    /// As much of the answer as takeAnswer() still looks at.
    qsizetype missingOfAnswer() const;

    const QString name;
    const Result::Type resulttype;
    const qlonglong idOffset;
    const bool isResult;   ///< not load that is made for its delays alone
    QByteArray statusLine; ///< its beginning, up to the code
    ClockTimer timer;
    ClockTimer repainttimer;
    Result *result = nullptr;
    QString wantedControl;
    QString congestionControl; ///< of our end
    QString sendersControl;    ///< of a stream that the other end sends
    qint64 limit = unlimited;
    LoadProbe probe;
    qint64 probeLimit = 0;
    qint64 time_end = 0;
    qint64 time_start;
    qint64 mseconds = 0;     ///< ns from the start to the latest data
    qint64 old_mseconds = 0; ///< the same at the last recorded boundary
    qint64 max_pause = 0;
    IntervalTable valuesrate;
    IntervalTable valuesbyte;
    QList<qint64> confirmed;    ///< per interval; empty where it is not told
    qint64 confirmedBefore = 0; ///< at the last recorded boundary
    int aktinterval = 0;
    qint64 akttime = 0;
    qint64 timeconnectstart = 0;
    qint64 timeconnectend = 0;
    qint64 timegettimestart = 0;
    qint64 timegettimeend = 0;
};

} // namespace velometer
