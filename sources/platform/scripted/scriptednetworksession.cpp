#include "platform/scripted/scriptednetworksession.h"

#include "platform/scripted/scriptstate.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString bearerOf(NetworkMode mode)
{
    switch (mode) {
    case NetworkMode::Wlan: return u"WLAN"_s;
    case NetworkMode::Ethernet: return u"Ethernet"_s;
    case NetworkMode::Gsm:
    case NetworkMode::Cdma:
    case NetworkMode::Wcdma:
    case NetworkMode::Lte:
    case NetworkMode::Nr: return u"Mobile"_s;
    case NetworkMode::Unknown:
    case NetworkMode::Bluetooth:
    case NetworkMode::Wimax: break;
    }
    return u"Unknown"_s;
}

NetworkSession::SessionError failureOf(const ScriptEvent::Session &session)
{
    return session.kind == ScriptEvent::Session::Error ? session.error
                                                       : NetworkSession::SessionAbortedError;
}

} // namespace

ScriptedNetworkSession::ScriptedNetworkSession(const ScriptState &scripted, QObject *parent)
    : NetworkSession(parent)
    , state(scripted)
{
    connect(&state, &ScriptState::sessionChanged, this, &ScriptedNetworkSession::sessionChanged);
}

QList<NetworkConfiguration> ScriptedNetworkSession::allConfigurations() const
{
    return {defaultConfiguration()};
}

NetworkConfiguration ScriptedNetworkSession::defaultConfiguration() const
{
    NetworkConfiguration configuration;
    configuration.bearer = bearerOf(state.network.mode);
    configuration.name = state.network.current().name;
    configuration.state = state.session.kind == ScriptEvent::Session::Opened
                              ? NetworkConfiguration::Active
                              : NetworkConfiguration::Discovered;
    configuration.valid = true;
    return configuration;
}

bool ScriptedNetworkSession::canStartAndStopInterfaces() const
{
    return false;
}

bool ScriptedNetworkSession::isOpen() const
{
    return sessionOpen;
}

void ScriptedNetworkSession::open()
{
    QMetaObject::invokeMethod(this, &ScriptedNetworkSession::answer, Qt::QueuedConnection);
}

void ScriptedNetworkSession::answer()
{
    if (state.session.kind != ScriptEvent::Session::Opened) {
        Q_EMIT error(failureOf(state.session));
        return;
    }
    sessionOpen = true;
    Q_EMIT opened();
}

void ScriptedNetworkSession::sessionChanged()
{
    if (!sessionOpen || state.session.kind == ScriptEvent::Session::Opened) {
        return;
    }
    sessionOpen = false;
    Q_EMIT error(failureOf(state.session));
}

} // namespace velometer
