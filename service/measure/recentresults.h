#pragma once

#include "limits/streamkey.h"
#include "limits/subscriber.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>
#include <map>
#include <mutex>
#include <optional>

namespace velometer {

/// Results of the latest streams, kept in memory for who asks for them afterwards: so many, so
/// long. Nobody can push out another's: a subscriber beyond his quota loses his own oldest, and
/// where there is no room at all, the one who holds most does. Safe from every thread.
template <typename Result>
class RecentResults
{
public:
    using Clock = std::chrono::steady_clock;

    RecentResults(std::size_t mostEntries, std::size_t mostPerSubscriber,
                  std::chrono::minutes longest)
        : most(mostEntries)
        , quota(mostPerSubscriber)
        , age(longest)
    {}

    /// A stream of @p key has begun. Returns its ticket for end().
    std::uint64_t begin(const StreamKey &key)
    {
        const std::lock_guard lock(mutex);
        ++running[key];
        return ++lastTicket;
    }

    /// The stream has ended. Takes the place of an earlier one of its key; with nothing to keep,
    /// that one stays.
    void end(const StreamKey &key, std::uint64_t ticket, const Subscriber &subscriber,
             std::optional<Result> result)
    {
        const std::lock_guard lock(mutex);
        const auto streams = running.find(key);
        if (--streams->second == 0) {
            running.erase(streams);
        }
        const auto now = Clock::now();
        while (!entries.empty() && entries.begin()->second.ended + age < now) {
            forget(entries.begin());
        }
        const auto earlier = tickets.find(key);
        if (!result || (earlier != tickets.end() && earlier->second > ticket)) {
            return;
        }
        if (earlier != tickets.end()) {
            forget(entries.find(earlier->second));
        }
        makeRoom(subscriber);
        entries.emplace(ticket, Entry{key, subscriber, now, *std::move(result)});
        tickets.emplace(key, ticket);
        ++counts[subscriber];
    }

    struct Answer
    {
        bool running = false;
        std::optional<Result> result;
    };

    Answer find(const StreamKey &key)
    {
        const std::lock_guard lock(mutex);
        Answer answer{.running = running.contains(key), .result = std::nullopt};
        const auto ticket = tickets.find(key);
        if (ticket != tickets.end()) {
            const auto &entry = entries.at(ticket->second);
            if (entry.ended + age >= Clock::now()) {
                answer.result = entry.result;
            }
        }
        return answer;
    }

    /// Forgets the result of one test, or of all tests of a user.
    void remove(const StreamKey &key)
    {
        const std::lock_guard lock(mutex);
        if (const auto ticket = tickets.find(key); ticket != tickets.end()) {
            forget(entries.find(ticket->second));
        }
    }
    void removeUser(std::int64_t user)
    {
        const std::lock_guard lock(mutex);
        auto next = tickets.lower_bound({.user = user, .series = lowest, .test = lowest});
        while (next != tickets.end() && next->first.user == user) {
            const auto ticket = (next++)->second;
            forget(entries.find(ticket));
        }
    }

private:
    static constexpr auto lowest = std::numeric_limits<std::int64_t>::min();

    struct Entry
    {
        StreamKey key;
        Subscriber subscriber;
        Clock::time_point ended;
        Result result;
    };
    using Entries = std::map<std::uint64_t, Entry>;

    void makeRoom(const Subscriber &subscriber)
    {
        const auto own = counts.find(subscriber);
        if (own != counts.end() && own->second >= quota) {
            forgetOldest(subscriber);
        } else if (entries.size() >= most) {
            forgetOldest(std::ranges::max_element(counts, {}, [](const auto &count) {
                             return count.second;
                         })->first);
        }
    }

    void forgetOldest(const Subscriber subscriber)
    {
        forget(std::ranges::find(entries, subscriber,
                                 [](const auto &entry) { return entry.second.subscriber; }));
    }

    void forget(typename Entries::iterator entry)
    {
        const auto count = counts.find(entry->second.subscriber);
        if (--count->second == 0) {
            counts.erase(count);
        }
        tickets.erase(entry->second.key);
        entries.erase(entry);
    }

    const std::size_t most;
    const std::size_t quota;
    const std::chrono::minutes age;
    std::mutex mutex;
    std::map<StreamKey, int> running; ///< streams, without zeros
    Entries entries;                  ///< by ticket, which is about by age
    std::map<StreamKey, std::uint64_t> tickets;
    std::map<Subscriber, std::size_t> counts; ///< of entries, without zeros
    std::uint64_t lastTicket = 0;
};

} // namespace velometer
