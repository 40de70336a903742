#pragma once

#include "ui/map/marker.h"

#include <optional>
#include <vector>

namespace velometer {

/// Markers that would lie on each other at the present zoom, drawn as one disc with their number
/// over a tip at the place of the first one. Borrows the markers.
class MarkerCluster : public MapObject
{
public:
    /// Markers whose tips are nearer than this in both directions cover each other, px.
    static constexpr QSizeF reach{44, 56};

    /// Groups @p markers, each once: every group has its first marker's place, and no later
    /// group's place is within reach of it. Takes time in proportion to the number of markers.
    static std::vector<std::vector<Marker *>> grouped(const std::vector<Marker *> &markers,
                                                      int zoom);

    explicit MarkerCluster(std::vector<Marker *> members);

    const std::vector<Marker *> &members() const { return markers; }

    /// The first zoom level after @p zoom at which not all members lie on each other; nothing when
    /// they do so up to the last one.
    std::optional<int> opensAt(int zoom) const;

    /// The middle of the members in the world square.
    QPointF middle() const;

    /// What the disc says in place of the number of members; empty for that number.
    void setCaption(const QString &text) { caption = text; }

    QRectF boundingRect(const MapView &view) const override;
    void paint(QPainter &painter, const MapView &view) const override;
    void tap(MapTaps &taps) override { taps.tapped(*this); }

private:
    std::vector<Marker *> markers;
    QString caption;
};

} // namespace velometer
