#include "platform/system/systemnetworkinfosource.h"

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace velometer {

namespace {

// Soon enough for a test of ten seconds to notice that the network changed under it.
constexpr auto linkPollInterval = 2s;

} // namespace

SystemNetworkInfoSource::SystemNetworkInfoSource(SystemNetworkLookUp lookUpNow, QObject *parent)
    : NetworkInfoSource(parent)
    , lookUp(std::move(lookUpNow))
{
    refresh();
    connect(&timer, &QTimer::timeout, this, &SystemNetworkInfoSource::refresh);
    timer.start(linkPollInterval);
}

qint64 SystemNetworkInfoSource::cellId() const
{
    return -1;
}

int SystemNetworkInfoSource::locationAreaCode() const
{
    return -1;
}

QString SystemNetworkInfoSource::homeMobileCountryCode() const
{
    return {};
}

QString SystemNetworkInfoSource::homeMobileNetworkCode() const
{
    return {};
}

QString SystemNetworkInfoSource::currentMobileCountryCode() const
{
    return {};
}

QString SystemNetworkInfoSource::currentMobileNetworkCode() const
{
    return {};
}

NetworkMode SystemNetworkInfoSource::currentMode() const
{
    return mode;
}

NetworkStatus SystemNetworkInfoSource::networkStatus(NetworkMode of) const
{
    return connected && of == mode ? NetworkStatus::Connected : NetworkStatus::NoNetworkAvailable;
}

int SystemNetworkInfoSource::networkSignalStrength(NetworkMode /*of*/) const
{
    return -1;
}

QString SystemNetworkInfoSource::networkName(NetworkMode /*of*/) const
{
    return {};
}

void SystemNetworkInfoSource::refresh()
{
    const std::optional<SystemInterface> outgoing = lookUp().outgoing();
    const NetworkMode oldMode = mode;
    const bool wasConnected = connected;
    connected = outgoing.has_value();
    mode = connected ? outgoing->mode : NetworkMode::Unknown;

    if (mode != oldMode) {
        Q_EMIT networkModeChanged(mode);
        Q_EMIT networkStatusChanged(oldMode, networkStatus(oldMode));
    }
    if (mode != oldMode || connected != wasConnected) {
        Q_EMIT networkStatusChanged(mode, networkStatus(mode));
    }
}

} // namespace velometer
