#pragma once

#include "figures/finishedtest.h"

namespace velometer {

class DeviceInfoHelper;
class LocationHelper;
class NetworkInfoHelper;
class TestContext;

/// What a test runs in, read from the helpers at one moment and plain values from then on.
namespace Surroundings {

/// Server, ids, schedule, location, network, position, device and this moment; no figure.
FinishedTest of(const TestContext &context);

FinishedTest::Network network(const NetworkInfoHelper &helper);
FinishedTest::Position position(const LocationHelper &helper);
FinishedTest::Device device(const DeviceInfoHelper &helper);

} // namespace Surroundings

} // namespace velometer
