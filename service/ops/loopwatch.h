#pragma once

#include "ops/metrics.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/io_context.hpp>

#include <atomic>
#include <chrono>

namespace velometer {

/// Looks all the time whether the event loop comes to its work in time: a stream that ran while it
/// did not has measured this machine, not the link. Safe from every thread.
class LoopWatch
{
public:
    using Clock = std::chrono::steady_clock;

    /// A stream's intervals are as long; what is late by less moves nothing that shows.
    static constexpr std::chrono::milliseconds tolerance{100};

    /// Counts into @p counter, which outlives it.
    /// @p ms adds up by how much.
    LoopWatch(Metrics::Counter &counter, Metrics::Counter &ms)
        : late(counter)
        , lateMs(ms)
    {}

    /// Watches until @p io ends. Once.
    void start(boost::asio::io_context &io);

    /// How often the loop was late so far, now included.
    std::int64_t lateTimes() const;

    /// False when the loop has not come to its work for so long that it will not any more.
    bool isAlive() const { return Clock::now() < due.load() + deadAfter; }

private:
    boost::asio::awaitable<void> watch();

    static constexpr std::chrono::seconds deadAfter{10};

    Metrics::Counter &late;
    Metrics::Counter &lateMs;
    std::atomic<Clock::time_point> due{Clock::time_point::max()}; ///< the next look
};

} // namespace velometer
