#include "utils/units.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr double mebi = 1.0 / 1024.0;
constexpr qint64 nsPerMs = 1'000'000;
/// From here on a rate reads better in Mbit/s; below it would round to 1000 kbit/s.
constexpr double megaFrom = 999'500;
/// From here on the second decimal tells nothing.
constexpr double oneDecimalFrom = 1e8;

} // namespace

QString Units::kiloBitRate(double bitsPerSecond)
{
    return whole(bitsPerSecond / 1000.0, " kBit/s"_L1);
}

QString Units::scaledRate(qint64 bitsPerSecond)
{
    const auto value = static_cast<double>(bitsPerSecond);
    if (value < megaFrom) {
        return whole(value / 1e3, " kbit/s"_L1);
    }
    return QString::number(value / 1e6, 'f', value < oneDecimalFrom ? 2 : 1) + " Mbit/s"_L1;
}

QString Units::wholeMilliseconds(qint64 ns)
{
    return QString::number(ns / nsPerMs) + " ms"_L1;
}

QString Units::milliseconds(double ns, int decimals)
{
    return QString::number(ns / static_cast<double>(nsPerMs), 'f', decimals) + " ms"_L1;
}

QString Units::megabytes(qint64 bytes)
{
    return QString::number(static_cast<double>(bytes) * mebi * mebi, 'f', 2) + " MB"_L1;
}

QString Units::whole(double value, QLatin1StringView unit)
{
    return QString::number(value, 'f', 0) + unit;
}

} // namespace velometer
