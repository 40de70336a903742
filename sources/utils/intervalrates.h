#pragma once

#include <QtGlobal>

#include <optional>
#include <span>

/// The rule by which intervals of 100 ms become a stream's rates, the same for the client and the
/// service. In the unit of the intervals' rates, rounded down.
namespace velometer::IntervalRates {

/// The first intervals tell of buffers and of slow start, not of the link.
inline constexpr std::size_t rampUp = 2;
/// One second.
inline constexpr std::size_t window = 10;

/// The mean of the intervals after the ramp-up; nothing where there are none.
std::optional<qint64> average(std::span<const qint64> intervals);

struct Extremes
{
    qint64 min = 0;
    qint64 max = 0;
};

/// Of the means of every window after the ramp-up; nothing where there is none.
std::optional<Extremes> extremes(std::span<const qint64> intervals);

/// Where the steady part begins, as the number of its first interval: the first that reaches four
/// fifths of the level, and begins a half second whose mean lies between four fifths and five
/// fourths of it. The level is the median of the means of all seconds; pauses of half a second
/// and more count neither for it nor for what follows. Nothing where that is not in the first half,
/// leaves less than a second of data, or where the mean of one third of the rest is not between
/// four fifths and five fourths of that of all: such a line has not come to rest.
std::optional<std::size_t> steadyFrom(std::span<const qint64> intervals);
/// The mean from there on, pauses included: what a longer measurement would come to. Without the
/// ramp-up, and without the burst that a policer lets through.
std::optional<qint64> steady(std::span<const qint64> intervals);

/// The mean of @p intervals, of which there is one at least.
qint64 mean(std::span<const qint64> intervals);

} // namespace velometer::IntervalRates
