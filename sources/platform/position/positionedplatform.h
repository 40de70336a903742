#pragma once

#include "platform/platform.h"
#include "platform/position/positionchoice.h"

namespace velometer {

/// Any platform, with its positions from elsewhere.
class PositionedPlatform : public Platform
{
public:
    /// @p positionsFrom is not Source::Platform.
    PositionedPlatform(std::unique_ptr<Platform> platform, PositionChoice positionsFrom);
    ~PositionedPlatform() override;

    std::unique_ptr<PositionSource> createPositionSource() override;
    std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() override;
    std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() override;
    std::unique_ptr<NetworkSession> createNetworkSession() override;
    PlatformFacts facts() const override;
    bool isComplete() const override;

private:
    const std::unique_ptr<Platform> device;
    const PositionChoice choice;
};

} // namespace velometer
