#pragma once

#include <QFont>
#include <QString>

#include <array>

/// How the rows of the results list write figures, and where: in columns that stand below each
/// other in every row of the list, all in one size.
namespace velometer::ResultFigures {

// px
inline constexpr int margin = 12;     ///< of a row at its sides
inline constexpr int signPixels = 36; ///< of the connection's sign
inline constexpr int iconPixels = 18;
inline constexpr int iconGap = 4; ///< between an icon and its number
/// A list this narrow has its figures below the sign instead of beside it.
inline constexpr int narrowList = 360;

/// The greatest figures that have to fit.
struct Greatest
{
    double download = 0, upload = 0; ///< bit/s
    double rtt = 0;                  ///< ms
};

/// Of download, upload and RTT.
struct Columns
{
    int left = 0; ///< px, of the first in a row
    std::array<int, 3> widths{};
    int pixels = 0; ///< size of the text
    bool isNarrow = false;

    bool operator==(const Columns &) const = default;
};

/// For rows of that many px; the text has the size that fits, at least 13 px.
Columns columnsFor(int width, const Greatest &greatest, QFont font);

/// A rate in kBit/s without its unit, "38412.0"; "na" of what is none.
QString rate(double bitsPerSecond);
/// "31 ms"; "na" of what is none.
QString roundTrip(double ms);

} // namespace velometer::ResultFigures
