#include "reports/reportqueries.h"

#include "reports/verification.h"

#include <QDateTime>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer::ReportQueries {

namespace {

template <typename Value>
QVariant nullable(const std::optional<Value> &value)
{
    return value ? QVariant::fromValue(*value) : QVariant();
}

std::optional<qint64> optionalNumber(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toLongLong());
}

std::optional<double> optionalReal(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toDouble());
}

/// Nothing when no such stream was served, also when nobody could tell.
std::optional<StreamRecord> stream(SqliteConnection &connection, const StreamKey &test,
                                   Direction direction)
{
    auto query = connection.select(
        u"SELECT ended, bytes, lasted_ms, min, avg, max, late FROM streams "
        "WHERE userid = ? AND seriesid = ? AND testid = ? AND direction = ?"_s,
        {qlonglong(test.user), qlonglong(test.series), qlonglong(test.test), int(direction)});
    if (!query || !query->next()) {
        return std::nullopt;
    }
    const auto number = [&](int column) { return query->value(column).toLongLong(); };
    return StreamRecord{.test = test,
                        .direction = direction,
                        .ended = number(0),
                        .bytes = number(1),
                        .lasted = number(2),
                        .min = number(3),
                        .avg = number(4),
                        .max = number(5),
                        .late = number(6) != 0};
}

} // namespace

std::optional<ReportStore::User> findOrCreateUser(SqliteConnection &connection, const QString &uuid)
{
    auto found =
        connection.select(u"SELECT id, (SELECT max(seriesid) FROM reports WHERE userid = users.id) "
                          "FROM users WHERE uuid = ?"_s,
                          {uuid});
    if (!found) {
        return std::nullopt;
    }
    if (found->next()) {
        return ReportStore::User{.id = found->value(0).toLongLong(),
                                 .lastSeries = std::max(found->value(1).toLongLong(), 0LL)};
    }
    // The id is all one needs to see the measurements, so it must not be guessed. An id drawn
    // twice is as good as impossible; then the next one is it.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const auto id = static_cast<qint64>(QRandomGenerator::system()->generate64() >> 11);
        if (id == 0 || connection.number(u"SELECT 1 FROM users WHERE id = ?"_s, {id})) {
            continue;
        }
        return connection.execute(u"INSERT INTO users(id, uuid, created) VALUES(?, ?, ?)"_s,
                                  {id, uuid, QDateTime::currentMSecsSinceEpoch()})
                   ? std::optional(ReportStore::User{.id = id})
                   : std::nullopt;
    }
    return std::nullopt;
}

ReportStore::Outcome insert(SqliteConnection &connection, Report report)
{
    if (!connection.execute(
            u"INSERT INTO users(id, uuid, created) VALUES(?, NULL, ?) ON CONFLICT DO NOTHING"_s,
            {report.userId, report.serverTime})) {
        return ReportStore::Outcome::Failed;
    }
    const auto download = stream(connection, report.key(), Direction::Download);
    const auto upload = stream(connection, report.key(), Direction::Upload);
    report.verified = isVerified(report, download, upload);
    report.serviceLate = (download && download->late) || (upload && upload->late);

    QVariantList values;
    for (const qint64 value :
         {report.userId, report.seriesId, report.testId, report.clientTime, report.serverTime}) {
        values += value;
    }
    // A null string would be NULL, and these columns know no NULL.
    const auto text = [](const QString &value) { return value.isNull() ? u""_s : value; };
    for (const auto *value :
         {&report.publicIp, &report.testServer, &report.connectionType, &report.location,
          &report.networkName, &report.mcc, &report.mnc, &report.platform, &report.model,
          &report.manufacturer, &report.appletVersion}) {
        values += text(*value);
    }
    for (const auto *rate : {&report.download, &report.upload, &report.uploadClient}) {
        values += {nullable(rate->min), nullable(rate->avg), nullable(rate->max)};
    }
    values += {nullable(report.rttMin),   nullable(report.rttAvg),    nullable(report.rttMax),
               nullable(report.latitude), nullable(report.longitude), text(report.document),
               report.verified,           report.serviceLate};
    auto query = connection.select(
        u"INSERT INTO reports(userid, seriesid, testid, client_time, server_time, public_ip, "
        "test_server, connection_type, location, network, mcc, mnc, platform, model, manufacturer, "
        "applet_version, download_min, download_avg, download_max, upload_min, upload_avg, "
        "upload_max, upload_client_min, upload_client_avg, upload_client_max, rtt_min, rtt_avg, "
        "rtt_max, latitude, longitude, document, verified, service_late) VALUES(%1) "
        "ON CONFLICT DO NOTHING"_s.arg(QStringList(values.size(), u"?"_s).join(u',')),
        values);
    if (!query) {
        return ReportStore::Outcome::Failed;
    }
    return query->numRowsAffected() > 0 ? ReportStore::Outcome::Stored
                                        : ReportStore::Outcome::Repeated;
}

