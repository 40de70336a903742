#include "platform/system/systemnetworksession.h"

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto linkWatchInterval = 2s;
constexpr int linkLooksUntilLost = 2;

NetworkConfiguration configurationOf(const SystemInterface &interface)
{
    NetworkConfiguration configuration;
    configuration.bearer = interface.bearer;
    configuration.name = anonymousInterfaceName(interface.name);
    configuration.purpose = interface.loopback ? NetworkConfiguration::PrivatePurpose
                                               : NetworkConfiguration::UnknownPurpose;
    if (interface.up && (interface.routable || interface.loopback)) {
        configuration.state = NetworkConfiguration::Active;
    } else if (interface.up) {
        configuration.state = NetworkConfiguration::Discovered;
    } else {
        configuration.state = NetworkConfiguration::Defined;
    }
    configuration.valid = true;
    return configuration;
}

bool anythingUp(const SystemNetwork &network)
{
    return std::any_of(network.interfaces.begin(), network.interfaces.end(),
                       [](const SystemInterface &each) { return each.up; });
}

} // namespace

SystemNetworkSession::SystemNetworkSession(SystemNetworkLookUp lookUpNow, QObject *parent)
    : NetworkSession(parent)
    , lookUp(std::move(lookUpNow))
{
    connect(&watchTimer, &QTimer::timeout, this, &SystemNetworkSession::watch);
}

QList<NetworkConfiguration> SystemNetworkSession::allConfigurations() const
{
    QList<NetworkConfiguration> list;
    const SystemNetwork network = lookUp();
    for (const SystemInterface &interface : network.interfaces) {
        list.append(configurationOf(interface));
    }
    return list;
}

NetworkConfiguration SystemNetworkSession::defaultConfiguration() const
{
    const SystemNetwork network = lookUp();
    if (const std::optional<SystemInterface> outgoing = network.outgoing()) {
        return configurationOf(*outgoing);
    }
    const QList<SystemInterface> &interfaces = network.interfaces;
    const auto loopback = std::find_if(interfaces.begin(), interfaces.end(),
                                       [](const SystemInterface &each) { return each.loopback; });
    return loopback == interfaces.end() ? NetworkConfiguration() : configurationOf(*loopback);
}

bool SystemNetworkSession::canStartAndStopInterfaces() const
{
    return false;
}

bool SystemNetworkSession::isOpen() const
{
    return sessionOpen;
}

void SystemNetworkSession::open()
{
    QMetaObject::invokeMethod(this, &SystemNetworkSession::answer, Qt::QueuedConnection);
}

void SystemNetworkSession::answer()
{
    const SystemNetwork network = lookUp();
    if (!anythingUp(network)) {
        Q_EMIT error(SessionAbortedError);
        return;
    }
    sessionOpen = true;
    openedOnNetwork = network.outgoing().has_value();
    looksWithoutNetwork = 0;
    watchTimer.start(linkWatchInterval);
    Q_EMIT opened();
}

void SystemNetworkSession::watch()
{
    const SystemNetwork network = lookUp();
    const bool there = openedOnNetwork ? network.outgoing().has_value() : anythingUp(network);
    looksWithoutNetwork = there ? 0 : looksWithoutNetwork + 1;
    if (looksWithoutNetwork < linkLooksUntilLost) {
        return;
    }
    watchTimer.stop();
    sessionOpen = false;
    Q_EMIT error(SessionAbortedError);
}

} // namespace velometer
