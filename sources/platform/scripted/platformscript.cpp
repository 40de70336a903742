#include "platform/scripted/platformscript.h"

#include <QFile>
#include <QFileInfo>
#include <QGeoCoordinate>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qint64 maxScriptBytes = 16LL * 1024 * 1024;
constexpr qsizetype maxLineBytes = 1024LL * 1024;
constexpr int maxLines = 100'000;

// A week; more would not fit in a timer, and no series runs longer.
constexpr int maxAtMs = 7 * 24 * 3600 * 1000;

constexpr int maxInt = std::numeric_limits<int>::max();
constexpr double maxMetres = 1e9;
/// 36 bits, as with 5G.
constexpr qint64 maxCell = (1LL << 36) - 1;

const QHash<QString, NetworkMode> modes{
    {u"Unknown"_s, NetworkMode::Unknown},
    {u"GsmMode"_s, NetworkMode::Gsm},
    {u"CdmaMode"_s, NetworkMode::Cdma},
    {u"WcdmaMode"_s, NetworkMode::Wcdma},
    {u"WlanMode"_s, NetworkMode::Wlan},
    {u"EthernetMode"_s, NetworkMode::Ethernet},
    {u"BluetoothMode"_s, NetworkMode::Bluetooth},
    {u"WimaxMode"_s, NetworkMode::Wimax},
    {u"LteMode"_s, NetworkMode::Lte},
    {u"NrMode"_s, NetworkMode::Nr},
};

const QHash<QString, NetworkStatus> statuses{
    {u"UndefinedStatus"_s, NetworkStatus::Undefined},
    {u"NoNetworkAvailable"_s, NetworkStatus::NoNetworkAvailable},
    {u"EmergencyOnly"_s, NetworkStatus::EmergencyOnly},
    {u"Searching"_s, NetworkStatus::Searching},
    {u"Busy"_s, NetworkStatus::Busy},
    {u"Connected"_s, NetworkStatus::Connected},
    {u"HomeNetwork"_s, NetworkStatus::HomeNetwork},
    {u"Denied"_s, NetworkStatus::Denied},
    {u"Roaming"_s, NetworkStatus::Roaming},
};

const QHash<QString, ScriptEvent::Metered> meterings{
    {u"unknown"_s, {}},
    {u"yes"_s, {true, false}},
    {u"no"_s, {false, false}},
    {u"yes-guessed"_s, {true, true}},
    {u"no-guessed"_s, {false, true}},
};

/// Takes the known keys out of one object. The first thing that is wrong is kept as the complaint
/// and turns all later answers into nothing; a key that nobody asked for is a complaint too.
class ObjectReader
{
public:
    ObjectReader(const QJsonObject &from, const QString &where)
        : object(from)
        , prefix(where)
    {}

    std::optional<double> number(const QString &key, double from, double to)
    {
        const std::optional<QJsonValue> value = take(key);
        if (!value) {
            return std::nullopt;
        }
        // Written so that NaN is refused.
        if (!value->isDouble() || !(value->toDouble() >= from && value->toDouble() <= to)) {
            return fail(key, u"must be a number from %1 to %2"_s.arg(from).arg(to));
        }
        return value->toDouble();
    }

    template <typename Number>
    std::optional<Number> integer(const QString &key, Number from, Number to)
    {
        const std::optional<QJsonValue> value = take(key);
        if (!value) {
            return std::nullopt;
        }
        if (!isInteger(*value, from, to)) {
            return fail(key, u"must be a whole number from %1 to %2"_s.arg(from).arg(to));
        }
        return static_cast<Number>(value->toDouble());
    }

    /// As integer(); null stands for unknown, -1.
    template <typename Number>
    std::optional<Number> integerOrUnknown(const QString &key, Number to)
    {
        if (!object.value(key).isNull()) {
            return integer(key, Number{0}, to);
        }
        take(key);
        return Number{-1};
    }

    std::optional<std::optional<double>> numberOrUnknown(const QString &key, double from, double to)
    {
        if (!object.contains(key)) {
            return std::nullopt;
        }
        if (!object.value(key).isNull()) {
            return number(key, from, to);
        }
        take(key);
        return std::optional<double>();
    }

    std::optional<QString> text(const QString &key)
    {
        const std::optional<QJsonValue> value = take(key);
        if (!value) {
            return std::nullopt;
        }
        if (!value->isString()) {
            return fail(key, u"must be a text"_s);
        }
        return value->toString();
    }

    template <typename Value>
    std::optional<Value> oneOf(const QString &key, const QHash<QString, Value> &table)
    {
        const std::optional<QString> name = text(key);
        if (!name) {
            return std::nullopt;
        }
        const auto found = table.constFind(*name);
        if (found == table.constEnd()) {
            return fail(key, u"is none of the known names"_s);
        }
        return *found;
    }

