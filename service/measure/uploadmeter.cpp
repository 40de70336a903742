#include "measure/uploadmeter.h"

#include "utils/intervalrates.h"

#include <algorithm>

namespace velometer {

namespace {

/// A stream lasts a minute and a bit; what comes later belongs to the last interval.
constexpr std::size_t maxIntervals = 1000;

/// Bytes in an interval of 100 ms to bit/s.
constexpr std::int64_t bitsPerSecond = 80;

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
    std::vector<qint64> rates(count, 0);
    for (std::size_t i = 0; i < std::min(count, perInterval.size()); ++i) {
        rates.at(i) = perInterval.at(i) * bitsPerSecond;
    }

    UploadFigures result;
    if (const auto average = IntervalRates::average(rates)) {
        result.avg = *average;
    } else if (count > 0) {
        result.avg = IntervalRates::mean(rates);
    } else {
        // Shorter than one interval; below a millisecond the duration says nothing any more.
        const auto lasted =
            std::max(std::chrono::duration_cast<std::chrono::milliseconds>(ended - first).count(),
                     std::chrono::milliseconds::rep{1});
        result.avg = total * 8000 / lasted;
    }
    const auto extremes = IntervalRates::extremes(rates).value_or(
        IntervalRates::Extremes{.min = result.avg, .max = result.avg});
    result.min = extremes.min;
    result.max = extremes.max;
    return result;
}

} // namespace velometer
