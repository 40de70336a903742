#include "figures/testfields.h"

#include "utils/endpoint.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Number = FinishedTest::Number;
using Real = FinishedTest::Real;
using Flag = FinishedTest::Flag;
using Text = FinishedTest::Text;

/// What is beyond is no count of anything, and no qint64.
constexpr double greatestNumber = 9e18;

// ---- A member as the store and the formats see it

template <typename Value>
QVariant toVariant(const std::optional<Value> &value)
{
    return value ? QVariant::fromValue(*value) : QVariant();
}

template <typename Value>
QVariant toVariant(const std::optional<QList<Value>> &list)
{
    if (!list) {
        return {};
    }
    QVariantList values;
    for (const Value &value : *list) {
        if constexpr (std::is_same_v<Value, Number>) {
            values.append(toVariant(value));
        } else {
            values.append(QVariant::fromValue(value));
        }
    }
    return values;
}

QVariant toVariant(qint64 value)
{
    return value;
}

QVariant toVariant(double value)
{
    return value;
}

QVariant toVariant(const QString &value)
{
    return value;
}

void fromVariant(const QVariant &value, Number &member)
{
    bool isNumber = false;
    const double real = value.toDouble(&isNumber);
    if (value.typeId() == QMetaType::LongLong) {
        member = Known::atLeast(0, value.toLongLong());
    } else if (isNumber && real >= 0 && real < greatestNumber) {
        member = std::llround(real);
    }
}

void fromVariant(const QVariant &value, Real &member)
{
    const double real = value.toDouble();
    member = std::isfinite(real) ? Real(real) : Real();
}

void fromVariant(const QVariant &value, Flag &member)
{
    member = value.toBool();
}

void fromVariant(const QVariant &value, Text &member)
{
    member = Known::text(value.toString());
}

void fromVariant(const QVariant &value, qint64 &member)
{
    member = value.toLongLong();
}

void fromVariant(const QVariant &value, double &member)
{
    const double real = value.toDouble();
    member = std::isfinite(real) ? real : member;
}

template <typename Value>
void fromVariant(const QVariant &value, std::optional<QList<Value>> &member)
{
    QList<Value> list;
    const QVariantList values = value.toList();
    for (const QVariant &each : values) {
        Number number;
        fromVariant(each, number);
        if constexpr (std::is_same_v<Value, Number>) {
            list.append(number);
        } else {
            list.append(number.value_or(0));
        }
    }
    member = list;
}

// ---- Lines of the table

/// A member: @p access gives it, of a test to read or to fill.
template <typename Access>
TestField field(const char *key, Unit unit, const char *stored, Access /*access*/,
                const char *column = "")
{
    return {QLatin1StringView(key),
            QLatin1StringView(stored),
            unit,
            [](const FinishedTest &test) { return toVariant(Access{}(test)); },
            [](FinishedTest &test, const QVariant &value) { fromVariant(value, Access{}(test)); },
            QLatin1StringView(column)};
}

/// A member that is a list, kept under @p number.
template <typename Access>
TestField list(const char *key, Unit unit, TestField::List number, Access access)
{
    TestField line = field(key, unit, "", access);
    line.list = number;
    return line;
}

/// What follows from members.
template <typename Get>
TestField derived(const char *key, Unit unit, const char *stored, Get /*get*/,
                  const char *column = "")
{
    return {QLatin1StringView(key),
            QLatin1StringView(stored),
            unit,
            [](const FinishedTest &test) { return toVariant(Get{}(test)); },
            nullptr,
            QLatin1StringView(column)};
}

/// Of a test that has no place a movement tells nothing.
Real moved(const FinishedTest &test, double value)
{
    return test.position.latitude && value >= 0 ? Real(value) : Real();
}

/// Of a test without a budget there is nothing to say.
Flag budgetReached(const FinishedTest::Budget &budget)
{
    return budget.bytes || budget.reached ? Flag(budget.reached.has_value()) : Flag();
}

QString localTime(const FinishedTest &test, const QString &format)
{
    return QDateTime::fromMSecsSinceEpoch(test.timestamp.value_or(0)).toString(format);
}

QString domain(const FinishedTest &test)
{
    return Endpoint::domain(test.server.host.value_or(QString()));
}

