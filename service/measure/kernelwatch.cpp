#include "measure/kernelwatch.h"

#include "measure/tcpfacts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace velometer {

namespace {

/// The kernel's word for a least time that it does not know yet.
constexpr std::uint32_t noTime = UINT32_MAX;

KernelSample::Number known(std::uint64_t value)
{
    return value > 0 && value < noTime ? KernelSample::Number(static_cast<std::int64_t>(value))
                                       : std::nullopt;
}

std::uint64_t moveTo(std::uint64_t &before, std::uint64_t now)
{
    const std::uint64_t step = now > before ? now - before : 0;
    before = now;
    return step;
}

} // namespace

KernelWatch::KernelWatch(int watched, Direction ofClient, TimePoint since)
    : socket(watched)
    , direction(ofClient)
    , begun(since)
    , next(since + interval)
    , last(since)
{
    facts.congestion = congestionControl(socket);
}

void KernelWatch::look(TimePoint now)
{
    if (now < next) {
        return;
    }
    next += interval;
    if (next <= now) { // moments slept through are not made up for
        next = now + interval;
    }
    if (facts.samples.size() == KernelFacts::mostSamples) {
        return;
    }
    tcp_info info{};
    socklen_t length = sizeof info;
    // An older kernel fills less of the structure; the rest stays 0, which is unknown.
    if (getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &length) != 0) {
        return;
    }
    using std::chrono::duration_cast;
    KernelSample sample;
    sample.time = duration_cast<std::chrono::milliseconds>(now - begun).count();
    if (direction == Direction::Upload) {
        const auto lasted = duration_cast<std::chrono::microseconds>(now - last).count();
        sample.rtt = known(info.tcpi_rcv_rtt);
        sample.rate = static_cast<std::int64_t>(moveTo(received, info.tcpi_bytes_received)) *
                      8'000'000 / std::max<std::int64_t>(lasted, 1);
    } else {
        sample.rtt = known(info.tcpi_rtt);
        sample.minRtt = known(info.tcpi_min_rtt);
        sample.rate = static_cast<std::int64_t>(
            std::min<std::uint64_t>(info.tcpi_delivery_rate, INT64_MAX / 8) * 8);
        sample.retransmitted = static_cast<std::int64_t>(info.tcpi_bytes_retrans);
        const auto busyFor = moveTo(busy, info.tcpi_busy_time);
        const auto forReceiver = moveTo(byReceiver, info.tcpi_rwnd_limited);
        const auto forBuffer = moveTo(byBuffer, info.tcpi_sndbuf_limited);
        using enum KernelSample::Limit;
        sample.limit = forReceiver * 2 > busyFor             ? Receiver
                       : forBuffer * 2 > busyFor             ? Buffer
                       : info.tcpi_delivery_rate_app_limited ? Application
                                                             : Window;
    }
    last = now;
    facts.samples.push_back(sample);
}

} // namespace velometer
