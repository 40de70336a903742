// What SqliteReportStore is asked about the tests of users, and what they change.
#include "ops/log.h"
#include "reports/sqlitereportstore.h"
#include "reports/testqueries.h"
#include "reports/trackqueries.h"
#include "reports/userqueries.h"

#include <QDateTime>

#include <array>

using namespace Qt::StringLiterals;

namespace velometer {

template <typename Value>
void SqliteReportStore::compute(const TestScope &scope, const QString &question,
                                std::function<Value(const TestTable &)> figures, Answer<Value> done)
{
    const QString whole = question + u'|' + scope.filter.toQuery() + u'|' + scope.bounds.toQuery();
    ask<Value>(
        reads,
        [this, user = scope.userId, whole,
         figures = std::move(figures)](SqliteConnection &connection) {
            const auto tests = tables.of(connection, user);
            return tests.table ? std::optional(tests.memo->get<Value>(
                                     whole, [&] { return figures(*tests.table); }))
                               : std::nullopt;
        },
        std::move(done));
}

void SqliteReportStore::accessOfUser(qint64 userId, Answer<Access> done)
{
    ask<Access>(
        reads,
        [userId](SqliteConnection &connection) { return UserQueries::access(connection, userId); },
        std::move(done));
}

void SqliteReportStore::accessOfShare(const QString &key, qint64 now, Answer<Access> done)
{
    ask<Access>(
        reads,
        [key, now](SqliteConnection &connection) {
            return UserQueries::accessOfShare(connection, key, now);
        },
        std::move(done));
}

void SqliteReportStore::tests(const TestScope &scope, const TestOrder &order, Answer<TestPage> done)
{
    ask<TestPage>(
        reads,
        [this, scope, order](SqliteConnection &connection) {
            const auto table = tables.of(connection, scope.userId).table;
            if (!table) {
                return std::optional<TestPage>();
            }
            const auto listed = table->list(scope, order);
            auto rows = TestQueries::rows(connection, listed.ids);
            return rows ? std::optional(TestPage{
                              .rows = *std::move(rows), .count = listed.count, .next = listed.next})
                        : std::nullopt;
        },
        std::move(done));
}

void SqliteReportStore::summary(const TestScope &scope, Answer<Summary> done)
{
    compute<Summary>(
        scope, u"summary"_s, [scope](const TestTable &table) { return table.summary(scope); },
        std::move(done));
}

void SqliteReportStore::buckets(const TestScope &scope, const BucketQuery &query,
                                Answer<Buckets> done)
{
    compute<Buckets>(
        scope, u"buckets %1 %2"_s.arg(static_cast<int>(query.metric)).arg(query.buckets),
        [scope, query](const TestTable &table) { return table.buckets(scope, query); },
        std::move(done));
}

void SqliteReportStore::distribution(const TestScope &scope, const DistributionQuery &query,
                                     Answer<Distribution> done)
{
    compute<Distribution>(
        scope,
        u"distribution %1 %2 %3"_s.arg(static_cast<int>(query.metric))
            .arg(static_cast<int>(query.by))
            .arg(query.offsetMinutes),
        [scope, query](const TestTable &table) { return table.distribution(scope, query); },
        std::move(done));
}

void SqliteReportStore::map(const TestScope &scope, const MapQuery &query, Answer<MapData> done)
{
    const std::array box{query.west, query.south, query.east, query.north};
    compute<MapData>(
        scope,
        u"map %1 %2"_s.arg(query.zoom)
            .arg(QString::fromLatin1(
                QByteArray(reinterpret_cast<const char *>(&box), sizeof box).toHex())),
        [scope, query](const TestTable &table) { return table.map(scope, query); },
        std::move(done));
}

void SqliteReportStore::facets(const TestScope &scope, Answer<Facets> done)
{
    compute<Facets>(
        scope, u"facets"_s, [scope](const TestTable &table) { return table.facets(scope); },
        std::move(done));
}

void SqliteReportStore::test(const TestScope &scope, const TestName &name,
                             Answer<QList<StoredTest>> done)
{
    ask<QList<StoredTest>>(
        reads,
        [scope, name](SqliteConnection &connection) {
            return TestQueries::test(connection, scope, name);
        },
        std::move(done));
}

void SqliteReportStore::documents(const TestScope &scope, const QString &after,
                                  Answer<Documents> done)
{
    ask<Documents>(
        reads,
        [scope, after](SqliteConnection &connection) {
            return TestQueries::documents(connection, scope, after);
        },
        std::move(done));
}

void SqliteReportStore::statistics(StatisticsBy by, Answer<Statistics> done)
{
    ask<Statistics>(
        publicReads,
        [this, by](SqliteConnection &connection) {
            return publicFigures.figures(connection, by, [this] {
                const std::lock_guard guard(mutex);
                return closing;
            });
        },
        std::move(done));
}

void SqliteReportStore::setNote(const TestScope &scope, qint64 id, const QString &note,
                                Answer<bool> done)
{
    ask<bool>(
        writes,
        [scope, id, note](SqliteConnection &connection) {
            return UserQueries::setNote(connection, scope, id, note);
        },
        std::move(done));
}

void SqliteReportStore::deleteTests(const TestScope &scope, Answer<QList<StreamKey>> done)
{
    deleteMore(scope, {}, std::move(done));
}

/// One batch, then whatever else waits, then the next: reports are not held up.
void SqliteReportStore::deleteMore(const TestScope &scope, QList<StreamKey> gone,
                                   Answer<QList<StreamKey>> done)
{
    ask<QList<StreamKey>>(
        writes,
        [scope](SqliteConnection &connection) {
            return UserQueries::deleteSome(connection, scope);
        },
        [this, scope, gone = std::move(gone),
         done = std::move(done)](std::optional<QList<StreamKey>> batch) mutable {
            if (!batch || batch->isEmpty()) {
                done(batch ? std::optional(gone) : std::nullopt);
            } else {
                deleteMore(scope, gone + *batch, std::move(done));
            }
        });
}

void SqliteReportStore::deleteUser(qint64 userId, Answer<qint64> done)
{
    ask<bool>(
        writes,
        [userId](SqliteConnection &connection) {
            const bool marked =
                UserQueries::markDeleted(connection, userId, QDateTime::currentMSecsSinceEpoch());
            return marked ? std::optional(true) : std::nullopt;
        },
        [this, userId, done = std::move(done)](std::optional<bool> marked) {
            if (marked) {
                eraseMore(userId, 0, done);
            } else {
                done(std::nullopt);
            }
        });
}

void SqliteReportStore::eraseMore(qint64 userId, qint64 gone, Answer<qint64> done)
{
    ask<qint64>(
        writes,
        [userId](SqliteConnection &connection) {
            return UserQueries::eraseSome(connection, userId);
        },
        [this, userId, gone, done = std::move(done)](std::optional<qint64> batch) {
            if (!batch || *batch == 0) {
                done(batch ? std::optional(gone) : std::nullopt);
            } else {
                eraseMore(userId, gone + *batch, done);
            }
        });
}

/// Those of users whose deletion a crash interrupted.
void SqliteReportStore::finishDeletions()
{
    ask<QList<qint64>>(writes, UserQueries::unfinished, [this](std::optional<QList<qint64>> users) {
        for (const qint64 user : users.value_or(QList<qint64>())) {
            eraseMore(user, 0, [](std::optional<qint64> rows) {
                Log::write(Log::Level::Info, "finished an interrupted deletion: " +
                                                 std::to_string(rows.value_or(0)) + " rows");
            });
        }
    });
}

void SqliteReportStore::takeTrack(qint64 userId, const TrackPart &part, Answer<TrackTaken> done)
{
    ask<TrackTaken>(
        writes,
        [userId, part](SqliteConnection &connection) {
            return TrackQueries::take(connection, userId, part);
        },
        std::move(done));
}

void SqliteReportStore::tracks(qint64 userId, Answer<QList<Track>> done)
{
    ask<QList<Track>>(
        reads,
        [userId](SqliteConnection &connection) { return TrackQueries::all(connection, userId); },
        std::move(done));
}

void SqliteReportStore::trackPart(qint64 userId, const QString &id, qint64 first,
                                  Answer<QList<TrackPart>> done)
{
    ask<QList<TrackPart>>(
        reads,
        [userId, id, first](SqliteConnection &connection) {
            return TrackQueries::part(connection, userId, id, first);
        },
        std::move(done));
}

void SqliteReportStore::removeTrack(qint64 userId, const QString &id, Answer<bool> done)
{
    ask<bool>(
        writes,
        [userId, id](SqliteConnection &connection) {
            return TrackQueries::remove(connection, userId, id);
        },
        std::move(done));
}

void SqliteReportStore::addShare(qint64 userId, const Share &share, Answer<bool> done)
{
    ask<bool>(
        writes,
        [userId, share](SqliteConnection &connection) {
            return UserQueries::addShare(connection, userId, share);
        },
        std::move(done));
}

void SqliteReportStore::shares(qint64 userId, qint64 now, Answer<QList<Share>> done)
{
    ask<QList<Share>>(
        reads,
        [userId, now](SqliteConnection &connection) {
            return UserQueries::shares(connection, userId, now);
        },
        std::move(done));
}

void SqliteReportStore::removeShare(qint64 userId, const QString &key, Answer<bool> done)
{
    ask<bool>(
        writes,
        [userId, key](SqliteConnection &connection) {
            return UserQueries::removeShare(connection, userId, key);
        },
        std::move(done));
}

} // namespace velometer