// A line without it would be three.
#define AT(member) ([](auto &test) -> auto & { return test.member; })

/// What is known of the delays beside one stream; @p load is its member of a test.
// NOLINTBEGIN(bugprone-macro-parentheses): members and texts to be joined stand in none
#define LOAD(group, stored, load, samplesList, timesList)                                          \
    derived(group ".median_ns", Nanoseconds, stored "Median",                                      \
            [](T test) { return DelayFigures::median(test.load.samples); }),                       \
        derived(group ".p95_ns", Nanoseconds, stored "Percentile95",                               \
                [](T test) { return DelayFigures::percentile95(test.load.samples); }),             \
        derived(group ".added_ns", Nanoseconds, stored "Added",                                    \
                [](T test) { return DelayFigures::added(test.idle(), test.load.samples); }),       \
        derived(group ".lost_percent", Percent, stored "Lost",                                     \
                [](T test) { return DelayFigures::lostPercent(test.load.samples); }),              \
        field(group ".congestion", None, stored "Congestion", AT(load.congestion)),                \
        list(group ".samples_ns", Nanoseconds, samplesList, AT(load.samples)),                     \
        list(group ".times_ns", Nanoseconds, timesList, AT(load.times))
// NOLINTEND(bugprone-macro-parentheses)

QList<TestField> makeTable()
{
    using enum Unit;
    using T = const FinishedTest &;
    TestField idle = list("idle.samples_ns", Nanoseconds, TestField::IdleDelays, AT(idleDelays));
    idle.get = [](T test) { return toVariant(test.idle()); };
    return {
        field("id", Identity, "", AT(storedId)),
        field("test_id", Identity, "testTestId", AT(testId)),
        field("series_id", Identity, "testSeriesId", AT(seriesId)),
        field("user_id", Identity, "userId", AT(userId)),
        field("timestamp", Moment, "", AT(timestamp)),
        derived("", None, "testDate", [](T test) { return localTime(test, u"yyyy-MM-dd"_s); }),
        derived("", None, "testTime", [](T test) { return localTime(test, u"hh:mm"_s); }),
        field("schedule", None, "schedule", AT(schedule)),
        field("location", None, "", AT(location)),

        // The store's "name" is the host; it has been so for longer than servers had names.
        field("server.name", None, "testServerLabel", AT(server.name)),
        field("server.host", None, "testServerName", AT(server.host)),
        derived("", None, "testServerDomain", [](T test) { return domain(test); }),
        field("server.port", None, "testServerPort", AT(server.port)),
        field("server.city", None, "testServerCity", AT(server.city)),
        field("server.state", None, "testServerState", AT(server.state)),
        field("server.country", None, "testServerCountry", AT(server.country)),
        field("server.ip", None, "testServerIP", AT(server.ip)),

        field("download.avg_bps", BitsPerSecond, "downloadAverage", AT(download.averageRate)),
        field("download.min_bps", BitsPerSecond, "downloadMinimum", AT(download.minimumRate)),
        field("download.max_bps", BitsPerSecond, "downloadMaximum", AT(download.maximumRate)),
        field("download.bytes", Bytes, "downloadedBytes", AT(download.bytes)),
        field("download.duration_ns", Nanoseconds, "downloadDuration", AT(download.duration)),
        field("download.connect_ns", Nanoseconds, "downloadConnect", AT(download.connectTime)),
        field("download.first_byte_ns", Nanoseconds, "downloadFirstByte",
              AT(download.firstByteTime)),
        field("download.max_pause_ns", Nanoseconds, "downloadMaxPause", AT(download.longestPause)),
        field("download.valid", None, "downloadValid", AT(download.valid)),
        list("download.interval_bytes", Bytes, TestField::DownloadIntervals,
             AT(download.intervalBytes)),

        // What the details show as the upload is the server's figure where there is one.
        derived("", BitsPerSecond, "uploadAverage", [](T test) { return test.uploadRate(); }),
        derived("", BitsPerSecond, "uploadMaximum", [](T test) { return test.uploadMaximum(); }),
        field("upload.avg_bps", BitsPerSecond, "uploadClientAverage", AT(upload.averageRate)),
        field("upload.min_bps", BitsPerSecond, "uploadClientMinimum", AT(upload.minimumRate)),
        field("upload.max_bps", BitsPerSecond, "uploadClientMaximum", AT(upload.maximumRate)),
        field("upload.server_min_bps", BitsPerSecond, "uploadServerMinimum", AT(serverMinimumRate)),
        field("upload.server_avg_bps", BitsPerSecond, "uploadServerAverage", AT(serverAverageRate)),
        field("upload.server_max_bps", BitsPerSecond, "uploadServerMaximum", AT(serverMaximumRate)),
        field("upload.bytes", Bytes, "uploadedBytes", AT(upload.bytes)),
        field("upload.duration_ns", Nanoseconds, "uploadDuration", AT(upload.duration)),
        field("upload.connect_ns", Nanoseconds, "uploadConnect", AT(upload.connectTime)),
        field("upload.first_byte_ns", Nanoseconds, "uploadFirstByte", AT(upload.firstByteTime)),
        field("upload.max_pause_ns", Nanoseconds, "uploadMaxPause", AT(upload.longestPause)),
        field("upload.valid", None, "uploadValid", AT(upload.valid)),
        list("upload.interval_bytes", Bytes, TestField::UploadIntervals, AT(upload.intervalBytes)),
        derived("", Bytes, "totalBytes", [](T test) { return test.totalBytes(); }),

        field("rtt.min_ns", Nanoseconds, "rttMinimum", AT(rtt.minimum)),
        field("rtt.avg_ns", Nanoseconds, "rttAverage", AT(rtt.average)),
        field("rtt.max_ns", Nanoseconds, "rttMaximum", AT(rtt.maximum)),
        field("rtt.valid", None, "rttValid", AT(rtt.valid)),
        list("rtt.samples_ns", Nanoseconds, TestField::RttSamples, AT(rtt.samples)),

        field("network.type", None, "connectionType", AT(network.type)),
        field("network.mode", None, "networkMode", AT(network.mode)),
        field("network.name", None, "networkName", AT(network.name)),
        field("network.mcc", None, "networkMcc", AT(network.mcc), "mcc"),
        field("network.mnc", None, "networkMnc", AT(network.mnc), "mnc"),
        field("network.home_mcc", None, "networkHomeMcc", AT(network.homeMcc), "home_mcc"),
        field("network.home_mnc", None, "networkHomeMnc", AT(network.homeMnc), "home_mnc"),
        field("network.lac", None, "networkLac", AT(network.lac), "lac"),
        field("network.cell", None, "networkCell", AT(network.cell), "cell"),
        field("network.signal", Percent, "networkSignal", AT(network.signal), "signal"),
        field("", Percent, "gsmSignalStrength", AT(network.cellularSignal)),
        field("network.roaming", None, "networkRoaming", AT(network.roaming), "roaming"),

        field("position.latitude", Degrees, "deviceLatitude", AT(position.latitude), "latitude"),
        field("position.longitude", Degrees, "deviceLongitude", AT(position.longitude),
              "longitude"),
        field("position.altitude_m", Metres, "deviceAltitude", AT(position.altitude), "altitude_m"),
        field("position.accuracy_h_m", Metres, "positionAccuracyHor",
              AT(position.horizontalAccuracy), "accuracy_h_m"),
        field("position.accuracy_v_m", Metres, "positionAccuracyVert",
              AT(position.verticalAccuracy), "accuracy_v_m"),
        derived(
            "position.velocity_kmh", KilometresPerHour, "",
            [](T test) { return moved(test, test.movement.velocity); }, "velocity_kmh"),
        derived(
            "position.distance_m", Metres, "",
            [](T test) { return moved(test, test.movement.distance); }, "distance_m"),
        field("", KilometresPerHour, "deviceVelocity", AT(movement.velocity)),
        field("", Metres, "deviceDistance", AT(movement.distance)),
        field("", None, "deviceDistanceDuration", AT(movement.duration)),
        field("", Metres, "deviceAccuracyHor", AT(movement.horizontalAccuracy)),
        field("", Metres, "deviceAccuracyVert", AT(movement.verticalAccuracy)),

        field("tcp.mss", None, "tcpMss", AT(tcp.mss)),
        field("tcp.rwin", None, "tcpRwin", AT(tcp.receiveWindow)),
        field("tcp.wscale", None, "tcpWscale", AT(tcp.windowScale)),
        field("tcp.sack", None, "tcpSack", AT(tcp.sack)),
        field("tcp.timestamps", None, "tcpTimestamps", AT(tcp.timestamps)),
        field("tcp.congestion", None, "tcpCongestion", AT(tcp.congestion)),
        field("tcp.public_ip", None, "externalIP", AT(tcp.publicIp), "public_ip"),
        field("tcp.device_ip", None, "deviceIP", AT(tcp.deviceIp), "device_ip"),
        field("tcp.client_hostname", None, "clientHostname", AT(tcp.clientHostname),
              "client_hostname"),

        field("device.manufacturer", None, "deviceManufacturer", AT(device.manufacturer)),
        field("device.product", None, "deviceProduct", AT(device.product)),
        field("device.model", None, "deviceModel", AT(device.model)),
        field("device.platform", None, "devicePlatform", AT(device.platform)),

        field("budget.max_bytes", Bytes, "dataBudget", AT(budget.bytes)),
        derived("budget.reached", None, "", [](T test) { return budgetReached(test.budget); }),
        field("", None, "budgetReached", AT(budget.reached)),

        field("report.delivered", None, "reportDelivered", AT(report.delivered)),
        field("report.queue_id", Identity, "reportQueueId", AT(report.queueId)),
        field("report.resent", None, "", AT(report.resent)),

        // At the end, so that the columns of older tables keep their places.
        derived("download.steady_bps", BitsPerSecond, "downloadSteady",
                [](T test) { return test.download.steadyRate(); }),
        derived("upload.steady_bps", BitsPerSecond, "uploadSteady",
                [](T test) { return test.upload.steadyRate(); }),
        list("upload.confirmed_bytes", Bytes, TestField::UploadConfirmed,
             AT(upload.confirmedBytes)),
        derived("idle.min_ns", Nanoseconds, "idleMinimum",
                [](T test) { return DelayFigures::minimum(test.idle()); }),
        derived("idle.median_ns", Nanoseconds, "idleMedian",
                [](T test) { return DelayFigures::median(test.idle()); }),
        derived("idle.p95_ns", Nanoseconds, "idlePercentile95",
                [](T test) { return DelayFigures::percentile95(test.idle()); }),
        derived("idle.jitter_ns", Nanoseconds, "idleJitter",
                [](T test) { return DelayFigures::jitter(test.idle()); }),
        idle,
        LOAD("download_load", "downloadLoad", downloadLoad, TestField::DownloadDelays,
             TestField::DownloadDelayTimes),
        LOAD("upload_load", "uploadLoad", uploadLoad, TestField::UploadDelays,
             TestField::UploadDelayTimes),
        LOAD("extra_download_load", "extraDownloadLoad", extraDownloadLoad,
             TestField::ExtraDownloadDelays, TestField::ExtraDownloadDelayTimes),
        LOAD("extra_upload_load", "extraUploadLoad", extraUploadLoad, TestField::ExtraUploadDelays,
             TestField::ExtraUploadDelayTimes),
        field("network.rsrp_dbm", Decibels, "networkRsrp", AT(network.rsrp), "rsrp_dbm"),
        field("network.rsrq_db", Decibels, "networkRsrq", AT(network.rsrq), "rsrq_db"),
        field("network.snr_db", Decibels, "networkSnr", AT(network.snr), "snr_db"),
        field("network.band", None, "networkBand", AT(network.band), "band"),
    };
}

#undef LOAD
#undef AT

const QList<TestField> &table()
{
    static const QList<TestField> fields = makeTable();
    return fields;
}

} // namespace

QString TestField::column() const
{
    return shortColumn.isEmpty() ? QString(key).replace(u'.', u'_') : QString(shortColumn);
}

std::span<const TestField> TestFields::all()
{
    return table();
}

const TestField *TestFields::ofDetail(const QString &detail)
{
    const auto found = std::find_if(table().begin(), table().end(), [&](const TestField &each) {
        return !each.stored.isEmpty() && each.stored == detail;
    });
    return found == table().end() ? nullptr : &*found;
}

} // namespace velometer
