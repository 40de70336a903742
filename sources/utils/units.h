#pragma once

#include <QString>

/// The texts of figures, the same on every screen. Not translated; a figure that is not known is
/// the caller's affair.
namespace velometer::Units {

/// "2500 kBit/s", rounded.
QString kiloBitRate(double bitsPerSecond);
/// "2500 kbit/s" or "93.24 Mbit/s", whichever reads better.
QString scaledRate(qint64 bitsPerSecond);
/// "45 ms", what has passed completely: results hold round-trip times so.
QString wholeMilliseconds(qint64 ns);
/// "45.3 ms", rounded to @p decimals.
QString milliseconds(double ns, int decimals);
/// "1.50 MB" of 1024 x 1024 bytes.
QString megabytes(qint64 bytes);
/// "408 m", "60 km/h": @p value rounded, and its unit.
QString whole(double value, QLatin1StringView unit);

} // namespace velometer::Units
