#include "db/trackstore.h"

#include "db/transaction.h"
#include "track/trackfields.h"

#include <QJsonDocument>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// The columns of before: a row tells no names.
TrackPoint pointOf(const QByteArray &row)
{
    static const QStringList columns = TrackFields::names();
    return TrackFields::fromJson(QJsonDocument::fromJson(row).array(), columns)
        .value_or(TrackPoint());
}

} // namespace

void TrackStore::createTables()
{
    run(u"CREATE TABLE IF NOT EXISTS tracks (id integer primary key, track text, started integer, "
        "ended integer, points integer, tests integer, metres double, sent integer, settled "
        "integer)"_s,
        {});
    run(u"CREATE TABLE IF NOT EXISTS trackpoints (track integer, number integer, point text, "
        "PRIMARY KEY (track, number)) WITHOUT ROWID"_s,
        {});
}

bool TrackStore::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery query(db);
    bool done = query.prepare(statement);
    for (const QVariant &value : values) {
        query.addBindValue(value);
    }
    done = done && query.exec();
    if (!done) {
        logSqlError(u"ERROR: %1 %2"_s, query.lastError());
    }
    return done;
}

std::optional<Track> TrackStore::begin(qint64 started)
{
    Track track;
    track.id = Tracks::newId();
    track.started = started;
    QSqlQuery query(db);
    query.prepare(u"INSERT INTO tracks(track, started, points, tests, metres, sent, settled) "
                  "VALUES(?, ?, 0, 0, 0, 0, 0)"_s);
    query.addBindValue(track.id);
    query.addBindValue(started);
    if (!query.exec()) {
        logSqlError(u"ERROR: %1 %2"_s, query.lastError());
        return std::nullopt;
    }
    track.row = query.lastInsertId().toULongLong();
    return track;
}

bool TrackStore::append(Track &track, const QList<TrackPoint> &points, double metres)
{
    Transaction transaction(db);
    if (!transaction.isOpen()) {
        return false;
    }
    QSqlQuery query(db);
    query.prepare(u"INSERT INTO trackpoints(track, number, point) VALUES(?, ?, ?)"_s);
    qint64 number = track.points;
    for (const TrackPoint &point : points) {
        query.bindValue(0, track.row);
        query.bindValue(1, number++);
        query.bindValue(
            2, QString::fromUtf8(
                   QJsonDocument(TrackFields::toJson(point)).toJson(QJsonDocument::Compact)));
        if (!query.exec()) {
            logSqlError(u"ERROR: %1 %2"_s, query.lastError());
            return false;
        }
    }
    const auto tests = std::count_if(points.begin(), points.end(),
                                     [](const TrackPoint &each) { return !each.test.isEmpty(); });
    if (!run(u"UPDATE tracks SET points = ?, tests = tests + ?, metres = metres + ? WHERE id = ?"_s,
             {number, static_cast<qint64>(tests), metres, track.row}) ||
        !transaction.commit()) {
        return false;
    }
    track.points = number;
    track.tests += tests;
    track.metres += metres;
    return true;
}

bool TrackStore::setEnded(Track &track, std::optional<qint64> ended)
{
    if (!run(u"UPDATE tracks SET ended = ?, settled = 0 WHERE id = ?"_s,
             {ended ? QVariant(*ended) : QVariant(), track.row})) {
        return false;
    }
    track.ended = ended;
    track.isSent = false;
    return true;
}

bool TrackStore::setSent(Track &track, qint64 points, bool isSent)
{
    if (!run(u"UPDATE tracks SET sent = ?, settled = ? WHERE id = ?"_s,
             {points, isSent ? 1 : 0, track.row})) {
        return false;
    }
    track.sent = points;
    track.isSent = isSent;
    return true;
}

bool TrackStore::remove(qulonglong row)
{
    Transaction transaction(db);
    return transaction.isOpen() && run(u"DELETE FROM trackpoints WHERE track = ?"_s, {row}) &&
           run(u"DELETE FROM tracks WHERE id = ?"_s, {row}) && transaction.commit();
}

QList<Track> TrackStore::read(const QString &condition, const QVariantList &values)
{
    QList<Track> tracks;
    QSqlQuery query(db);
    query.prepare("SELECT id, track, started, ended, points, tests, metres, sent, settled FROM "
                  "tracks "_L1 +
                  condition);
    for (const QVariant &value : values) {
        query.addBindValue(value);
    }
    if (!query.exec()) {
        logSqlError(u"ERROR: %1 %2"_s, query.lastError());
    }
    while (query.next()) {
        int column = 0;
        const auto next = [&] { return query.value(column++); };
        Track track;
        track.row = next().toULongLong();
        track.id = next().toString();
        track.started = next().toLongLong();
        const QVariant ended = next();
        track.ended = ended.isNull() ? std::nullopt : std::optional(ended.toLongLong());
        track.points = next().toLongLong();
        track.tests = next().toLongLong();
        track.metres = next().toDouble();
        track.sent = next().toLongLong();
        track.isSent = next().toBool();
        tracks.append(track);
    }
    return tracks;
}

QList<Track> TrackStore::all()
{
    return read(u"ORDER BY id DESC"_s, {});
}

std::optional<Track> TrackStore::track(qulonglong row)
{
    const QList<Track> found = read(u"WHERE id = ?"_s, {row});
    return found.isEmpty() ? std::nullopt : std::optional(found.constFirst());
}

QList<TrackPoint> TrackStore::points(qulonglong row, qint64 first, int most)
{
    QList<TrackPoint> list;
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.prepare(u"SELECT point FROM trackpoints WHERE track = ? AND number >= ? ORDER BY number "
                  "LIMIT ?"_s);
    query.addBindValue(row);
    query.addBindValue(first);
    query.addBindValue(most);
    if (!query.exec()) {
        logSqlError(u"ERROR: %1 %2"_s, query.lastError());
    }
    while (query.next()) {
        TrackPoint point = pointOf(query.value(0).toString().toUtf8());
        if (point.time == 0) {
            point.time = list.isEmpty() ? 1 : list.constLast().time;
        }
        list.append(point);
    }
    return list;
}

std::optional<TrackPoint> TrackStore::lastPoint(qulonglong row)
{
    const auto whole = track(row);
    const QList<TrackPoint> last =
        whole ? points(row, std::max<qint64>(whole->points - 1, 0), 1) : QList<TrackPoint>();
    return last.isEmpty() ? std::nullopt : std::optional(last.constFirst());
}

} // namespace velometer
