#include "ui/map/outline.h"

#include "ui/map/projection.h"
#include "utils/utils.h"

#include <QFile>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr QByteArrayView magic("VMAP\x01");
/// Of longitude; the file's unit.
constexpr quint32 unitsAround = 1U << 17;
/// Several times what the built-in file holds.
constexpr quint32 maximumLines = 20'000;
constexpr quint32 maximumPoints = 500'000;
constexpr qsizetype runLength = 32;
/// Points nearer than this to the last one drawn cannot be told from it.
constexpr double visibleStep = 0.5; // px
/// What lies this far outside is cut off: more than half of any pen's width.
constexpr double margin = 4; // px

constexpr QColor seaColour(0xb9, 0xd9, 0xeb);
constexpr QColor landColour(0xe6, 0xec, 0xe9);
constexpr QColor coastColour(0x8f, 0xb4, 0xc9);
constexpr QColor borderColour(0xa9, 0xb1, 0xb8);

QRectF boundsOf(const std::vector<QPointF> &points, qsizetype first, qsizetype last)
{
    QPointF low = points[static_cast<size_t>(first)];
    QPointF high = low;
    for (qsizetype i = first + 1; i <= last; ++i) {
        const QPointF &point = points[static_cast<size_t>(i)];
        low = {std::min(low.x(), point.x()), std::min(low.y(), point.y())};
        high = {std::max(high.x(), point.x()), std::max(high.y(), point.y())};
    }
    return {low, high};
}

// QRectF::intersects takes an empty rectangle, such as a straight line's, for one that meets none.
bool meets(const QRectF &bounds, const QRectF &area)
{
    return bounds.left() <= area.right() && bounds.right() >= area.left() &&
           bounds.top() <= area.bottom() && bounds.bottom() >= area.top();
}

/// Where the data was cut open to lie flat: no coast and no border.
bool isSeam(QPointF from, QPointF to)
{
    const auto onEdge = [](QPointF point) { return point.x() <= 0.0 || point.x() >= 1.0; };
    const auto onPole = [](QPointF point) { return point.y() >= 0.99999; };
    return (onEdge(from) && onEdge(to)) || (onPole(from) && onPole(to));
}

enum class Side { Left, Right, Top, Bottom };

bool isInside(QPointF point, const QRectF &area, Side side)
{
    switch (side) {
    case Side::Left: return point.x() >= area.left();
    case Side::Right: return point.x() <= area.right();
    case Side::Top: return point.y() >= area.top();
    case Side::Bottom: return point.y() <= area.bottom();
    }
    return false;
}

QPointF crossing(QPointF from, QPointF to, const QRectF &area, Side side)
{
    if (side == Side::Left || side == Side::Right) {
        const double x = side == Side::Left ? area.left() : area.right();
        const double share = (x - from.x()) / (to.x() - from.x());
        return {x, from.y() + share * (to.y() - from.y())};
    }
    const double y = side == Side::Top ? area.top() : area.bottom();
    const double share = (y - from.y()) / (to.y() - from.y());
    return {from.x() + share * (to.x() - from.x()), y};
}

/// Sutherland and Hodgman: keeps the filled area right where a ring leaves and enters again, and
/// spares the painter coordinates of millions of pixels.
QPolygonF clippedRing(QPolygonF ring, const QRectF &area)
{
    for (const Side side : {Side::Left, Side::Right, Side::Top, Side::Bottom}) {
        QPolygonF kept;
        kept.reserve(ring.size() + 8);
        for (qsizetype i = 0; i < ring.size(); ++i) {
            const QPointF from = ring[i == 0 ? ring.size() - 1 : i - 1];
            const QPointF to = ring[i];
            const bool fromInside = isInside(from, area, side);
            const bool toInside = isInside(to, area, side);
            if (fromInside != toInside) {
                kept += crossing(from, to, area, side);
            }
            if (toInside) {
                kept += to;
            }
        }
        ring = std::move(kept);
    }
    return ring;
}

/// Cuts the segment to the area; false when nothing is left.
bool clipSegment(QPointF &from, QPointF &to, const QRectF &area)
{
    for (const Side side : {Side::Left, Side::Right, Side::Top, Side::Bottom}) {
        const bool fromInside = isInside(from, area, side);
        const bool toInside = isInside(to, area, side);
        if (!fromInside && !toInside) {
            return false;
        }
        if (!fromInside) {
            from = crossing(from, to, area, side);
        } else if (!toInside) {
            to = crossing(from, to, area, side);
        }
    }
    return true;
}

bool isNear(QPointF one, QPointF other)
{
    return std::abs(one.x() - other.x()) < visibleStep &&
           std::abs(one.y() - other.y()) < visibleStep;
}

} // namespace

/// Reads numbers until one is not there or out of its bounds; from then on all are 0.
class Outline::Reader
{
public:
    explicit Reader(QByteArrayView content)
        : bytes(content)
    {}

    bool good() const { return !failed; }
    bool atEnd() const { return position == bytes.size(); }

    bool lines(std::vector<Line> &lines, quint32 leastPoints)
    {
        x = y = 0;
        const quint32 count = number(maximumLines);
        for (quint32 i = 0; i < count && good(); ++i) {
            lines.push_back(line(leastPoints));
        }
        return good();
    }

private:
    Line line(quint32 leastPoints)
    {
        Line result;
        const quint32 count = number(maximumPoints - points);
        if (count < leastPoints) {
            failed = true;
        }
        points += count;
        for (quint32 i = 0; i < count && good(); ++i) {
            x = moved(x, unitsAround);
            y = moved(y, unitsAround / 2);
            result.points.emplace_back(
                static_cast<double>(x) / unitsAround,
                Mercator::toWorld(90 - static_cast<double>(y) * 360 / unitsAround, 0).y());
        }
        return result;
    }