bool insertStream(SqliteConnection &connection, const StreamRecord &stream)
{
    return connection.execute(
        u"INSERT OR REPLACE INTO streams(userid, seriesid, testid, direction, ended, bytes, "
        "lasted_ms, min, avg, max, late) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s,
        {qlonglong(stream.test.user), qlonglong(stream.test.series), qlonglong(stream.test.test),
         int(stream.direction), stream.ended, stream.bytes, stream.lasted, stream.min, stream.avg,
         stream.max, stream.late});
}

bool forgetStreams(SqliteConnection &connection, qint64 oldest)
{
    return connection.execute(u"DELETE FROM streams WHERE ended < ?"_s, {oldest});
}

std::optional<ReportStore::UserReports> select(SqliteConnection &connection, qint64 userId,
                                               std::optional<qint64> before, int limit)
{
    ReportStore::UserReports result;
    // Told by row and time, not by count: a report that comes meanwhile moves nothing.
    const QString older =
        before ? u" AND (client_time, id) < "
                 "(SELECT client_time, id FROM reports WHERE id = ? AND userid = ?)"_s
               : u""_s;
    QVariantList values{userId};
    if (before) {
        values += {*before, userId};
    }
    values += limit + 1;
    auto query = connection.select(
        u"SELECT id, seriesid, testid, client_time, server_time, test_server, connection_type, "
        "location, network, download_avg, upload_avg, upload_client_avg, rtt_avg, latitude, "
        "longitude, verified, service_late FROM reports WHERE userid = ?"_s +
            older + u" ORDER BY client_time DESC, id DESC LIMIT ?"_s,
        values);
    if (!query) {
        return std::nullopt;
    }
    const auto number = [&](int column) { return query->value(column).toLongLong(); };
    const auto text = [&](int column) { return query->value(column).toString(); };
    qint64 last = 0;
    while (query->next()) {
        if (result.reports.size() == limit) {
            result.older = last;
            break;
        }
        last = number(0);
        Report report;
        report.userId = userId;
        report.seriesId = number(1);
        report.testId = number(2);
        report.clientTime = number(3);
        report.serverTime = number(4);
        report.testServer = text(5);
        report.connectionType = text(6);
        report.location = text(7);
        report.networkName = text(8);
        report.download.avg = optionalNumber(query->value(9));
        report.upload.avg = optionalNumber(query->value(10));
        report.uploadClient.avg = optionalNumber(query->value(11));
        report.rttAvg = optionalNumber(query->value(12));
        report.latitude = optionalReal(query->value(13));
        report.longitude = optionalReal(query->value(14));
        report.verified = number(15) != 0;
        report.serviceLate = number(16) != 0;
        result.reports += report;
    }
    const auto count =
        connection.number(u"SELECT count(*) FROM reports WHERE userid = ?"_s, {userId});
    if (!count) {
        return std::nullopt;
    }
    result.count = *count;
    result.userKnown =
        *count > 0 || connection.number(u"SELECT 1 FROM users WHERE id = ?"_s, {userId});
    return result;
}

} // namespace velometer::ReportQueries
