#include "platform/machine/machinenetworksession.h"

#include <algorithm>
#include <utility>

namespace velometer {

namespace {

NetworkConfiguration configurationOf(const MachineInterface &interface)
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

bool anythingUp(const MachineNetwork &network)
{
    return std::any_of(network.interfaces.begin(), network.interfaces.end(),
                       [](const MachineInterface &each) { return each.up; });
}

} // namespace

MachineNetworkSession::MachineNetworkSession(MachineNetworkLookUp lookUpNow, QObject *parent)
    : NetworkSession(parent)
    , lookUp(std::move(lookUpNow))
    , watch([this] { return hasNetwork(); })
{
    connect(&watch, &LinkWatch::lost, this, [this] { Q_EMIT error(SessionAbortedError); });
}

QList<NetworkConfiguration> MachineNetworkSession::allConfigurations() const
{
    QList<NetworkConfiguration> list;
    const MachineNetwork network = lookUp();
    for (const MachineInterface &interface : network.interfaces) {
        list.append(configurationOf(interface));
    }
    return list;
}

NetworkConfiguration MachineNetworkSession::defaultConfiguration() const
{
    const MachineNetwork network = lookUp();
    if (const std::optional<MachineInterface> outgoing = network.outgoing()) {
        return configurationOf(*outgoing);
    }
    const QList<MachineInterface> &interfaces = network.interfaces;
    const auto loopback = std::find_if(interfaces.begin(), interfaces.end(),
                                       [](const MachineInterface &each) { return each.loopback; });
    return loopback == interfaces.end() ? NetworkConfiguration() : configurationOf(*loopback);
}

bool MachineNetworkSession::canStartAndStopInterfaces() const
{
    return false;
}

bool MachineNetworkSession::isOpen() const
{
    return watch.isWatching();
}

void MachineNetworkSession::open()
{
    QMetaObject::invokeMethod(this, &MachineNetworkSession::answer, Qt::QueuedConnection);
}

void MachineNetworkSession::answer()
{
    const MachineNetwork network = lookUp();
    if (!anythingUp(network)) {
        Q_EMIT error(SessionAbortedError);
        return;
    }
    openedOnNetwork = network.outgoing().has_value();
    watch.start();
    Q_EMIT opened();
}

bool MachineNetworkSession::hasNetwork() const
{
    const MachineNetwork network = lookUp();
    return openedOnNetwork ? network.outgoing().has_value() : anythingUp(network);
}

} // namespace velometer
