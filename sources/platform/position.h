#pragma once

#include <QGeoCoordinate>
#include <QGeoPositionInfo>

#include <cmath>
#include <optional>

namespace velometer {

/// What a receiver told of a place, checked: numbers are finite, and latitude and longitude are
/// there together or not at all. A plain value.
struct Position
{
    std::optional<double> latitude;           ///< degrees
    std::optional<double> longitude;          ///< degrees
    std::optional<double> altitude;           ///< m; never without a place
    std::optional<double> horizontalAccuracy; ///< m
    std::optional<double> verticalAccuracy;   ///< m
    std::optional<double> groundSpeed;        ///< m/s
    std::optional<double> verticalSpeed;      ///< m/s
    std::optional<double> direction;          ///< degrees from north
    std::optional<double> magneticVariation;  ///< degrees
    std::optional<qint64> time;               ///< ms since the epoch, in whole seconds

    bool hasPlace() const { return latitude.has_value(); }
    /// A three-dimensional fix.
    bool hasLock() const { return altitude.has_value(); }

    bool operator==(const Position &other) const = default;

    static Position from(const QGeoPositionInfo &info)
    {
        const auto attribute = [&](QGeoPositionInfo::Attribute which) {
            return finite(info.attribute(which));
        };
        Position position;
        const QGeoCoordinate place = info.coordinate();
        if (place.isValid()) {
            position.latitude = place.latitude();
            position.longitude = place.longitude();
            position.altitude = finite(place.altitude());
        }
        position.horizontalAccuracy = attribute(QGeoPositionInfo::HorizontalAccuracy);
        position.verticalAccuracy = attribute(QGeoPositionInfo::VerticalAccuracy);
        position.groundSpeed = attribute(QGeoPositionInfo::GroundSpeed);
        position.verticalSpeed = attribute(QGeoPositionInfo::VerticalSpeed);
        position.direction = attribute(QGeoPositionInfo::Direction);
        position.magneticVariation = attribute(QGeoPositionInfo::MagneticVariation);
        if (info.timestamp().isValid()) {
            position.time = info.timestamp().toSecsSinceEpoch() * 1000;
        }
        return position;
    }

private:
    static std::optional<double> finite(double value)
    {
        return std::isfinite(value) ? std::optional(value) : std::nullopt;
    }
};

} // namespace velometer
