#include "reports/reportqueries.h"

#include "reports/nullable.h"
#include "reports/reportparser.h"
#include "reports/shownfigures.h"
#include "reports/testqueries.h"
#include "reports/verification.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QRandomGenerator>
#include <QtEndian>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer::ReportQueries {

namespace {

/// The columns that lists and figures are made of, and their values.
constexpr std::array shownColumns{"type",  "operator", "download_rate", "upload_rate", "rtt",
                                  "bytes", "accuracy", "download_rtt",  "upload_rtt"};

QVariantList shownValues(const Report &report)
{
    const auto shown = ShownFigures::of(report);
    return {static_cast<int>(shown.type), shown.operatorCode.isNull() ? u""_s : shown.operatorCode,
            nullable(shown.download),     nullable(shown.upload),
            nullable(shown.rtt),          shown.bytes,
            nullable(shown.accuracy),     nullable(shown.downloadRtt),
            nullable(shown.uploadRtt)};
}

/// What is shorter is no number of a device, and may stand anywhere.
constexpr qsizetype shortestDevice = 8;

QString shownNames(const QString &after)
{
    QString names;
    for (const char *name : shownColumns) {
        names += u", "_s + QLatin1StringView(name) + after;
    }
    return names;
}

} // namespace

qint64 lockOf(const QString &uuid)
{
    const QByteArray hash = QCryptographicHash::hash(uuid.toUtf8(), QCryptographicHash::Md5);
    return qFromBigEndian<qint64>(hash.constData());
}

QString withoutDevice(QString document)
{
    constexpr auto begin = "<UUID>"_L1;
    const auto from = document.indexOf(begin) + begin.size();
    const auto to = document.indexOf("</UUID>"_L1);
    const bool isNumber = from >= begin.size() && to - from >= shortestDevice;
    return isNumber ? document.remove(document.mid(from, to - from)) : document;
}

std::optional<ReportStore::User> findOrCreateUser(SqlConnection &connection, const QString &uuid)
{
    if (!connection.lockUser(lockOf(uuid))) {
        return std::nullopt;
    }
    auto found =
        connection.select(u"SELECT id, (SELECT max(seriesid) FROM reports WHERE userid = users.id) "
                          "FROM users WHERE uuid = ?"_s,
                          {uuid});
    if (!found) {
        return std::nullopt;
    }
    if (found->next()) {
        const ReportStore::User user{.id = found->value(0).toLongLong(),
                                     .lastSeries = std::max(found->value(1).toLongLong(), 0LL)};
        found.reset();
        // Whether a device is known must not show in the time that a commit takes.
        return connection.execute(u"UPDATE users SET created = created WHERE id = ?"_s, {user.id})
                   ? std::optional(user)
                   : std::nullopt;
    }
    // The id is all one needs to see the measurements, so it must not be guessed. An id drawn
    // twice is as good as impossible; then the next one is it.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const auto id = static_cast<qint64>(QRandomGenerator::system()->generate64() >> 11);
        if (id == 0 || connection.number(u"SELECT 1 FROM users WHERE id = ?"_s, {id})) {
            continue;
        }
        auto made = connection.select(
            u"INSERT INTO users(id, uuid, created) VALUES(?, ?, ?) ON CONFLICT DO NOTHING"_s,
            {id, uuid, QDateTime::currentMSecsSinceEpoch()});
        if (!made) {
            return std::nullopt;
        }
        if (made->numRowsAffected() > 0) {
            return ReportStore::User{.id = id};
        }
    }
    return std::nullopt;
}

