#pragma once

#include "limits/streamkey.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>

namespace velometer {

/// Results of the latest streams, kept in memory for who asks for them afterwards: so many, so
/// long. Safe from every thread.
template <typename Result>
class RecentResults
{
public:
    using Clock = std::chrono::steady_clock;

    RecentResults(std::size_t mostEntries, std::chrono::minutes longest)
        : count(mostEntries)
        , age(longest)
    {}

    /// A stream with @p key has begun. Returns its ticket for end(). A later stream of the same key
    /// takes the place of an earlier one.
    std::uint64_t begin(const StreamKey &key)
    {
        const std::lock_guard lock(mutex);
        makeRoom(1);
        const auto ticket = ++lastTicket;
        entries[key] = Entry{ticket, true, std::nullopt};
        order.push_back({key, ticket, Clock::now()});
        return ticket;
    }

    /// The stream has ended, with nothing to keep when @p result is empty.
    void end(const StreamKey &key, std::uint64_t ticket, std::optional<Result> result)
    {
        const std::lock_guard lock(mutex);
        const auto entry = entries.find(key);
        if (entry != entries.end() && entry->second.ticket == ticket) {
            entry->second.running = false;
            entry->second.result = std::move(result);
        }
    }

    struct Answer
    {
        bool running = false;
        std::optional<Result> result;
    };

    Answer find(const StreamKey &key)
    {
        const std::lock_guard lock(mutex);
        makeRoom(0);
        const auto entry = entries.find(key);
        return entry == entries.end() ? Answer{}
                                      : Answer{entry->second.running, entry->second.result};
    }

private:
    struct Entry
    {
        std::uint64_t ticket = 0;
        bool running = false;
        std::optional<Result> result;
    };
    struct Age
    {
        StreamKey key;
        std::uint64_t ticket;
        Clock::time_point begun;
    };

    /// Forgets what is too old, and the oldest beyond the number kept when @p added come.
    void makeRoom(std::size_t added)
    {
        const auto oldest = Clock::now() - age;
        while (!order.empty() && (order.size() + added > count || order.front().begun < oldest)) {
            const auto entry = entries.find(order.front().key);
            if (entry != entries.end() && entry->second.ticket == order.front().ticket) {
                entries.erase(entry);
            }
            order.pop_front();
        }
    }

    const std::size_t count;
    const std::chrono::minutes age;
    std::mutex mutex;
    std::map<StreamKey, Entry> entries;
    std::deque<Age> order; ///< oldest first
    std::uint64_t lastTicket = 0;
};

} // namespace velometer
