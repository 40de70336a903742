#pragma once

#include "reports/testquery.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace velometer {

/// The order statistics of @p values, which are rearranged. Ask with ascending shares.
class Ordered
{
public:
    explicit Ordered(std::span<qint64> list)
        : values(list)
    {}

    /// What @p share (0 to 1) of the values lie below, between neighbours by linear interpolation.
    /// There must be a value.
    qint64 at(double share)
    {
        const double place = share * static_cast<double>(values.size() - 1);
        const auto below = static_cast<std::size_t>(place);
        const auto begin = values.begin() + static_cast<std::ptrdiff_t>(done);
        const auto nth = values.begin() + static_cast<std::ptrdiff_t>(below);
        std::nth_element(begin, nth, values.end());
        done = below;
        const double rest = place - static_cast<double>(below);
        if (rest <= 0) {
            return *nth;
        }
        const auto above = *std::min_element(nth + 1, values.end());
        return *nth + std::llround(rest * static_cast<double>(above - *nth));
    }

private:
    std::span<qint64> values;
    std::size_t done = 0; ///< all before it are in their places or smaller
};

inline Spread spreadOf(std::span<qint64> values)
{
    Spread spread{.count = static_cast<qint64>(values.size()), .p10 = {}, .median = {}, .p90 = {}};
    if (!values.empty()) {
        Ordered ordered(values);
        spread.p10 = ordered.at(0.1);
        spread.median = ordered.at(0.5);
        spread.p90 = ordered.at(0.9);
    }
    return spread;
}

} // namespace velometer
