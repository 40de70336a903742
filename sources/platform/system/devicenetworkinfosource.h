#pragma once

#include "platform/machine/machinenetworkinfosource.h"
#include "platform/networkinfosource.h"

namespace velometer {

class ModemClient;
class NetworkManagerClient;

/// Network state from the modem and from NetworkManager; where that has no connection, from the
/// interfaces as far as those tell.
class DeviceNetworkInfoSource : public NetworkInfoSource
{
    Q_OBJECT

public:
    /// The clients are borrowed and outlive the source.
    DeviceNetworkInfoSource(const ModemClient &modemClient,
                            const NetworkManagerClient &networkClient,
                            MachineNetworkLookUp lookUpNow = lookUpMachineNetwork,
                            QObject *parent = nullptr);

private:
    NetworkState look() const;
    void refresh();

    const ModemClient &modem;
    const NetworkManagerClient &network;
    MachineNetworkInfoSource interfaces;
};

} // namespace velometer
