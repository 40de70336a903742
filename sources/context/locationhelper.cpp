#include "context/locationhelper.h"

#include "context/doublelocation.h"
#include "platform/platform.h"
#include "utils/utils.h"

#include <chrono>

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

QString numberText(const std::optional<double> &value)
{
    return value ? QString::number(*value, 'g', 6) : u"-1"_s;
}

QString degreesText(const std::optional<double> &degrees)
{
    return degrees ? numberText(degrees) : u"0.0"_s;
}

QString satelliteText(const std::optional<QList<int>> &satellites)
{
    QString text;
    for (const int each : satellites.value_or(QList<int>()).mid(0, maxSatellites)) {
        text += QString::number(each) + u' ';
    }
    return text;
}

void logSatellites(const QString &line, const std::optional<QList<int>> &now,
                   const std::optional<QList<int>> &logged)
{
    if (now && now != logged) {
        Utils::addLogEntry(line.arg(QString::number(now->size()), satelliteText(now)));
    }
}

} // namespace

LocationHelper::LocationHelper(Platform &platform, QObject *parent)
    : QObject(parent)
    , source(platform.createPositionSource())
{
    if (source->hasPosition()) {
        const Position last = source->lastKnownPosition();
        Utils::addLogEntry(u"Last known Position: %1 %2 %3 %4 %5 %6"_s.arg(
            QString::number(last.time.value_or(0) / 1000), degreesText(last.latitude),
            degreesText(last.longitude), numberText(last.altitude),
            numberText(last.horizontalAccuracy), numberText(last.verticalAccuracy)));
        source->setUpdateInterval(updateIntervalMs);
        Utils::addLogEntry(
            u"Minimum Position Intervall: %1"_s.arg(source->minimumUpdateInterval()));
    }
    connect(&timeoutTimer, &ClockTimer::timeout, this, &LocationHelper::timeoutDisableGPS);
    connect(source.get(), &PositionSource::problemChanged, this, &LocationHelper::logProblem);
    connect(source.get(), &PositionSource::problemChanged, this, &LocationHelper::changed);
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
    logged = {};
    switchOn();
}

void LocationHelper::keepOn(bool wanted)
{
    keptOn = wanted;
    if (wanted) {
        switchOn();
    } else if (!servicestarted) {
        timeoutTimer.start(switchOffDelay);
    }
}

