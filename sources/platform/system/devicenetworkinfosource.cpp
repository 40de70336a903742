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
                                                 SystemNetworkLookUp lookUpNow, QObject *parent)
    : NetworkInfoSource(parent)
    , modem(modemClient)
    , network(networkClient)
    , interfaces(std::move(lookUpNow))
    , shown(look())
{
    connect(&modem, &ModemClient::changed, this, &DeviceNetworkInfoSource::refresh);
    connect(&network, &NetworkManagerClient::changed, this, &DeviceNetworkInfoSource::refresh);
    connect(&interfaces, &NetworkInfoSource::networkModeChanged, this,
            &DeviceNetworkInfoSource::refresh);
    connect(&interfaces, &NetworkInfoSource::networkStatusChanged, this,
            &DeviceNetworkInfoSource::refresh);
}

DeviceNetworkInfoSource::Shown DeviceNetworkInfoSource::look() const
{
    Shown now;
    now.modem = modem.state();
    now.mobile = {now.modem.status, now.modem.signal, now.modem.operatorName};

    const NetworkManagerState &managedState = network.state();
    const bool managed =
        network.presence() == BusService::Presence::Present && managedState.activated;
    if (managed) {
        now.mode = modeOf(managedState.link, now.modem.mode);
        if (managedState.link == Link::Wlan) {
            now.wlan = {NetworkStatus::Connected, managedState.strength, managedState.ssid};
        }
    } else {
        // A mobile interface has no mode of its own there.
        const NetworkMode mode = interfaces.currentMode();
        now.mode = mode == NetworkMode::Unknown ? now.modem.mode : mode;
        now.wlan.status = interfaces.networkStatus(NetworkMode::Wlan);
    }

    if (managed || interfaces.networkStatus(interfaces.currentMode()) == NetworkStatus::Connected) {
        now.other.status = NetworkStatus::Connected;
    }
    // A modem that does not tell its radio tells its registration all the same: roaming counts.
    if (now.mode == NetworkMode::Unknown && !now.modem.path.isEmpty()) {
        now.other = now.mobile;
    }
    return now;
}

const DeviceNetworkInfoSource::ModeState &DeviceNetworkInfoSource::stateOf(const Shown &all,
                                                                           NetworkMode mode)
{
    static const ModeState none;
    if (mode == NetworkMode::Wlan) {
        return all.wlan;
    }
    if (isMobile(mode)) {
        return mode == all.modem.mode ? all.mobile : none;
    }
    return mode == all.mode ? all.other : none;
}

void DeviceNetworkInfoSource::refresh()
{
    const Shown before = std::exchange(shown, look());
    const auto tell = [&](NetworkMode mode) {
        const ModeState &was = stateOf(before, mode);
        const ModeState &is = stateOf(shown, mode);
        // A listener takes status and name of the current mode alone: it has missed those of
        // others.
        const bool isNew = mode == shown.mode && mode != before.mode;
        if (isNew || is.status != was.status) {
            Q_EMIT networkStatusChanged(mode, is.status);
        }
        if (isNew || is.signal != was.signal) {
            Q_EMIT networkSignalStrengthChanged(mode, is.signal);
        }
        if (isNew || is.name != was.name) {
            Q_EMIT networkNameChanged(mode, is.name);
        }
    };

    if (shown.modem.mcc != before.modem.mcc) {
        Q_EMIT currentMobileCountryCodeChanged(shown.modem.mcc);
    }
    if (shown.modem.mnc != before.modem.mnc) {
        Q_EMIT currentMobileNetworkCodeChanged(shown.modem.mnc);
    }
    if (shown.modem.homeMcc != before.modem.homeMcc ||
        shown.modem.homeMnc != before.modem.homeMnc) {
        Q_EMIT homeOperatorChanged();
    }
    const auto isFound = [](qint64 is, qint64 was) { return is >= 0 && was < 0; };
    if (isFound(shown.modem.cellId, before.modem.cellId) ||
        isFound(shown.modem.areaCode, before.modem.areaCode)) {
        Q_EMIT cellFound();
    }
    if (shown.mode != before.mode) {
        Q_EMIT networkModeChanged(shown.mode);
    }
    // The modes that were, then those that are, each once.
    QList<NetworkMode> told;
    for (const NetworkMode mode :
         {before.mode, before.modem.mode, NetworkMode::Wlan, shown.modem.mode, shown.mode}) {
        if (!told.contains(mode)) {
            told.append(mode);
            tell(mode);
        }
    }
}

qint64 DeviceNetworkInfoSource::cellId() const
{
    return shown.modem.cellId;
}

int DeviceNetworkInfoSource::locationAreaCode() const
{
    return shown.modem.areaCode;
}

QString DeviceNetworkInfoSource::homeMobileCountryCode() const
{
    return shown.modem.homeMcc;
}

QString DeviceNetworkInfoSource::homeMobileNetworkCode() const
{
    return shown.modem.homeMnc;
}

QString DeviceNetworkInfoSource::currentMobileCountryCode() const
{
    return shown.modem.mcc;
}

QString DeviceNetworkInfoSource::currentMobileNetworkCode() const
{
    return shown.modem.mnc;
}

NetworkMode DeviceNetworkInfoSource::currentMode() const
{
    return shown.mode;
}

NetworkStatus DeviceNetworkInfoSource::networkStatus(NetworkMode mode) const
{
    return stateOf(shown, mode).status;
}

int DeviceNetworkInfoSource::networkSignalStrength(NetworkMode mode) const
{
    return stateOf(shown, mode).signal;
}

QString DeviceNetworkInfoSource::networkName(NetworkMode mode) const
{
    return stateOf(shown, mode).name;
}

} // namespace velometer
