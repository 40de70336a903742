#include "platform/scripted/scriptedplatform.h"

#include "platform/scripted/scripteddeviceinfosource.h"
#include "platform/scripted/scriptednetworkinfosource.h"
#include "platform/scripted/scriptednetworksession.h"
#include "platform/scripted/scriptedpositionsource.h"

#include <utility>

namespace velometer {

ScriptedPlatform::ScriptedPlatform(PlatformScript script)
    : state(std::move(script))
{}

std::unique_ptr<PositionSource> ScriptedPlatform::createPositionSource()
{
    return std::make_unique<ScriptedPositionSource>(state);
}

std::unique_ptr<NetworkInfoSource> ScriptedPlatform::createNetworkInfoSource()
{
    return std::make_unique<ScriptedNetworkInfoSource>(state);
}

std::unique_ptr<DeviceInfoSource> ScriptedPlatform::createDeviceInfoSource()
{
    return std::make_unique<ScriptedDeviceInfoSource>(state.script().device);
}

std::unique_ptr<NetworkSession> ScriptedPlatform::createNetworkSession()
{
    return std::make_unique<ScriptedNetworkSession>(state);
}

PlatformFacts ScriptedPlatform::facts() const
{
    PlatformFacts facts;
    facts.metered = state.metered.metered;
    facts.meteredGuessed = state.metered.guessed;
    return facts;
}

} // namespace velometer
