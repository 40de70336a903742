#pragma once

#include "ui/map/mapobject.h"

namespace velometer {

/// A disc on the ground around its coordinate: how accurate a position is.
class MapCircleObject : public MapObject
{
public:
    void setRadius(double metres) { radius = metres; }
    double getRadius() const { return radius; }

    QRectF boundingRect(const MapView &view) const override;
    bool contains(const MapView &view, QPointF point) const override;
    void paint(QPainter &painter, const MapView &view) const override;

private:
    double pixelRadius(const MapView &view) const;

    double radius = 0;
};

} // namespace velometer
