#include "platform/system/bareplatform.h"

#include "platform/position/nopositionsource.h"
#include "platform/system/systemdeviceinfosource.h"
#include "platform/system/systemnetworkinfosource.h"
#include "platform/system/systemnetworksession.h"

namespace velometer {

std::unique_ptr<PositionSource> BarePlatform::createPositionSource()
{
    return std::make_unique<NoPositionSource>();
}

std::unique_ptr<NetworkInfoSource> BarePlatform::createNetworkInfoSource()
{
    return std::make_unique<SystemNetworkInfoSource>();
}

std::unique_ptr<DeviceInfoSource> BarePlatform::createDeviceInfoSource()
{
    return std::make_unique<SystemDeviceInfoSource>();
}

std::unique_ptr<NetworkSession> BarePlatform::createNetworkSession()
{
    return std::make_unique<SystemNetworkSession>();
}

} // namespace velometer
