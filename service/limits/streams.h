#pragma once

#include "limits/streamkey.h"
#include "limits/subscriber.h"

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

namespace velometer {

/// The places for measurement streams, counted in all and per subscriber. A test reserves its place
/// before it begins, so that it runs whole or not at all. Safe from every thread.
class Streams
{
public:
    using Clock = std::chrono::steady_clock;

    /// How long a reservation waits for its test's next stream: a download that cannot connect
    /// costs its client seven seconds, an upload as many more.
    static constexpr std::chrono::seconds patience{20};

    Streams(int most, int mostPerAddress);

    /// Keeps one place for the streams of @p test, which run one after the other, until its upload
    /// has ended or nothing came for so long. False when there is no room. Reserving again is
    /// waiting anew.
    bool reserve(const boost::asio::ip::address &address, const StreamKey &test,
                 Clock::time_point now = Clock::now());

    /// Whether one more stream to @p address would find room.
    bool hasRoom(const boost::asio::ip::address &address, Clock::time_point now = Clock::now());

    /// Gives its place back when it is destroyed; the streams outlive it.
    using Place = std::shared_ptr<void>;

    /// Nothing when there is no room for one more stream to @p address. A stream of a test with a
    /// reservation takes the place kept for it, from whatever address it comes.
    Place take(const boost::asio::ip::address &address, Direction direction,
               const std::optional<StreamKey> &test, Clock::time_point now = Clock::now());

private:
    struct Reservation
    {
        Subscriber subscriber;
        Clock::time_point until; ///< when no stream runs
        std::map<Direction, bool> running;
        bool over = false; ///< its upload has ended
    };
    bool isFull(const Subscriber &subscriber) const;
    void enter(const Subscriber &subscriber);
    void leave(const Subscriber &subscriber);
    void leaveReserved(const StreamKey &test, Direction direction);
    void forget(Clock::time_point now);

    const int most;
    const int mostPerAddress;
    std::mutex mutex;
    int taken = 0;                    ///< by streams and reservations
    std::map<Subscriber, int> counts; ///< of taken places, without zeros
    std::map<StreamKey, Reservation> reservations;
};

} // namespace velometer