ReportStore::Outcome insert(SqlConnection &connection, Report report)
{
    if (!connection.lockUser(report.userId) ||
        !connection.execute(
            u"INSERT INTO users(id, uuid, created) VALUES(?, NULL, ?) ON CONFLICT DO NOTHING"_s,
            {report.userId, report.serverTime})) {
        return ReportStore::Outcome::Failed;
    }
    if (connection.number(u"SELECT 1 FROM users WHERE id = ? AND deleted IS NOT NULL"_s,
                          {report.userId})) {
        return ReportStore::Outcome::Deleted;
    }
    const auto download = TestQueries::stream(connection, report.key(), Direction::Download);
    const auto upload = TestQueries::stream(connection, report.key(), Direction::Upload);
    const auto verification = verify(report, download, upload);
    report.verified = verification == Verification::Verified;
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
    values += {nullable(report.rttMin),        nullable(report.rttAvg),
               nullable(report.rttMax),        nullable(report.latitude),
               nullable(report.longitude),     text(withoutDevice(report.document)),
               static_cast<int>(verification), int(report.serviceLate)};
    values += shownValues(report);
    auto query = connection.select(
        u"INSERT INTO reports(id, userid, seriesid, testid, client_time, server_time, public_ip, "
        "test_server, connection_type, location, network, mcc, mnc, platform, model, manufacturer, "
        "applet_version, download_min, download_avg, download_max, upload_min, upload_avg, "
        "upload_max, upload_client_min, upload_client_avg, upload_client_max, rtt_min, rtt_avg, "
        "rtt_max, latitude, longitude, document, verified, service_late%1) "
        "VALUES(%2, %3) ON CONFLICT DO NOTHING"_s.arg(
            shownNames(QString()), connection.nextReportId(),
            QStringList(values.size(), u"?"_s).join(u',')),
        values);
    if (!query) {
        return ReportStore::Outcome::Failed;
    }
    if (query->numRowsAffected() == 0) {
        return ReportStore::Outcome::Repeated;
    }
    return connection.execute(u"UPDATE streams SET reported = 1 WHERE userid = ? AND "
                              "seriesid = ? AND testid = ?"_s,
                              {report.userId, report.seriesId, report.testId})
               ? ReportStore::Outcome::Stored
               : ReportStore::Outcome::Failed;
}

std::optional<qint64> fillColumns(SqlConnection &connection)
{
    constexpr auto atOnce = 200;
    auto query = connection.select(
        u"SELECT id, connection_type, mcc, mnc, download_avg, upload_avg, upload_client_avg, "
        "rtt_avg, verified, document FROM reports WHERE type IS NULL LIMIT %1"_s.arg(atOnce));
    if (!query) {
        return std::nullopt;
    }
    QList<QVariantList> rows;
    while (query->next()) {
        const auto found = ReportParser::read(query->value(9).toString());
        Report report;
        report.connectionType = query->value(1).toString();
        report.mcc = query->value(2).toString();
        report.mnc = query->value(3).toString();
        report.download.avg = optionalNumber(query->value(4));
        report.upload.avg = optionalNumber(query->value(5));
        report.uploadClient.avg = optionalNumber(query->value(6));
        report.rttAvg = optionalNumber(query->value(7));
        report.verified = query->value(8).toInt() == 1;
        if (found) {
            report.accuracy = found->accuracy;
            report.bytes = found->bytes;
            report.downloadRtt = found->downloadRtt;
            report.uploadRtt = found->uploadRtt;
        }
        rows += shownValues(report) + QVariantList{query->value(0)};
    }
    query.reset();
    const QString statement =
        u"UPDATE reports SET %1 WHERE id = ?"_s.arg(shownNames(u" = ?"_s).sliced(2));
    const bool done = std::ranges::all_of(
        rows, [&](const QVariantList &row) { return connection.execute(statement, row); });
    return done ? std::optional(rows.size()) : std::nullopt;
}

bool insertStream(SqlConnection &connection, const StreamRecord &stream)
{
    return connection.lockUser(qlonglong(stream.test.user)) &&
           connection.execute(
               u"INSERT INTO streams(userid, seriesid, testid, direction, ended, bytes, "
               "lasted_ms, min, avg, max, late, kernel) SELECT ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ? "
               "WHERE "
               "NOT EXISTS "
               "(SELECT 1 FROM users WHERE id = ? AND deleted IS NOT NULL) "
               "ON CONFLICT(userid, seriesid, testid, direction) DO UPDATE SET ended = "
               "excluded.ended, "
               "bytes = excluded.bytes, lasted_ms = excluded.lasted_ms, min = excluded.min, "
               "avg = excluded.avg, max = excluded.max, late = excluded.late, "
               "kernel = excluded.kernel, reported = 0"_s,
               {qlonglong(stream.test.user), qlonglong(stream.test.series),
                qlonglong(stream.test.test), int(stream.direction), stream.ended, stream.bytes,
                stream.lasted, stream.min, stream.avg, stream.max, int(stream.late),
                stream.kernel.isNull() ? u""_s : stream.kernel, qlonglong(stream.test.user)});
}

std::optional<qint64> forgetStreams(SqlConnection &connection, qint64 oldest)
{
    constexpr auto atOnce = 500;
    auto query = connection.select(
        u"DELETE FROM streams WHERE reported = 0 AND (userid, seriesid, testid, direction) IN "
        "(SELECT userid, seriesid, testid, direction FROM streams WHERE reported = 0 AND ended < ? "
        "LIMIT %1)"_s.arg(atOnce),
        {oldest});
    return query ? std::optional(query->numRowsAffected()) : std::nullopt;
}

} // namespace velometer::ReportQueries
