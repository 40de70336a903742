#pragma once

#include "platform/machine/linkwatch.h"
#include "platform/machine/machinenetwork.h"
#include "platform/networksession.h"

namespace velometer {

/// The interfaces of this machine as configurations. Interfaces are brought up by the system, not
/// from here: opening succeeds when one is up, loopback included, so that a machine without a
/// network can measure against a service of its own. An open session is lost when it opened with a
/// network and LinkWatch finds none.
class MachineNetworkSession : public NetworkSession
{
    Q_OBJECT

public:
    explicit MachineNetworkSession(MachineNetworkLookUp lookUpNow = lookUpMachineNetwork,
                                   QObject *parent = nullptr);

    QList<NetworkConfiguration> allConfigurations() const override;
    NetworkConfiguration defaultConfiguration() const override;
    bool canStartAndStopInterfaces() const override;
    bool isOpen() const override;
    void open() override;

private:
    void answer();
    bool hasNetwork() const;

    const MachineNetworkLookUp lookUp;
    LinkWatch watch;
    bool openedOnNetwork = false; ///< not on loopback alone
};

} // namespace velometer