    std::optional<QList<int>> integers(const QString &key)
    {
        const std::optional<QJsonValue> value = take(key);
        if (!value) {
            return std::nullopt;
        }
        const auto wrong = u"must be a list of whole numbers from 0"_s;
        if (!value->isArray()) {
            return fail(key, wrong);
        }
        QList<int> list;
        const QJsonArray array = value->toArray();
        for (const QJsonValue each : array) {
            if (!isInteger(each, 0, maxInt)) {
                return fail(key, wrong);
            }
            list.append(each.toInt());
        }
        return list;
    }

    std::optional<QJsonObject> nested(const QString &key)
    {
        const std::optional<QJsonValue> value = take(key);
        if (!value) {
            return std::nullopt;
        }
        if (!value->isObject()) {
            return fail(key, u"must be an object"_s);
        }
        return value->toObject();
    }

    bool takeNull(const QString &key)
    {
        if (!object.value(key).isNull()) {
            return false;
        }
        take(key);
        return true;
    }

    std::nullopt_t fail(const QString &key, const QString &what)
    {
        if (complaint.isEmpty()) {
            complaint = u"\"%1\" %2"_s.arg(prefix + key, what);
        }
        return std::nullopt;
    }

    void adopt(const ObjectReader &inner)
    {
        if (complaint.isEmpty()) {
            complaint = inner.finish();
        }
    }

    /// The complaint; empty when everything was understood.
    QString finish() const
    {
        if (!complaint.isEmpty() || object.isEmpty()) {
            return complaint;
        }
        return u"\"%1\" is not a known key"_s.arg(prefix + object.begin().key().left(64));
    }

private:
    std::optional<QJsonValue> take(const QString &key)
    {
        QJsonValue value = object.take(key);
        if (value.isUndefined()) {
            return std::nullopt;
        }
        return value;
    }

    /// Both limits are exact as double.
    static bool isInteger(const QJsonValue &value, qint64 from, qint64 to)
    {
        const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
        return value.isDouble() && number >= static_cast<double>(from) &&
               number <= static_cast<double>(to) && std::trunc(number) == number;
    }

    QJsonObject object;
    QString prefix;
    QString complaint;
};

void readPosition(ObjectReader &line, ScriptEvent &event)
{
    if (line.takeNull(u"position"_s)) {
        event.positionTimeout = true;
        return;
    }
    const std::optional<QJsonObject> object = line.nested(u"position"_s);
    if (!object) {
        return;
    }
    ObjectReader reader(*object, u"position."_s);
    const std::optional<double> latitude = reader.number(u"latitude"_s, -90, 90);
    const std::optional<double> longitude = reader.number(u"longitude"_s, -180, 180);
    QGeoPositionInfo info;
    if (!latitude || !longitude) {
        reader.fail(latitude ? u"longitude"_s : u"latitude"_s, u"is missing"_s);
    } else {
        QGeoCoordinate coordinate(*latitude, *longitude);
        if (const auto altitude = reader.number(u"altitude"_s, -maxMetres, maxMetres)) {
            coordinate.setAltitude(*altitude);
        }
        info.setCoordinate(coordinate);
    }
    const auto attribute = [&](const QString &key, QGeoPositionInfo::Attribute which, double max) {
        if (const std::optional<double> value = reader.number(key, 0, max)) {
            info.setAttribute(which, *value);
        }
    };
    attribute(u"accuracy_h"_s, QGeoPositionInfo::HorizontalAccuracy, maxMetres);
    attribute(u"accuracy_v"_s, QGeoPositionInfo::VerticalAccuracy, maxMetres);
    attribute(u"speed"_s, QGeoPositionInfo::GroundSpeed, maxMetres);
    attribute(u"direction"_s, QGeoPositionInfo::Direction, 360);
    if (const std::optional<QString> text = reader.text(u"timestamp"_s)) {
        info.setTimestamp(QDateTime::fromString(*text, Qt::ISODateWithMs));
        if (!info.timestamp().isValid()) {
            reader.fail(u"timestamp"_s, u"must be an ISO 8601 date and time"_s);
        }
    }
    line.adopt(reader);
    event.position = info;
}

void readSession(ObjectReader &line, ScriptEvent &event)
{
    const auto key = u"session"_s;
    const std::optional<QString> text = line.text(key);
    if (!text) {
        return;
    }
    ScriptEvent::Session session;
    if (*text == "opened"_L1) {
        session.kind = ScriptEvent::Session::Opened;
    } else if (*text == "lost"_L1) {
        session.kind = ScriptEvent::Session::Lost;
    } else if (text->startsWith("error:"_L1)) {
        bool ok = false;
        const int number = QStringView(*text).mid(6).toInt(&ok);
        if (!ok || number < NetworkSession::UnknownSessionError ||
            number > NetworkSession::InvalidConfigurationError) {
            line.fail(key, u"knows errors from 0 to 4"_s);
            return;
        }
        session.kind = ScriptEvent::Session::Error;
        session.error = static_cast<NetworkSession::SessionError>(number);
    } else {
        line.fail(key, u"must be \"opened\", \"error:NUMBER\" or \"lost\""_s);
        return;
    }
    event.session = session;
}

