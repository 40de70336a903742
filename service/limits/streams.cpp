#include "limits/streams.h"

#include <algorithm>

namespace velometer {

Streams::Streams(int total, int perAddress)
    : most(total)
    , mostPerAddress(perAddress)
{}

std::optional<std::chrono::seconds> Streams::reserve(const boost::asio::ip::address &address,
                                                     const StreamKey &test, Clock::time_point now)
{
    const auto subscriber = Subscriber::of(address);
    const std::lock_guard lock(mutex);
    forget(now);
    const auto found = reservations.find(test);
    if (found != reservations.end()) {
        found->second.until = now + patience;
        found->second.over = false;
        return std::nullopt;
    }
    if (hasAll(subscriber)) {
        // He waits for himself, not for others.
        return testTime;
    }
    const auto place = std::ranges::find(queued, test, &Waiting::test);
    const auto ahead = static_cast<std::size_t>(place - queued.begin());
    if (static_cast<std::size_t>(std::max(most - taken, 0)) <= ahead) {
        return queue(subscriber, test, ahead, now);
    }
    if (place != queued.end()) {
        queued.erase(place);
    }
    enter(subscriber);
    reservations.emplace(
        test, Reservation{.subscriber = subscriber, .until = now + patience, .running = {}});
    return std::nullopt;
}

std::chrono::seconds Streams::queue(const Subscriber &subscriber, const StreamKey &test,
                                    std::size_t ahead, Clock::time_point now)
{
    // As many tests end in a test's time as there are places.
    const auto rounds = static_cast<std::int64_t>(ahead) / std::max(most, 1) + 1;
    const auto wait = std::min(testTime * rounds, longestWait);
    const auto own = std::ranges::count(queued, subscriber, &Waiting::subscriber);
    if (ahead < queued.size()) {
        queued[ahead].until = now + wait + patience;
    } else if (own < mostPerAddress &&
               queued.size() < static_cast<std::size_t>(most) *
                                   static_cast<std::size_t>(longestWait / testTime)) {
        queued.push_back({.test = test, .subscriber = subscriber, .until = now + wait + patience});
    }
    return wait;
}

bool Streams::isReserved(const StreamKey &test, Clock::time_point now)
{
    const std::lock_guard lock(mutex);
    forget(now);
    return reservations.contains(test);
}

std::size_t Streams::waiting(Clock::time_point now)
{
    const std::lock_guard lock(mutex);
    forget(now);
    return queued.size();
}

bool Streams::hasRoom(const boost::asio::ip::address &address, Clock::time_point now)
{
    const std::lock_guard lock(mutex);
    forget(now);
    return !isFull(Subscriber::of(address));
}

Streams::Place Streams::take(const boost::asio::ip::address &address, Direction direction,
                             const std::optional<StreamKey> &test, Clock::time_point now)
{
    const auto subscriber = Subscriber::of(address);
    const std::lock_guard lock(mutex);
    forget(now);
    const StreamKey key = test.value_or(StreamKey{});
    if (const auto found = test ? reservations.find(key) : reservations.end();
        found != reservations.end()) {
        // An upload may arrive before the end of its download has been seen; a second stream of
        // the same direction is another test's.
        if (bool &running = found->second.running[direction]; !running) {
            running = true;
            return {this,
                    [key, direction](Streams *streams) { streams->leaveReserved(key, direction); }};
        }
    }
    if (isFull(subscriber)) {
        return nullptr;
    }
    enter(subscriber);
    return {this, [subscriber](Streams *streams) {
                const std::lock_guard leaving(streams->mutex);
                streams->leave(subscriber);
            }};
}

bool Streams::isFull(const Subscriber &subscriber) const
{
    // What is free belongs to those who wait.
    return taken + static_cast<int>(queued.size()) >= most || hasAll(subscriber);
}

bool Streams::hasAll(const Subscriber &subscriber) const
{
    const auto own = counts.find(subscriber);
    return own != counts.end() && own->second >= mostPerAddress;
}

void Streams::enter(const Subscriber &subscriber)
{
    ++taken;
    ++counts[subscriber];
}

void Streams::leave(const Subscriber &subscriber)
{
    --taken;
    const auto own = counts.find(subscriber);
    if (--own->second == 0) {
        counts.erase(own);
    }
}

void Streams::leaveReserved(const StreamKey &test, Direction direction)
{
    const std::lock_guard lock(mutex);
    auto &reservation = reservations.at(test);
    reservation.running.erase(direction);
    reservation.until = Clock::now() + patience;
    reservation.over = reservation.over || direction == Direction::Upload;
    forget(Clock::time_point::min());
}

/// Ends the reservations whose streams have run, and those that nobody has used until @p now.
void Streams::forget(Clock::time_point now)
{
    std::erase_if(queued, [&](const Waiting &each) { return each.until <= now; });
    std::erase_if(reservations, [&](const auto &entry) {
        const auto &[test, reservation] = entry;
        const bool ended =
            reservation.running.empty() && (reservation.over || reservation.until <= now);
        if (ended) {
            leave(reservation.subscriber);
        }
        return ended;
    });
}

} // namespace velometer
