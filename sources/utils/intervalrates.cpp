#include "utils/intervalrates.h"

#include <algorithm>
#include <numeric>

namespace velometer::IntervalRates {

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

qint64 mean(std::span<const qint64> intervals)
{
    return std::reduce(intervals.begin(), intervals.end(), qint64{0}) /
           static_cast<qint64>(intervals.size());
}

} // namespace velometer::IntervalRates
