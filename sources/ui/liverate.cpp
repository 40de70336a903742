#include "ui/liverate.h"

#include <algorithm>

namespace velometer {

namespace {

constexpr qint64 intervalUs = 100'000;
constexpr double bitsPerByte = 8;
constexpr double intervalsPerSecond = 10;

} // namespace

void LiveRate::add(int resulttype, int interval, qint64 bytes, qint64 nowUs)
{
    if (interval < 0) {
        return;
    }
    if (resulttype != type || interval < last) {
        clear();
        type = resulttype;
    }
    // Intervals that were passed over moved nothing.
    for (int passed = std::max(last + 1, interval - window + 1); passed < interval; ++passed) {
        bytesOf.at(static_cast<std::size_t>(passed % window)) = 0;
    }
    bytesOf.at(static_cast<std::size_t>(interval % window)) = std::max<qint64>(0, bytes);
    last = interval;
    lastUs = nowUs;
}

double LiveRate::bitsPerSecond(qint64 nowUs) const
{
    if (last < 0) {
        return 0;
    }
    // The interval that is open now is no silence yet.
    const qint64 silent = std::clamp<qint64>((nowUs - lastUs) / intervalUs - 1, 0, window);
    const qint64 first = std::max<qint64>(0, last + silent - window + 1);
    double sum = 0;
    for (qint64 each = first; each <= last; ++each) {
        sum += static_cast<double>(bytesOf.at(static_cast<std::size_t>(each % window)));
    }
    const auto count = static_cast<double>(std::min<qint64>(last + silent + 1, window));
    return sum * bitsPerByte * intervalsPerSecond / count;
}

} // namespace velometer
