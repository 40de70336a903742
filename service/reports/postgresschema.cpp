#include "reports/postgresschema.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace velometer::PostgresSchema {

namespace {

/// "velo": whoever makes or migrates tables.
constexpr qint64 migrationLock = 0x76656c6f;

constexpr int partitions = 16;

/// A table whose rows lie by their user's id in so many parts.
QStringList partitioned(const QString &table, const QString &columns)
{
    QStringList statements{u"CREATE TABLE %1(%2) PARTITION BY HASH(userid)"_s.arg(table, columns)};
    for (int part = 0; part < partitions; ++part) {
        statements += u"CREATE TABLE %1_%2 PARTITION OF %1 FOR VALUES WITH (MODULUS %3, "
                      "REMAINDER %2)"_s.arg(table)
                          .arg(part)
                          .arg(partitions);
    }
    return statements;
}

/// Step n brings a data base from version n to n + 1. Steps that were released are never changed.
/// Every key of what is partitioned has the user's id in it, so that its rows may lie on several
/// machines. What is true or false is 0 or 1, as in the SQLite store, with which the statements
/// are shared.
const QList<QStringList> &migrations()
{
    static const QList<QStringList> steps{
        QStringList{
            u"CREATE TABLE users(id bigint PRIMARY KEY, uuid text UNIQUE, created bigint NOT NULL, "
            "deleted bigint, erased smallint NOT NULL DEFAULT 1, changes bigint NOT NULL "
            "DEFAULT 0)"_s,
            u"CREATE INDEX users_to_erase ON users(id) WHERE erased = 0"_s,
            u"CREATE SEQUENCE report_ids"_s} +
            partitioned(
                u"reports"_s,
                u"id bigint NOT NULL, userid bigint NOT NULL, seriesid bigint NOT NULL, "
                "testid bigint NOT NULL, client_time bigint NOT NULL, server_time bigint NOT NULL, "
                "public_ip text NOT NULL, test_server text NOT NULL, connection_type text NOT "
                "NULL, location text NOT NULL, network text NOT NULL, mcc text NOT NULL, mnc text "
                "NOT NULL, platform text NOT NULL, model text NOT NULL, manufacturer text NOT "
                "NULL, applet_version text NOT NULL, download_min bigint, download_avg bigint, "
                "download_max bigint, upload_min bigint, upload_avg bigint, upload_max bigint, "
                "upload_client_min bigint, upload_client_avg bigint, upload_client_max bigint, "
                "rtt_min bigint, rtt_avg bigint, rtt_max bigint, latitude double precision, "
                "longitude double precision, document text COMPRESSION lz4 NOT NULL, verified "
                "smallint NOT NULL, service_late smallint NOT NULL, type smallint NOT NULL, "
                "operator text NOT NULL, download_rate bigint, upload_rate bigint, rtt bigint, "
                "bytes bigint NOT NULL, accuracy double precision, note text NOT NULL DEFAULT '', "
                "download_rtt bigint, upload_rtt bigint, PRIMARY KEY(userid, id), "
                "UNIQUE(userid, seriesid, testid, client_time)"_s) +
            QStringList{// Lists and exports; and deletion by age.
                        u"CREATE INDEX reports_by_time ON reports(userid, client_time, id)"_s,
                        u"CREATE INDEX reports_by_age ON reports(server_time)"_s} +
            partitioned(u"streams"_s,
                        u"userid bigint NOT NULL, seriesid bigint NOT NULL, testid bigint NOT "
                        "NULL, direction smallint NOT NULL, ended bigint NOT NULL, bytes bigint "
                        "NOT NULL, lasted_ms bigint NOT NULL, min bigint NOT NULL, avg bigint NOT "
                        "NULL, max bigint NOT NULL, late smallint NOT NULL, kernel text "
                        "COMPRESSION lz4 NOT NULL DEFAULT '', reported smallint NOT NULL DEFAULT "
                        "0, PRIMARY KEY(userid, seriesid, testid, direction)"_s) +
            QStringList{
                u"CREATE INDEX streams_by_end ON streams(ended) WHERE reported = 0"_s,
                u"CREATE TABLE shares(key text PRIMARY KEY, userid bigint NOT NULL, filter text "
                "NOT NULL, positions smallint NOT NULL, created bigint NOT NULL, expires bigint "
                "NOT NULL)"_s,
                u"CREATE INDEX shares_by_user ON shares(userid, created)"_s,
                u"CREATE TABLE tracks(id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, userid "
                "bigint NOT NULL, track text NOT NULL, started bigint NOT NULL, ended bigint, "
                "points bigint NOT NULL, UNIQUE(userid, track))"_s,
                u"CREATE TABLE trackparts(trackid bigint NOT NULL REFERENCES tracks(id), first "
                "bigint NOT NULL, document bytea NOT NULL, PRIMARY KEY(trackid, first))"_s,
                u"CREATE TABLE trackcells(id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, "
                "trackid bigint NOT NULL REFERENCES tracks(id), latitude double precision NOT "
                "NULL, longitude double precision NOT NULL, type smallint NOT NULL, rsrp smallint "
                "NOT NULL, points bigint NOT NULL)"_s,
                u"CREATE INDEX trackcells_by_track ON trackcells(trackid)"_s},
        // A device's number is taken out of its reports wherever it stands in them; what is
        // shorter is no such number. All that is a user's can lie where he does.
        QStringList{
            u"CREATE TABLE settings(name text PRIMARY KEY, value text NOT NULL)"_s,
            u"CREATE TABLE allowances(payer text NOT NULL, kind smallint NOT NULL, level double "
            "precision NOT NULL, at bigint NOT NULL, PRIMARY KEY(payer, kind))"_s,
            u"CREATE INDEX allowances_by_age ON allowances(at)"_s,
            u"CREATE TABLE figures(dimension smallint NOT NULL, key text NOT NULL, counts bytea "
            u"NOT NULL, "
            "PRIMARY KEY(dimension, key))"_s,
            u"UPDATE reports SET document = replace(document, substring(document from "
            "'<UUID>([^<]{8,})</UUID>'), '') WHERE document ~ '<UUID>[^<]{8,}</UUID>'"_s,
            u"ALTER TABLE trackparts DROP CONSTRAINT trackparts_trackid_fkey, DROP CONSTRAINT "
            "trackparts_pkey, ADD COLUMN userid bigint NOT NULL DEFAULT 0"_s,
            u"ALTER TABLE trackcells DROP CONSTRAINT trackcells_trackid_fkey, DROP CONSTRAINT "
            "trackcells_pkey, ADD COLUMN userid bigint NOT NULL DEFAULT 0"_s,
            u"UPDATE trackparts SET userid = t.userid FROM tracks t WHERE t.id = trackid"_s,
            u"UPDATE trackcells SET userid = t.userid FROM tracks t WHERE t.id = trackid"_s,
            u"ALTER TABLE tracks DROP CONSTRAINT tracks_pkey, ADD PRIMARY KEY(userid, id), ALTER "
            "COLUMN id SET GENERATED BY DEFAULT"_s,
            u"ALTER TABLE trackcells ALTER COLUMN id SET GENERATED BY DEFAULT"_s,
            u"ALTER TABLE trackparts ADD PRIMARY KEY(userid, trackid, first)"_s,
            u"ALTER TABLE trackcells ADD PRIMARY KEY(userid, id)"_s,
            u"DROP INDEX trackcells_by_track"_s,
            u"CREATE INDEX trackcells_by_track ON trackcells(userid, trackid)"_s,
            u"CREATE INDEX trackcells_by_id ON trackcells(id)"_s}};
    return steps;
}

bool migrate(SqlConnection &connection, QString *problem)
{
    // The lock is given back with the transaction.
    if (!connection.execute(u"SELECT pg_advisory_xact_lock(?)"_s, {migrationLock}) ||
        !connection.execute(
            u"CREATE TABLE IF NOT EXISTS schema_version(version integer NOT NULL)"_s) ||
        !connection.execute(u"INSERT INTO schema_version(version) SELECT 0 WHERE NOT EXISTS "
                            "(SELECT 1 FROM schema_version)"_s)) {
        return false;
    }
    const auto version = connection.number(u"SELECT version FROM schema_version"_s);
    if (!version) {
        return false;
    }
    if (*version > migrations().size()) {
        *problem = u"it was written by a newer version of this program"_s;
        return false;
    }
    for (auto step = static_cast<qsizetype>(*version); step < migrations().size(); ++step) {
        for (const auto &statement : migrations().at(step)) {
            if (!connection.execute(statement)) {
                *problem = u"it cannot be brought from version %1 to %2 (%3)"_s.arg(step)
                               .arg(step + 1)
                               .arg(connection.problem());
                return false;
            }
        }
    }
    return connection.execute(u"UPDATE schema_version SET version = ?"_s,
                              {qlonglong(migrations().size())});
}

} // namespace

bool isCurrent(SqlConnection &connection)
{
    return connection.number(u"SELECT version FROM schema_version"_s) == migrations().size();
}

QString bringForward(SqlConnection &connection)
{
    // Others may take their time with a large table.
    if (!connection.beginWriting() || !connection.execute(u"SET LOCAL lock_timeout = 0"_s) ||
        !connection.execute(u"SET LOCAL statement_timeout = 0"_s)) {
        return connection.problem();
    }
    QString problem;
    if (migrate(connection, &problem) && connection.commit()) {
        return {};
    }
    if (problem.isEmpty()) {
        problem = connection.problem();
    }
    connection.rollBack();
    return problem;
}

} // namespace velometer::PostgresSchema
