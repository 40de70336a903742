#pragma once

#include "ui/map/markercluster.h"

#include <utility>
#include <vector>

namespace velometer {

/// The markers of a cluster that no zoom can open, fanned out above it, some at a time. Borrows the
/// cluster, which is closed before it dies.
class MarkerFan
{
public:
    static constexpr size_t markersAtOnce = 6;

    /// Opens on @p of, on its next markers when it is open there already, and closes after the
    /// last.
    void open(MarkerCluster *of);
    void close();
    /// Its cluster is dying.
    void forget() { of = nullptr; }
    /// Null when it is closed.
    MarkerCluster *cluster() const { return of; }

    /// The markers shown and where their tips are, px of the map item.
    std::vector<std::pair<Marker *, QPointF>> markers(const MapView &view) const;
    QRectF boundingRect(const MapView &view) const;
    void paint(QPainter &painter, const MapView &view) const;

private:
    MarkerCluster *of = nullptr;
    size_t first = 0; ///< index of the first member shown
};

} // namespace velometer
