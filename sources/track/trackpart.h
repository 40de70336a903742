#pragma once

#include "track/track.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace velometer {

/// A run of points of one track on its way to the service. A plain value.
struct TrackPart
{
    Track track;      ///< its id, start and end
    qint64 first = 0; ///< the number of the first point, from 0 on
    QList<TrackPoint> points;

    /// {"schema_version", "started_ms", "ended_ms", "first", "columns", "points"}; the id stands in
    /// the address.
    QByteArray toJson() const;
    /// Nothing when @p document is not such a part: checked in every value and bounded, so that
    /// anybody may have written it.
    static std::optional<TrackPart> fromJson(const QByteArray &document);
};

} // namespace velometer
