#include "reports/reconnecting.h"

#include <algorithm>
#include <thread>

using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto firstPause = 50ms;
constexpr auto longestPause = 5s;
constexpr auto look = 20ms; ///< between two looks at whether the pause is over

} // namespace

SqlConnection *Reconnecting::get()
{
    if (connection && !connection->isLost()) {
        return connection.get();
    }
    if (connection) {
        reason = connection->problem();
        connection.reset();
    }
    if (Clock::now() < next) {
        std::this_thread::sleep_for(look);
        return nullptr;
    }
    connection = database.connect(writes, &reason);
    pause = connection ? 0ms
                       : std::clamp<std::chrono::milliseconds>(pause * 2, firstPause, longestPause);
    next = Clock::now() + pause;
    return connection.get();
}

} // namespace velometer
