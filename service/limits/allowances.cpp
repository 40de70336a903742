#include "limits/allowances.h"

#include <algorithm>
#include <cmath>

namespace velometer {

namespace {

/// More buckets, proven users, or addresses than these are not kept: the emptiest go.
constexpr std::size_t mostBuckets = 1'000'000;
constexpr std::size_t mostProven = 1'000'000;
constexpr std::size_t mostAddresses = 100'000;
/// A carrier's address stands for so many at most.
constexpr std::size_t mostBehind = 10'000;

std::int64_t toMs(Allowances::Clock::time_point moment)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(moment.time_since_epoch()).count();
}

} // namespace

std::string_view wordOf(Spent kind)
{
    static constexpr std::array<std::string_view, Allowances::kinds> words{
        "ids", "reports", "streams", "pages", "exports", "bytes"};
    return words.at(static_cast<std::size_t>(kind));
}

Allowances::Limits Allowances::usual()
{
    using namespace std::chrono_literals;
    // A household's devices; a test a second, or five users that test twice a minute; a page with
    // all it loads five times a minute; a day of tests each five minutes over a gigabit.
    return {Limit{300, 1h},  Limit{3600, 1h}, Limit{3600, 1h},
            Limit{6000, 1h}, Limit{120, 1h},  Limit{2'000'000'000'000, 24h}};
}

Allowances::Bucket &Allowances::bucket(Spent kind, const std::string &payer, std::int64_t now)
{
    auto &all = buckets.at(static_cast<std::size_t>(kind));
    if (all.size() >= mostBuckets && !all.contains(payer)) {
        tidy(now);
    }
    Bucket &found = all[payer];
    // A clock that was set back gives nothing, and takes nothing.
    if (now > found.at) {
        const double back =
            limits.at(static_cast<std::size_t>(kind)).perMs() * static_cast<double>(now - found.at);
        found.level = std::max(found.level - back, 0.0);
        found.fresh = std::min(found.fresh, found.level);
    }
    found.at = now;
    return found;
}

std::optional<std::chrono::seconds> Allowances::wait(Spent kind, const Bucket &found, double amount,
                                                     int share) const
{
    const Limit &limit = limits.at(static_cast<std::size_t>(kind));
    const double over =
        found.level + amount - static_cast<double>(limit.most) * static_cast<double>(share);
    if (limit.most == 0 || over <= 0) {
        return std::nullopt;
    }
    const double ms = over / limit.perMs();
    // Not a second more for the last bit of a sum.
    return std::chrono::seconds(std::max(std::llround(std::ceil(ms / 1000 - 0.001)), 1LL));
}

std::optional<std::chrono::seconds> Allowances::spend(Spent kind, const std::string &payer,
                                                      Clock::time_point now, int share)
{
    const std::lock_guard lock(mutex);
    Bucket &found = bucket(kind, payer, toMs(now));
    const auto later = wait(kind, found, 1, share);
    if (!later) {
        found.level += 1;
        found.fresh += 1;
    }
    return later;
}

std::optional<std::chrono::seconds> Allowances::look(Spent kind, const std::string &payer,
                                                     Clock::time_point now)
{
    const std::lock_guard lock(mutex);
    return wait(kind, bucket(kind, payer, toMs(now)), 0, 1);
}

void Allowances::charge(Spent kind, const std::string &payer, std::int64_t amount,
                        Clock::time_point now)
{
    const std::lock_guard lock(mutex);
    Bucket &found = bucket(kind, payer, toMs(now));
    found.level += static_cast<double>(amount);
    found.fresh += static_cast<double>(amount);
}

std::vector<Allowances::Level> Allowances::takeNews()
{
    const std::lock_guard lock(mutex);
    std::vector<Level> news;
    for (std::size_t kind = 0; kind < kinds; ++kind) {
        for (auto &[payer, each] : buckets.at(kind)) {
            if (each.fresh > 0) {
                news.push_back({payer, static_cast<Spent>(kind), each.fresh, each.at});
                each.fresh = 0;
            }
        }
    }
    return news;
}

void Allowances::learn(const std::vector<Level> &levels)
{
    const std::lock_guard lock(mutex);
    for (const Level &told : levels) {
        Bucket &known = buckets.at(static_cast<std::size_t>(told.kind))[told.payer];
        const std::int64_t at = std::max(known.at, told.at);
        known.level = told.level + known.fresh;
        known.at = at;
    }
}

/// What is empty again is as good as not there.
void Allowances::tidy(std::int64_t now)
{
    for (std::size_t kind = 0; kind < kinds; ++kind) {
        std::erase_if(buckets.at(kind), [&](const auto &entry) {
            const auto &each = entry.second;
            return each.level <=
                   limits.at(kind).perMs() * static_cast<double>(std::max(now - each.at, 0L));
        });
        if (buckets.at(kind).size() >= mostBuckets) {
            buckets.at(kind).clear();
        }
    }
}

bool Allowances::isProven(std::int64_t user) const
{
    const std::lock_guard lock(mutex);
    return proven.contains(user);
}

void Allowances::prove(std::int64_t user)
{
    const std::lock_guard lock(mutex);
    if (proven.size() >= mostProven) {
        proven.clear();
    }
    proven.insert(user);
}

int Allowances::seen(const std::string &address, std::int64_t user)
{
    const std::lock_guard lock(mutex);
    if (user != 0 && proven.contains(user)) {
        if (behind.size() >= mostAddresses && !behind.contains(address)) {
            behind.clear();
        }
        auto &users = behind[address];
        if (users.size() < mostBehind) {
            users.insert(user);
        }
    }
    const auto found = behind.find(address);
    return found == behind.end() ? 1 : static_cast<int>(found->second.size()) + 1;
}

} // namespace velometer
