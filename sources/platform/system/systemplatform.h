#pragma once

#include "platform/machine/machinenetwork.h"
#include "platform/networkmanager/networkmanagerclient.h"
#include "platform/platform.h"

#include <memory>

namespace velometer {

class ModemClient;

/// The machine the program runs on: modem and network as their services on the system bus show
/// them, what they do not tell as Qt and the kernel do. Making the sources never waits for a
/// service; what the machine lacks stays unknown. Needs a QCoreApplication.
class SystemPlatform : public Platform
{
public:
    /// @p bus stands for the system bus, @p lookUpNow for the kernel.
    explicit SystemPlatform(const QDBusConnection &bus = QDBusConnection::systemBus(),
                            MachineNetworkLookUp lookUpNow = lookUpMachineNetwork);
    ~SystemPlatform() override;

    std::unique_ptr<PositionSource> createPositionSource() override;
    std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() override;
    std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() override;
    std::unique_ptr<NetworkSession> createNetworkSession() override;

    PlatformFacts facts() const override;
    bool isComplete() const override;

private:
    const MachineNetworkLookUp lookUp;
    const std::unique_ptr<ModemClient> modem;
    NetworkManagerClient network;
};

} // namespace velometer
