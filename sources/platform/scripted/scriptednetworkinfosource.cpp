#include "platform/scripted/scriptednetworkinfosource.h"

#include "platform/scripted/scriptstate.h"

namespace velometer {

ScriptedNetworkInfoSource::ScriptedNetworkInfoSource(const ScriptState &scripted, QObject *parent)
    : NetworkInfoSource(parent)
    , state(scripted)
{
    connect(&state, &ScriptState::mccChanged, this,
            &NetworkInfoSource::currentMobileCountryCodeChanged);
    connect(&state, &ScriptState::mncChanged, this,
            &NetworkInfoSource::currentMobileNetworkCodeChanged);
    connect(&state, &ScriptState::modeChanged, this, &NetworkInfoSource::networkModeChanged);
    connect(&state, &ScriptState::statusChanged, this, &NetworkInfoSource::networkStatusChanged);
    connect(&state, &ScriptState::signalChanged, this,
            &NetworkInfoSource::networkSignalStrengthChanged);
    connect(&state, &ScriptState::nameChanged, this, &NetworkInfoSource::networkNameChanged);
}

qint64 ScriptedNetworkInfoSource::cellId() const
{
    return state.cell;
}

int ScriptedNetworkInfoSource::locationAreaCode() const
{
    return state.lac;
}

QString ScriptedNetworkInfoSource::homeMobileCountryCode() const
{
    return state.homeMcc;
}

QString ScriptedNetworkInfoSource::homeMobileNetworkCode() const
{
    return state.homeMnc;
}

QString ScriptedNetworkInfoSource::currentMobileCountryCode() const
{
    return state.mcc;
}

QString ScriptedNetworkInfoSource::currentMobileNetworkCode() const
{
    return state.mnc;
}

NetworkMode ScriptedNetworkInfoSource::currentMode() const
{
    return state.mode;
}

NetworkStatus ScriptedNetworkInfoSource::networkStatus(NetworkMode mode) const
{
    return state.statusOf(mode);
}

int ScriptedNetworkInfoSource::networkSignalStrength(NetworkMode mode) const
{
    return mode == state.mode ? state.signal : -1;
}

QString ScriptedNetworkInfoSource::networkName(NetworkMode mode) const
{
    return mode == state.mode ? state.name : QString();
}

} // namespace velometer