void LocationHelper::switchOn()
{
    timeoutTimer.stop();
    if (locationcollecting) {
        return;
    }
    locationcollecting = true;
    if (source->hasPosition()) {
        connect(source.get(), &PositionSource::positionUpdated, this,
                &LocationHelper::positionUpdated);
        source->startPosition();
    }
    if (source->hasSatellites()) {
        connect(source.get(), &PositionSource::satellitesUpdated, this,
                &LocationHelper::satellitesUpdated);
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
    if (!locationcollecting || keptOn) {
        return;
    }
    locationcollecting = false;
    disconnect(source.get(), &PositionSource::positionUpdated, this, nullptr);
    disconnect(source.get(), &PositionSource::satellitesUpdated, this, nullptr);
    if (source->hasPosition()) {
        source->stopPosition();
    }
    if (source->hasSatellites()) {
        source->stopSatellites();
    }
    Utils::addLogEntry(u"GPS stopped"_s);
}

void LocationHelper::positionUpdated()
{
    const auto position = source->position();
    timedOut = !position;
    if (position) {
        latest = position;
        keepSample(*position);
    } else {
        clearPosition();
    }
    Q_EMIT changed();
}

void LocationHelper::keepSample(const Position &here)
{
    if (!servicestarted) {
        return;
    }
    // A path is made of places: an update that names none adds nothing to it.
    if (here.hasPlace() && myLocations.size() < maxSamples) {
        myLocations.append({here.time.value_or(0), here.longitude.value_or(0),
                            here.latitude.value_or(0), here.altitude.value_or(-1),
                            here.horizontalAccuracy.value_or(-1),
                            here.verticalAccuracy.value_or(-1), here.hasLock()});
    }
    Utils::addLogEntry(u"GPS Position updated: %1 %2 %3 %4 %5 %6"_s.arg(
        getTimestamp(), getLatitude(), getLongitude(), getAltitude(), getAccuracyHor(),
        getAccuracyVert()));
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
    latest.reset();
    // One character instead of a time: readers of the reports recognise a time-out by it.
    timeWithoutFix = QChar(static_cast<ushort>(Utils::getTimeInMs() & 0xff));
}

void LocationHelper::satellitesUpdated()
{
    sky = source->satellites();
    if (!servicestarted) {
        return;
    }
    // Some receivers repeat every second what they have told: a test's log has better use for its
    // lines.
    logSatellites(u"Satellites in Use (%1): %2"_s, sky.inUse, logged.inUse);
    logSatellites(u"Satellites in View (%1): %2"_s, sky.inView, logged.inView);
    logged = sky;
}

QString LocationHelper::getCordValid() const
{
    if (timedOut) {
        return u"Timeout"_s;
    }
    return latest && latest->hasPlace() ? u"Valid"_s : u"Not valid"_s;
}

QString LocationHelper::getPosType() const
{
    if (!latest || !latest->hasPlace()) {
        return u"Invalid"_s;
    }
    return latest->hasLock() ? u"3DCord"_s : u"2DCord"_s;
}

QString LocationHelper::getLatitude() const
{
    return degreesText(latest ? latest->latitude : std::nullopt);
}

QString LocationHelper::getLongitude() const
{
    return degreesText(latest ? latest->longitude : std::nullopt);
}

QString LocationHelper::getAltitude() const
{
    return numberText(latest ? latest->altitude : std::nullopt);
}

QString LocationHelper::getAccuracyHor() const
{
    return numberText(latest ? latest->horizontalAccuracy : std::nullopt);
}

QString LocationHelper::getAccuracyVert() const
{
    return numberText(latest ? latest->verticalAccuracy : std::nullopt);
}

QString LocationHelper::getTimestamp() const
{
    return latest ? QString::number(latest->time.value_or(0)) : timeWithoutFix;
}

QString LocationHelper::getGroundSpeed() const
{
    return numberText(latest ? latest->groundSpeed : std::nullopt);
}

QString LocationHelper::getVertSpeed() const
{
    return numberText(latest ? latest->verticalSpeed : std::nullopt);
}

QString LocationHelper::getDirection() const
{
    return latest ? numberText(latest->direction) : u"0"_s;
}

QString LocationHelper::getMagneticVar() const
{
    return latest ? numberText(latest->magneticVariation) : u"0"_s;
}

QString LocationHelper::getSatInUse() const
{
    return satelliteText(sky.inUse);
}

QString LocationHelper::getSatInView() const
{
    return satelliteText(sky.inView);
}

int LocationHelper::getLocationStatus() const
{
    if (hasGPSLock()) {
        return 2;
    }
    return latest && latest->hasPlace() ? 1 : 0;
}

bool LocationHelper::hasGPSLock() const
{
    return latest && latest->hasLock();
}

Position LocationHelper::rounded() const
{
    Position position = latest.value_or(Position());
    for (auto *each :
         {&position.latitude, &position.longitude, &position.altitude, &position.horizontalAccuracy,
          &position.verticalAccuracy, &position.groundSpeed, &position.verticalSpeed,
          &position.direction, &position.magneticVariation}) {
        if (*each) {
            *each = numberText(*each).toDouble();
        }
    }
    return position;
}

std::unique_ptr<DoubleLocation> LocationHelper::getDoubleLocation() const
{
    const Position here = rounded();
    auto location = std::make_unique<DoubleLocation>();
    location->setTime(here.time.value_or(0));
    location->setLongitude(here.longitude.value_or(0));
    location->setLatitude(here.latitude.value_or(0));
    location->setAltitude(here.altitude.value_or(noAltitude));
    location->setAccuracyHor(here.horizontalAccuracy.value_or(-1));
    location->setAccuracyVert(here.verticalAccuracy.value_or(-1));
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
