#pragma once

#include "ui/map/projection.h"

#include <vector>

class QPainter;

namespace velometer {

class MapObject;
class MapTextObject;
class Marker;
class MarkerCluster;

/// The objects of a map by how they are drawn and found.
struct MapLayers
{
    std::vector<MapObject *> ground;
    std::vector<Marker *> markers;
    std::vector<MapTextObject *> labels;

    /// What is added last is mostly the first to go.
    template <typename Object>
    static void remove(std::vector<Object *> &layer, const MapObject *object)
    {
        const auto found = std::find(layer.rbegin(), layer.rend(), object);
        if (found != layer.rend()) {
            layer.erase(std::next(found).base());
        }
    }
};

/// Hears which object was tapped. What means nothing by itself, as a disc on the ground, is not
/// told.
class MapTaps
{
public:
    virtual void tapped(Marker &marker) = 0;
    virtual void tapped(MapTextObject &label) = 0;
    virtual void tapped(MarkerCluster &cluster) = 0;

protected:
    MapTaps() = default;
    ~MapTaps() = default;
    Q_DISABLE_COPY_MOVE(MapTaps)
};

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

    /// Goes to its place among @p layers, and out of it.
    virtual void enter(MapLayers &layers) { layers.ground.push_back(this); }
    virtual void leave(MapLayers &layers) { MapLayers::remove(layers.ground, this); }
    /// Tells @p taps of a tap on it.
    virtual void tap(MapTaps & /*taps*/) {}

protected:
    MapObject() = default;
    Q_DISABLE_COPY_MOVE(MapObject)

private:
    QGeoCoordinate onEarth{0, 0};
    QPointF inWorld{0.5, 0.5};
};

} // namespace velometer
