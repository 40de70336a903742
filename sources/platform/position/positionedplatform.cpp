#include "platform/position/positionedplatform.h"

#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/position/nmeapositionsource.h"

#include <utility>

namespace velometer {

PositionedPlatform::PositionedPlatform(std::unique_ptr<Platform> platform,
                                       PositionChoice positionsFrom)
    : device(std::move(platform))
    , choice(std::move(positionsFrom))
{
    connect(device.get(), &Platform::completed, this, &PositionedPlatform::tellCompletion);
}

PositionedPlatform::~PositionedPlatform() = default;

std::unique_ptr<PositionSource> PositionedPlatform::createPositionSource()
{
    return std::make_unique<NmeaPositionSource>(choice);
}

std::unique_ptr<NetworkInfoSource> PositionedPlatform::createNetworkInfoSource()
{
    return device->createNetworkInfoSource();
}

std::unique_ptr<DeviceInfoSource> PositionedPlatform::createDeviceInfoSource()
{
    return device->createDeviceInfoSource();
}

std::unique_ptr<NetworkSession> PositionedPlatform::createNetworkSession()
{
    return device->createNetworkSession();
}

PlatformFacts PositionedPlatform::facts() const
{
    return device->facts();
}

bool PositionedPlatform::isComplete() const
{
    return device->isComplete();
}

} // namespace velometer
