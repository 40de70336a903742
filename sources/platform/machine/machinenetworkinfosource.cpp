#include "platform/machine/machinenetworkinfosource.h"

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace velometer {

namespace {

// Soon enough for a test of ten seconds to notice that the network changed under it.
constexpr auto linkPollInterval = 2s;

} // namespace

MachineNetworkInfoSource::MachineNetworkInfoSource(MachineNetworkLookUp lookUpNow, QObject *parent)
    : NetworkInfoSource(parent)
    , lookUp(std::move(lookUpNow))
{
    refresh();
    connect(&timer, &ClockTimer::timeout, this, &MachineNetworkInfoSource::refresh);
}

void MachineNetworkInfoSource::refresh()
{
    timer.start(linkPollInterval);
    NetworkState now;
    if (const std::optional<MachineInterface> carrier = lookUp().carrier()) {
        now.mode = carrier->mode;
        now.links[now.mode].status = NetworkStatus::Connected;
    }
    setState(now);
}

} // namespace velometer
