#include "track/trackpart.h"

#include "track/trackfields.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int partVersion = 1;

constexpr qsizetype mostColumns = 256;

QJsonArray listOf(const QList<TrackPoint> &points)
{
    QJsonArray list;
    for (const TrackPoint &point : points) {
        list.append(TrackFields::toJson(point));
    }
    return list;
}

} // namespace

QByteArray TrackPart::toJson() const
{
    const QJsonObject document{
        {u"schema_version"_s, partVersion},
        {u"started_ms"_s, track.started},
        {u"ended_ms"_s, track.ended ? QJsonValue(*track.ended) : QJsonValue(QJsonValue::Null)},
        {u"first"_s, first},
        {u"columns"_s, QJsonArray::fromStringList(TrackFields::names())},
        {u"points"_s, listOf(points)}};
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

std::optional<TrackPart> TrackPart::fromJson(const QByteArray &document)
{
    const QJsonObject object = QJsonDocument::fromJson(document).object();
    const auto number = [&](QLatin1StringView key, qint64 most) -> std::optional<qint64> {
        const qint64 told = object.value(key).toInteger(-1);
        return told >= 0 && told <= most ? std::optional(told) : std::nullopt;
    };
    const auto started = number("started_ms"_L1, Tracks::latestMs);
    const auto ended = number("ended_ms"_L1, Tracks::latestMs);
    const auto first = number("first"_L1, Tracks::mostPoints);
    const QJsonArray points = object.value("points"_L1).toArray();
    const QJsonArray columns = object.value("columns"_L1).toArray();
    if (object.value("schema_version"_L1).toInt() != partVersion || !started || !first ||
        (!ended && !object.value("ended_ms"_L1).isNull()) || !object.value("points"_L1).isArray() ||
        points.size() > Tracks::partPoints || *first + points.size() > Tracks::mostPoints ||
        columns.size() > mostColumns) {
        return std::nullopt;
    }
    QStringList names;
    for (const QJsonValue each : columns) {
        names.append(each.toString());
    }
    TrackPart part;
    part.track.started = *started;
    part.track.ended = ended;
    part.first = *first;
    for (const QJsonValue each : points) {
        const auto point = TrackFields::fromJson(each, names);
        if (!point) {
            return std::nullopt;
        }
        part.points.append(*point);
    }
    return part;
}

} // namespace velometer
