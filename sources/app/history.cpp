#include "app/history.h"

#include <algorithm>
#include <cmath>

namespace velometer::History {

namespace {

constexpr qint64 shortestRangeMs = 3'600'000;
constexpr double greatestRate = 1e15; // bit/s
constexpr double greatestRttMs = 1e9;
constexpr double lowShare = 0.1;
constexpr double highShare = 0.9;

/// Those of sorted @p points that are in the range.
std::span<const HistoryPoint> within(std::span<const HistoryPoint> points, Range range)
{
    const auto isBefore = [](const HistoryPoint &point, qint64 time) {
        return point.timestamp < static_cast<double>(time);
    };
    const auto first = std::lower_bound(points.begin(), points.end(), range.from, isBefore);
    const auto last = std::lower_bound(first, points.end(), range.to, isBefore);
    return {first, last};
}

/// The value with this share of @p values below it; in between two, of the upper.
double quantile(std::vector<double> &values, double share)
{
    const auto last = static_cast<double>(values.size() - 1);
    const auto place = values.begin() + static_cast<qsizetype>(std::ceil(share * last));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

double middle(std::vector<double> &values)
{
    const double upper = quantile(values, 0.5);
    if (values.size() % 2 != 0) {
        return upper;
    }
    const auto place = values.begin() + std::ssize(values) / 2;
    return (*std::max_element(values.begin(), place) + upper) / 2;
}

} // namespace

std::optional<double> valueOf(const HistoryPoint &point, Figure figure)
{
    const double value = figure == Figure::Download ? point.download
                         : figure == Figure::Upload ? point.upload
                                                    : point.rtt;
    const double greatest = figure == Figure::Rtt ? greatestRttMs : greatestRate;
    return value > 0 && value < greatest ? std::optional(value) : std::nullopt;
}

Range Range::of(ResultFilter::Period period, std::span<const HistoryPoint> points, qint64 nowMs)
{
    if (period != ResultFilter::Period::All) {
        return {nowMs - ResultFilter::lengthOf(period), nowMs + 1};
    }
    const auto isShown = [](const HistoryPoint &point) {
        return shownTime(point.timestamp).has_value();
    };
    const auto first = std::find_if(points.begin(), points.end(), isShown);
    const auto last = std::find_if(points.rbegin(), points.rend(), isShown);
    if (first == points.end()) {
        return {nowMs - shortestRangeMs, nowMs + 1};
    }
    Range range{static_cast<qint64>(first->timestamp), static_cast<qint64>(last->timestamp) + 1};
    range.from = std::min(range.from, range.to - shortestRangeMs);
    return range;
}

std::vector<Mark> marks(std::span<const HistoryPoint> points, Figure figure, ConnectionKind kind,
                        Range range, int slots)
{
    std::vector<Mark> marks;
    std::vector<double> values;
    double times = 0;
    const double width = static_cast<double>(range.to - range.from) / slots;
    const auto close = [&] {
        if (values.empty()) {
            return;
        }
        Mark &mark = marks.back();
        mark.count = static_cast<int>(values.size());
        mark.time = range.from + std::llround(times / mark.count);
        const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
        mark.minimum = *least;
        mark.maximum = *greatest;
        mark.median = middle(values);
        values.clear();
        times = 0;
    };
    for (const HistoryPoint &point : within(points, range)) {
        const auto value = valueOf(point, figure);
        if (!value || ConnectionKinds::of(point.connectionType) != kind) {
            continue;
        }
        const double since = point.timestamp - static_cast<double>(range.from);
        const int slot = std::min(static_cast<int>(since / width), slots - 1);
        if (marks.empty() || marks.back().slot != slot) {
            close();
            marks.push_back({.slot = slot});
        }
        values.push_back(*value);
        times += since;
    }
    close();
    return marks;
}

Summary summary(std::span<const HistoryPoint> points, Figure figure, Range range,
                const std::function<bool(const HistoryPoint &)> &takes)
{
    std::vector<double> values;
    for (const HistoryPoint &point : within(points, range)) {
        const auto value = valueOf(point, figure);
        if (value && takes(point)) {
            values.push_back(*value);
        }
    }
    Summary summary;
    summary.count = static_cast<int>(values.size());
    if (!values.empty()) {
        summary.low = quantile(values, lowShare);
        summary.high = quantile(values, highShare);
        summary.median = middle(values);
    }
    return summary;
}

} // namespace velometer::History
