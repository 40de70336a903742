#pragma once

#include <QLatin1StringView>

/// The statements of the result database. "%1", "%2" ... are filled by substitution, "?" are bound.
namespace velometer::DatabaseStatements {

using namespace Qt::StringLiterals;

inline constexpr int schemaVersion = 6;

/// All tables, and those that keep a version.
inline constexpr auto COUNT_TABLES =
    "SELECT COUNT(*), COUNT(CASE WHEN name LIKE '%version%' THEN 1 END) FROM sqlite_master WHERE "
    "type = 'table'"_L1;
inline constexpr auto CREATE_TABLE_VERSION = "CREATE TABLE version (v integer)"_L1;
inline constexpr auto DELETE_FROM_VERSION = "DELETE FROM version"_L1;
inline constexpr auto INSERT_INTO_VERSION = "INSERT INTO version VALUES(%1)"_L1;
inline constexpr auto SELECT_VERSION = "SELECT * FROM VERSION"_L1;

inline constexpr auto DROP_TABLE_TESTRESULTS = "DROP TABLE testresults"_L1;
inline constexpr auto DROP_TABLE_TESTDETAILS = "DROP TABLE testdetails"_L1;
inline constexpr auto DROP_TABLE_XMLFILES = "DROP TABLE xmlfiles"_L1;
inline constexpr auto CREATE_TABLE_TESTRESULTS =
    "CREATE TABLE testresults (id integer primary key, timestamp double,seriesid integer,testid "
    "integer,downloadSpeed double,uploadSpeed double,uploadSpeedClient double,rtt "
    "integer,connectionType varchar(255),location varchar(255),server varchar(255),velocity "
    "double,distance double,accuracyvert double,accuracyhor double,distanceDurationInSeconds "
    "double)"_L1;
inline constexpr auto CREATE_TABLE_XMLFILES =
    "CREATE TABLE xmlfiles (id integer primary key, numberofretries integer, xml varchar(65000))"_L1;
inline constexpr auto CREATE_TABLE_TESTDETAILS =
    "CREATE TABLE testdetails (id integer,key varchar(128), type varchar(1), string varchar(255), "
    "long long, double double, PRIMARY KEY (id, key))"_L1;
/// Both totals read this alone instead of every detail of every test.
inline constexpr auto CREATE_INDEX_TOTALBYTES =
    "CREATE INDEX IF NOT EXISTS testdetails_totalbytes ON testdetails(key, id, long) WHERE key = "
    "'totalBytes'"_L1;
/// Bytes per 100 ms, or response times in ns, separated by commas: a row for each phase of a test
/// that has them.
inline constexpr auto CREATE_TABLE_TESTINTERVALS =
    "CREATE TABLE IF NOT EXISTS testintervals (id integer, resulttype integer, bytes text, PRIMARY "
    "KEY (id, resulttype))"_L1;
inline constexpr auto DELETE_ALL_TESTINTERVALS = "DELETE FROM testintervals"_L1;
inline constexpr auto INSERT_INTO_TESTINTERVALS =
    "INSERT INTO testintervals(id,resulttype,bytes) VALUES(?,?,?)"_L1;
inline constexpr auto SELECT_TESTINTERVALS =
    "SELECT bytes FROM testintervals WHERE id = %1 AND resulttype = %2"_L1;
inline constexpr auto SELECT_ALL_TESTINTERVALS =
    "SELECT resulttype, bytes FROM testintervals WHERE id = %1"_L1;

inline constexpr auto INSERT_INTO_TESTRESULTS =
    "INSERT INTO "
    "testresults(timestamp,seriesid,testid,downloadSpeed,uploadSpeed,uploadSpeedClient,rtt,"
    "connectionType,location,server,velocity,distance,accuracyvert,accuracyhor,"
    "distanceDurationInSeconds) "
    "VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"_L1;
inline constexpr auto INSERT_INTO_TESTDETAILS =
    "INSERT INTO testdetails(id,key,type,string,long,double) VALUES(?,?,?,?,?,?)"_L1;
inline constexpr auto SELECT_TESTRESULTS_BY_ID = "SELECT * FROM testresults WHERE id = %1"_L1;
inline constexpr auto SELECT_NEWEST_TESTRESULTS =
    "SELECT * FROM testresults ORDER BY id DESC LIMIT 1"_L1;
inline constexpr auto SELECT_ALL_TESTRESULTS =
    "SELECT * FROM testresults order by seriesid desc, testid desc"_L1;
inline constexpr auto SELECT_RESULTSSTATE =
    "SELECT count(*) || '/' || ifnull(max(id), 0) FROM testresults"_L1;
inline constexpr auto SELECT_SAME_TEST =
    "SELECT 1 FROM testresults WHERE timestamp = ? AND seriesid = ? AND testid = ?"_L1;
inline constexpr auto SELECT_TESTDETAILS_BY_ID =
    "SELECT key, type, string, long, double FROM testdetails WHERE id = %1"_L1;
inline constexpr auto SELECT_TOTALMEGABYTEINDB =
    "SELECT SUM(long) FROM testdetails WHERE key = '%1' GROUP BY key"_L1;
inline constexpr auto SELECT_TOTALMEGABYTESMOBILEINDB =
    "SELECT SUM(testdetails.long) FROM testresults LEFT JOIN testdetails ON testresults.id = "
    "testdetails.id WHERE testresults.connectionType like 'Mobile%' AND key = '%1' GROUP BY key"_L1;

inline constexpr auto SELECT_NEXTUNSENTXMLFILE =
    "SELECT id, numberofretries, xml from xmlfiles WHERE id > %1 and numberofretries < 20 limit 1"_L1;
inline constexpr auto COUNT_UNSENTXMLFILES =
    "SELECT COUNT(*) FROM xmlfiles WHERE numberofretries < 20"_L1;
inline constexpr auto UPDATE_UNSENTXMLFILE =
    "UPDATE xmlfiles SET numberofretries='%1' WHERE id = %2"_L1;
inline constexpr auto INSERT_UNSENTXMLFILE =
    "INSERT INTO xmlfiles(numberofretries, xml) VALUES (%1, '%2')"_L1;
inline constexpr auto DELETE_UNSENTXMLFILE = "DELETE FROM xmlfiles WHERE id = %1"_L1;
/// The test whose report it was, found without reading every detail of every test.
inline constexpr auto CREATE_INDEX_REPORTQUEUEID =
    "CREATE INDEX IF NOT EXISTS testdetails_reportqueueid ON testdetails(long, id) WHERE key = "
    "'reportQueueId'"_L1;
inline constexpr auto UPDATE_DELIVERED =
    "UPDATE testdetails SET long = 1 WHERE key = 'reportDelivered' AND id IN (SELECT id FROM "
    "testdetails WHERE key = 'reportQueueId' AND long = %1)"_L1;
inline constexpr auto DELETE_REPORTQUEUEID =
    "DELETE FROM testdetails WHERE key = 'reportQueueId' AND long = %1"_L1;

inline constexpr auto DELETE_TESTREPORT =
    "DELETE FROM xmlfiles WHERE id IN (SELECT long FROM testdetails WHERE id = ? AND key = "
    "'reportQueueId')"_L1;
inline constexpr auto DELETE_TESTDETAILS = "DELETE FROM testdetails WHERE id = ?"_L1;
inline constexpr auto DELETE_TESTINTERVALS = "DELETE FROM testintervals WHERE id = ?"_L1;
inline constexpr auto DELETE_TESTRESULTS = "DELETE FROM testresults WHERE id = ?"_L1;
inline constexpr auto COUNT_TESTREPORT =
    "SELECT COUNT(*) FROM xmlfiles WHERE id IN (SELECT long FROM testdetails WHERE id = ? AND key "
    "= 'reportQueueId')"_L1;
/// In the order of time.
inline constexpr auto SELECT_HISTORY =
    "SELECT timestamp, downloadSpeed, uploadSpeed, rtt, connectionType FROM testresults WHERE "
    "timestamp > 0 ORDER BY timestamp"_L1;

inline constexpr auto SELECT_NUMBEROFRESULTSWITHLOCATIONS =
    "SELECT count(*) FROM testdetails WHERE key = '%1' AND double<>0"_L1;
inline constexpr auto SELECT_ALL_LOCATIONS =
    "SELECT testresults.id as id, key, double, downloadSpeed, uploadSpeed, connectionType FROM "
    "testresults, testdetails WHERE testresults.id=testdetails.id and (key = '%1' OR key = '%2' OR "
    "key = '%3') AND double<>0 order by id desc, key"_L1;

} // namespace velometer::DatabaseStatements
