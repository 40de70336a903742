#include "app/positionwait.h"

#include "context/locationhelper.h"

namespace velometer {

PositionWait::PositionWait(LocationHelper &locationHelper, QObject *parent)
    : QObject(parent)
    , location(locationHelper)
{
    connect(&location, &LocationHelper::changed, this, &PositionWait::look);
    connect(&patience, &ClockTimer::timeout, this, &PositionWait::end);
}

std::optional<std::chrono::seconds> PositionWait::start(std::optional<std::chrono::seconds> wanted)
{
    isWanted = wanted.has_value();
    const std::chrono::seconds limit = wanted.value_or(usual);
    if (limit <= std::chrono::seconds(0) || !hasPoint()) {
        return std::nullopt;
    }
    patience.start(limit);
    // A test would ask for positions too; without one they end half a minute after the start.
    location.startService();
    return limit;
}

void PositionWait::cancel()
{
    if (patience.isActive()) {
        patience.stop();
        location.stopService();
    }
}

bool PositionWait::hasPoint() const
{
    if (location.getLocationStatus() != 0) {
        return false;
    }
    switch (location.getProblem()) {
    case PositionSource::Problem::None:
    case PositionSource::Problem::NoFix: return true;
    case PositionSource::Problem::Refused:
    case PositionSource::Problem::Unavailable: return isWanted;
    case PositionSource::Problem::NoSource: break;
    }
    return false;
}

void PositionWait::look()
{
    if (patience.isActive() && !hasPoint()) {
        end();
    }
}

void PositionWait::end()
{
    patience.stop();
    location.stopService();
    Q_EMIT ended();
}

} // namespace velometer
