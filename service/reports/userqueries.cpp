#include "reports/userqueries.h"

#include "reports/testqueries.h"
#include "reports/trackqueries.h"

using namespace Qt::StringLiterals;

namespace velometer::UserQueries {

namespace {

/// Rows that one transaction deletes: some milliseconds, in which reports wait.
constexpr int rowsAtOnce = 25;

/// A user's shares that have not expired.
constexpr qint64 maxShares = 200;

constexpr auto shareColumns = "key, filter, positions, created, expires"_L1;

/// The bounds of a share; nothing when they are none, which only another program can have written.
std::optional<TestFilter> boundsOf(const QString &text)
{
    const auto query = UrlQuery::parse(text.toStdString());
    if (!query) {
        return std::nullopt;
    }
    auto filter = TestFilter::parse(*query);
    auto *bounds = std::get_if<TestFilter>(&filter);
    return bounds ? std::optional(*bounds) : std::nullopt;
}

bool countChange(SqlConnection &connection, qint64 userId)
{
    return connection.execute(u"UPDATE users SET changes = changes + 1 WHERE id = ?"_s, {userId});
}

/// Deletes the rows of a condition with their streams.
std::optional<QList<StreamKey>> deleteRows(SqlConnection &connection, qint64 userId,
                                           const TestQueries::Condition &condition)
{
    auto query = connection.select(u"SELECT id, seriesid, testid FROM reports WHERE "_s +
                                       condition.text + u" LIMIT %1"_s.arg(rowsAtOnce),
                                   condition.values);
    if (!query || !connection.keepReportIds()) {
        return std::nullopt;
    }
    QList<StreamKey> keys;
    QStringList ids;
    while (query->next()) {
        ids += query->value(0).toString();
        keys += {.user = userId,
                 .series = query->value(1).toLongLong(),
                 .test = query->value(2).toLongLong()};
    }
    query.reset();
    bool done = keys.isEmpty() ||
                (countChange(connection, userId) &&
                 connection.execute(u"DELETE FROM reports WHERE id IN (%1)"_s.arg(ids.join(u','))));
    for (const auto &key : std::as_const(keys)) {
        done = done && connection.execute(u"DELETE FROM streams WHERE userid = ? AND seriesid = ? "
                                          "AND testid = ?"_s,
                                          {userId, qlonglong(key.series), qlonglong(key.test)});
    }
    return done ? std::optional(keys) : std::nullopt;
}

} // namespace

std::optional<Access> access(SqlConnection &connection, qint64 userId)
{
    auto query = connection.select(u"SELECT deleted FROM users WHERE id = ?"_s, {userId});
    if (!query) {
        return std::nullopt;
    }
    Access access{.userId = userId, .bounds = {}};
    if (query->next()) {
        access.state = query->value(0).isNull() ? Access::State::Granted : Access::State::Deleted;
    }
    return access;
}

std::optional<Access> accessOfShare(SqlConnection &connection, const QString &key, qint64 now)
{
    auto query =
        connection.select(u"SELECT userid, filter, positions FROM shares WHERE key = ? AND "
                          "expires > ?"_s,
                          {key, now});
    if (!query) {
        return std::nullopt;
    }
    Access access{.isShare = true, .showsPositions = false, .bounds = {}};
    if (query->next()) {
        if (auto bounds = boundsOf(query->value(1).toString())) {
            access.state = Access::State::Granted;
            access.userId = query->value(0).toLongLong();
            access.showsPositions = query->value(2).toBool();
            access.bounds = *std::move(bounds);
        }
    }
    return access;
}

std::optional<bool> setNote(SqlConnection &connection, const TestScope &scope, qint64 id,
                            const QString &note)
{
    TestScope one = scope;
    one.filter.test = id;
    const auto condition = TestQueries::condition(one);
    auto query = connection.select(u"UPDATE reports SET note = ? WHERE "_s + condition.text,
                                   QVariantList{note.isNull() ? u""_s : note} + condition.values);
    return query ? std::optional(query->numRowsAffected() > 0) : std::nullopt;
}

std::optional<QList<StreamKey>> deleteSome(SqlConnection &connection, const TestScope &scope)
{
    return deleteRows(connection, scope.userId, TestQueries::condition(scope));
}

bool markDeleted(SqlConnection &connection, qint64 userId, qint64 now)
{
    return connection.execute(u"DELETE FROM shares WHERE userid = ?"_s, {userId}) &&
           connection.execute(u"UPDATE users SET uuid = NULL, deleted = ?, erased = 0, "
                              "changes = changes + 1 WHERE id = ? AND deleted IS NULL"_s,
                              {now, userId});
}

std::optional<qint64> eraseSome(SqlConnection &connection, qint64 userId)
{
    const auto keys = deleteRows(connection, userId, {.text = u"userid = ?"_s, .values = {userId}});
    if (!keys) {
        return std::nullopt;
    }
    if (!keys->isEmpty()) {
        return keys->size();
    }
    // Streams whose reports never came.
    auto streams = connection.select(
        u"DELETE FROM streams WHERE userid = ? AND (seriesid, testid, direction) IN "
        "(SELECT seriesid, testid, direction FROM streams WHERE userid = ? LIMIT %1)"_s.arg(
            rowsAtOnce),
        {userId, userId});
    if (!streams) {
        return std::nullopt;
    }
    const qint64 count = streams->numRowsAffected();
    if (count == 0) {
        const auto track = TrackQueries::removeAny(connection, userId);
        if (!track || *track) {
            return track ? std::optional<qint64>(1) : std::nullopt;
        }
    }
    if (count == 0 &&
        !connection.execute(u"UPDATE users SET erased = 1 WHERE id = ?"_s, {userId})) {
        return std::nullopt;
    }
    return count;
}

std::optional<QList<qint64>> unfinished(SqlConnection &connection)
{
    auto query = connection.select(u"SELECT id FROM users WHERE erased = 0"_s);
    if (!query) {
        return std::nullopt;
    }
    QList<qint64> ids;
    while (query->next()) {
        ids += query->value(0).toLongLong();
    }
    return ids;
}

std::optional<bool> addShare(SqlConnection &connection, qint64 userId, const Share &share)
{
    // Those that expired are of use to nobody.
    if (!connection.execute(u"DELETE FROM shares WHERE userid = ? AND expires <= ?"_s,
                            {userId, share.created})) {
        return std::nullopt;
    }
    auto query = connection.select(
        u"INSERT INTO shares(key, userid, filter, positions, created, expires) "
        "SELECT ?, id, ?, ?, ?, ? FROM users WHERE id = ? AND deleted IS NULL AND "
        "(SELECT count(*) FROM shares WHERE userid = ?) < ?"_s,
        {share.key, share.bounds.toQuery(), share.showsPositions, share.created, share.expires,
         userId, userId, maxShares});
    return query ? std::optional(query->numRowsAffected() > 0) : std::nullopt;
}

std::optional<QList<Share>> shares(SqlConnection &connection, qint64 userId, qint64 now)
{
    auto query = connection.select(u"SELECT "_s + shareColumns +
                                       u" FROM shares WHERE userid = ? AND expires > ? "
                                       "ORDER BY created DESC, key"_s,
                                   {userId, now});
    if (!query) {
        return std::nullopt;
    }
    QList<Share> list;
    while (query->next()) {
        list += {.key = query->value(0).toString(),
                 .bounds = boundsOf(query->value(1).toString()).value_or(TestFilter()),
                 .showsPositions = query->value(2).toBool(),
                 .created = query->value(3).toLongLong(),
                 .expires = query->value(4).toLongLong()};
    }
    return list;
}

std::optional<bool> removeShare(SqlConnection &connection, qint64 userId, const QString &key)
{
    auto query =
        connection.select(u"DELETE FROM shares WHERE key = ? AND userid = ?"_s, {key, userId});
    return query ? std::optional(query->numRowsAffected() > 0) : std::nullopt;
}

} // namespace velometer::UserQueries
