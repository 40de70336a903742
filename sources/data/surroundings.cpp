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

namespace {

constexpr int threeDimensional = 2;

} // namespace

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
    const QString status = helper.getNetworkstatus();
    network.mode = text(mode);
    network.type = text(Utils::connectionTypeKey(mode));
    network.name = text(helper.getNetworkname());
    network.mcc = text(helper.getMcc());
    network.mnc = text(helper.getMnc());
    network.homeMcc = text(helper.getHomemcc());
    network.homeMnc = text(helper.getHomemnc());
    network.lac = Known::number(helper.getNetworklac());
    network.cell = Known::number(helper.getNetworkcell());
    network.cellularSignal = helper.getNetworksignal().toLongLong();
    network.signal =
        Known::number(mode == "WlanMode"_L1 ? helper.getWlansignal() : helper.getNetworksignal());
    if (!status.isEmpty() && status != "UndefinedStatus"_L1) {
        network.roaming = status == "Roaming"_L1;
    }
    return network;
}

FinishedTest::Position Surroundings::position(const LocationHelper &helper)
{
    FinishedTest::Position position;
    if (helper.getLocationStatus() == 0) {
        return position;
    }
    position.latitude = helper.getLatitude().toDouble();
    position.longitude = helper.getLongitude().toDouble();
    const double altitude = helper.getAltitude().toDouble();
    if (helper.getLocationStatus() == threeDimensional && altitude != noAltitude) {
        position.altitude = altitude;
    }
    // No receiver is exact: 0 and below say that the accuracy is not known.
    position.horizontalAccuracy = above(0, helper.getAccuracyHor().toDouble());
    position.verticalAccuracy = above(0, helper.getAccuracyVert().toDouble());
    return position;
}

FinishedTest::Device Surroundings::device(const DeviceInfoHelper &helper)
{
    return {text(helper.getManufacturer()), text(helper.getProductName()), text(helper.getModel()),
            text(helper.getPlattform())};
}

} // namespace velometer