void readDevice(ObjectReader &line, const ScriptEvent &event, ScriptDevice &device)
{
    const auto key = u"device"_s;
    const std::optional<QJsonObject> object = line.nested(key);
    if (!object) {
        return;
    }
    if (event.at.count() != 0) {
        line.fail(key, u"is only possible at the start (at_ms 0)"_s);
    }
    ObjectReader reader(*object, u"device."_s);
    const auto set = [&](const QString &name, QString &value) {
        value = reader.text(name).value_or(value);
    };
    set(u"imei"_s, device.imei);
    set(u"imsi"_s, device.imsi);
    set(u"manufacturer"_s, device.manufacturer);
    set(u"product"_s, device.product);
    set(u"model"_s, device.model);
    line.adopt(reader);
}

/// Adds one line to @p script; answers what is wrong with it, or nothing.
QString readLine(const QByteArray &text, PlatformScript &script)
{
    QJsonParseError jsonError;
    const QJsonDocument document = QJsonDocument::fromJson(text, &jsonError);
    if (jsonError.error != QJsonParseError::NoError) {
        return u"not JSON: %1 at byte %2"_s.arg(jsonError.errorString(),
                                                QString::number(jsonError.offset));
    }
    if (!document.isObject()) {
        return u"not a JSON object"_s;
    }

    ObjectReader line(document.object(), {});
    ScriptEvent event;
    event.at = std::chrono::milliseconds(line.integer(u"at_ms"_s, 0, maxAtMs).value_or(0));
    if (!script.events.isEmpty() && event.at < script.events.constLast().at) {
        line.fail(u"at_ms"_s, u"goes back in time"_s);
    }
    readPosition(line, event);
    event.satellitesInUse = line.integers(u"satellites_in_use"_s);
    event.satellitesInView = line.integers(u"satellites_in_view"_s);
    event.mode = line.oneOf(u"mode"_s, modes);
    event.status = line.oneOf(u"status"_s, statuses);
    event.signal = line.integerOrUnknown(u"signal"_s, 100);
    event.name = line.text(u"name"_s);
    event.mcc = line.text(u"mcc"_s);
    event.mnc = line.text(u"mnc"_s);
    event.homeMcc = line.text(u"home_mcc"_s);
    event.homeMnc = line.text(u"home_mnc"_s);
    event.cell = line.integerOrUnknown(u"cell"_s, maxCell);
    event.lac = line.integerOrUnknown(u"lac"_s, maxInt);
    event.rsrp = line.numberOrUnknown(u"rsrp"_s, -200, 0);
    event.rsrq = line.numberOrUnknown(u"rsrq"_s, -100, 50);
    event.snr = line.numberOrUnknown(u"snr"_s, -100, 100);
    event.band = line.text(u"band"_s);
    event.metered = line.oneOf(u"metered"_s, meterings);
    readSession(line, event);
    readDevice(line, event, script.device);

    script.hasPosition |= event.position || event.positionTimeout;
    script.hasSatellites |= event.satellitesInUse || event.satellitesInView;
    script.events.append(event);
    return line.finish();
}

} // namespace

std::optional<PlatformScript> PlatformScript::load(const QString &file, QString *error)
{
    const auto refuse = [&](const QString &what) {
        *error = u"%1: %2"_s.arg(file, what);
        return std::nullopt;
    };
    // Opening a pipe would wait for its writer.
    if (!QFileInfo(file).isFile()) {
        return refuse(u"is not a file"_s);
    }
    QFile device(file);
    if (!device.open(QIODevice::ReadOnly)) {
        return refuse(device.errorString());
    }
    const QByteArray text = device.read(maxScriptBytes + 1);
    if (device.error() != QFileDevice::NoError) {
        return refuse(device.errorString());
    }
    return parse(text, file, error);
}

std::optional<PlatformScript> PlatformScript::parse(const QByteArray &text, const QString &name,
                                                    QString *error)
{
    if (text.size() > maxScriptBytes) {
        *error = u"%1: is larger than 16 MiB"_s.arg(name);
        return std::nullopt;
    }
    PlatformScript script;
    qsizetype start = 0;
    for (int number = 1; start < text.size(); ++number) {
        qsizetype end = text.indexOf('\n', start);
        if (end < 0) {
            end = text.size();
        }
        QString wrong;
        if (number > maxLines) {
            wrong = u"more than %1 lines"_s.arg(maxLines);
        } else if (end - start > maxLineBytes) {
            wrong = u"longer than 1 MiB"_s;
        } else {
            const QByteArray line = text.mid(start, end - start).trimmed();
            if (!line.isEmpty() && !line.startsWith('#')) {
                wrong = readLine(line, script);
            }
        }
        if (!wrong.isEmpty()) {
            *error = u"%1, line %2: %3"_s.arg(name, QString::number(number), wrong);
            return std::nullopt;
        }
        start = end + 1;
    }
    return script;
}

} // namespace velometer
