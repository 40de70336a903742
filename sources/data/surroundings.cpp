#include "data/surroundings.h"

#include "context/deviceinfohelper.h"
#include "context/doublelocation.h"
#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/testcontext.h"
#include "data/testserver.h"
#include "utils/utils.h"

using namespace Qt::StringLiterals;

namespace velometer {

using Known::above;
using Known::text;

FinishedTest Surroundings::of(const TestContext &context)
{
    const TestServer &server = *context.getTestServer();
    FinishedTest test;
    test.timestamp = Utils::getTimeInMs();
    test.schedule = text(context.getScheduleInfo());
    test.location = text(context.getUserLocation());
    test.userId = Known::atLeast(1, context.getUserId());
    test.server = {text(server.getName()),  text(server.getHostname()), text(server.getCity()),
                   text(server.getState()), text(server.getCountry()),  {},
                   server.getPort()};
    test.network = network(*context.getNetWorkInfoHelper());
    test.position = position(*context.getLocationHelper());
    test.device = device(*context.getDeviceInfoHelper());
    test.reportOnly.deviceId = context.getDeviceInfoHelper()->getImei();
    return test;
}

FinishedTest::Network Surroundings::network(const NetworkInfoHelper &helper)
{
    FinishedTest::Network network;
    const QString mode = helper.getNetworkmode();
    const NetworkState &state = helper.state();
    const NetworkStatus status = state.current().status;
    network.mode = text(mode);
    network.type = text(Utils::connectionTypeKey(mode));
    network.name = text(state.current().name);
    network.mcc = text(state.mcc);
    network.mnc = text(state.mnc);
    network.homeMcc = text(state.homeMcc);
    network.homeMnc = text(state.homeMnc);
    network.lac = Known::atLeast(0, state.lac);
    network.cell = Known::atLeast(0, state.cell);
    network.cellularSignal = helper.signal().value_or(-1);
    network.signal = Known::atLeast(0, mode == "WlanMode"_L1 ? state.link(NetworkMode::Wlan).signal
                                                             : helper.signal());
    if (status != NetworkStatus::Undefined) {
        network.roaming = status == NetworkStatus::Roaming;
    }
    return network;
}

FinishedTest::Position Surroundings::position(const LocationHelper &helper)
{
    const Position here = helper.rounded();
    if (!here.hasPlace()) {
        return {};
    }
    FinishedTest::Position position{here.latitude, here.longitude, {}, {}, {}};
    if (here.altitude != noAltitude) {
        position.altitude = here.altitude;
    }
    // No receiver is exact: 0 and below say that the accuracy is not known.
    position.horizontalAccuracy = above(0, here.horizontalAccuracy.value_or(0));
    position.verticalAccuracy = above(0, here.verticalAccuracy.value_or(0));
    return position;
}

FinishedTest::Device Surroundings::device(const DeviceInfoHelper &helper)
{
    return {text(helper.getManufacturer()), text(helper.getProductName()), text(helper.getModel()),
            text(helper.getPlattform())};
}

} // namespace velometer
