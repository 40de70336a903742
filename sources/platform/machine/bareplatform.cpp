#include "platform/machine/bareplatform.h"

#include "platform/machine/machinedeviceinfosource.h"
#include "platform/machine/machinenetworkinfosource.h"
#include "platform/machine/machinenetworksession.h"
#include "platform/position/nopositionsource.h"

namespace velometer {

std::unique_ptr<PositionSource> BarePlatform::createPositionSource()
{
    return std::make_unique<NoPositionSource>();
}

std::unique_ptr<NetworkInfoSource> BarePlatform::createNetworkInfoSource()
{
    return std::make_unique<MachineNetworkInfoSource>();
}

std::unique_ptr<DeviceInfoSource> BarePlatform::createDeviceInfoSource()
{
    return std::make_unique<MachineDeviceInfoSource>();
}

std::unique_ptr<NetworkSession> BarePlatform::createNetworkSession()
{
    return std::make_unique<MachineNetworkSession>();
}

} // namespace velometer
