#include "figures/loadfigures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr auto prefix = "LoadFigures: "_L1;
constexpr auto versionKey = "v"_L1;
constexpr auto idleKey = "idle_ns"_L1;
constexpr auto roundTripsKey = "rtt_ns"_L1;
constexpr auto timesKey = "t_ns"_L1;
constexpr auto congestionKey = "cc"_L1;
constexpr auto confirmedKey = "upload_confirmed"_L1;
constexpr auto radioKey = "radio"_L1;
constexpr auto bandKey = "band"_L1;
constexpr int version = 1;

constexpr qint64 lost = -1;
/// What takes longer is lost.
constexpr qint64 longestNs = 3'000'000'000;
/// No phase of a test is that long.
constexpr qint64 latestNs = 60'000'000'000;
/// More than a link carries in an interval.
constexpr qint64 mostBytes = 1'000'000'000'000;
/// Ten lists of 200 numbers of up to thirteen digits, and their names.
constexpr qsizetype longestLine = 32'000;
constexpr qsizetype longestName = 15;
constexpr char16_t maxAscii = 0x80;

struct Group
{
    QLatin1StringView key;
    LoadDelays FinishedTest::*load;
};
constexpr std::array groups{
    Group{"download"_L1, &FinishedTest::downloadLoad},
    Group{"upload"_L1, &FinishedTest::uploadLoad},
    Group{"extra_download"_L1, &FinishedTest::extraDownloadLoad},
    Group{"extra_upload"_L1, &FinishedTest::extraUploadLoad},
};

/// What a modem can measure.
struct Radio
{
    QLatin1StringView key;
    FinishedTest::Real FinishedTest::Network::*member;
    double least, most;
};
constexpr std::array radios{
    Radio{"rsrp_dbm"_L1, &FinishedTest::Network::rsrp, -200, 0},
    Radio{"rsrq_db"_L1, &FinishedTest::Network::rsrq, -100, 50},
    Radio{"snr_db"_L1, &FinishedTest::Network::snr, -100, 100},
};

bool isIn(const Radio &range, double value)
{
    return value >= range.least && value <= range.most;
}

/// "B20", "n78".
bool isBand(const QString &name)
{
    return !name.isEmpty() && name.size() <= longestName &&
           std::all_of(name.begin(), name.end(),
                       [](QChar c) { return c.isLetterOrNumber() && c.unicode() < maxAscii; });
}

// ---- Writing

QJsonArray roundTrips(const Delays &delays)
{
    QJsonArray list;
    for (const auto &delay : delays.first(std::min(delays.size(), LoadFigures::mostSamples))) {
        list.append(delay ? std::clamp<qint64>(*delay, 1, longestNs) : lost);
    }
    return list;
}

QJsonObject group(const LoadDelays &load)
{
    const Delays samples = load.samples.value_or(Delays());
    const auto times = load.times.value_or(QList<qint64>());
    if (samples.isEmpty() || times.size() != samples.size()) {
        return {};
    }
    QJsonArray moments;
    for (const qint64 at : times.first(std::min(times.size(), LoadFigures::mostSamples))) {
        moments.append(std::clamp<qint64>(at, 0, latestNs));
    }
    QJsonObject object{{timesKey, moments}, {roundTripsKey, roundTrips(samples)}};
    if (load.congestion && LoadFigures::isCongestionControl(*load.congestion)) {
        object.insert(congestionKey, *load.congestion);
    }
    return object;
}

QJsonObject radio(const FinishedTest::Network &network)
{
    QJsonObject object;
    for (const Radio &each : radios) {
        if (const auto value = network.*each.member; value && isIn(each, *value)) {
            object.insert(each.key, *value);
        }
    }
    if (network.band && isBand(*network.band)) {
        object.insert(bandKey, *network.band);
    }
    return object;
}

// ---- Reading

/// Whole numbers from @p least to @p most; nothing when it is anything else.
std::optional<QList<qint64>> numbers(const QJsonValue &value, qint64 least, qint64 most)
{
    const QJsonArray array = value.toArray();
    QList<qint64> list;
    for (const auto &each : array) {
        const qint64 number = each.toInteger(least - 1); // what is no whole number is too small
        if (number < least || number > most) {
            return std::nullopt;
        }
        list.append(number);
    }
    return list.isEmpty() || list.size() > LoadFigures::mostSamples ? std::nullopt
                                                                    : std::optional(list);
}

std::optional<Delays> readRoundTrips(const QJsonValue &value)
{
    constexpr qint64 least = lost;
    const auto list = numbers(value, least, longestNs);
    if (!list || list->contains(0)) {
        return std::nullopt;
    }
    Delays delays;
    for (const qint64 each : *list) {
        delays.append(each == lost ? std::nullopt : std::optional(each));
    }
    return delays;
}

