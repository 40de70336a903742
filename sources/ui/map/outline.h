#pragma once

#include <QByteArray>
#include <QPointF>
#include <QRectF>

#include <optional>
#include <vector>

class QPainter;

namespace velometer {

/// Coast lines and country borders of the world, built into the program so that a map without a
/// network still shows where it is. A plain value; painting is const and touches no state.
///
/// The file (resources/map/world.bin, made by convert-outline beside it): the bytes "VMAP" and the
/// version 1, then two sets of lines, the rings of land and the borders between countries. A set is
/// its number of lines; a line is its number of points; a point is two differences to the point
/// before, x and y, running on over all lines of the set from (0, 0). Numbers are base-128
/// (low groups first, the top bit set on all groups but the last), differences zigzag-coded (0, -1,
/// 1, -2 ... become 0, 1, 2, 3 ...). x counts from 180 degrees west to the east, y from the north
/// pole to the south, in units of 360 / 2^17 degrees. Rings are closed without repeating a point.
class Outline
{
public:
    /// Nothing when @p bytes is not exactly such a file: truncated, oversized, out of the world.
    static std::optional<Outline> parse(const QByteArray &bytes);

    /// The built-in one, read on first use; empty, with a line in the log, should it be damaged.
    static const Outline &world();

    /// Paints sea, land and borders of @p part, in px of a world @p worldSize px wide, with the
    /// part's top left corner at the painter's origin.
    void paint(QPainter &painter, const QRectF &part, double worldSize) const;

    bool isEmpty() const { return land.empty(); }

private:
    /// A run of points that is looked at as a whole: beside the part to paint or not.
    struct Run
    {
        qsizetype first = 0; ///< index in the line
        qsizetype last = 0;  ///< the first of the next run, so that runs meet
        QRectF bounds;
    };
    struct Line
    {
        std::vector<QPointF> points; ///< in the world square; a ring ends where it began
        std::vector<Run> runs;
        QRectF bounds;
    };
    class Reader;

    static void finish(Line &line);

    std::vector<Line> land;
    std::vector<Line> borders;
};

} // namespace velometer
