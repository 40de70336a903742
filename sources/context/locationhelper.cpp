#include "context/locationhelper.h"

#include "context/doublelocation.h"
#include "platform/platform.h"
#include "utils/utils.h"

#include <chrono>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr int updateIntervalMs = 1000;

// Tests of a series that follow each other within this time keep a warm fix.
constexpr auto switchOffDelay = 30s;

// At one position a second nearly three hours; a broken source does not fill the memory.
constexpr qsizetype maxSamples = 10'000;

// No sky holds more.
constexpr qsizetype maxSatellites = 256;

constexpr double notSupplied = -1;

QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

double orNotSupplied(double value)
{
    return std::isfinite(value) ? value : notSupplied;
}

double attribute(const QGeoPositionInfo &info, QGeoPositionInfo::Attribute which)
{
    return orNotSupplied(info.attribute(which));
}

qint64 seconds(const QGeoPositionInfo &info)
{
    return info.timestamp().isValid() ? info.timestamp().toSecsSinceEpoch() : 0;
}

// An altitude that is no number makes the position two-dimensional.
QGeoCoordinate checkedCoordinate(const QGeoPositionInfo &info)
{
    QGeoCoordinate given = info.coordinate();
    if (!given.isValid()) {
        return {};
    }
    if (!std::isfinite(given.altitude())) {
        return {given.latitude(), given.longitude()};
    }
    return given;
}

QString degreesText(const QGeoCoordinate &coordinate, double degrees)
{
    return coordinate.isValid() ? numberText(degrees) : u"0.0"_s;
}

QString typeText(const QGeoCoordinate &coordinate)
{
    switch (coordinate.type()) {
    case QGeoCoordinate::Coordinate3D: return u"3DCord"_s;
    case QGeoCoordinate::Coordinate2D: return u"2DCord"_s;
    case QGeoCoordinate::InvalidCoordinate: break;
    }
    return u"Invalid"_s;
}

QString satelliteText(const QList<QGeoSatelliteInfo> &list)
{
    QString text;
    for (const QGeoSatelliteInfo &satellite : list.first(qMin(list.size(), maxSatellites))) {
        text += QString::number(satellite.satelliteIdentifier()) + u' ';
    }
    return text;
}

} // namespace

LocationHelper::LocationHelper(Platform &platform, QObject *parent)
    : QObject(parent)
    , source(platform.createPositionSource())
    , cordvalid(u"Not valid"_s)
{
    if (source->hasPosition()) {
        const QGeoPositionInfo last = source->lastKnownPosition();
        const QGeoCoordinate coordinate = checkedCoordinate(last);
        Utils::addLogEntry(u"Last known Position: %1 %2 %3 %4 %5 %6"_s.arg(
            QString::number(seconds(last)), degreesText(coordinate, coordinate.latitude()),
            degreesText(coordinate, coordinate.longitude()),
            numberText(orNotSupplied(coordinate.altitude())),
            numberText(attribute(last, QGeoPositionInfo::HorizontalAccuracy)),
            numberText(attribute(last, QGeoPositionInfo::VerticalAccuracy))));
        source->setUpdateInterval(updateIntervalMs);
        Utils::addLogEntry(
            u"Minimum Position Intervall: %1"_s.arg(source->minimumUpdateInterval()));
    }
    connect(&timeoutTimer, &QTimer::timeout, this, &LocationHelper::timeoutDisableGPS);
    connect(source.get(), &PositionSource::problemChanged, this, &LocationHelper::logProblem);
    if (source->problem() != PositionSource::Problem::None) {
        logProblem();
    }
    clearPosition();
    startService();
    stopService();
}

LocationHelper::~LocationHelper() = default;

