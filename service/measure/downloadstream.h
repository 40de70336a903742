#pragma once

#include "measure/randomblock.h"
#include "net/connection.h"
#include "ops/metrics.h"

#include <boost/asio/awaitable.hpp>

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace velometer {

/// What one download stream sent, to the client's kernel at least.
struct DownloadTotals
{
    std::int64_t bytes = 0;
    std::chrono::milliseconds lasted{0};

    /// bit/s; what lasted no millisecond counts as one.
    std::int64_t rate() const { return bytes * 8000 / std::max<std::int64_t>(lasted.count(), 1); }
};

/// Sends @p block over and over, as fast as @p connection takes it, until the peer closes or
/// @p duration has passed. Counts into @p bytes as it goes. The connection is not closed.
boost::asio::awaitable<DownloadTotals> sendStream(Connection &connection, const RandomBlock &block,
                                                  std::chrono::milliseconds duration,
                                                  Metrics::Counter &bytes);

} // namespace velometer
