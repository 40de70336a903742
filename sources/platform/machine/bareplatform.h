#pragma once

#include "platform/platform.h"

namespace velometer {

/// The machine without modem and position: what its interfaces and its firmware tell.
class BarePlatform : public Platform
{
public:
    std::unique_ptr<PositionSource> createPositionSource() override;
    std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() override;
    std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() override;
    std::unique_ptr<NetworkSession> createNetworkSession() override;
};

} // namespace velometer
