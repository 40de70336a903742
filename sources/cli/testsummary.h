#pragma once

#include "data/databudget.h"

#include <QList>
#include <QString>

#include <optional>

namespace velometer {

class DBTestResults;
class DeviceInfoHelper;
class LocationHelper;
class NetworkInfoHelper;
class TestController;
class TestDetails;
class TestResults;
class TestServerTable;

/// What is known about one test, finished, broken or stored, for every output format: plain values,
/// nothing where nothing is known. Texts have lost their control characters and, from outside, all
/// beyond 256 characters; they are not translated. Rates bit/s, times ns.
struct TestSummary
{
    using Number = std::optional<qint64>;
    using Real = std::optional<double>;
    using Flag = std::optional<bool>;
    using Text = std::optional<QString>; ///< never empty

    struct Throughput
    {
        Number averageRate, minimumRate, maximumRate; ///< none of a phase that measured nothing
        Number bytes;
        Number duration, connectTime, firstByteTime, longestPause;
        Flag valid;
        std::optional<QList<qint64>> intervalBytes; ///< per 100 ms
    };
    struct RoundTrip
    {
        Number minimum, average, maximum;
        std::optional<QList<Number>>
            samples; ///< in the order of the connects, nothing for a failed one
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
        Number signal; ///< percent
        Flag roaming;
    };
    struct Position
    {
        double latitude = 0, longitude = 0;                  ///< degrees
        Real altitude, horizontalAccuracy, verticalAccuracy; ///< m
        Real velocity;                                       ///< km/h
        Real distance;                                       ///< m
    };
    struct Device
    {
        Text manufacturer, product, model, platform;
    };
    struct Report
    {
        Flag delivered;
        Number queueId;
        Number resent; ///< earlier reports delivered along with it
    };

    Number storedId; ///< row of the results table
    Number testId, seriesId, userId;
    Number timestamp; ///< ms since the epoch
    Text schedule;
    Text location; ///< code
    Server server;
    Throughput download;
    Throughput upload;
    Number serverMinimumRate, serverAverageRate, serverMaximumRate; ///< of the upload
    RoundTrip rtt;
    Tcp tcp;
    Network network;
    std::optional<Position> position;
    Device device;
    Report report;
    Text budgetReached; ///< measurements that the data budget ended early: "download,upload"
    DataBudget budget;  ///< that it ran with, as far as it is known

    /// The upload rate to show: the server's, which saw the bytes arrive, else the client's.
    Number uploadRate() const { return serverAverageRate ? serverAverageRate : upload.averageRate; }

    /// The test that @p controller has just ended; @p record is null when it did not get that far.
    static TestSummary ofTest(const TestController &controller, const TestResults *record);
    /// A test of the store; @p details may be null. @p table knows the servers' names.
    static TestSummary ofStored(const DBTestResults &row, const TestDetails *details,
                                const TestServerTable &table);

    static Network networkOf(const NetworkInfoHelper &helper);
    static std::optional<Position> positionOf(const LocationHelper &helper);
    static Device deviceOf(const DeviceInfoHelper &helper);
};

} // namespace velometer
