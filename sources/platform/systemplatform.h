#pragma once

#include "platform/platform.h"

/// The machine the program runs on, as Qt and the kernel show it. Making the sources never waits
/// for a service; what the machine lacks stays unknown.
class SystemPlatform : public Platform
{
public:
    std::unique_ptr<PositionSource> createPositionSource() override;
    std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() override;
    std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() override;
    std::unique_ptr<NetworkSession> createNetworkSession() override;
};
