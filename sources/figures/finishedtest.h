#pragma once

#include "figures/delays.h"
#include "figures/mylocation.h"

#include <QList>
#include <QString>

#include <optional>

namespace velometer {

/// Everything that is known of one test that has ended, whether it has just run or comes out of the
/// store: plain values, nothing where nothing is known. Details, lists, JSON, CSV, exports and the
/// report are made of it alone. Texts have lost their control characters and, from outside, all
/// beyond 256 characters; they are not translated. Rates bit/s, times ns unless said otherwise.
struct FinishedTest
{
    using Number = std::optional<qint64>;
    using Real = std::optional<double>;
    using Flag = std::optional<bool>;
    using Text = std::optional<QString>; ///< never empty

    struct Throughput
    {
        Number averageRate, minimumRate, maximumRate; ///< none of a phase that measured nothing
        Number bytes;                                 ///< all that were moved, the ramp-up included
        Number duration, connectTime, firstByteTime, longestPause;
        Flag valid;                                 ///< none: the test did not get to this phase
        std::optional<QList<qint64>> intervalBytes; ///< per 100 ms
        /// Of an upload, per 100 ms: what the other end has confirmed. What our kernel and queues
        /// on the way hold at the end was sent, but is not there.
        // NOLINTNEXTLINE(readability-redundant-member-init): lets it be left out
        std::optional<QList<qint64>> confirmedBytes{};

        /// From the end of the ramp-up on, see IntervalRates.
        Number steadyRate() const;
    };
    struct RoundTrip
    {
        Number minimum, average, maximum;
        /// In the order of the connects, nothing for a failed one.
        std::optional<QList<Number>> samples;
        Flag valid;
    };
    struct Server
    {
        Text name, host, city, state, country, ip;
        Number port;
    };
    struct Tcp
    {
        Number mss, receiveWindow, windowScale, sack, timestamps;
        Text congestion, publicIp, deviceIp, clientHostname;
    };
    struct Network
    {
        Text type; ///< as results store it: "WLAN", "Mobile(LTE)", "Mixed(WLAN,Mobile)" ...
        Text mode; ///< network mode code
        Text name;
        Text mcc, mnc, homeMcc, homeMnc; ///< texts: a leading zero counts
        Number lac, cell;
        Number signal;              ///< percent, of the network in use
        qint64 cellularSignal = -1; ///< percent, of the modem whatever is in use; 0 or -1 unknown
        Flag roaming;
        /// What the modem measured of its cells: medians over the test, and the band at its end.
        /// None of a test over another connection.
        // NOLINTBEGIN(readability-redundant-member-init): lets them be left out
        Real rsrp{};        ///< dBm
        Real rsrq{}, snr{}; ///< dB
        Text band{};
        // NOLINTEND(readability-redundant-member-init)
    };
    /// At the end of the test. Known when the latitude is.
    struct Position
    {
        Real latitude, longitude;                            ///< degrees
        Real altitude, horizontalAccuracy, verticalAccuracy; ///< m
    };
    /// Between the first and the last position; as results store it, below 0 where not known.
    struct Movement
    {
        double velocity = -1;                                ///< km/h
        double distance = -1;                                ///< m
        double duration = -1;                                ///< s
        double horizontalAccuracy = 0, verticalAccuracy = 0; ///< m, means of both positions
    };
    struct Device
    {
        Text manufacturer, product, model, platform;
    };
    struct Budget
    {
        Number bytes; ///< of download and upload together
        Text reached; ///< the measurements that it ended early: "download", "download,upload"
    };
    struct Report
    {
        Flag delivered;
        Number queueId; ///< where it waits
        Number resent;  ///< earlier reports delivered along with it
    };

    /// What the report alone tells. It does not outlive the report, the store has none of it.
    struct ReportOnly
    {
        struct Point
        {
            qint64 time = 0;                                  ///< ms since the epoch
            double latitude = 0, longitude = 0, altitude = 0; ///< degrees, m
        };
        /// The phase as its socket saw it, also where that makes no figure; -1 is then its rate.
        struct Phase
        {
            bool ran = false;
            qint64 port = 0;
            qint64 minimumRate = 0, averageRate = 0, maximumRate = 0;
            qint64 bytes = 0; ///< those that the average counts
            std::optional<Point> start, end;
        };
        Phase download, upload, rtt;
        QString connectionType; ///< mode code, or a mixed text
        QString deviceId;       ///< IMEI or what stands in for it
        std::optional<float> rating;
        qint64 mss = 0, receiveWindow = 0, windowScale = 0, timestamps = 0, sack = 0;
        QString cellIds; ///< of the log entries, separated by commas
        QString log;     ///< the elements of the log entries
        QList<MyLocation> path;
    };

    Number storedId; ///< row of the results table
    Number testId, seriesId, userId;
    Number timestamp; ///< ms since the epoch
    Text schedule;    ///< "number,count,minutes" of a series
    Text location;    ///< code
    Server server;
    Throughput download;
    Throughput upload;
    Number serverMinimumRate, serverAverageRate, serverMaximumRate; ///< of the upload
    RoundTrip rtt;
    std::optional<Delays> idleDelays; ///< those of the round trip, and more where more were taken
    LoadDelays downloadLoad, uploadLoad;           ///< beside the measurements
    LoadDelays extraDownloadLoad, extraUploadLoad; ///< beside load that was made for it
    Tcp tcp;
    Network network;
    Position position;
    Movement movement;
    Device device;
    Budget budget;
    Report report;
    ReportOnly reportOnly;

    /// The upload rates to show: the server's, which saw the bytes arrive, else the client's; never
    /// some of one and some of the other.
    Number uploadRate() const { return serverAverageRate ? serverAverageRate : upload.averageRate; }
    Number uploadMinimum() const
    {
        return serverAverageRate ? serverMinimumRate : upload.minimumRate;
    }
    Number uploadMaximum() const
    {
        return serverAverageRate ? serverMaximumRate : upload.maximumRate;
    }
    /// Of the idle line; of a test without a list of its own those of the round trip.
    const std::optional<Delays> &idle() const { return idleDelays ? idleDelays : rtt.samples; }
    qint64 totalBytes() const { return download.bytes.value_or(0) + upload.bytes.value_or(0); }
};

/// What a figure must be to be one. Everything else, and every text without a character, is
/// nothing.
namespace Known {

FinishedTest::Text text(const QString &value);
FinishedTest::Number number(const QString &value);
FinishedTest::Number atLeast(qint64 minimum, FinishedTest::Number value);
FinishedTest::Real above(double minimum, double value);

} // namespace Known

} // namespace velometer
