#pragma once

#include "track/track.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QStringList>

#include <functional>
#include <optional>

namespace velometer {

/// One column of a track's point: every store, document and export goes by the list of them.
struct TrackField
{
    QString name; ///< with its unit; fixed
    /// Null when not known.
    std::function<QJsonValue(const TrackPoint &)> get;
    /// False when @p value is neither null nor in range.
    std::function<bool(TrackPoint &, const QJsonValue &value)> set;
};

/// The columns. The list only grows, at its end: rows of before are shorter.
namespace TrackFields {

const QList<TrackField> &all();
QStringList names();

/// The point as a list of values in the order of all().
QJsonArray toJson(const TrackPoint &point);
/// The point of a list of values in the order of @p columns, names of which unknown ones are
/// skipped. Nothing when a value is out of range, there are more values than columns, there is no
/// time, or a latitude without a longitude.
std::optional<TrackPoint> fromJson(const QJsonValue &values, const QStringList &columns);

} // namespace TrackFields

} // namespace velometer
