#include "ui/map/mapcircleobject.h"

#include <QPainter>

#include <array>

namespace velometer {

namespace {

constexpr QColor fill(100, 100, 255, 150);
constexpr QColor edge(100, 100, 255, 255);

} // namespace

double MapCircleObject::pixelRadius(const MapView &view) const
{
    return std::max(0.0, radius) * view.scale *
           Mercator::pixelsPerMetre(coordinate().latitude(), view.zoom);
}

QRectF MapCircleObject::boundingRect(const MapView &view) const
{
    const double r = pixelRadius(view);
    const QPointF centre = view.toScreen(world());
    return {centre - QPointF(r, r), centre + QPointF(r, r)};
}

bool MapCircleObject::contains(const MapView &view, QPointF point) const
{
    const QPointF away = point - view.toScreen(world());
    return std::hypot(away.x(), away.y()) <= pixelRadius(view);
}

void MapCircleObject::paint(QPainter &painter, const MapView &view) const
{
    const double r = pixelRadius(view);
    if (r <= 0) {
        return;
    }
    // A circle that reaches beyond the view on all sides may be larger than a painter can count.
    const QRectF rect = view.rect();
    const std::array corners{rect.topLeft(), rect.topRight(), rect.bottomLeft(),
                             rect.bottomRight()};
    if (std::all_of(corners.begin(), corners.end(),
                    [&](QPointF corner) { return contains(view, corner); })) {
        painter.fillRect(rect, fill);
        return;
    }
    painter.setBrush(fill);
    painter.setPen(edge);
    painter.drawEllipse(view.toScreen(world()), r, r);
}

} // namespace velometer
