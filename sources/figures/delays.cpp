#include "figures/delays.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace velometer {

namespace {

/// The gain of RFC 3550's estimator.
constexpr double jitterGain = 1.0 / 16.0;

std::vector<qint64> answered(const std::optional<Delays> &delays)
{
    std::vector<qint64> known;
    for (const auto &each : delays.value_or(Delays())) {
        if (each) {
            known.push_back(*each);
        }
    }
    return known;
}

std::optional<qint64> quantile(const std::optional<Delays> &delays, double share)
{
    std::vector<qint64> sorted = answered(delays);
    if (sorted.empty()) {
        return std::nullopt;
    }
    std::sort(sorted.begin(), sorted.end());
    const double place = share * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(place);
    const auto above = std::min(below + 1, sorted.size() - 1);
    const auto gap = static_cast<double>(sorted[above] - sorted[below]);
    return sorted[below] + std::llround((place - static_cast<double>(below)) * gap);
}

} // namespace

std::optional<qint64> DelayFigures::minimum(const std::optional<Delays> &delays)
{
    return quantile(delays, 0);
}

std::optional<qint64> DelayFigures::median(const std::optional<Delays> &delays)
{
    return quantile(delays, 0.5);
}

std::optional<qint64> DelayFigures::percentile95(const std::optional<Delays> &delays)
{
    return quantile(delays, 0.95);
}

std::optional<qint64> DelayFigures::jitter(const std::optional<Delays> &delays)
{
    const std::vector<qint64> known = answered(delays);
    if (known.size() < 2) {
        return std::nullopt;
    }
    double estimate = 0;
    for (std::size_t i = 1; i < known.size(); ++i) {
        const auto difference = static_cast<double>(std::abs(known[i] - known[i - 1]));
        estimate += (difference - estimate) * jitterGain;
    }
    return std::llround(estimate);
}

std::optional<qint64> DelayFigures::added(const std::optional<Delays> &idle,
                                          const std::optional<Delays> &underLoad)
{
    const auto before = median(idle);
    const auto during = median(underLoad);
    return before && during ? std::optional(*during - *before) : std::nullopt;
}

std::optional<double> DelayFigures::lostPercent(const std::optional<Delays> &delays)
{
    if (!delays || delays->isEmpty()) {
        return std::nullopt;
    }
    const auto lost = std::count(delays->begin(), delays->end(), std::nullopt);
    return 100.0 * static_cast<double>(lost) / static_cast<double>(delays->size());
}

} // namespace velometer
