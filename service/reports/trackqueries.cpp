#include "reports/trackqueries.h"

#include "reports/connectionclass.h"
#include "reports/statistics.h"

#include <cmath>
#include <map>
#include <tuple>

using namespace Qt::StringLiterals;

namespace velometer::TrackQueries {

namespace {

/// What one part heard in a cell of the public grid, at one strength.
struct Heard
{
    double latitude = 0, longitude = 0; ///< of one of its points
    qint64 points = 0;
};

/// The signal alone, without when: figures of all users are made of it.
bool countCells(SqlConnection &connection, qint64 userId, qint64 row,
                const QList<TrackPoint> &points)
{
    std::map<std::tuple<QString, int, int>, Heard> cells;
    for (const TrackPoint &point : points) {
        const QString cell = point.hasPlace() ? StatisticsTable::cellOf(point.latitude.value_or(0),
                                                                        point.longitude.value_or(0))
                                              : QString();
        if (cell.isEmpty() || !point.rsrp) {
            continue;
        }
        const auto type = ConnectionClasses::ofReport(point.mode);
        Heard &heard = cells[{cell, static_cast<int>(type), std::lround(*point.rsrp)}];
        heard.latitude = point.latitude.value_or(0);
        heard.longitude = point.longitude.value_or(0);
        ++heard.points;
    }
    for (const auto &[key, heard] : cells) {
        if (!connection.execute(
                u"INSERT INTO trackcells(userid, trackid, latitude, longitude, type, rsrp, "
                "points) VALUES(?, ?, ?, ?, ?, ?, ?)"_s,
                {userId, row, heard.latitude, heard.longitude, std::get<1>(key), std::get<2>(key),
                 heard.points})) {
            return false;
        }
    }
    return true;
}

bool removeRow(SqlConnection &connection, qint64 userId, qint64 row)
{
    return connection.execute(u"UPDATE users SET changes = changes + 1 WHERE id = ?"_s, {userId}) &&
           connection.execute(u"DELETE FROM trackcells WHERE userid = ? AND trackid = ?"_s,
                              {userId, row}) &&
           connection.execute(u"DELETE FROM trackparts WHERE userid = ? AND trackid = ?"_s,
                              {userId, row}) &&
           connection.execute(u"DELETE FROM tracks WHERE userid = ? AND id = ?"_s, {userId, row});
}

} // namespace

std::optional<ReportStore::TrackTaken> take(SqlConnection &connection, qint64 userId,
                                            const TrackPart &part)
{
    using State = ReportStore::TrackState;
    const auto isThere = connection.number(
        u"SELECT count(*) FROM users WHERE id = ? AND deleted IS NULL"_s, {userId});
    auto query = connection.select(
        u"SELECT id, points FROM tracks WHERE userid = ? AND track = ?"_s, {userId, part.track.id});
    const auto others =
        connection.number(u"SELECT count(*) FROM tracks WHERE userid = ?"_s, {userId});
    if (!isThere || !query || !others) {
        return std::nullopt;
    }
    if (*isThere == 0) {
        return ReportStore::TrackTaken{.state = State::Deleted};
    }
    std::optional<qint64> row;
    qint64 before = 0;
    if (query->next()) {
        row = query->value(0).toLongLong();
        before = query->value(1).toLongLong();
    }
    query.reset();
    if (part.first > before) {
        return ReportStore::TrackTaken{.state = State::Gap, .points = before};
    }
    if (!row && *others >= ReportStore::maxTracks) {
        return ReportStore::TrackTaken{.state = State::Full};
    }
    if (!row) {
        auto inserted = connection.select(
            u"INSERT INTO tracks(userid, track, started, points) VALUES(?, ?, ?, 0) RETURNING id"_s,
            {userId, part.track.id, part.track.started});
        if (!inserted || !inserted->next()) {
            return std::nullopt;
        }
        row = inserted->value(0).toLongLong();
    }
    TrackPart fresh = part;
    fresh.first = before;
    fresh.points = part.points.mid(before - part.first);
    const qint64 points = before + fresh.points.size();
    if (!fresh.points.isEmpty() &&
        (!connection.execute(
             u"INSERT INTO trackparts(userid, trackid, first, document) VALUES(?, ?, "
             "?, ?)"_s,
             {userId, *row, fresh.first, qCompress(fresh.toJson())}) ||
         !countCells(connection, userId, *row, fresh.points))) {
        return std::nullopt;
    }
    const QVariant ended = part.track.ended ? QVariant(*part.track.ended) : QVariant();
    if (!connection.execute(
            u"UPDATE tracks SET points = ?, ended = ? WHERE userid = ? AND id = ?"_s,
            {points, ended, userId, *row})) {
        return std::nullopt;
    }
    return ReportStore::TrackTaken{.state = State::Taken, .points = points};
}

std::optional<QList<Track>> all(SqlConnection &connection, qint64 userId)
{
    auto query = connection.select(u"SELECT track, started, ended, points FROM tracks WHERE userid "
                                   "= ? ORDER BY started DESC"_s,
                                   {userId});
    if (!query) {
        return std::nullopt;
    }
    QList<Track> tracks;
    while (query->next()) {
        Track track;
        track.id = query->value(0).toString();
        track.started = query->value(1).toLongLong();
        const QVariant ended = query->value(2);
        track.ended = ended.isNull() ? std::nullopt : std::optional(ended.toLongLong());
        track.points = query->value(3).toLongLong();
        tracks += track;
    }
    return tracks;
}

std::optional<QList<TrackPart>> part(SqlConnection &connection, qint64 userId, const QString &id,
                                     qint64 first)
{
    auto query = connection.select(
        u"SELECT t.started, t.ended, t.points, p.first, p.document FROM tracks t LEFT JOIN "
        "trackparts p ON p.userid = t.userid AND p.trackid = t.id AND p.first >= ? WHERE t.userid "
        "= ? AND t.track = ? "
        "ORDER BY p.first LIMIT 1"_s,
        {first, userId, id});
    if (!query) {
        return std::nullopt;
    }
    QList<TrackPart> found;
    if (query->next()) {
        TrackPart one;
        if (!query->value(3).isNull()) {
            one = TrackPart::fromJson(qUncompress(query->value(4).toByteArray()))
                      .value_or(TrackPart());
        }
        const QVariant ended = query->value(1);
        one.track = {};
        one.track.id = id;
        one.track.started = query->value(0).toLongLong();
        one.track.ended = ended.isNull() ? std::nullopt : std::optional(ended.toLongLong());
        one.track.points = query->value(2).toLongLong();
        one.first = query->value(3).toLongLong();
        found += one;
    }
    return found;
}

std::optional<bool> remove(SqlConnection &connection, qint64 userId, const QString &id)
{
    auto query =
        connection.select(u"SELECT id FROM tracks WHERE userid = ? AND track = ?"_s, {userId, id});
    if (!query) {
        return std::nullopt;
    }
    if (!query->next()) {
        return false;
    }
    const qint64 row = query->value(0).toLongLong();
    query.reset();
    return removeRow(connection, userId, row) ? std::optional(true) : std::nullopt;
}

std::optional<bool> removeAny(SqlConnection &connection, qint64 userId)
{
    auto query = connection.select(u"SELECT id FROM tracks WHERE userid = ? LIMIT 1"_s, {userId});
    if (!query) {
        return std::nullopt;
    }
    if (!query->next()) {
        return false;
    }
    const qint64 row = query->value(0).toLongLong();
    query.reset();
    return removeRow(connection, userId, row) ? std::optional(true) : std::nullopt;
}

} // namespace velometer::TrackQueries
