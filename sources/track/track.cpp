#include "track/track.h"

#include <QUuid>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velometer {

namespace {

constexpr double earthRadius = 6'371'008.8; // m, the mean of the ellipsoid's
constexpr qsizetype idDigits = 32;

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180;
}

} // namespace

QString Tracks::newId()
{
    return QUuid::createUuid().toString(QUuid::Id128);
}

bool Tracks::isId(const QString &text)
{
    return text.size() == idDigits && std::all_of(text.begin(), text.end(), [](QChar digit) {
               return (digit >= u'0' && digit <= u'9') || (digit >= u'a' && digit <= u'f');
           });
}

double Tracks::metresBetween(const TrackPoint &one, const TrackPoint &other)
{
    if (one.segment != other.segment || !one.hasPlace() || !other.hasPlace()) {
        return 0;
    }
    const double here = radians(one.latitude.value_or(0));
    const double there = radians(other.latitude.value_or(0));
    const double north = std::sin((there - here) / 2);
    const double east =
        std::sin(radians(other.longitude.value_or(0) - one.longitude.value_or(0)) / 2);
    const double chord = north * north + std::cos(here) * std::cos(there) * east * east;
    return 2 * earthRadius * std::asin(std::sqrt(std::clamp(chord, 0.0, 1.0)));
}

} // namespace velometer
