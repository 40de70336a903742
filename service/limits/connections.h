#pragma once

#include "limits/subscriber.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace velometer {

class Connection;

/// All open connections, counted per address. Safe from every thread.
class Connections
{
public:
    /// @p perAddress connections of one subscriber are served, and @p all of all. Beyond that the
    /// oldest one without a request makes room: it may be waiting for nothing.
    Connections(int perAddress, std::size_t all);

    enum class Entry {
        Served,
        Refused, ///< over the limit, to be told so
        Dropped, ///< far over the limit: not even worth an answer, and not entered
    };

    Entry enter(const std::shared_ptr<Connection> &connection);
    /// Drops the oldest connection without a request; false when all have one.
    bool dropOldestIdle();

    void leave(const std::shared_ptr<Connection> &connection);

    void abortIdle();
    void abortAll();

    /// False when there were still connections after @p time.
    bool waitUntilEmpty(std::chrono::milliseconds time);

private:
    bool dropIdle();

    const int perAddress;
    const std::size_t most;
    std::mutex mutex;
    std::condition_variable empty;
    std::unordered_map<std::shared_ptr<Connection>, std::uint64_t> connections; ///< their numbers
    std::map<std::uint64_t, Connection *>
        idle; ///< without a request when last looked, oldest first
    std::uint64_t lastNumber = 0;
    std::map<Subscriber, int> counts;
};

} // namespace velometer
