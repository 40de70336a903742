#pragma once

#include "track/track.h"
#include "ui/map/mapobject.h"

#include <QColor>
#include <QList>
#include <QPointF>

#include <functional>

namespace velometer {

/// A recorded way on the map: lines from point to point, each in the colour of the point it leads
/// to. No line joins two segments or leads over a place that nobody knows.
class MapTrack : public MapObject
{
public:
    /// Of @p points, thinned to what a screen can show.
    explicit MapTrack(const QList<TrackPoint> &points);

    /// What @p colourOf says of a point is drawn from now on.
    void setColours(const std::function<QColor(const TrackPoint &)> &colourOf);
    const QList<TrackPoint> &points() const { return shown; }
    /// The places of it, degrees; empty when none is known.
    QRectF bounds() const;

    QRectF boundingRect(const MapView &view) const override;
    bool contains(const MapView & /*view*/, QPointF /*point*/) const override { return false; }
    void paint(QPainter &painter, const MapView &view) const override;

private:
    QList<TrackPoint> shown;
    QList<QPointF> places; ///< of shown, in the world square
    QList<QColor> colours;
};

} // namespace velometer