std::optional<LoadDelays> readGroup(const QJsonObject &object)
{
    LoadDelays load;
    load.samples = readRoundTrips(object.value(roundTripsKey));
    load.times = numbers(object.value(timesKey), 0, latestNs);
    qsizetype known = 2;
    if (const auto name = object.constFind(congestionKey); name != object.constEnd()) {
        load.congestion = name->toString();
        ++known;
    }
    if (!load.samples || !load.times || load.samples->size() != load.times->size() ||
        !std::is_sorted(load.times->begin(), load.times->end()) || object.size() != known ||
        (load.congestion && !LoadFigures::isCongestionControl(*load.congestion))) {
        return std::nullopt;
    }
    return load;
}

/// False when anything in @p value is not as radio() writes it.
bool readRadio(const QJsonValue &value, FinishedTest::Network &network)
{
    const QJsonObject object = value.toObject();
    qsizetype known = 0;
    for (const Radio &each : radios) {
        if (const auto figure = object.constFind(each.key); figure != object.constEnd()) {
            network.*each.member = figure->toDouble();
            known += figure->isDouble() && isIn(each, figure->toDouble()) ? 1 : 0;
        }
    }
    if (const auto band = object.constFind(bandKey); band != object.constEnd()) {
        network.band = band->toString();
        known += isBand(band->toString()) ? 1 : 0;
    }
    return known > 0 && known == object.size();
}

/// The JSON of the last line of its kind; empty when there is none.
QStringView lastLine(QStringView log)
{
    qsizetype begin = log.size();
    do {
        begin = begin == 0 ? -1 : log.lastIndexOf(prefix, begin - 1);
    } while (begin > 0 && log[begin - 1] != u'\n');
    if (begin < 0) {
        return {};
    }
    const QStringView rest = log.sliced(begin + prefix.size());
    const qsizetype end = rest.indexOf(u'\n');
    return (end < 0 ? rest : rest.first(end)).trimmed();
}

} // namespace

QString LoadFigures::line(const FinishedTest &test)
{
    QJsonObject object;
    if (const auto &idle = test.idle(); idle && !idle->isEmpty()) {
        object.insert(idleKey, roundTrips(*idle));
    }
    for (const Group &each : groups) {
        if (const QJsonObject load = group(test.*each.load); !load.isEmpty()) {
            object.insert(each.key, load);
        }
    }
    if (const auto &bytes = test.upload.confirmedBytes; bytes && !bytes->isEmpty()) {
        QJsonArray list;
        for (const qint64 each : bytes->first(std::min(bytes->size(), mostSamples))) {
            list.append(std::clamp<qint64>(each, 0, mostBytes));
        }
        object.insert(confirmedKey, list);
    }
    if (const QJsonObject measured = radio(test.network); !measured.isEmpty()) {
        object.insert(radioKey, measured);
    }
    if (object.isEmpty()) {
        return {};
    }
    object.insert(versionKey, version);
    return prefix + QString::fromLatin1(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

bool LoadFigures::read(const QString &log, FinishedTest &test)
{
    const QStringView json = lastLine(log);
    if (json.isEmpty() || json.size() > longestLine) {
        return false;
    }
    const QJsonObject object = QJsonDocument::fromJson(json.toUtf8()).object();
    if (object.value(versionKey).toInteger() != version) {
        return false;
    }
    FinishedTest found = test;
    qsizetype known = 1;
    if (const auto idle = object.constFind(idleKey); idle != object.constEnd()) {
        found.idleDelays = readRoundTrips(*idle);
        if (!found.idleDelays) {
            return false;
        }
        ++known;
    }
    if (const auto bytes = object.constFind(confirmedKey); bytes != object.constEnd()) {
        found.upload.confirmedBytes = numbers(*bytes, 0, mostBytes);
        if (!found.upload.confirmedBytes) {
            return false;
        }
        ++known;
    }
    if (const auto measured = object.constFind(radioKey); measured != object.constEnd()) {
        if (!readRadio(*measured, found.network)) {
            return false;
        }
        ++known;
    }
    for (const Group &each : groups) {
        if (const auto load = object.constFind(each.key); load != object.constEnd()) {
            const auto delays = readGroup(load->toObject());
            if (!delays) {
                return false;
            }
            found.*each.load = *delays;
            ++known;
        }
    }
    if (object.size() != known) {
        return false;
    }
    test = std::move(found);
    return true;
}

bool LoadFigures::isCongestionControl(const QString &name)
{
    return !name.isEmpty() && name.size() <= longestName &&
           std::all_of(name.begin(), name.end(), [](QChar c) {
               return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'_';
           });
}

} // namespace velometer
