#include "platform/scripted/scriptedpositionsource.h"

#include "platform/scripted/scriptstate.h"

namespace velometer {

ScriptedPositionSource::ScriptedPositionSource(const ScriptState &scripted, QObject *parent)
    : PositionSource(parent)
    , state(scripted)
{
    if (!state.script().hasPosition) {
        setProblem(Problem::NoSource);
    }
    connect(&state, &ScriptState::positionUpdated, this, [this](const QGeoPositionInfo &info) {
        if (positionRunning) {
            setPosition(info);
        }
    });
    connect(&state, &ScriptState::updateTimeout, this, [this] {
        if (!positionRunning) {
            return;
        }
        setProblem(Problem::NoFix);
        setTimedOut();
    });
    connect(&state, &ScriptState::satellitesUpdated, this, [this](const Satellites &now) {
        if (satellitesRunning) {
            setSatellites(now);
        }
    });
}

QString ScriptedPositionSource::name() const
{
    return QStringLiteral("scripted");
}

bool ScriptedPositionSource::hasPosition() const
{
    return state.script().hasPosition;
}

bool ScriptedPositionSource::hasSatellites() const
{
    return state.script().hasSatellites;
}

Position ScriptedPositionSource::lastKnownPosition() const
{
    return Position::from(state.position);
}

int ScriptedPositionSource::minimumUpdateInterval() const
{
    return 0;
}

void ScriptedPositionSource::setUpdateInterval(int /*ms*/)
{}

void ScriptedPositionSource::startPosition()
{
    positionRunning = true;
}

void ScriptedPositionSource::stopPosition()
{
    positionRunning = false;
}

void ScriptedPositionSource::startSatellites()
{
    satellitesRunning = true;
}

void ScriptedPositionSource::stopSatellites()
{
    satellitesRunning = false;
}

} // namespace velometer