void LocationHelper::startService()
{
    servicestarted = true;
    myLocations.clear();
    timeoutTimer.stop();
    if (locationcollecting) {
        return;
    }
    locationcollecting = true;
    if (source->hasPosition()) {
        connect(source.get(), &PositionSource::positionUpdated, this,
                &LocationHelper::positionUpdated);
        connect(source.get(), &PositionSource::updateTimeout, this,
                &LocationHelper::timeoutOccourd);
        source->startPosition();
    }
    if (source->hasSatellites()) {
        connect(source.get(), &PositionSource::satellitesInUseUpdated, this,
                &LocationHelper::satellitesInUseUpdated);
        connect(source.get(), &PositionSource::satellitesInViewUpdated, this,
                &LocationHelper::satellitesInViewUpdated);
        source->startSatellites();
    }
    Utils::addLogEntry(u"GPS started"_s);
}

void LocationHelper::stopService()
{
    servicestarted = false;
    timeoutTimer.start(switchOffDelay);
}

void LocationHelper::timeoutDisableGPS()
{
    timeoutTimer.stop();
    if (!locationcollecting) {
        return;
    }
    locationcollecting = false;
    disconnect(source.get(), &PositionSource::positionUpdated, this, nullptr);
    disconnect(source.get(), &PositionSource::updateTimeout, this, nullptr);
    disconnect(source.get(), &PositionSource::satellitesInUseUpdated, this, nullptr);
    disconnect(source.get(), &PositionSource::satellitesInViewUpdated, this, nullptr);
    if (source->hasPosition()) {
        source->stopPosition();
    }
    if (source->hasSatellites()) {
        source->stopSatellites();
    }
    Utils::addLogEntry(u"GPS stopped"_s);
}

void LocationHelper::positionUpdated(const QGeoPositionInfo &info)
{
    const QGeoCoordinate coordinate = checkedCoordinate(info);
    const double altitude = orNotSupplied(coordinate.altitude());
    const double accuracyHor = attribute(info, QGeoPositionInfo::HorizontalAccuracy);
    const double accuracyVert = attribute(info, QGeoPositionInfo::VerticalAccuracy);
    const qint64 time = seconds(info) * 1000;

    postype = typeText(coordinate);
    cordvalid = coordinate.isValid() ? u"Valid"_s : u"Not valid"_s;
    posAltitude = numberText(altitude);
    posTimestamp = QString::number(time);
    posGroundSpeed = numberText(attribute(info, QGeoPositionInfo::GroundSpeed));
    posVertSpeed = numberText(attribute(info, QGeoPositionInfo::VerticalSpeed));
    posLatitude = degreesText(coordinate, coordinate.latitude());
    posLongitude = degreesText(coordinate, coordinate.longitude());
    posAccuracyHor = numberText(accuracyHor);
    posAccuracyVert = numberText(accuracyVert);
    posDirection = numberText(attribute(info, QGeoPositionInfo::Direction));
    posMagneticVar = numberText(attribute(info, QGeoPositionInfo::MagneticVariation));

    if (!servicestarted) {
        return;
    }
    // A path is made of places: an update that names none adds nothing to it.
    if (coordinate.isValid() && myLocations.size() < maxSamples) {
        myLocations.append({time, coordinate.longitude(), coordinate.latitude(), altitude,
                            accuracyHor, accuracyVert, hasGPSLock()});
    }
    Utils::addLogEntry(u"GPS Position updated: %1 %2 %3 %4 %5 %6"_s.arg(
        posTimestamp, posLatitude, posLongitude, posAltitude, posAccuracyHor, posAccuracyVert));
}

void LocationHelper::timeoutOccourd()
{
    clearPosition();
    cordvalid = u"Timeout"_s;
}

void LocationHelper::logProblem() const
{
    using Problem = PositionSource::Problem;
    const auto log = [this](const QString &text) {
        Utils::addLogEntry(text.arg(source->name().simplified()));
    };
    switch (source->problem()) {
    case Problem::None: return log(u"Position: known again (%1)"_s);
    case Problem::NoSource: return Utils::addLogEntry(u"Position: there is no source"_s);
    case Problem::Refused: return log(u"Position: refused by the system's location service (%1)"_s);
    case Problem::Unavailable: return log(u"Position: the source is not available (%1)"_s);
    case Problem::NoFix: return log(u"Position: no fix (%1)"_s);
    }
}

