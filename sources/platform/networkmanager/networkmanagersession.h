#pragma once

#include "platform/machine/linkwatch.h"
#include "platform/machine/machinenetworksession.h"
#include "platform/networksession.h"
#include "utils/clocktimer.h"

namespace velometer {

class ModemClient;
class NetworkManagerClient;

/// The network as NetworkManager keeps it: open while the primary connection is activated. Opening
/// waits ten seconds for one, and before that up to two for what the modem tells, so that nobody
/// measures before it is known whether the device is roaming. An open session is lost when
/// LinkWatch finds neither an activated connection nor another way into the network. Where
/// NetworkManager is not there, or leaves the interfaces to somebody else, these alone decide as in
/// MachineNetworkSession. The interfaces are the configurations.
class NetworkManagerSession : public NetworkSession
{
    Q_OBJECT

public:
    /// The clients are borrowed and outlive the session.
    NetworkManagerSession(const NetworkManagerClient &networkClient, const ModemClient &modemClient,
                          MachineNetworkLookUp lookUpNow = lookUpMachineNetwork,
                          QObject *parent = nullptr);

    QList<NetworkConfiguration> allConfigurations() const override;
    NetworkConfiguration defaultConfiguration() const override;
    bool canStartAndStopInterfaces() const override;
    bool isOpen() const override;
    void open() override;

private:
    void proceed();
    /// A connection that another program or the administrator has made.
    bool hasForeignNetwork() const;
    bool hasNetwork() const;
    void stopWaiting();
    void fail();

    const NetworkManagerClient &network;
    const ModemClient &modem;
    const MachineNetworkLookUp lookUp;
    MachineNetworkSession interfaces; ///< serves what NetworkManager does not manage
    ClockTimer modemTimer;            ///< the end of waiting for the modem
    ClockTimer openTimer;             ///< the end of waiting for a connection
    LinkWatch watch;
    bool opening = false;
};

} // namespace velometer
