#include "platform/system/devicenetworkinfosource.h"

#include "platform/modem/modemclient.h"
#include "platform/networkmanager/networkmanagerclient.h"

#include <utility>

namespace velometer {

namespace {

using Link = NetworkManagerState::Link;

NetworkMode modeOf(Link link, NetworkMode mobile)
{
    switch (link) {
    case Link::Wlan: return NetworkMode::Wlan;
    case Link::Ethernet: return NetworkMode::Ethernet;
    case Link::Bluetooth: return NetworkMode::Bluetooth;
    case Link::None:
    case Link::Mobile: return mobile;
    case Link::Other: break;
    }
    return NetworkMode::Unknown;
}

} // namespace

DeviceNetworkInfoSource::DeviceNetworkInfoSource(const ModemClient &modemClient,
                                                 const NetworkManagerClient &networkClient,
                                                 MachineNetworkLookUp lookUpNow, QObject *parent)
    : NetworkInfoSource(parent)
    , modem(modemClient)
    , network(networkClient)
    , interfaces(std::move(lookUpNow))
{
    refresh();
    connect(&modem, &ModemClient::changed, this, &DeviceNetworkInfoSource::refresh);
    connect(&modem, &ModemClient::completed, this, &DeviceNetworkInfoSource::refresh);
    connect(&network, &NetworkManagerClient::changed, this, &DeviceNetworkInfoSource::refresh);
    connect(&interfaces, &NetworkInfoSource::changed, this, &DeviceNetworkInfoSource::refresh);
}

NetworkState DeviceNetworkInfoSource::look() const
{
    const ModemState &radio = modem.state();
    const bool hasModem = !radio.path.isEmpty();
    const NetworkState::Link mobile{radio.status, radio.signal, radio.operatorName};

    NetworkState now;
    now.mcc = radio.mcc;
    now.mnc = radio.mnc;
    now.homeMcc = radio.homeMcc;
    now.homeMnc = radio.homeMnc;
    now.cell = radio.cellId;
    now.lac = radio.areaCode;
    now.radio = radio.radio;
    now.codesPending = !now.hasCodes() && (hasModem || !modem.isComplete());
    if (isMobile(radio.mode)) {
        now.links[radio.mode] = mobile;
    }

    const NetworkManagerState &managed = network.state();
    if (network.presence() == BusService::Presence::Present && managed.activated) {
        now.mode = modeOf(managed.link, radio.mode);
        if (managed.link == Link::Wlan) {
            now.links[NetworkMode::Wlan] = {NetworkStatus::Connected, managed.strength,
                                            managed.ssid};
        } else if (!isMobile(now.mode)) {
            now.links[now.mode].status = NetworkStatus::Connected;
        }
    } else {
        const NetworkState &wired = interfaces.state();
        // A mobile interface has no mode of its own there.
        now.mode = wired.mode == NetworkMode::Unknown ? radio.mode : wired.mode;
        if (!isMobile(now.mode)) {
            now.links[now.mode] = wired.current();
        }
    }
    // A modem that does not tell its radio tells its registration all the same: roaming counts.
    if (now.mode == NetworkMode::Unknown && hasModem) {
        now.links[now.mode] = mobile;
    }
    return now;
}

void DeviceNetworkInfoSource::refresh()
{
    setState(look());
}

} // namespace velometer