    qint64 moved(qint64 from, qint64 limit)
    {
        const quint32 coded = number(2 * unitsAround + 1);
        const qint64 difference = coded % 2 == 0 ? qint64{coded / 2} : -qint64{coded / 2} - 1;
        const qint64 to = from + difference;
        if (to < 0 || to > limit) {
            failed = true;
        }
        return failed ? 0 : to;
    }

    quint32 number(quint32 limit)
    {
        quint32 value = 0;
        for (int shift = 0; shift < 28 && position < bytes.size(); shift += 7) {
            const auto byte = static_cast<quint8>(bytes[position++]);
            value |= (byte & 0x7FU) << shift;
            if (byte < 0x80) {
                if (value > limit) {
                    break;
                }
                return value;
            }
        }
        failed = true;
        return 0;
    }

    QByteArrayView bytes;
    qsizetype position = 0;
    quint32 points = 0;
    qint64 x = 0;
    qint64 y = 0;
    bool failed = false;
};

std::optional<Outline> Outline::parse(const QByteArray &bytes)
{
    if (!bytes.startsWith(magic)) {
        return std::nullopt;
    }
    Outline outline;
    Reader reader(QByteArrayView(bytes).sliced(magic.size()));
    if (!reader.lines(outline.land, 3) || !reader.lines(outline.borders, 2) || !reader.atEnd()) {
        return std::nullopt;
    }
    for (Line &ring : outline.land) {
        ring.points.push_back(ring.points.front());
        finish(ring);
    }
    for (Line &border : outline.borders) {
        finish(border);
    }
    return outline;
}

void Outline::finish(Line &line)
{
    const auto end = static_cast<qsizetype>(line.points.size()) - 1;
    for (qsizetype first = 0; first < end; first += runLength) {
        const qsizetype last = std::min(first + runLength, end);
        line.runs.push_back({first, last, boundsOf(line.points, first, last)});
    }
    line.bounds = boundsOf(line.points, 0, end);
}

const Outline &Outline::world()
{
    static const Outline builtIn = [] {
        QFile file(u":/velometerres/world.bin"_s);
        const bool opened = file.open(QIODevice::ReadOnly);
        std::optional<Outline> outline = opened ? parse(file.readAll()) : std::nullopt;
        if (!outline) {
            Utils::addLogEntry(u"The map's outline cannot be read"_s);
        }
        return outline.value_or(Outline());
    }();
    return builtIn;
}

void Outline::paint(QPainter &painter, const QRectF &part, double worldSize) const
{
    const QRectF area = QRectF(QPointF(), part.size()).adjusted(-margin, -margin, margin, margin);
    const QRectF worldArea((area.topLeft() + part.topLeft()) / worldSize, area.size() / worldSize);
    const auto toPart = [&](QPointF world) { return world * worldSize - part.topLeft(); };

    // A run wholly on one side of the area may be drawn as one straight line there: the ring stays
    // closed, and nothing of the line comes into the area.
    const auto isBeside = [&](const QRectF &bounds) { return !meets(bounds, worldArea); };

    const auto addStroke = [&](QPainterPath &path, const Line &line) {
        for (const Run &run : line.runs) {
            if (isBeside(run.bounds)) {
                continue;
            }
            QPointF from = toPart(line.points[static_cast<size_t>(run.first)]);
            QPointF pen(-1e9, -1e9);
            for (qsizetype i = run.first + 1; i <= run.last; ++i) {
                const QPointF to = toPart(line.points[static_cast<size_t>(i)]);
                if (i < run.last && isNear(from, to)) {
                    continue;
                }
                QPointF start = from;
                QPointF end = to;
                const bool seam = isSeam(line.points[static_cast<size_t>(i - 1)],
                                         line.points[static_cast<size_t>(i)]);
                if (!seam && clipSegment(start, end, area)) {
                    if (start != pen) {
                        path.moveTo(start);
                    }
                    path.lineTo(end);
                    pen = end;
                }
                from = to;
            }
        }
    };

    QPainterPath ground;
    ground.setFillRule(Qt::OddEvenFill);
    QPainterPath coast;
    for (const Line &ring : land) {
        const bool tooSmall = ring.bounds.width() * worldSize < visibleStep &&
                              ring.bounds.height() * worldSize < visibleStep;
        if (tooSmall || isBeside(ring.bounds)) {
            continue;
        }
        QPolygonF polygon;
        for (const Run &run : ring.runs) {
            polygon += toPart(ring.points[static_cast<size_t>(run.first)]);
            if (isBeside(run.bounds)) {
                continue;
            }
            for (qsizetype i = run.first + 1; i < run.last; ++i) {
                const QPointF point = toPart(ring.points[static_cast<size_t>(i)]);
                if (!isNear(point, polygon.constLast())) {
                    polygon += point;
                }
            }
        }
        polygon = clippedRing(std::move(polygon), area);
        if (polygon.size() >= 3) {
            ground.addPolygon(polygon);
            ground.closeSubpath();
        }
        addStroke(coast, ring);
    }
    QPainterPath frontiers;
    for (const Line &border : borders) {
        if (!isBeside(border.bounds)) {
            addStroke(frontiers, border);
        }
    }

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(area, seaColour);
    painter.fillPath(ground, landColour);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(coastColour, 1));
    painter.drawPath(coast);
    painter.setPen(QPen(borderColour, 1));
    painter.drawPath(frontiers);
    painter.restore();
}

} // namespace velometer
