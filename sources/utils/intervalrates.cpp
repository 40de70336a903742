#include "utils/intervalrates.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace velometer::IntervalRates {

namespace {

/// Half a second: one full interval may be a burst.
constexpr std::size_t proof = 5;
/// Four fifths: a link's own ups and downs are not its ramp-up.
constexpr qint64 reachedTenths = 8;

/// 0 without data.
qint64 medianOfData(std::span<const qint64> intervals)
{
    std::vector<qint64> data;
    std::copy_if(intervals.begin(), intervals.end(), std::back_inserter(data),
                 [](qint64 each) { return each > 0; });
    if (data.empty()) {
        return 0;
    }
    const auto middle = data.begin() + static_cast<std::ptrdiff_t>(data.size() / 2);
    std::nth_element(data.begin(), middle, data.end());
    return *middle;
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

std::optional<std::size_t> rampUpEnd(std::span<const qint64> intervals)
{
    const qint64 level = medianOfData(intervals) / 10 * reachedTenths;
    for (std::size_t i = 0; level > 0 && i <= intervals.size() / 2; ++i) {
        if (i + window <= intervals.size() && intervals[i] >= level &&
            mean(intervals.subspan(i, proof)) >= level) {
            return i;
        }
    }
    return std::nullopt;
}

std::optional<qint64> steady(std::span<const qint64> intervals)
{
    const auto end = rampUpEnd(intervals);
    return end ? std::optional(mean(intervals.subspan(*end))) : std::nullopt;
}

qint64 mean(std::span<const qint64> intervals)
{
    return std::reduce(intervals.begin(), intervals.end(), qint64{0}) /
           static_cast<qint64>(intervals.size());
}

} // namespace velometer::IntervalRates
