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

/// The end of the ramp-up, as the number of the first interval after it: the first that reaches
/// four fifths of the median of all intervals with data, alone and as the mean of the half second
/// that it begins. Nothing where that is not in the first half, or leaves less than a second.
std::optional<std::size_t> rampUpEnd(std::span<const qint64> intervals);
/// The mean from the end of the ramp-up on, pauses included: what a longer measurement would come
/// to.
std::optional<qint64> steady(std::span<const qint64> intervals);

/// The mean of @p intervals, of which there is one at least.
qint64 mean(std::span<const qint64> intervals);

} // namespace velometer::IntervalRates
