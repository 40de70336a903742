#include "measure/uploadmeter.h"

#include <algorithm>
#include <limits>
#include <span>

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
    const auto index = static_cast<std::size_t>(std::max(now - m_first, {}) / interval);
    return std::min(index, maxIntervals - 1);
}

void UploadMeter::add(TimePoint now, std::int64_t bytes)
{
    if (m_total == 0) {
        m_first = now;
    }
    const auto index = indexOf(now);
    if (index >= m_bytes.size()) {
        m_bytes.resize(index + 1, 0);
    }
    m_bytes.at(index) += bytes;
    m_total += bytes;
    m_last = now;
    m_end = now;
}

std::int64_t UploadMeter::previousInterval() const
{
    return m_bytes.size() < 2 ? 0 : m_bytes.at(m_bytes.size() - 2);
}

void UploadMeter::end(TimePoint now)
{
    m_end = now;
}

std::optional<UploadFigures> UploadMeter::figures() const
{
    if (m_total == 0) {
        return std::nullopt;
    }
    const auto count = indexOf(m_end);
    auto full = m_bytes;
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
            std::max(std::chrono::duration_cast<std::chrono::milliseconds>(m_end - m_first).count(),
                     std::chrono::milliseconds::rep{1});
        result.avg = m_total * 8000 / lasted;
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
