#pragma once

#include <chrono>
#include <compare>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>

/// Names one stream by the numbers of its request, as they were sent.
struct StreamKey
{
    std::int64_t user = 0;
    std::int64_t series = 0;
    std::int64_t test = 0;
    auto operator<=>(const StreamKey &) const = default;
};

/// Results of the latest streams, kept in memory for who asks for them afterwards: so many, so
/// long. Safe from every thread.
template <typename Result>
class RecentResults
{
public:
    using Clock = std::chrono::steady_clock;

    RecentResults(std::size_t count, std::chrono::minutes age)
        : m_count(count)
        , m_age(age)
    {}

    /// A stream with @p key has begun. Returns its ticket for end(). A later stream of the same key
    /// takes the place of an earlier one.
    std::uint64_t begin(const StreamKey &key)
    {
        const std::lock_guard lock(m_mutex);
        makeRoom(1);
        const auto ticket = ++m_lastTicket;
        m_entries[key] = Entry{ticket, true, std::nullopt};
        m_order.push_back({key, ticket, Clock::now()});
        return ticket;
    }

    /// The stream has ended, with nothing to keep when @p result is empty.
    void end(const StreamKey &key, std::uint64_t ticket, std::optional<Result> result)
    {
        const std::lock_guard lock(m_mutex);
        const auto entry = m_entries.find(key);
        if (entry != m_entries.end() && entry->second.ticket == ticket) {
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
        const std::lock_guard lock(m_mutex);
        makeRoom(0);
        const auto entry = m_entries.find(key);
        return entry == m_entries.end() ? Answer{}
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
        const auto oldest = Clock::now() - m_age;
        while (!m_order.empty() &&
               (m_order.size() + added > m_count || m_order.front().begun < oldest)) {
            const auto entry = m_entries.find(m_order.front().key);
            if (entry != m_entries.end() && entry->second.ticket == m_order.front().ticket) {
                m_entries.erase(entry);
            }
            m_order.pop_front();
        }
    }

    const std::size_t m_count;
    const std::chrono::minutes m_age;
    std::mutex m_mutex;
    std::map<StreamKey, Entry> m_entries;
    std::deque<Age> m_order; ///< oldest first
    std::uint64_t m_lastTicket = 0;
};