void LocationHelper::clearPosition()
{
    postype = u"Invalid"_s;
    posAltitude = u"-1"_s;
    // One character instead of a time: that is how readers of the reports know a time-out.
    posTimestamp = QChar(static_cast<ushort>(Utils::getTimeInMs() & 0xff));
    posGroundSpeed = u"-1"_s;
    posVertSpeed = u"-1"_s;
    posLatitude = u"0.0"_s;
    posLongitude = u"0.0"_s;
    posAccuracyHor = u"-1"_s;
    posAccuracyVert = u"-1"_s;
    posDirection = u"0"_s;
    posMagneticVar = u"0"_s;
}

void LocationHelper::satellitesInUseUpdated(const QList<QGeoSatelliteInfo> &list)
{
    satNumInUse = QString::number(list.size());
    satInUse = satelliteText(list);
    if (servicestarted) {
        Utils::addLogEntry(u"Satellites in Use (%1): %2"_s.arg(satNumInUse, satInUse));
    }
}

void LocationHelper::satellitesInViewUpdated(const QList<QGeoSatelliteInfo> &list)
{
    satNumInView = QString::number(list.size());
    satInView = satelliteText(list);
    if (servicestarted) {
        Utils::addLogEntry(u"Satellites in View (%1): %2"_s.arg(satNumInView, satInView));
    }
}

QString LocationHelper::getCordValid() const
{
    return cordvalid;
}

QString LocationHelper::getPosType() const
{
    return postype;
}

QString LocationHelper::getLatitude() const
{
    return posLatitude;
}

QString LocationHelper::getLongitude() const
{
    return posLongitude;
}

QString LocationHelper::getAltitude() const
{
    return posAltitude;
}

QString LocationHelper::getAccuracyHor() const
{
    return posAccuracyHor;
}

QString LocationHelper::getAccuracyVert() const
{
    return posAccuracyVert;
}

QString LocationHelper::getTimestamp() const
{
    return posTimestamp;
}

QString LocationHelper::getGroundSpeed() const
{
    return posGroundSpeed;
}

QString LocationHelper::getVertSpeed() const
{
    return posVertSpeed;
}

QString LocationHelper::getDirection() const
{
    return posDirection;
}

QString LocationHelper::getMagneticVar() const
{
    return posMagneticVar;
}

QString LocationHelper::getSatNumInUse() const
{
    return satNumInUse;
}

QString LocationHelper::getSatInUse() const
{
    return satInUse;
}

QString LocationHelper::getSatNumInView() const
{
    return satNumInView;
}

QString LocationHelper::getSatInView() const
{
    return satInView;
}

int LocationHelper::getLocationStatus() const
{
    if (hasGPSLock()) {
        return 2;
    }
    // Only these texts mean "no position": a place on the equator or at Greenwich reads "0".
    const auto nowhere = "0.0"_L1;
    return posLatitude == nowhere || posLongitude == nowhere ? 0 : 1;
}

bool LocationHelper::hasGPSLock() const
{
    return postype == "3DCord"_L1;
}

std::unique_ptr<DoubleLocation> LocationHelper::getDoubleLocation() const
{
    auto location = std::make_unique<DoubleLocation>();
    location->setTime(posTimestamp.toLongLong());
    location->setLongitude(posLongitude.toDouble());
    location->setLatitude(posLatitude.toDouble());
    location->setAltitude(posAltitude.toDouble());
    location->setAccuracyHor(posAccuracyHor.toDouble());
    location->setAccuracyVert(posAccuracyVert.toDouble());
    return location;
}

const QList<MyLocation> &LocationHelper::getAllLocations() const
{
    return myLocations;
}

QString LocationHelper::getSourceName() const
{
    return source->name();
}

PositionSource::Problem LocationHelper::getProblem() const
{
    return source->problem();
}

bool LocationHelper::hasSatelliteSource() const
{
    return source->hasSatellites();
}

} // namespace velometer
