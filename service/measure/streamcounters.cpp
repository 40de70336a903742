#include "measure/streamcounters.h"

#include <limits>

#include <sys/socket.h>

namespace velometer {

std::int64_t StreamCounters::pace(int socket, std::int64_t before) const
{
    const std::int64_t wanted = use.pace();
    if (wanted != before) {
        // In bytes a second; all of them set: as many as it can.
        const std::uint64_t rate = wanted > 0 ? static_cast<std::uint64_t>(wanted) / 8
                                              : std::numeric_limits<std::uint64_t>::max();
        ::setsockopt(socket, SOL_SOCKET, SO_MAX_PACING_RATE, &rate, sizeof rate);
    }
    return wanted;
}

} // namespace velometer
