#include "utils/intervalrates.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace velometer::IntervalRates {

namespace {

/// Half a second: one full interval may be a burst, one empty one a gap.
constexpr std::size_t proof = 5;

/// Four fifths to five fourths: a link's own ups and downs are neither ramp-up nor burst.
bool reaches(qint64 rate, qint64 level)
{
    return rate * 5 >= level * 4;
}

bool isAt(qint64 rate, qint64 level)
{
    return reaches(rate, level) && rate * 4 <= level * 5;
}

std::vector<qint64> withoutPauses(std::span<const qint64> intervals)
{
    std::vector<qint64> data;
    for (std::size_t i = 0; i < intervals.size();) {
        const auto *const begin = intervals.data() + i;
        const auto *const end = intervals.data() + intervals.size();
        const auto *const next = std::find_if(begin, end, [](qint64 each) { return each > 0; });
        const auto empty = static_cast<std::size_t>(next - begin);
        data.insert(data.end(), empty < proof ? empty : 0, 0);
        if (next != end) {
            data.push_back(*next);
        }
        i += empty + 1;
    }
    return data;
}

/// Of data that lasts a second.
qint64 levelOf(std::span<const qint64> data)
{
    std::vector<qint64> means;
    for (std::size_t i = 0; i + window <= data.size(); ++i) {
        means.push_back(mean(data.subspan(i, window)));
    }
    const auto middle = means.begin() + static_cast<std::ptrdiff_t>(means.size() / 2);
    std::nth_element(means.begin(), middle, means.end());
    return *middle;
}

bool isAtRest(std::span<const qint64> data)
{
    const std::size_t third = data.size() / 3;
    for (std::size_t i = 0; i < 3; ++i) {
        if (!isAt(mean(data.subspan(i * third, third)), mean(data))) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<qint64> average(std::span<const qint64> intervals)
{
    return intervals.size() > rampUp ? std::optional(mean(intervals.subspan(rampUp)))
                                     : std::nullopt;
}

std::optional<Extremes> extremes(std::span<const qint64> intervals)
{
    std::optional<Extremes> found;
    for (auto start = rampUp; start + window <= intervals.size(); ++start) {
        const qint64 rate = mean(intervals.subspan(start, window));
        found = found
                    ? Extremes{.min = std::min(found->min, rate), .max = std::max(found->max, rate)}
                    : Extremes{.min = rate, .max = rate};
    }
    return found;
}

std::optional<std::size_t> steadyFrom(std::span<const qint64> intervals)
{
    const std::vector<qint64> all = withoutPauses(intervals);
    const qint64 level = all.size() < window ? 0 : levelOf(all);
    for (std::size_t i = 0; level > 0 && i <= intervals.size() / 2; ++i) {
        const auto rest = intervals.subspan(i);
        if (rest.size() >= window && reaches(rest[0], level) &&
            isAt(mean(rest.first(proof)), level)) {
            const std::vector<qint64> data = withoutPauses(rest);
            return data.size() >= window && isAtRest(data) ? std::optional(i) : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<qint64> steady(std::span<const qint64> intervals)
{
    const auto begin = steadyFrom(intervals);
    return begin ? std::optional(mean(intervals.subspan(*begin))) : std::nullopt;
}

qint64 mean(std::span<const qint64> intervals)
{
    return std::reduce(intervals.begin(), intervals.end(), qint64{0}) /
           static_cast<qint64>(intervals.size());
}

} // namespace velometer::IntervalRates
