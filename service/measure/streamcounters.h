#pragma once

#include "limits/uplink.h"
#include "ops/metrics.h"

#include <cstdint>

namespace velometer {

/// Where a stream counts its bytes as it goes.
struct StreamCounters
{
    Metrics::Counter &total;
    Uplink::Stream &use;

    void add(std::int64_t bytes)
    {
        total += bytes;
        use.add(bytes);
    }

    /// Makes the kernel send from @p socket no faster than the stream's share, when that is another
    /// than @p before, the one of the last call; 0 for none.
    std::int64_t pace(int socket, std::int64_t before) const;
};

} // namespace velometer
