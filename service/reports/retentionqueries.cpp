#include "reports/retentionqueries.h"

#include "reports/storesettings.h"
#include "reports/trackqueries.h"

#include <QList>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer::RetentionQueries {

namespace {

/// Rows that one transaction deals with: some milliseconds.
constexpr int rowsAtOnce = 25;

/// Up to when documents have gone: nobody looks at what came before again.
constexpr QLatin1StringView documentsGone{"documents_gone_before"};

/// The columns that an old report is found by, of as many as go at once.
std::optional<QList<std::array<qint64, 4>>> rows(SqlConnection &connection, const QString &columns,
                                                 const QVariantList &values)
{
    auto query =
        connection.select(columns + u" ORDER BY server_time LIMIT %1"_s.arg(rowsAtOnce), values);
    if (!query) {
        return std::nullopt;
    }
    QList<std::array<qint64, 4>> found;
    while (query->next()) {
        std::array<qint64, 4> row{};
        for (std::size_t i = 0; i < row.size(); ++i) {
            row.at(i) = query->value(static_cast<int>(i)).toLongLong();
        }
        found += row;
    }
    return found;
}

} // namespace

std::optional<qint64> purgeReports(SqlConnection &connection, qint64 oldest)
{
    auto found =
        rows(connection,
             u"SELECT userid, id, seriesid, testid FROM reports WHERE server_time < ?"_s, {oldest});
    if (!found || (!found->isEmpty() && !connection.keepReportIds())) {
        return std::nullopt;
    }
    // Whoever changes rows of several users does it in one order.
    std::ranges::sort(*found);
    for (const auto &[user, id, series, test] : std::as_const(*found)) {
        if (!connection.execute(u"UPDATE users SET changes = changes + 1 WHERE id = ?"_s, {user}) ||
            !connection.execute(u"DELETE FROM reports WHERE userid = ? AND id = ?"_s, {user, id}) ||
            !connection.execute(
                u"DELETE FROM streams WHERE userid = ? AND seriesid = ? AND testid = ?"_s,
                {user, series, test})) {
            return std::nullopt;
        }
    }
    return found->size();
}

std::optional<qint64> purgeTracks(SqlConnection &connection, qint64 oldest)
{
    auto query =
        connection.select(u"SELECT userid, track FROM tracks WHERE coalesce(ended, started) < ? "
                          "LIMIT 1"_s,
                          {oldest});
    if (!query) {
        return std::nullopt;
    }
    if (!query->next()) {
        return 0;
    }
    const qint64 user = query->value(0).toLongLong();
    const QString track = query->value(1).toString();
    query.reset();
    return TrackQueries::remove(connection, user, track) ? std::optional<qint64>(1) : std::nullopt;
}

std::optional<qint64> purgeDocuments(SqlConnection &connection, qint64 oldest)
{
    const auto gone = StoreSettings::number(connection, documentsGone);
    auto found = gone ? rows(connection,
                             u"SELECT userid, id, server_time, 0 FROM reports WHERE server_time >= "
                             "? AND server_time < ? AND document <> ''"_s,
                             {*gone, oldest})
                      : std::nullopt;
    if (!found || found->isEmpty()) {
        return found ? std::optional<qint64>(0) : std::nullopt;
    }
    const qint64 latest = found->constLast().at(2);
    std::ranges::sort(*found);
    const bool done = std::ranges::all_of(*found, [&](const auto &row) {
        return connection.execute(u"UPDATE reports SET document = '' WHERE userid = ? AND id = ?"_s,
                                  {row.at(0), row.at(1)});
    });
    return done && StoreSettings::set(connection, documentsGone, QString::number(latest))
               ? std::optional<qint64>(found->size())
               : std::nullopt;
}

} // namespace velometer::RetentionQueries
