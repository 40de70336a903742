#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace velometer {

/// What a subscriber, or a user, may have only so much of in a time.
enum class Spent { Ids, Reports, Streams, Pages, Exports, Bytes };

/// Token buckets: whoever has used up what he may have gets it back bit by bit. A bucket's level is
/// what was spent less what has come back since, from 0 to the limit. Services that share a data
/// base, and one that starts again, add up what they have spent. Safe from every thread.
class Allowances
{
public:
    /// System time: it goes on while no service runs.
    using Clock = std::chrono::system_clock;

    struct Limit
    {
        std::int64_t most = 0;                                   ///< 0: as much as one likes
        std::chrono::milliseconds period{std::chrono::hours(1)}; ///< in which all of it comes back

        double perMs() const
        {
            return static_cast<double>(most) / static_cast<double>(period.count());
        }
    };
    static constexpr std::size_t kinds = 6;
    using Limits = std::array<Limit, kinds>;

    /// An hour's ids, reports, streams, pages and exports, and a day's bytes.
    static Limits usual();

    explicit Allowances(const Limits &most)
        : limits(most)
    {}

    const Limits &all() const { return limits; }

    /// Takes one of @p kind for @p payer; nothing when there was one, else how long to wait for it.
    /// @p share times the limit hold, for an address with so many users behind it.
    std::optional<std::chrono::seconds> spend(Spent kind, const std::string &payer,
                                              Clock::time_point now, int share = 1);
    /// Whether there is anything left, without taking; and taking what is only known afterwards.
    std::optional<std::chrono::seconds> look(Spent kind, const std::string &payer,
                                             Clock::time_point now);
    void charge(Spent kind, const std::string &payer, std::int64_t amount, Clock::time_point now);

    struct Level
    {
        std::string payer;
        Spent kind = Spent::Ids;
        double level = 0;
        std::int64_t at = 0; ///< ms since 1970
    };
    /// What was spent here since the last time, as levels.
    std::vector<Level> takeNews();
    /// What all have spent together.
    void learn(const std::vector<Level> &levels);

    // Users that have proven that they measure: what they do is counted for them, whatever address
    // they share with others.

    bool isProven(std::int64_t user) const;
    void prove(std::int64_t user);
    /// How many of them were seen behind @p address, @p user among them from now on; at least 1.
    int seen(const std::string &address, std::int64_t user);

private:
    struct Bucket
    {
        double level = 0;
        double fresh = 0; ///< of it, not told the others yet
        std::int64_t at = 0;
    };
    Bucket &bucket(Spent kind, const std::string &payer, std::int64_t now);
    std::optional<std::chrono::seconds> wait(Spent kind, const Bucket &bucket, double amount,
                                             int share) const;
    void tidy(std::int64_t now);

    const Limits limits;
    mutable std::mutex mutex;
    std::array<std::unordered_map<std::string, Bucket>, kinds> buckets;
    std::unordered_set<std::int64_t> proven;
    std::unordered_map<std::string, std::unordered_set<std::int64_t>> behind;
};

/// "ids", "reports", ...: for figures and the log.
std::string_view wordOf(Spent kind);

} // namespace velometer
