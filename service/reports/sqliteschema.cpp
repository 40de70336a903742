#include "reports/sqliteschema.h"

#include "reports/reportqueries.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer::SqliteSchema {

namespace {

/// Step n brings a file from version n to n + 1. Steps that were released are never changed.
const QList<QStringList> &migrations()
{
    static const QList<QStringList> steps{
        {u"CREATE TABLE users("
         "id INTEGER PRIMARY KEY, uuid TEXT UNIQUE, created INTEGER NOT NULL)"_s,
         u"CREATE TABLE reports("
         "id INTEGER PRIMARY KEY, userid INTEGER NOT NULL REFERENCES users(id), "
         "seriesid INTEGER NOT NULL, testid INTEGER NOT NULL, client_time INTEGER NOT NULL, "
         "server_time INTEGER NOT NULL, public_ip TEXT NOT NULL, test_server TEXT NOT NULL, "
         "connection_type TEXT NOT NULL, location TEXT NOT NULL, network TEXT NOT NULL, "
         "mcc TEXT NOT NULL, mnc TEXT NOT NULL, platform TEXT NOT NULL, model TEXT NOT NULL, "
         "manufacturer TEXT NOT NULL, applet_version TEXT NOT NULL, "
         "download_min INTEGER, download_avg INTEGER, download_max INTEGER, "
         "upload_min INTEGER, upload_avg INTEGER, upload_max INTEGER, "
         "upload_client_min INTEGER, upload_client_avg INTEGER, upload_client_max INTEGER, "
         "rtt_min INTEGER, rtt_avg INTEGER, rtt_max INTEGER, latitude REAL, longitude REAL, "
         "document TEXT NOT NULL, UNIQUE(userid, seriesid, testid, client_time))"_s},
        // The users' pages list by time.
        {u"CREATE INDEX reports_by_time ON reports(userid, client_time)"_s},
        // Of reports from before streams were recorded, the document tells whether they were seen.
        {u"CREATE TABLE streams("
         "userid INTEGER NOT NULL, seriesid INTEGER NOT NULL, testid INTEGER NOT NULL, "
         "direction INTEGER NOT NULL, ended INTEGER NOT NULL, bytes INTEGER NOT NULL, "
         "lasted_ms INTEGER NOT NULL, min INTEGER NOT NULL, avg INTEGER NOT NULL, "
         "max INTEGER NOT NULL, late INTEGER NOT NULL, "
         "PRIMARY KEY(userid, seriesid, testid, direction)) WITHOUT ROWID"_s,
         u"CREATE INDEX streams_by_end ON streams(ended)"_s,
         u"ALTER TABLE reports ADD COLUMN verified INTEGER NOT NULL DEFAULT 0"_s,
         u"ALTER TABLE reports ADD COLUMN service_late INTEGER NOT NULL DEFAULT 0"_s,
         u"UPDATE reports SET verified = 1 WHERE (download_avg IS NULL OR document LIKE "
         "'%<ServerDataDownload>%sent % bytes in % ms%</ServerDataDownload>%') AND "
         "(ifnull(upload_avg, upload_client_avg) IS NULL OR document LIKE "
         "'%<ServerDataUpload>%received min %</ServerDataUpload>%')"_s},
        // What lists and figures need of a report stands in one index, in which the document, which
        // is a hundred times longer, is not in the way. Rows without a type are not filled yet.
        {u"ALTER TABLE reports ADD COLUMN type INTEGER"_s,
         u"ALTER TABLE reports ADD COLUMN operator TEXT NOT NULL DEFAULT ''"_s,
         u"ALTER TABLE reports ADD COLUMN download_rate INTEGER"_s,
         u"ALTER TABLE reports ADD COLUMN upload_rate INTEGER"_s,
         u"ALTER TABLE reports ADD COLUMN rtt INTEGER"_s,
         u"ALTER TABLE reports ADD COLUMN bytes INTEGER NOT NULL DEFAULT 0"_s,
         u"ALTER TABLE reports ADD COLUMN accuracy REAL"_s,
         u"ALTER TABLE reports ADD COLUMN note TEXT NOT NULL DEFAULT ''"_s,
         u"CREATE INDEX reports_unfilled ON reports(id) WHERE type IS NULL"_s,
         u"CREATE INDEX reports_by_user ON reports(userid)"_s, u"DROP INDEX reports_by_time"_s,
         u"CREATE INDEX reports_figures ON reports(userid, client_time, type, verified, seriesid, "
         "test_server, location, operator, download_rate, upload_rate, rtt, bytes, latitude, "
         "longitude, accuracy, network)"_s,
         // The id of a row is a test's permanent link, so none is given twice.
         u"CREATE TABLE report_ids(last INTEGER NOT NULL)"_s,
         u"INSERT INTO report_ids(last) VALUES(0)"_s,
         // Whoever was deleted stays known as such; erased is 0 until his last row is gone.
         u"ALTER TABLE users ADD COLUMN deleted INTEGER"_s,
         u"ALTER TABLE users ADD COLUMN erased INTEGER NOT NULL DEFAULT 1"_s,
         u"ALTER TABLE users ADD COLUMN changes INTEGER NOT NULL DEFAULT 0"_s,
         u"CREATE INDEX users_to_erase ON users(id) WHERE erased = 0"_s,
         u"CREATE TABLE shares("
         "key TEXT PRIMARY KEY, userid INTEGER NOT NULL REFERENCES users(id), "
         "filter TEXT NOT NULL, positions INTEGER NOT NULL, created INTEGER NOT NULL, "
         "expires INTEGER NOT NULL) WITHOUT ROWID"_s,
         u"CREATE INDEX shares_by_user ON shares(userid, created)"_s,
         // What the service saw of a test is kept with its report.
         u"ALTER TABLE streams ADD COLUMN reported INTEGER NOT NULL DEFAULT 0"_s,
         u"DROP INDEX streams_by_end"_s,
         u"CREATE INDEX streams_by_end ON streams(ended) WHERE reported = 0"_s,
         u"UPDATE streams SET reported = 1 WHERE EXISTS (SELECT 1 FROM reports WHERE "
         "reports.userid = streams.userid AND reports.seriesid = streams.seriesid AND "
         "reports.testid = streams.testid)"_s},
        {u"ALTER TABLE streams ADD COLUMN kernel TEXT NOT NULL DEFAULT ''"_s},
        // A track's points come and stay in parts. What its cells heard is counted once, when they
        // come: nobody reads all points for a figure.
        {u"CREATE TABLE tracks("
         "id INTEGER PRIMARY KEY, userid INTEGER NOT NULL REFERENCES users(id), "
         "track TEXT NOT NULL, started INTEGER NOT NULL, ended INTEGER, points INTEGER NOT NULL, "
         "UNIQUE(userid, track))"_s,
         u"CREATE TABLE trackparts("
         "id INTEGER PRIMARY KEY, trackid INTEGER NOT NULL REFERENCES tracks(id), "
         "first INTEGER NOT NULL, document BLOB NOT NULL, UNIQUE(trackid, first))"_s,
         u"CREATE TABLE trackcells("
         "id INTEGER PRIMARY KEY AUTOINCREMENT, trackid INTEGER NOT NULL REFERENCES tracks(id), "
         "latitude REAL NOT NULL, longitude REAL NOT NULL, type INTEGER NOT NULL, "
         "rsrp INTEGER NOT NULL, points INTEGER NOT NULL)"_s,
         u"CREATE INDEX trackcells_by_track ON trackcells(trackid)"_s},
        // The delays under load of the reports that are there are filled in like the rest.
        {u"ALTER TABLE reports ADD COLUMN download_rtt INTEGER"_s,
         u"ALTER TABLE reports ADD COLUMN upload_rtt INTEGER"_s, u"DROP INDEX reports_figures"_s,
         u"CREATE INDEX reports_figures ON reports(userid, client_time, type, verified, seriesid, "
         "test_server, location, operator, download_rate, upload_rate, rtt, bytes, latitude, "
         "longitude, accuracy, network, download_rtt, upload_rtt)"_s,
         u"UPDATE reports SET type = NULL WHERE document LIKE '%LoadFigures: %'"_s},
        // What is old is found by its age. A device's number is taken out of its reports wherever
        // it stands in them; what is shorter is no such number.
        {u"CREATE TABLE settings(name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID"_s,
         u"CREATE INDEX reports_by_age ON reports(server_time)"_s,
         u"CREATE TABLE allowances(payer TEXT NOT NULL, kind INTEGER NOT NULL, level REAL NOT "
         "NULL, at INTEGER NOT NULL, PRIMARY KEY(payer, kind)) WITHOUT ROWID"_s,
         u"CREATE INDEX allowances_by_age ON allowances(at)"_s,
         u"CREATE TABLE figures(dimension INTEGER NOT NULL, key TEXT NOT NULL, counts BLOB NOT "
         u"NULL, "
         "PRIMARY KEY(dimension, key))"_s,
         u"UPDATE reports SET document = replace(document, substr(document, instr(document, "
         "'<UUID>') + 6, instr(document, '</UUID>') - instr(document, '<UUID>') - 6), '') WHERE "
         "document LIKE '%<UUID>________%</UUID>%'"_s,
         u"ALTER TABLE trackparts ADD COLUMN userid INTEGER NOT NULL DEFAULT 0"_s,
         u"UPDATE trackparts SET userid = (SELECT userid FROM tracks WHERE id = trackid)"_s,
         u"ALTER TABLE trackcells ADD COLUMN userid INTEGER NOT NULL DEFAULT 0"_s,
         u"UPDATE trackcells SET userid = (SELECT userid FROM tracks WHERE id = trackid)"_s,
         u"CREATE INDEX trackparts_by_user ON trackparts(userid)"_s,
         u"CREATE INDEX trackcells_by_user ON trackcells(userid)"_s},
    };
    return steps;
}

QString migrate(SqliteConnection &connection)
{
    const auto version = connection.number(u"PRAGMA user_version"_s);
    if (!version) {
        return connection.problem();
    }
    if (*version > migrations().size()) {
        return u"it was written by a newer version of this program"_s;
    }
    for (auto step = static_cast<qsizetype>(*version); step < migrations().size(); ++step) {
        bool done = connection.beginWriting();
        for (const auto &statement : migrations().at(step)) {
            done = done && connection.execute(statement);
        }
        done = done && connection.execute(u"PRAGMA user_version=%1"_s.arg(step + 1)) &&
               connection.commit();
        if (!done) {
            connection.rollBack();
            return u"it cannot be brought from version %1 to %2 (%3)"_s.arg(step).arg(step + 1).arg(
                connection.problem());
        }
    }
    return {};
}

/// What a kill leaves unfilled is filled the next time.
QString fillOldReports(SqliteConnection &connection)
{
    qint64 filled = 0;
    do {
        const bool begun = connection.beginWriting();
        const auto count = begun ? ReportQueries::fillColumns(connection) : std::nullopt;
        if (!count || !connection.commit()) {
            const QString problem = connection.problem();
            connection.rollBack();
            return u"its reports cannot be brought forward (%1)"_s.arg(problem);
        }
        filled = *count;
    } while (filled > 0);
    return {};
}

/// Takes the file, and what SQLite keeps beside it, from the eyes of other users.
bool keepPrivate(const QString &file)
{
    const auto owner = QFile::ReadOwner | QFile::WriteOwner;
    return std::ranges::all_of(std::array{u""_s, u"-wal"_s, u"-shm"_s}, [&](const auto &suffix) {
        return !QFile::exists(file + suffix) || QFile::setPermissions(file + suffix, owner);
    });
}

} // namespace

bool isCurrent(SqlConnection &connection)
{
    return connection.number(u"PRAGMA user_version"_s) == migrations().size();
}

QString bringForward(SqliteConnection &connection, const QString &file)
{
    if (!connection.execute(u"PRAGMA journal_mode=WAL"_s) ||
        !connection.execute(u"PRAGMA synchronous=FULL"_s) ||
        !connection.execute(u"PRAGMA foreign_keys=ON"_s)) {
        return connection.isNoDatabase() ? u"it is no database"_s : connection.problem();
    }
    if (QString problem = migrate(connection); !problem.isEmpty()) {
        return problem;
    }
    if (QString problem = fillOldReports(connection); !problem.isEmpty()) {
        return problem;
    }
    if (!keepPrivate(file)) {
        return u"it cannot be hidden from other users"_s;
    }
    // A file on a read-only medium opens and fails at the first report; better now.
    if (!connection.beginWriting()) {
        return connection.problem();
    }
    connection.rollBack();
    return {};
}

} // namespace velometer::SqliteSchema
