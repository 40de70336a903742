#pragma once

#include <QGeoCoordinate>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velometer {

/// Spherical Web Mercator (EPSG:3857), the projection of all tile servers: the world is a square
/// whose x runs from 0 at 180 degrees west to 1 at 180 degrees east, and whose y runs from 0 at the
/// northern limit to 1 at the southern one.
namespace Mercator {

inline constexpr double maximumLatitude = 85.0511; ///< degrees; makes the world a square
inline constexpr int minimumZoom = 1;
inline constexpr int maximumZoom = 19;
inline constexpr int tileSize = 256;               ///< px
inline constexpr double earthRadius = 6'378'137.0; ///< m, WGS 84 equator

inline double radians(double degrees)
{
    return degrees * std::numbers::pi / 180;
}

/// Longitude brought into [-180, 180).
inline double wrappedLongitude(double longitude)
{
    return longitude - 360 * std::floor((longitude + 180) / 360);
}

/// y = (1 - asinh(tan(latitude)) / pi) / 2. A latitude beyond the limit counts as the limit.
inline QPointF toWorld(double latitude, double longitude)
{
    const double limited = std::clamp(latitude, -maximumLatitude, maximumLatitude);
    return {(wrappedLongitude(longitude) + 180) / 360,
            (1 - std::asinh(std::tan(radians(limited))) / std::numbers::pi) / 2};
}

inline QPointF toWorld(const QGeoCoordinate &coordinate)
{
    return toWorld(coordinate.latitude(), coordinate.longitude());
}

inline QGeoCoordinate fromWorld(QPointF world)
{
    const double y = std::clamp(world.y(), 0.0, 1.0);
    return {std::atan(std::sinh(std::numbers::pi * (1 - 2 * y))) * 180 / std::numbers::pi,
            wrappedLongitude(world.x() * 360 - 180)};
}

/// Width of the world in px.
inline double worldSize(int zoom)
{
    return std::ldexp(static_cast<double>(tileSize), zoom);
}

/// A pixel is worth fewer metres the further it is from the equator.
inline double pixelsPerMetre(double latitude, int zoom)
{
    const double limited = std::clamp(latitude, -maximumLatitude, maximumLatitude);
    return worldSize(zoom) / (2 * std::numbers::pi * earthRadius * std::cos(radians(limited)));
}

} // namespace Mercator

/// The part of the world that a map shows: a value that turns places into points of the map item,
/// in px from its top left corner.
struct MapView
{
    QPointF centre{0.5, 0.5}; ///< in the world square
    int zoom = Mercator::minimumZoom;
    double scale = 1; ///< times as large as at that zoom, while two fingers hold the map
    QSizeF size;      ///< px
    QRectF controls;  ///< where controls lie on the map, px of the map item

    double worldSize() const { return Mercator::worldSize(zoom) * scale; }

    /// Top left corner in px of the world, whole ones so that tiles meet without a seam.
    QPointF origin() const
    {
        return {std::round(centre.x() * worldSize() - size.width() / 2),
                std::round(centre.y() * worldSize() - size.height() / 2)};
    }

    /// Of the copies of the world that stand side by side, the one next to the centre counts.
    QPointF toScreen(QPointF world) const
    {
        const double x = world.x() + std::round(centre.x() - world.x());
        return QPointF(x, world.y()) * worldSize() - origin();
    }

    QRectF rect() const { return {QPointF(), size}; }
};

} // namespace velometer
