#pragma once

#include <QRect>
#include <QString>

/// How the rows of the results list write figures, and where: columns that stand below each other
/// in every row of the list.
namespace velometer::ResultFigures {

inline constexpr int margin = 12;     ///< px, of a row at its sides
inline constexpr int signPixels = 36; ///< of the connection's sign
/// Shares of the columns of download, upload and RTT, percent.
inline constexpr int shares[] = {38, 34, 28};
inline constexpr int iconPixels = 18;

/// A rate in kBit/s without its unit, "38412.0"; "na" of what is none.
QString rate(double bitsPerSecond);
/// "31 ms"; "na" of what is none.
QString roundTrip(double ms);

} // namespace velometer::ResultFigures
