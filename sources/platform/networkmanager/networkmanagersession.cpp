#include "platform/networkmanager/networkmanagersession.h"

#include "platform/modem/modemclient.h"
#include "platform/networkmanager/networkmanagerclient.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto modemWait = 2s;
/// A WLAN that is known connects within a few seconds of the screen waking up.
constexpr auto openWait = 10s;

} // namespace

NetworkManagerSession::NetworkManagerSession(const NetworkManagerClient &networkClient,
                                             const ModemClient &modemClient,
                                             MachineNetworkLookUp lookUpNow, QObject *parent)
    : NetworkSession(parent)
    , network(networkClient)
    , modem(modemClient)
    , lookUp(lookUpNow)
    , interfaces(lookUpNow)
    , watch([this] { return hasNetwork(); })
{
    connect(&modemTimer, &ClockTimer::timeout, this, &NetworkManagerSession::proceed);
    connect(&openTimer, &ClockTimer::timeout, this, &NetworkManagerSession::stopWaiting);
    connect(&watch, &LinkWatch::lost, this, &NetworkManagerSession::fail);
    connect(&network, &NetworkManagerClient::changed, this, &NetworkManagerSession::proceed);
    connect(&network, &NetworkManagerClient::completed, this, &NetworkManagerSession::proceed);
    connect(&modem, &ModemClient::completed, this, &NetworkManagerSession::proceed);
    connect(&interfaces, &NetworkSession::opened, this, &NetworkSession::opened);
    connect(&interfaces, &NetworkSession::error, this, &NetworkSession::error);
}

QList<NetworkConfiguration> NetworkManagerSession::allConfigurations() const
{
    return interfaces.allConfigurations();
}

NetworkConfiguration NetworkManagerSession::defaultConfiguration() const
{
    return interfaces.defaultConfiguration();
}

bool NetworkManagerSession::canStartAndStopInterfaces() const
{
    return false;
}

bool NetworkManagerSession::isOpen() const
{
    return watch.isWatching() || interfaces.isOpen();
}

void NetworkManagerSession::open()
{
    opening = true;
    modemTimer.start(modemWait);
    openTimer.start(openWait);
    QMetaObject::invokeMethod(this, &NetworkManagerSession::proceed, Qt::QueuedConnection);
}

void NetworkManagerSession::proceed()
{
    if (!opening || !network.isComplete() || (!modem.isComplete() && modemTimer.isActive())) {
        return;
    }
    const bool managed = network.presence() == BusService::Presence::Present;
    if (!managed || hasForeignNetwork()) {
        opening = false;
        openTimer.stop();
        interfaces.open();
        return;
    }
    if (!network.state().activated) {
        return;
    }
    opening = false;
    openTimer.stop();
    watch.start();
    Q_EMIT opened();
}

bool NetworkManagerSession::hasForeignNetwork() const
{
    const NetworkManagerState &state = network.state();
    return !state.activated && !state.connecting && lookUp().outgoing().has_value();
}

bool NetworkManagerSession::hasNetwork() const
{
    // The connections outlive a restart of NetworkManager.
    const bool managed = network.presence() == BusService::Presence::Present;
    return (managed && network.state().activated) || lookUp().outgoing().has_value();
}

void NetworkManagerSession::stopWaiting()
{
    // NetworkManager may be busy with one connection while traffic leaves by another's.
    if (!lookUp().outgoing()) {
        return fail();
    }
    opening = false;
    interfaces.open();
}

void NetworkManagerSession::fail()
{
    opening = false;
    openTimer.stop();
    watch.stop();
    Q_EMIT error(SessionAbortedError);
}

} // namespace velometer
