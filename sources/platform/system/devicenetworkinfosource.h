#pragma once

#include "platform/modem/modemstate.h"
#include "platform/networkinfosource.h"
#include "platform/networkmanager/networkmanagerstate.h"
#include "platform/system/systemnetworkinfosource.h"

namespace velometer {

class ModemClient;
class NetworkManagerClient;

/// Network state from the modem and from NetworkManager; where that has no connection, from the
/// interfaces as far as those tell. The current mode is that of the connection which traffic leaves
/// by; the mobile mode keeps its own status, signal and operator name while that is a WLAN. Signals
/// only what is different from before.
class DeviceNetworkInfoSource : public NetworkInfoSource
{
    Q_OBJECT

public:
    /// The clients are borrowed and outlive the source.
    DeviceNetworkInfoSource(const ModemClient &modemClient,
                            const NetworkManagerClient &networkClient,
                            SystemNetworkLookUp lookUpNow = lookUpSystemNetwork,
                            QObject *parent = nullptr);

    qint64 cellId() const override;
    int locationAreaCode() const override;
    QString homeMobileCountryCode() const override;
    QString homeMobileNetworkCode() const override;
    QString currentMobileCountryCode() const override;
    QString currentMobileNetworkCode() const override;
    NetworkMode currentMode() const override;
    NetworkStatus networkStatus(NetworkMode mode) const override;
    int networkSignalStrength(NetworkMode mode) const override;
    QString networkName(NetworkMode mode) const override;

private:
    struct ModeState
    {
        NetworkStatus status = NetworkStatus::NoNetworkAvailable;
        int signal = -1;
        QString name;
    };
    /// Everything that listeners hear of.
    struct Shown
    {
        ModemState modem;
        NetworkMode mode = NetworkMode::Unknown;
        ModeState mobile;
        ModeState wlan;
        ModeState other; ///< of any mode that is neither mobile nor WLAN
    };

    Shown look() const;
    void refresh();
    static const ModeState &stateOf(const Shown &all, NetworkMode mode);

    const ModemClient &modem;
    const NetworkManagerClient &network;
    SystemNetworkInfoSource interfaces;
    Shown shown;
};

} // namespace velometer
