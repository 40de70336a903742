#pragma once

#include "platform/platform.h"
#include "platform/scripted/scriptstate.h"

namespace velometer {

/// A device that does what a file says (docs/scripted-platform.md tells its format), for tests,
/// demonstrations and bug reports. Its time starts when it is created. Main thread only.
class ScriptedPlatform : public Platform
{
public:
    explicit ScriptedPlatform(PlatformScript script);

    std::unique_ptr<PositionSource> createPositionSource() override;
    std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() override;
    std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() override;
    std::unique_ptr<NetworkSession> createNetworkSession() override;
    PlatformFacts facts() const override;

private:
    ScriptState state;
};

} // namespace velometer
