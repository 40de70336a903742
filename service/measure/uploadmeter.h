#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velometer {

/// What an upload came to, in bit/s.
struct UploadFigures
{
    std::int64_t min = 0;
    std::int64_t avg = 0;
    std::int64_t max = 0;

    /// "min;avg;max".
    std::string toText() const;
};

/// Counts the bytes of one upload in intervals of 100 ms from its first byte on. Time is passed in
/// and must not run backwards.
class UploadMeter
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::milliseconds interval{100};

    void add(TimePoint now, std::int64_t bytes);

    /// The stream ended at @p now; the interval that is running then is not a full one.
    void end(TimePoint now);

    std::int64_t getTotal() const { return total; }

    /// Bytes of the interval before the one of the last byte; 0 when there is none.
    std::int64_t previousInterval() const;

    /// From the first byte to the end.
    std::chrono::milliseconds lasted() const
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(ended - first);
    }

    /// The rates of the full intervals by IntervalRates; without a window minimum and maximum are
    /// the average. A stream too short for that counts as a whole. Nothing when no byte came.
    std::optional<UploadFigures> figures() const;

private:
    std::size_t indexOf(TimePoint now) const;

    TimePoint first;
    TimePoint ended;
    std::int64_t total = 0;
    std::vector<std::int64_t> perInterval; ///< per interval
};

} // namespace velometer
