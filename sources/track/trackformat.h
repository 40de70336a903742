#pragma once

#include "track/track.h"

#include <QByteArray>

namespace velometer {

/// A track as a document, in pieces so that no track needs to fit into memory: begin(), point() for
/// each in their order, end(). Never translated; the same on the device and at the service.
class TrackFormat
{
public:
    enum class Kind {
        Csv,     ///< a line a point
        Json,    ///< an object a point and line
        GeoJson, ///< a feature a point; one without a place has no geometry
        Gpx,     ///< the points with a place; what the format does not name stands in extensions
    };

    TrackFormat(Kind documentKind, Track whole);

    QByteArray begin() const;
    QByteArray point(const TrackPoint &point);
    QByteArray end() const;

private:
    QByteArray gpxPoint(const TrackPoint &point);

    Kind kind;
    Track track;
    bool isFirst = true;
    int segment = -1; ///< that of the last point with a place
};

} // namespace velometer
