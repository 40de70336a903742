#pragma once

#include "limits/subscriber.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_set>

namespace velometer {

class Connection;

/// All open connections, counted per address. Safe from every thread.
class Connections
{
public:
    /// @p perAddress connections of one subscriber are served.
    explicit Connections(int perAddress);

    enum class Entry {
        Served,
        Refused, ///< over the limit, to be told so
        Dropped, ///< far over the limit: not even worth an answer, and not entered
    };

    Entry enter(const std::shared_ptr<Connection> &connection);
    void leave(const std::shared_ptr<Connection> &connection);

    void abortIdle();
    void abortAll();

    /// False when there were still connections after @p time.
    bool waitUntilEmpty(std::chrono::milliseconds time);

private:
    const int perAddress;
    std::mutex mutex;
    std::condition_variable empty;
    std::unordered_set<std::shared_ptr<Connection>> connections;
    std::map<Subscriber, int> counts;
};

} // namespace velometer
