#pragma once

#include "limits/subscriber.h"

#include <map>
#include <memory>
#include <mutex>

namespace velometer {

/// The places for measurement streams, counted in all and per subscriber. Safe from every thread.
class Streams
{
public:
    Streams(int most, int mostPerAddress);

    /// Gives its place back when it is destroyed; the streams outlive it.
    using Place = std::shared_ptr<void>;

    /// Nothing when there is no room for one more stream to @p address.
    Place take(const boost::asio::ip::address &address);

private:
    void leave(const Subscriber &subscriber);

    const int most;
    const int mostPerAddress;
    std::mutex mutex;
    int running = 0;
    std::map<Subscriber, int> counts; ///< without zeros
};

} // namespace velometer
