#pragma once

#include "figures/delays.h"

#include <QHash>
#include <QObject>
#include <QString>

namespace velometer {

/// Value per 100 ms interval, keyed by interval number from 0: bytes, or bit/s.
using IntervalTable = QHash<int, qint64>;

/// What one measurement phase produced. The constructors derive every figure from the samples, so
/// the rules below stand in one place. Rates are bit/s, response times and durations ns; -1 means
/// that there is no figure: a stream that was refused, that ended before its fifth interval, or
/// that brought nothing after its ramp-up has no rate.
class Result : public QObject
{
    Q_OBJECT

public:
    enum Type { Empty = 0, Download = 1, Upload = 2, Rtt = 3 };

    /// Less tells of buffers, not of the link.
    static constexpr int fewestIntervals = 5;
    static constexpr qlonglong intervalNs = 100'000'000;

    explicit Result(QObject *parent);

    /// A throughput phase (Download or Upload).
    /// - average rate: all bytes over the real duration; none when that is below 1 ns
    /// - average of the values, minimum and maximum: those of IntervalRates; the phase is valid
    /// when
    ///   one of the rates after the ramp-up is above 0
    /// @p expectedduration in s, the other durations in ns.
    Result(int testport, int expectedduration, qlonglong realduration, qint64 bytestransferd,
           const IntervalTable &valuesrate, const IntervalTable &valuesbyte, qlonglong max_pause,
           qlonglong connecttime, qlonglong gettime, int resulttype, QObject *parent);

    /// An RTT phase: minimum, mean and maximum of the times above 0; valid when there is one.
    Result(int testport, const QHash<int, int> &responsetimes, QObject *parent);

    void initialize();

    qint64 getRateAvg() const { return hasRate() ? rateavg : -1; }
    qint64 getRateMin() const { return hasRate() ? ratemin : -1; }
    qint64 getRateMax() const { return hasRate() ? ratemax : -1; }
    qint64 getValuesAvg() const { return valuesavg; }
    int getPort() const { return testport; }
    int getDuration() const { return expectedduration; }       ///< planned, s
    qlonglong getRealDuration() const { return realduration; } ///< ns
    qlonglong getTime() const { return time; }                 ///< of creation, ms
    const IntervalTable &getIntervallValuesRate() const { return valuesrate; }
    const IntervalTable &getIntervallValuesByte() const { return valuesbyte; }
    /// The single response times by connect number; a failed connect is -1.
    const QHash<int, int> &getResponseTimes() const { return responsetimes; }
    /// The same in order; nothing for a failed one, or one beyond the numbers.
    Delays getResponseDelays() const;
    qlonglong getMaxPause() const { return max_pause; } ///< ns
    int getResponseAvg() const { return responseavg; }
    int getResponseMin() const { return responsemin; }
    int getResponseMax() const { return responsemax; }
    qlonglong getAllBytesTransfered() const { return allBytesTransfered; }
    qint64 getBytesTransferd() const { return bytestransferd; }
    bool isValid() const { return valid && (resulttype == Rtt || isMeasured()); }
    bool isLimited() const { return limited; }
    qlonglong getGetTime() const { return gettime; }         ///< ns, -1 when no data came
    qlonglong getConnectTime() const { return connecttime; } ///< ns, -1 when it did not connect
    int getResultType() const { return resulttype; }

    void setAllBytesTransfered(qlonglong bytes) { allBytesTransfered = bytes; }

    /// Of a stream: the server served it, and it lasted five full intervals.
    bool isMeasured() const { return accepted && realduration >= fewestIntervals * intervalNs; }
    /// False when the server answered the request for the stream with anything but 200.
    bool isAccepted() const { return accepted; }
    void setAccepted(bool served) { accepted = served; }

    /// The measurement ended early because its share of the data budget was used up. Its tables
    /// then hold the measured intervals alone.
    bool isCutByBudget() const { return cutByBudget; }
    void setCutByBudget(bool cut) { cutByBudget = cut; }

    /// Name of the congestion control that the sending end was seen to run; empty when unknown.
    QString getCongestionControl() const { return congestionControl; }
    void setCongestionControl(const QString &name) { congestionControl = name; }

    /// The round-trip times beside the stream, and the bytes that they cost.
    const LoadDelays &getLoadDelays() const { return loadDelays; }
    qint64 getProbeBytes() const { return probeBytes; }
    void setLoadDelays(const LoadDelays &delays, qint64 bytes)
    {
        loadDelays = delays;
        probeBytes = bytes;
    }

    /// Of an upload: the bytes that the other end has confirmed, per interval.
    const QList<qint64> &getConfirmedBytes() const { return confirmedBytes; }
    void setConfirmedBytes(const QList<qint64> &bytes) { confirmedBytes = bytes; }

    /// One line for the diagnostic log.
    QString toString() const;

private:
    void calculateValues();
    bool hasRate() const { return isMeasured() && (valid || cutByBudget); }

    qint64 ratemin = -1;
    qint64 ratemax = -1;
    qint64 rateavg = -1;
    int responsemin = -1;
    int responseavg = -1;
    int responsemax = -1;
    qlonglong allBytesTransfered = 0;
    int testport = 0;
    qint64 bytestransferd = 0;
    int expectedduration = 0;
    qlonglong realduration = 0;
    qlonglong time = 0;
    IntervalTable valuesrate;
    IntervalTable valuesbyte;
    QHash<int, int> responsetimes;
    qlonglong max_pause = 0;
    qint64 valuesavg = 0;
    bool valid = false;
    bool limited = false;
    bool accepted = true;
    bool cutByBudget = false;
    qlonglong gettime = 0;
    qlonglong connecttime = 0;
    int resulttype = Empty;
    QString congestionControl;
    LoadDelays loadDelays;
    qint64 probeBytes = 0;
    QList<qint64> confirmedBytes;
};

} // namespace velometer
