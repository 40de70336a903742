#pragma once

#include "measure/streamcounters.h"
#include "measure/uploadmeter.h"
#include "net/connection.h"

#include <boost/asio/awaitable.hpp>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velometer {

/// Reads and forgets what @p connection sends, the rest behind its head included, until the peer
/// ends or @p duration has passed. When @p announced bytes have come it writes @p answer at once
/// and goes on: clients on fast links send until their time is up, and a pause is no end. Counts
/// into @p bytes as it goes. The connection is not closed.
/// What is kept of an upload for whoever asks.
struct UploadResult
{
    UploadFigures figures;
    std::string kernel; ///< KernelFacts, as text
};

struct UploadTotals
{
    UploadMeter meter;
    std::string kernel; ///< KernelFacts, as text
};

boost::asio::awaitable<UploadTotals>
receiveStream(Connection &connection, std::optional<std::uint64_t> announced,
              std::string_view answer, std::chrono::milliseconds duration, StreamCounters bytes);

} // namespace velometer
