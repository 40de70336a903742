#pragma once

#include "limits/streamkey.h"
#include "limits/subscriber.h"

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

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

    /// About as long as a test holds its place, and the longest that anybody is told to wait.
    static constexpr std::chrono::seconds testTime{20};
    static constexpr std::chrono::seconds longestWait{120};

    /// Keeps one place for the streams of @p test, which run one after the other, until its upload
    /// has ended or nothing came for so long; reserving again is waiting anew. Nothing when it was
    /// kept, else after how long to come back: whoever does so by then is served before all that
    /// came after him.
    std::optional<std::chrono::seconds> reserve(const boost::asio::ip::address &address,
                                                const StreamKey &test,
                                                Clock::time_point now = Clock::now());

    /// Whether a place is kept for @p test.
    bool isReserved(const StreamKey &test, Clock::time_point now = Clock::now());

    /// Tests that were told to come back, and may still do so.
    std::size_t waiting(Clock::time_point now = Clock::now());

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
    struct Waiting
    {
        StreamKey test;
        Subscriber subscriber;
        Clock::time_point until;
    };
    bool isFull(const Subscriber &subscriber) const;
    bool hasAll(const Subscriber &subscriber) const;
    std::chrono::seconds queue(const Subscriber &subscriber, const StreamKey &test,
                               std::size_t ahead, Clock::time_point now);
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
    std::vector<Waiting> queued; ///< in the order of their coming
};

} // namespace velometer
