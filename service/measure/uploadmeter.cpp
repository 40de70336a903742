#include "measure/uploadmeter.h"

#include <algorithm>
#include <limits>
#include <span>

namespace velometer {

namespace {

constexpr std::size_t rampUp = 2;
constexpr std::size_t window = 10;

/// A stream lasts a minute and a bit; what comes later belongs to the last interval.
constexpr std::size_t maxIntervals = 1000;

/// Mean of intervals of 100 ms in bit/s.
std::int64_t rate(std::span<const std::int64_t> bytes)
{
    std::int64_t sum = 0;
    for (const auto count : bytes) {
        sum += count;
    }
    return sum * 80 / static_cast<std::int64_t>(bytes.size());
}

} // namespace

std::string UploadFigures::toText() const
{
    return std::to_string(min) + ';' + std::to_string(avg) + ';' + std::to_string(max);
}

std::size_t UploadMeter::indexOf(TimePoint now) const
{
    const auto index = static_cast<std::size_t>(std::max(now - first, {}) / interval);
    return std::min(index, maxIntervals - 1);
}

void UploadMeter::add(TimePoint now, std::int64_t bytes)
{
    if (total == 0) {
        first = now;
    }
    const auto index = indexOf(now);
    if (index >= perInterval.size()) {
        perInterval.resize(index + 1, 0);
    }
    perInterval.at(index) += bytes;
    total += bytes;
    ended = now;
}

std::int64_t UploadMeter::previousInterval() const
{
    return perInterval.size() < 2 ? 0 : perInterval.at(perInterval.size() - 2);
}

void UploadMeter::end(TimePoint now)
{
    ended = now;
}

std::optional<UploadFigures> UploadMeter::figures() const
{
    if (total == 0) {
        return std::nullopt;
    }
    const auto count = indexOf(ended);
    auto full = perInterval;
    full.resize(count, 0);
    const std::span<const std::int64_t> intervals(full);

    UploadFigures result;
    if (count > rampUp) {
        result.avg = rate(intervals.subspan(rampUp));
    } else if (count > 0) {
        result.avg = rate(intervals);
    } else {
        // Shorter than one interval; below a millisecond the duration says nothing any more.
        const auto lasted =
            std::max(std::chrono::duration_cast<std::chrono::milliseconds>(ended - first).count(),
                     std::chrono::milliseconds::rep{1});
        result.avg = total * 8000 / lasted;
    }
    result.min = result.avg;
    result.max = result.avg;
    if (count >= rampUp + window) {
        result.max = 0;
        result.min = std::numeric_limits<std::int64_t>::max();
        for (std::size_t start = rampUp; start + window <= count; ++start) {
            const auto mean = rate(intervals.subspan(start, window));
            result.min = std::min(result.min, mean);
            result.max = std::max(result.max, mean);
        }
    }
    return result;
}

} // namespace velometer
