#pragma once

#include "measure/randomblock.h"
#include "measure/streamcounters.h"
#include "net/connection.h"

#include <boost/asio/awaitable.hpp>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace velometer {

/// What one download stream sent, to the client's kernel at least.
struct DownloadTotals
{
    std::int64_t bytes = 0;
    std::chrono::milliseconds lasted{0};
    std::string kernel; ///< KernelFacts, as text

    /// bit/s; what lasted no millisecond counts as one.
    std::int64_t rate() const { return bytes * 8000 / std::max<std::int64_t>(lasted.count(), 1); }
};

/// Sends @p block over and over with the congestion control @p control, where the kernel has it, as
/// fast as @p connection takes it, until the peer closes or
/// @p duration has passed. Empty chooses BBR. The head names the one that runs. Counts into @p
/// bytes as it goes. The connection is not closed.
boost::asio::awaitable<DownloadTotals> sendStream(Connection &connection, const RandomBlock &block,
                                                  std::chrono::milliseconds duration,
                                                  std::string_view control, StreamCounters bytes);

} // namespace velometer
