#include "platform/position/nmeaepoch.h"

#include "platform/position/nmealines.h"
#include "utils/utils.h"

#include <QNmeaPositionInfoSource>
#include <QTimeZone>

#include <array>
#include <chrono>
#include <cmath>
#include <utility>

using namespace std::chrono_literals;

namespace velometer {

namespace {

using Attribute = QGeoPositionInfo::Attribute;

/// What Qt's documentation names for receivers without corrections, m: HDOP times twice this is the
/// accuracy.
constexpr double rangeError = 5.1;
/// Thrifty receivers tell the height's accuracy every few seconds, and it does not change faster.
constexpr auto accuracyLasts = 10s;

constexpr std::array attributes{
    QGeoPositionInfo::Direction,          QGeoPositionInfo::GroundSpeed,
    QGeoPositionInfo::VerticalSpeed,      QGeoPositionInfo::MagneticVariation,
    QGeoPositionInfo::HorizontalAccuracy, QGeoPositionInfo::VerticalAccuracy};

std::optional<QList<int>> allOf(const QMap<QByteArray, QList<int>> &systems)
{
    if (systems.isEmpty()) {
        return std::nullopt;
    }
    QList<int> all;
    for (const QList<int> &each : systems) {
        all.append(each);
    }
    return all;
}

} // namespace

/// Qt's reader of sentences without what it does about time: by a time-out of 20 ms it takes one
/// sentence of a slow line for all.
class NmeaEpoch::Parser : public QNmeaPositionInfoSource
{
public:
    Parser()
        : QNmeaPositionInfoSource(RealTimeMode)
    {
        setUserEquivalentRangeError(rangeError);
    }

    QGeoPositionInfo read(const QByteArray &line)
    {
        QGeoPositionInfo info;
        bool hasFix = false;
        parsePosInfoFromNmeaData(line.constData(), static_cast<int>(line.size()), &info, &hasFix);
        return info;
    }
};

NmeaEpoch::NmeaEpoch()
    : parser(std::make_unique<Parser>())
{}

NmeaEpoch::~NmeaEpoch() = default;

bool NmeaEpoch::isEndedBy(const NmeaSentence &sentence) const
{
    return sentence.timeOfDay ? timeOfDay && sentence.timeOfDay != timeOfDay : closed;
}

void NmeaEpoch::begin()
{
    info = {};
    timeOfDay.reset();
    inUseIsOld = true;
}

void NmeaEpoch::add(const NmeaSentence &sentence)
{
    if (isEndedBy(sentence)) {
        begin();
    }
    closed = false;
    if (sentence.timeOfDay) {
        timeOfDay = sentence.timeOfDay;
    }
    if (sentence.tellsPosition) {
        merge(parser->read(sentence.line));
        hasNewPosition = true;
    }
    if (sentence.inUse) {
        if (std::exchange(inUseIsOld, false)) {
            inUse.clear();
        }
        // Older receivers do not say whose sentence it is.
        QList<int> &ofSystem = inUse[sentence.system];
        for (const int each : *sentence.inUse) {
            if (!ofSystem.contains(each)) {
                ofSystem.append(each);
            }
        }
        hasNewSatellites = true;
    }
    if (sentence.inView) {
        inView[sentence.system] = *sentence.inView;
        hasNewSatellites = true;
    }
}

void NmeaEpoch::merge(const QGeoPositionInfo &told)
{
    QGeoCoordinate place = info.coordinate();
    const QGeoCoordinate toldPlace = told.coordinate();
    if (toldPlace.isValid()) {
        place.setLatitude(toldPlace.latitude());
        place.setLongitude(toldPlace.longitude());
    }
    if (std::isfinite(toldPlace.altitude())) {
        place.setAltitude(toldPlace.altitude());
    }
    info.setCoordinate(place);
    for (const Attribute each : attributes) {
        if (told.hasAttribute(each)) {
            info.setAttribute(each, told.attribute(each));
        }
    }
    if (told.timestamp().isValid()) {
        dated = told.timestamp();
    }
}

std::optional<QGeoPositionInfo> NmeaEpoch::takePosition()
{
    if (!std::exchange(hasNewPosition, false) || !timeOfDay || !info.coordinate().isValid()) {
        return std::nullopt;
    }
    QGeoPositionInfo position = info;
    lastMoment = moment();
    dated = {};
    position.setTimestamp(lastMoment);
    if (position.hasAttribute(QGeoPositionInfo::VerticalAccuracy)) {
        lastVerticalAccuracy = position.attribute(QGeoPositionInfo::VerticalAccuracy);
        accuracyTold = lastMoment;
    } else if (lastVerticalAccuracy && std::chrono::abs(std::chrono::milliseconds(
                                           accuracyTold.msecsTo(lastMoment))) <= accuracyLasts) {
        position.setAttribute(QGeoPositionInfo::VerticalAccuracy, *lastVerticalAccuracy);
    }
    return position;
}

std::optional<Satellites> NmeaEpoch::takeSatellites()
{
    if (!std::exchange(hasNewSatellites, false)) {
        return std::nullopt;
    }
    return Satellites{allOf(inUse), allOf(inView)};
}

QDateTime NmeaEpoch::moment() const
{
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(Utils::getTimeInMs(), QTimeZone::utc());
    const QDateTime around = dated.isValid() ? dated : lastMoment.isValid() ? lastMoment : now;
    // The other side of midnight may be nearer.
    constexpr qint64 halfDayMs = std::chrono::milliseconds(12h).count();
    const QDateTime sameDay(around.date(), QTime::fromMSecsSinceStartOfDay(timeOfDay.value_or(0)),
                            QTimeZone::utc());
    const qint64 ahead = around.msecsTo(sameDay);
    return sameDay.addDays(ahead > halfDayMs ? -1 : ahead < -halfDayMs ? 1 : 0);
}

} // namespace velometer
