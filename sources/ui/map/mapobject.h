#pragma once

#include "ui/map/projection.h"

class QPainter;

namespace velometer {

/// Something that lies on a map at a coordinate. The map borrows it: whoever adds an object removes
/// it before it dies.
class MapObject
{
public:
    virtual ~MapObject() = default;

    QGeoCoordinate coordinate() const { return onEarth; }
    void setCoordinate(const QGeoCoordinate &coordinate)
    {
        onEarth = coordinate;
        inWorld = Mercator::toWorld(coordinate);
    }
    /// The coordinate in the world square.
    QPointF world() const { return inWorld; }

    /// In px of the map item.
    virtual QRectF boundingRect(const MapView &view) const = 0;
    virtual bool contains(const MapView &view, QPointF point) const
    {
        return boundingRect(view).contains(point);
    }
    virtual void paint(QPainter &painter, const MapView &view) const = 0;

protected:
    MapObject() = default;
    Q_DISABLE_COPY_MOVE(MapObject)

private:
    QGeoCoordinate onEarth{0, 0};
    QPointF inWorld{0.5, 0.5};
};

} // namespace velometer
