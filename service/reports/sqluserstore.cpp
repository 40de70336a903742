// What SqlReportStore is asked about the tests of users, and what they change.
#include "ops/log.h"
#include "reports/allowancequeries.h"
#include "reports/sqlreportstore.h"
#include "reports/testqueries.h"
#include "reports/trackqueries.h"
#include "reports/userqueries.h"

#include <QDateTime>

#include <array>

using namespace Qt::StringLiterals;

namespace velometer {

template <typename Value>
void SqlReportStore::compute(const TestScope &scope, const QString &question,
                             std::function<Value(const TestTable &)> figures, Answer<Value> done)
{
    const QString whole = question + u'|' + scope.filter.toQuery() + u'|' + scope.bounds.toQuery();
    ask<Value>(
        reads,
        [this, user = scope.userId, whole,
         figures = std::move(figures)](SqlConnection &connection) {
            const auto tests = tables.of(connection, user);
            return tests.table ? std::optional(tests.memo->get<Value>(
                                     whole, [&] { return figures(*tests.table); }))
                               : std::nullopt;
        },
        std::move(done));
}

void SqlReportStore::stream(const StreamKey &test, Direction direction,
                            Answer<QList<StreamRecord>> done)
{
    ask<QList<StreamRecord>>(
        reads,
        [test, direction](SqlConnection &connection) {
            const auto found = TestQueries::stream(connection, test, direction);
            return std::optional(found ? QList{*found} : QList<StreamRecord>());
        },
        std::move(done));
}

std::string SqlReportStore::pseudonym(const std::string &text) const
{
    return deviceKey.hash(QString::fromStdString(text)).toStdString();
}

void SqlReportStore::allowances(const Allowances::Limits &limits,
                                Answer<std::vector<Allowances::Level>> done)
{
    ask<std::vector<Allowances::Level>>(
        reads,
        [limits](SqlConnection &connection) {
            return AllowanceQueries::all(connection, limits, QDateTime::currentMSecsSinceEpoch());
        },
        std::move(done));
}

void SqlReportStore::addAllowances(const Allowances::Limits &limits,
                                   std::vector<Allowances::Level> news,
                                   Answer<std::vector<Allowances::Level>> done)
{
    ask<std::vector<Allowances::Level>>(
        writesFor(0),
        [limits, news = std::move(news)](SqlConnection &connection) {
            return AllowanceQueries::add(connection, limits, news);
        },
        std::move(done));
}

void SqlReportStore::isProven(qint64 userId, Answer<bool> done)
{
    ask<bool>(
        reads,
        [userId](SqlConnection &connection) {
            const auto count = connection.number(
                u"SELECT count(*) FROM (SELECT 1 FROM reports WHERE userid = ? AND verified = 1 "
                u"AND "
                "(download_rate IS NOT NULL OR upload_rate IS NOT NULL) LIMIT 1) AS one"_s,
                {userId});
            return count ? std::optional(*count > 0) : std::nullopt;
        },
        std::move(done));
}

void SqlReportStore::accessOfUser(qint64 userId, Answer<Access> done)
{
    ask<Access>(
        reads,
        [userId](SqlConnection &connection) { return UserQueries::access(connection, userId); },
        std::move(done));
}

void SqlReportStore::accessOfShare(const QString &key, qint64 now, Answer<Access> done)
{
    ask<Access>(
        reads,
        [key, now](SqlConnection &connection) {
            return UserQueries::accessOfShare(connection, key, now);
        },
        std::move(done));
}

void SqlReportStore::tests(const TestScope &scope, const TestOrder &order, Answer<TestPage> done)
{
    ask<TestPage>(
        reads,
        [this, scope, order](SqlConnection &connection) {
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

void SqlReportStore::summary(const TestScope &scope, Answer<Summary> done)
{
    compute<Summary>(
        scope, u"summary"_s, [scope](const TestTable &table) { return table.summary(scope); },
        std::move(done));
}

void SqlReportStore::buckets(const TestScope &scope, const BucketQuery &query, Answer<Buckets> done)
{
    compute<Buckets>(
        scope, u"buckets %1 %2"_s.arg(static_cast<int>(query.metric)).arg(query.buckets),
        [scope, query](const TestTable &table) { return table.buckets(scope, query); },
        std::move(done));
}

void SqlReportStore::distribution(const TestScope &scope, const DistributionQuery &query,
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

void SqlReportStore::map(const TestScope &scope, const MapQuery &query, Answer<MapData> done)
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

void SqlReportStore::facets(const TestScope &scope, Answer<Facets> done)
{
    compute<Facets>(
        scope, u"facets"_s, [scope](const TestTable &table) { return table.facets(scope); },
        std::move(done));
}

void SqlReportStore::test(const TestScope &scope, const TestName &name,
                          Answer<QList<StoredTest>> done)
{
    ask<QList<StoredTest>>(
        reads,
        [scope, name](SqlConnection &connection) {
            return TestQueries::test(connection, scope, name);
        },
        std::move(done));
}

void SqlReportStore::documents(const TestScope &scope, const QString &after, Answer<Documents> done)
{
    ask<Documents>(
        reads,
        [scope, after](SqlConnection &connection) {
            return TestQueries::documents(connection, scope, after);
        },
        std::move(done));
}

void SqlReportStore::statistics(StatisticsBy by, Answer<Statistics> done)
{
    ask<Statistics>(
        publicReads,
        [this, by](SqlConnection &connection) {
            const auto stop = [this] {
                const std::lock_guard guard(mutex);
                return closing;
            };
            return publicFigures.figures(connection, by, stop, [this](auto news) {
                ask<bool>(
                    writesFor(0),
                    [news = std::move(news)](SqlConnection &writing) {
                        return StatisticsReader::save(writing, news) ? std::optional(true)
                                                                     : std::nullopt;
                    },
                    [](std::optional<bool>) {});
            });
        },
        std::move(done));
}

void SqlReportStore::setNote(const TestScope &scope, qint64 id, const QString &note,
                             Answer<bool> done)
{
    ask<bool>(
        writesFor(scope.userId),
        [scope, id, note](SqlConnection &connection) {
            return UserQueries::setNote(connection, scope, id, note);
        },
        std::move(done), scope.userId);
}

void SqlReportStore::deleteTests(const TestScope &scope, Answer<QList<StreamKey>> done)
{
    deleteMore(scope, {}, std::move(done));
}

/// One batch, then whatever else waits, then the next: reports are not held up.
void SqlReportStore::deleteMore(const TestScope &scope, QList<StreamKey> gone,
                                Answer<QList<StreamKey>> done)
{
    ask<QList<StreamKey>>(
        writesFor(scope.userId),
        [scope](SqlConnection &connection) { return UserQueries::deleteSome(connection, scope); },
        [this, scope, gone = std::move(gone),
         done = std::move(done)](std::optional<QList<StreamKey>> batch) mutable {
            if (!batch || batch->isEmpty()) {
                done(batch ? std::optional(gone) : std::nullopt);
            } else {
                deleteMore(scope, gone + *batch, std::move(done));
            }
        },
        scope.userId);
}

void SqlReportStore::deleteUser(qint64 userId, Answer<qint64> done)
{
    ask<bool>(
        writesFor(userId),
        [userId](SqlConnection &connection) {
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
        },
        userId);
}

void SqlReportStore::eraseMore(qint64 userId, qint64 gone, Answer<qint64> done)
{
    ask<qint64>(
        writesFor(userId),
        [userId](SqlConnection &connection) { return UserQueries::eraseSome(connection, userId); },
        [this, userId, gone, done = std::move(done)](std::optional<qint64> batch) {
            if (!batch || *batch == 0) {
                done(batch ? std::optional(gone) : std::nullopt);
            } else {
                eraseMore(userId, gone + *batch, done);
            }
        },
        userId);
}

/// Those of users whose deletion a crash interrupted.
void SqlReportStore::finishDeletions()
{
    ask<QList<qint64>>(writesFor(0), UserQueries::unfinished,
                       [this](std::optional<QList<qint64>> users) {
                           for (const qint64 user : users.value_or(QList<qint64>())) {
                               eraseMore(user, 0, [](std::optional<qint64> rows) {
                                   Log::write(Log::Level::Info, "store",
                                              "finished an interrupted deletion: " +
                                                  std::to_string(rows.value_or(0)) + " rows");
                               });
                           }
                       });
}

void SqlReportStore::takeTrack(qint64 userId, const TrackPart &part, Answer<TrackTaken> done)
{
    ask<TrackTaken>(
        writesFor(userId),
        [userId, part](SqlConnection &connection) {
            return TrackQueries::take(connection, userId, part);
        },
        std::move(done), userId);
}

void SqlReportStore::tracks(qint64 userId, Answer<QList<Track>> done)
{
    ask<QList<Track>>(
        reads,
        [userId](SqlConnection &connection) { return TrackQueries::all(connection, userId); },
        std::move(done));
}

void SqlReportStore::trackPart(qint64 userId, const QString &id, qint64 first,
                               Answer<QList<TrackPart>> done)
{
    ask<QList<TrackPart>>(
        reads,
        [userId, id, first](SqlConnection &connection) {
            return TrackQueries::part(connection, userId, id, first);
        },
        std::move(done));
}

void SqlReportStore::removeTrack(qint64 userId, const QString &id, Answer<bool> done)
{
    ask<bool>(
        writesFor(userId),
        [userId, id](SqlConnection &connection) {
            return TrackQueries::remove(connection, userId, id);
        },
        std::move(done), userId);
}

void SqlReportStore::addShare(qint64 userId, const Share &share, Answer<bool> done)
{
    ask<bool>(
        writesFor(userId),
        [userId, share](SqlConnection &connection) {
            return UserQueries::addShare(connection, userId, share);
        },
        std::move(done), userId);
}

void SqlReportStore::shares(qint64 userId, qint64 now, Answer<QList<Share>> done)
{
    ask<QList<Share>>(
        reads,
        [userId, now](SqlConnection &connection) {
            return UserQueries::shares(connection, userId, now);
        },
        std::move(done));
}

void SqlReportStore::removeShare(qint64 userId, const QString &key, Answer<bool> done)
{
    ask<bool>(
        writesFor(userId),
        [userId, key](SqlConnection &connection) {
            return UserQueries::removeShare(connection, userId, key);
        },
        std::move(done), userId);
}

} // namespace velometer
