#include "ui/map/maptrack.h"

#include <QPainter>
#include <QPainterPath>

namespace velometer {

namespace {

constexpr qsizetype mostPoints = 4'000;
constexpr double lineWidth = 5; // px
constexpr double haloWidth = 8; // px
constexpr QColor halo(255, 255, 255, 170);

} // namespace

MapTrack::MapTrack(const QList<TrackPoint> &points)
{
    const qsizetype step = std::max<qsizetype>(1, (points.size() + mostPoints - 1) / mostPoints);
    for (qsizetype i = 0; i < points.size(); ++i) {
        const TrackPoint &point = points.at(i);
        // An end of a segment is kept, or a line would begin too late.
        const bool isEnd = i + 1 == points.size() || points.at(i + 1).segment != point.segment;
        if (i % step == 0 || isEnd || point.hasPlace() != points.at(i + 1).hasPlace()) {
            shown.append(point);
            places.append(point.hasPlace() ? Mercator::toWorld(point.latitude.value_or(0),
                                                               point.longitude.value_or(0))
                                           : QPointF());
        }
    }
    const QRectF area = bounds();
    if (!area.isNull()) {
        setCoordinate({area.center().y(), area.center().x()});
    }
    colours.resize(shown.size());
}

QRectF MapTrack::bounds() const
{
    QPolygonF corners;
    for (const TrackPoint &point : shown) {
        if (point.hasPlace()) {
            corners.append(QPointF(point.longitude.value_or(0), point.latitude.value_or(0)));
        }
    }
    return corners.boundingRect();
}

void MapTrack::setColours(const std::function<QColor(const TrackPoint &)> &colourOf)
{
    for (qsizetype i = 0; i < shown.size(); ++i) {
        colours[i] = colourOf(shown.at(i));
    }
}

QRectF MapTrack::boundingRect(const MapView &view) const
{
    return view.rect();
}

void MapTrack::paint(QPainter &painter, const MapView &view) const
{
    // A run of one colour is one line: thousands of short ones would show every joint.
    QPolygonF run;
    QList<std::pair<QColor, QPolygonF>> runs;
    QColor colour;
    const auto end = [&] {
        if (run.size() > 1) {
            runs.append({colour, run});
        }
    };
    for (qsizetype i = 0; i < shown.size(); ++i) {
        const bool joined = i > 0 && shown.at(i).segment == shown.at(i - 1).segment &&
                            shown.at(i).hasPlace() && shown.at(i - 1).hasPlace();
        if (!joined || colours.at(i) != colour) {
            end();
            const QPointF joint = run.isEmpty() ? QPointF() : run.constLast();
            run.clear();
            if (joined) {
                run.append(joint);
            }
            colour = colours.at(i);
        }
        if (shown.at(i).hasPlace()) {
            run.append(view.toScreen(places.at(i)));
        }
    }
    end();
    painter.setBrush(Qt::NoBrush);
    for (const double width : {haloWidth, lineWidth}) {
        for (const auto &[tint, line] : std::as_const(runs)) {
            painter.setPen(QPen(width == haloWidth ? halo : tint, width, Qt::SolidLine,
                                Qt::RoundCap, Qt::RoundJoin));
            painter.drawPolyline(line);
        }
    }
}

} // namespace velometer
