#pragma once

#include "app/resultfilter.h"
#include "db/historypoint.h"

#include <functional>
#include <optional>
#include <span>
#include <vector>

/// Charts over time, as plain values: many tests become a bounded number of marks, each of which
/// keeps the least, the middle and the greatest of what it stands for. Knows no screen.
namespace velometer::History {

/// Which figure of a test.
enum class Figure { Download, Upload, Rtt };

/// Of a test; nothing where it was not measured or cannot be such a figure.
std::optional<double> valueOf(const HistoryPoint &point, Figure figure);

/// From @p from to before @p to, ms.
struct Range
{
    qint64 from = 0;
    qint64 to = 0;

    /// The period back from @p nowMs; of all, from the first to the last point, at least an hour.
    static Range of(ResultFilter::Period period, std::span<const HistoryPoint> points,
                    qint64 nowMs);
};

/// Some tests that are drawn as one mark.
struct Mark
{
    int slot = 0;    ///< of those into which the range is divided, from 0 on
    qint64 time = 0; ///< ms, the middle of its tests' times
    int count = 0;
    double minimum = 0, median = 0, maximum = 0;
};

/// The marks of a figure in a range that is divided into @p slots equal parts, the earliest first.
/// A part without a test has none: that is the gap in the curve. @p points are in the order of
/// time.
std::vector<Mark> marks(std::span<const HistoryPoint> points, Figure figure, ConnectionKind kind,
                        Range range, int slots);

/// What a range holds, of all kinds that @p takes lets through.
struct Summary
{
    int count = 0;                ///< tests with the figure
    std::optional<double> median; ///< none of no test
    double low = 0, high = 0;     ///< a tenth is below, a tenth above
};
Summary summary(std::span<const HistoryPoint> points, Figure figure, Range range,
                const std::function<bool(const HistoryPoint &)> &takes);

} // namespace velometer::History
