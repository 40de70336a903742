#include "platform/systemplatform.h"

#include "platform/systemdeviceinfosource.h"
#include "platform/systemnetworkinfosource.h"
#include "platform/systemnetworksession.h"
#include "platform/systempositionsource.h"

std::unique_ptr<PositionSource> SystemPlatform::createPositionSource()
{
    return std::make_unique<SystemPositionSource>();
}

std::unique_ptr<NetworkInfoSource> SystemPlatform::createNetworkInfoSource()
{
    return std::make_unique<SystemNetworkInfoSource>();
}

std::unique_ptr<DeviceInfoSource> SystemPlatform::createDeviceInfoSource()
{
    return std::make_unique<SystemDeviceInfoSource>();
}

std::unique_ptr<NetworkSession> SystemPlatform::createNetworkSession()
{
    return std::make_unique<SystemNetworkSession>();
}
