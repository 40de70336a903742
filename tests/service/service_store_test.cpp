#include "main/commandline.h"
#include "reports/shownfigures.h"
#include "reports/sqlitereportstore.h"
#include "runningservice.h"
#include "support/registeredtest.h"
#include "support/sqlitefile.h"

#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <cmath>
#include <csignal>
#include <future>

#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

using Store = std::unique_ptr<SqliteReportStore>;

/// Waits for what one call of the store gives its callback.
template <typename Value, typename Call>
Value result(Call call)
{
    std::promise<Value> promise;
    call([&promise](Value value) { promise.set_value(std::move(value)); });
    return promise.get_future().get();
}

template <typename Value, typename Call>
Value answer(Call call)
{
    return result<std::optional<Value>>(call).value();
}

template <typename Value>
Value parsed(const std::string &query)
{
    return std::get<Value>(Value::parse(UrlQuery::parse(query).value()));
}

ReportStore::User userOf(const Store &store, const QString &uuid)
{
    using User = std::optional<ReportStore::User>;
    return result<User>([&](auto done) { store->findOrCreateUser(uuid, done); })
        .value_or(ReportStore::User{});
}

ReportStore::Outcome put(const Store &store, const Report &report)
{
    return result<ReportStore::Outcome>([&](auto done) { store->storeReport(report, done); });
}

/// The newest first.
QList<TestRow> testsOf(const Store &store, qint64 user)
{
    const TestScope scope{.userId = user, .filter = {}, .bounds = {}};
    return answer<TestPage>([&](auto done) { store->tests(scope, {}, done); }).rows;
}

/// As long as what it gives lives no file of this process can grow beyond @p bytes.
auto fullDisk(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit{.rlim_cur = bytes, .rlim_max = before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    return qScopeGuard([before] { setrlimit(RLIMIT_FSIZE, &before); });
}

} // namespace

/// The file that users and reports are kept in, and what the service is started with.
class ServiceStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        directory = std::make_unique<QTemporaryDir>();
        file = directory->filePath(u"r.db"_s);
    }

    void keepsUsersAndSeriesOverAnUpgrade()
    {
        file = directory->filePath(u"new/dir/reports.db"_s);
        Store store = open();
        const auto first = userOf(store, u"a"_s);
        const auto second = userOf(store, u"b"_s);
        QVERIFY(first.id > 0 && second.id > 0 && first.id != second.id);
        QCOMPARE(put(store, report(first.id, 12, 1)), ReportStore::Outcome::Stored);
        QCOMPARE(put(store, report(first.id, 7, 2)), ReportStore::Outcome::Stored);
        QCOMPARE(put(store, report(first.id, 7, 2)), ReportStore::Outcome::Repeated);

        store.reset();
        sql(file,
            {u"DROP TABLE trackcells"_s, u"DROP TABLE trackparts"_s, u"DROP TABLE tracks"_s,
             u"DROP TABLE streams"_s, u"DROP TABLE shares"_s, u"DROP TABLE report_ids"_s,
             u"DROP INDEX reports_figures"_s, u"DROP INDEX reports_unfilled"_s,
             u"DROP INDEX reports_by_user"_s, u"DROP INDEX users_to_erase"_s,
             u"UPDATE reports SET download_avg = 5, document = CASE seriesid WHEN 7 THEN "
             "'<ServerDataDownload>sent 3 bytes in 4 ms</ServerDataDownload>' ELSE document END"_s,
             u"PRAGMA user_version=1"_s});
        for (const auto *column :
             {"verified", "service_late", "type", "operator", "download_rate", "upload_rate", "rtt",
              "bytes", "accuracy", "note", "download_rtt", "upload_rtt"}) {
            sql(file, {u"ALTER TABLE reports DROP COLUMN "_s + QLatin1StringView(column)});
        }
        for (const auto *column : {"deleted", "erased", "changes"}) {
            sql(file, {u"ALTER TABLE users DROP COLUMN "_s + QLatin1StringView(column)});
        }
        constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther;
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | others));
        store = open();
        for (const auto &name : {file, file + u"-wal"_s, file + u"-shm"_s}) {
            QVERIFY(QFile::exists(name));
            QVERIFY(!(QFile::permissions(name) & others));
        }
        QCOMPARE(userOf(store, u"a"_s).id, first.id);
        QCOMPARE(userOf(store, u"a"_s).lastSeries, 12);
        QCOMPARE(userOf(store, u"b"_s).id, second.id);
        QCOMPARE(userOf(store, u"b"_s).lastSeries, 0);
        QCOMPARE(testsOf(store, first.id).size(), 2);
        store.reset();
        QCOMPARE(sql(file, {u"PRAGMA user_version"_s}), 7);
        QCOMPARE(sql(file, {u"SELECT group_concat(seriesid) FROM reports WHERE verified"_s}), 7);
    }

    void knowsWhoeverSentAReportOrAskedForAnId()
    {
        const Store store = open();
        put(store, report(5, 1, 20));
        for (const auto &[user, state] : {std::pair{qint64{5}, Access::State::Granted},
                                          {userOf(store, u"x"_s).id, Access::State::Granted},
                                          {6, Access::State::Unknown}}) {
            const auto access =
                answer<Access>([&, id = user](auto done) { store->accessOfUser(id, done); });
            QCOMPARE(access.state, state);
        }
    }

    void readsWhileAnotherProgramWrites()
    {
        const Store store = open();
        put(store, report(5, 1, 20));
        std::promise<ReportStore::Outcome> stored;
        {
            const HeldFile busy(file);
            store->storeReport(report(5, 1, 21),
                               [&](ReportStore::Outcome outcome) { stored.set_value(outcome); });
            auto waiting = stored.get_future();
            QCOMPARE(testsOf(store, 5).size(), 1);
            QCOMPARE(waiting.wait_for(0s), std::future_status::timeout);
            QTest::qWait(10);
        }
        userOf(store, u"behind it"_s);
        QCOMPARE(testsOf(store, 5).size(), 2);
    }

    void showsNothingThatNoNetworkGives()
    {
        for (const bool beyond : {false, true}) {
            Report claimed = report(5, 1, 20);
            claimed.verified = true;
            claimed.download.avg = claimed.upload.avg = ShownFigures::maxRate + beyond;
            claimed.rttAvg = ShownFigures::maxResponse + beyond;
            claimed.accuracy = ShownFigures::maxAccuracy + beyond;
            const ShownFigures shown = ShownFigures::of(claimed);
            QCOMPARE(shown.download.has_value(), !beyond);
            QCOMPARE(shown.upload.has_value(), !beyond);
            QCOMPARE(shown.rtt.has_value(), !beyond);
            QCOMPARE(shown.accuracy.has_value(), !beyond);
        }
    }

    void believesWhatItServed_data()
    {
        const Rows<QString, bool> row("change", "verified");
        row("as served", "UPDATE streams SET ended = ended", true);
        row("no download", "DELETE FROM streams WHERE direction = 1", false);
        row("no upload", "DELETE FROM streams WHERE direction = 2", false);
        row("another test's", "UPDATE streams SET testid = 4", false);
        row("another series'", "UPDATE streams SET seriesid = 4", false);
        row("another user's", "UPDATE streams SET userid = 4", false);
        row("too short", "UPDATE streams SET lasted_ms = 499 WHERE direction = 1", false);
        row("half the rate", "UPDATE streams SET avg = avg / 2 WHERE direction = 1", true);
        row("less than half", "UPDATE streams SET avg = avg / 2 - 1 WHERE direction = 1", false);
        row("other minimum", "UPDATE streams SET min = 0 WHERE direction = 2", false);
        row("other average", "UPDATE streams SET avg = avg + 1 WHERE direction = 2", false);
        row("other maximum", "UPDATE streams SET max = 0 WHERE direction = 2", false);
    }
    void believesWhatItServed()
    {
        QFETCH(const QString, change);
        QFETCH(const bool, verified);
        const Store store = open();
        Report claimed = report(5, 6, 10);
        claimed.download = {21, 24, 29};
        claimed.upload = {11, 12, 13};
        claimed.downloadIntervals = claimed.uploadIntervals = 5;
        for (const auto direction : {Direction::Download, Direction::Upload}) {
            const bool up = direction == Direction::Upload;
            store->storeStream({.test = claimed.key(),
                                .direction = direction,
                                .ended = 4'102'444'800'000,
                                .bytes = 14,
                                .lasted = 500,
                                .min = up ? 11 : 0,
                                .avg = up ? 12 : 24,
                                .max = up ? 13 : 0,
                                .late = up});
        }
        userOf(store, u"x"_s); // behind them in the queue
        sql(file, {change});
        put(store, claimed);
        QCOMPARE(testsOf(store, 5).constFirst().verified, verified);
        QCOMPARE(
            testsOf(store, 5).constFirst().serviceLate,
            sql(file,
                {u"SELECT count(*) FROM streams WHERE direction = 2 AND userid = 5 AND seriesid = 6 AND testid = 0"_s})
                    .toInt() == 1);
        claimed.uploadIntervals = 4;
        claimed.clientTime = 11;
        put(store, claimed);
        QVERIFY(!testsOf(store, 5).constFirst().verified);
    }

    void filtersMeanTheSameInListsAndFigures()
    {
        const Store store = open();
        for (int i = 0; i < 30; ++i) {
            Report each = report(5, i / 10, i / 2 * 86'400'000LL + 946'684'800'000);
            each.testId = i;
            each.testServer = i % 3 == 0 ? u"a"_s : u"b'"_s;
            each.connectionType = i % 5 == 0 ? u"WlanMode"_s : u"LteMode"_s;
            each.location = i % 4 == 0 ? u"Indoor"_s : u"Car"_s;
            each.mcc = u"228"_s;
            each.mnc = i % 2 == 0 ? u"01"_s : u"02"_s;
            each.uploadClient.avg = i % 7 == 0 ? std::optional<qint64>(1) : std::nullopt;
            put(store, each);
        }
        sql(file, {u"UPDATE reports SET download_rate = nullif(id * 7 % 11, 3), upload_rate = "
                   "nullif(id % 3, 0), rtt = nullif(id * 5 % 9, 4)"_s});
        for (const auto &[query, condition] :
             {std::pair{"", u"1"_s},
              {"from=2000-01-03&to=2000-01-05",
               u"client_time >= 946857600000 AND client_time < 947116800000"_s},
              {"from=946857600001&to=947030400000",
               u"client_time > 946857600000 AND client_time <= 947030400000"_s},
              {"type=wlan,5g", u"connection_type = 'WlanMode'"_s},
              {"server=b%27&series=0,2", u"test_server LIKE 'b_' AND seriesid <> 1"_s},
              {"location=Car&operator=228-02", u"location = 'Car' AND mnc = '02'"_s},
              {"verified=1", u"verified = 1"_s},
              {"test=9", u"id = 9"_s},
              {"server=none", u"0"_s}}) {
            const auto filter = parsed<TestFilter>(query);
            QCOMPARE(parsed<TestFilter>(filter.toQuery().toStdString()), filter);
            for (const auto &scope : {TestScope{5, filter, {}}, TestScope{5, {}, filter}}) {
                const auto summary =
                    answer<Summary>([&](auto done) { store->summary(scope, done); });
                for (const auto &[sort, column] : {std::pair{"time", u"client_time"_s},
                                                   {"download", u"download_rate"_s},
                                                   {"upload", u"upload_rate"_s},
                                                   {"rtt", u"rtt"_s},
                                                   {"type", u"type"_s},
                                                   {"server", u"test_server"_s}}) {
                    for (const QString &direction : {u"asc"_s, u"desc"_s}) {
                        std::string next;
                        QStringList walk;
                        do {
                            const auto order =
                                parsed<TestOrder>("limit=4&sort=" + std::string(sort) + "&order=" +
                                                  direction.toStdString() + "&after=" + next);
                            const auto page = answer<TestPage>(
                                [&](auto done) { store->tests(scope, order, done); });
                            QCOMPARE(page.count, summary.tests);
                            for (const TestRow &row : page.rows) {
                                walk += QString::number(row.id);
                            }
                            next = page.next.toStdString();
                        } while (!next.empty());
                        const QString all =
                            u"SELECT ifnull(group_concat(id), '') FROM (SELECT id FROM reports "
                            "WHERE %1 ORDER BY %2 IS NULL, %2 %3, id %3)"_s;
                        QCOMPARE(walk.join(u','),
                                 sql(file, {all.arg(condition, column, direction)}).toString());
                        QCOMPARE(walk.size(), summary.tests);
                    }
                }
            }
        }
    }

    void finishesWhatAKillInterrupted()
    {
        Store store = open();
        QFile device(QStringLiteral(DEVICE_REPORT));
        QVERIFY(device.open(QIODevice::ReadOnly));
        const QString document =
            QString::fromUtf8(device.readAll())
                .replace(u"</JavaConsoleOutput>"_s,
                         uR"(
LoadFigures: {"download":{"cc":"bbr","rtt_ns":[41,-1,45],"t_ns":[1,2,3]},)"
                         R"("upload":{"cc":"cubic","rtt_ns":[9],"t_ns":[1]},"v":1}
</JavaConsoleOutput>)"_s);
        for (const qint64 user : {5, 6}) {
            Report each = report(user, 1, 10);
            each.document = document;
            put(store, each);
            store->storeStream({.test = each.key(), .ended = 4'102'444'800'000});
        }
        // More than are filled at once.
        for (int i = 0; i < 200; ++i) {
            store->storeReport(report(5, 9, i), [](ReportStore::Outcome) {});
        }
        const Share share{u"key"_s, {}, true, 1, 4'102'444'800'000};
        QVERIFY(answer<bool>([&](auto done) { store->addShare(5, share, done); }));
        for (const qint64 now : {share.expires - 1, share.expires}) {
            const auto access =
                answer<Access>([&](auto done) { store->accessOfShare(u"key"_s, now, done); });
            QCOMPARE(access.userId, now < share.expires ? 5 : 0);
        }
        store.reset();
        // As version 3 left it, and as a deletion did that had just begun.
        sql(file, {u"UPDATE reports SET type = NULL, connection_type = 'NrMode', mcc = '228', mnc "
                   u"= '01', "
                   "verified = 1, download_avg = 8, upload_client_avg = 6, rtt_avg = 7"_s,
                   u"UPDATE users SET deleted = 1, erased = 0 WHERE id = 6"_s});
        store = open();
        QCOMPARE(put(store, report(6, 1, 11)), ReportStore::Outcome::Deleted);
        QCOMPARE(put(store, report(5, 1, 11)), ReportStore::Outcome::Stored);
        store.reset();
        QCOMPARE(sql(file, {u"SELECT count(*) FROM reports WHERE type IS NULL"_s}), 0);
        QCOMPARE(
            sql(file, {u"SELECT group_concat(type || operator || ' ' || download_rate || ' ' || "
                       "upload_rate || ' ' || rtt || ' ' || bytes || ' ' || accuracy || ' ' || "
                       "download_rtt || ' ' || ifnull(upload_rtt, '-')) "
                       "FROM reports WHERE seriesid = 1"_s}),
            u"5228-01 8 6 7 47225000 5.0 43 -"_s);
        QCOMPARE(
            sql(file,
                {u"SELECT group_concat(userid || ' ' || id) FROM reports WHERE seriesid = 1"_s}),
            u"5 1,5 203"_s);
        QCOMPARE(sql(file, {u"SELECT group_concat(userid) FROM streams"_s}), 5);
        // And one from its beginning: nothing is left but that he was there.
        store = open();
        QCOMPARE(answer<qint64>([&](auto done) { store->deleteUser(5, done); }), 202);
        QCOMPARE(put(store, report(5, 1, 12)), ReportStore::Outcome::Deleted);
        QCOMPARE(sql(file, {u"SELECT (SELECT count(*) FROM reports) + (SELECT count(*) FROM "
                            "streams) + (SELECT count(*) FROM shares)"_s}),
                 0);
        QCOMPARE(put(store, report(7, 1, 12)), ReportStore::Outcome::Stored);
        QCOMPARE(sql(file, {u"SELECT id FROM reports"_s}), 204);
    }

    /// @p points in a cell of their own, heard at -100 dBm and up.
    static TrackPart heard(const QString &id, int points)
    {
        TrackPart part;
        part.track.id = id;
        for (int i = 0; i < points; ++i) {
            TrackPoint point;
            point.time = 1 + i;
            point.latitude = 47.0;
            point.longitude = 8.5;
            point.mode = u"LteMode"_s;
            point.rsrp = -100 + i;
            part.points += point;
        }
        return part;
    }

    void publishesTheSignalThatTracksOfSeveralUsersHeard()
    {
        Store store = open();
        const auto take = [&](qint64 user, const TrackPart &part) {
            return answer<ReportStore::TrackTaken>(
                [&](auto done) { store->takeTrack(user, part, done); });
        };
        const auto cells = [&] {
            return answer<Statistics>(
                       [&](auto done) { store->statistics(StatisticsBy::Cell, done); })
                .rows;
        };
        QCOMPARE(take(1, heard(u"a"_s, 4)).state,
                 ReportStore::TrackState::Deleted); // not known yet
        for (int user = 1; user <= 3; ++user) {
            put(store, report(user, 1, 10));
            QCOMPARE(take(user, heard(u"a"_s, 4)).points, 4);
            // Again, as after an answer that was lost: nothing counts twice.
            QCOMPARE(take(user, heard(u"a"_s, 4)).points, 4);
        }
        const auto rows = cells();
        QCOMPARE(rows.size(), 2); // all types, and LTE
        QVERIFY(rows[0].rsrp && !rows[0].download);
        QCOMPARE(rows[0].rsrp->count, 12);
        QCOMPARE(rows[0].rsrp->median, -98);
        QCOMPARE(rows[0].rsrp->p90, -97);

        // Long ones come back in their parts, the greatest number of tracks is kept, and all of it
        // goes with the user.
        TrackPart more = heard(u"a"_s, 6);
        QCOMPARE(take(1, more).points, 6);
        QList<TrackPart> part =
            answer<QList<TrackPart>>([&](auto done) { store->trackPart(1, u"a"_s, 0, done); });
        QVERIFY(part.size() == 1 && part[0].points == more.points.mid(0, 4));
        part = answer<QList<TrackPart>>([&](auto done) { store->trackPart(1, u"a"_s, 4, done); });
        QVERIFY(part.size() == 1 && part[0].points == more.points.mid(4));
        for (qint64 i = 1; i < ReportStore::maxTracks; ++i) {
            QCOMPARE(take(1, heard(QString::number(i), 1)).points, 1);
        }
        QCOMPARE(take(1, heard(u"b"_s, 1)).state, ReportStore::TrackState::Full);
        QCOMPARE(take(1, more).points, 6);
        QVERIFY(answer<qint64>([&](auto done) { store->deleteUser(1, done); }) > 0);
        QCOMPARE(take(1, more).state, ReportStore::TrackState::Deleted);
        store.reset();
        QCOMPARE(sql(file, {u"SELECT (SELECT count(*) FROM tracks) || ' ' || (SELECT count(*) FROM "
                            "trackparts) || ' ' || (SELECT sum(points) FROM trackcells)"_s}),
                 u"2 2 8"_s);
    }

    void publishesFiguresOfVerifiedTestsOfSeveralUsers()
    {
        const Store store = open();
        // Ten tests of three users over WLAN, nine over LTE, eleven of two users over 5G; then as
        // many that claim what nobody served.
        for (int i = 0; i < 60; ++i) {
            const int kind = i % 30 < 10 ? 0 : i % 30 < 19 ? 1 : 2;
            Report each = report(1 + i % (kind == 2 ? 2 : 3), 1, 946'684'800'000 + i);
            each.connectionType = QStringList{u"WlanMode"_s, u"LteMode"_s, u"NrMode"_s}.at(kind);
            each.testServer = i % 30 < 15 ? u"a.example"_s : u"<b>"_s;
            each.rttAvg = 1'000'000 * (1 + i);
            each.uploadRtt = each.rttAvg;
            each.download.avg = i < 30 ? std::nullopt : std::optional<qint64>(5);
            put(store, each);
        }
        const auto near = [](qint64 ns) {
            return QString::number(std::round(static_cast<double>(ns) / 1e6));
        };
        for (const auto &[by, expected] :
             {std::pair{StatisticsBy::Type, u"wlan all 10 2 6 9"_s},
              {StatisticsBy::Server, u"a.example all 15 2 8 14|a.example wlan 10 2 6 9"_s},
              {StatisticsBy::Month, u"2000-01 all 30 4 16 27|2000-01 wlan 10 2 6 9"_s}}) {
            QStringList rows;
            const auto found = answer<Statistics>(
                [&, wanted = by](auto done) { store->statistics(wanted, done); });
            for (const auto &row : found.rows) {
                QVERIFY(row.rtt && !row.download && !row.upload && !row.downloadRtt);
                QVERIFY(row.uploadRtt && row.uploadRtt->median == row.rtt->median);
                rows += QStringList{row.key,
                                    row.type ? ConnectionClasses::key(*row.type) : u"all"_s,
                                    QString::number(row.rtt->count),
                                    near(row.rtt->p10),
                                    near(row.rtt->median),
                                    near(row.rtt->p90)}
                            .join(u' ');
            }
            QCOMPARE(rows.join(u'|'), expected);
        }
    }

    void refusesFilesThatAreNotOurs_data()
    {
        const Rows<QString, QString> row("kind", "reason");
        row("of a newer version", "newer", "newer version");
        row("no database", "text", "no database");
        row("another program's", "foreign", "cannot be brought");
        row("another service's", "used", "another velometer-service uses it");
        row("on a full disk", "full", "cannot be used: disk I/O error");
    }
    void refusesFilesThatAreNotOurs()
    {
        QFETCH(const QString, kind);
        QFETCH(const QString, reason);
        if (kind == u"newer"_s) {
            sql(file, {u"PRAGMA user_version=999"_s});
        } else if (kind == u"foreign"_s) {
            sql(file, {u"CREATE TABLE users(name TEXT)"_s});
        } else if (kind == u"text"_s) {
            QFile text(file);
            QVERIFY(text.open(QIODevice::WriteOnly));
            text.write(QByteArray(4096, 'x'));
        }
        const Store first = kind == u"used"_s ? open() : nullptr;
        const auto full = kind == u"full"_s ? std::optional(fullDisk(0)) : std::nullopt;
        QString error;
        QVERIFY(!SqliteReportStore::open(file, &error));
        QVERIFY2(error.contains(reason), qUtf8Printable(error));
    }

    void finishesItsQueueBeforeItClosesAndFailsOneReportAlone()
    {
        Store store = open();
        sql(file, {u"CREATE TRIGGER picky BEFORE INSERT ON reports WHEN NEW.client_time = 30 "
                   "BEGIN SELECT RAISE(ABORT, 'no'); END"_s});
        std::atomic<int> stored = 0;
        for (int i = 0; i < 300; ++i) {
            store->storeReport(report(1, 1, i), [&stored](ReportStore::Outcome outcome) {
                stored += outcome == ReportStore::Outcome::Stored ? 1 : 0;
            });
        }
        store.reset();
        QCOMPARE(stored, 299);
        QCOMPARE(sql(file, {u"SELECT count(*) FROM reports"_s}), 299);
    }

    void endsWhileAnotherProgramHoldsTheFile()
    {
        const Store store = open();
        auto held = std::make_unique<HeldFile>(file);
        std::atomic<int> failed = 0;
        for (int i = 0; i < 300; ++i) {
            store->storeReport(report(1, 1, i), [&failed](ReportStore::Outcome outcome) {
                failed += outcome == ReportStore::Outcome::Failed ? 1 : 0;
            });
        }
        // A second, in which it begins to wait for the file.
        const auto closed = std::async(std::launch::async, [&] {
            store->close(std::chrono::steady_clock::now() + std::chrono::seconds(1));
        });
        const bool inTime = closed.wait_for(std::chrono::seconds(4)) == std::future_status::ready;
        held.reset();
        QVERIFY(inTime);
        QCOMPARE(failed, 300);
    }

    void tellsTheTruthAboutItsHealth()
    {
        const RunningService service;
        const auto health = [&] { return service.get("/healthz"); };
        const auto user = [&](const QByteArray &uuid) {
            return statusOf(service.get("/velometer/getIDwithUUID.jsp?UUID=" + uuid));
        };
        QCOMPARE(bodyOf(health()), "ok\n");
        {
            const auto disk = fullDisk(4096);
            QCOMPARE(user("a"), 500);
            const QByteArray answer = health();
            QCOMPARE(statusOf(answer), 503);
            QCOMPARE(bodyOf(answer), "The store takes no reports: disk I/O error.\n");
        }
        QCOMPARE(statusOf(health()), 200);
        auto held = std::make_unique<HeldFile>(service.databaseFile());
        QCOMPARE(bodyOf(health()), "The store takes no reports: it does not answer.\n");
        // Readers have no part in that.
        QCOMPARE(statusOf(service.get("/velometer/Controller?page=UserReport&userid=1")), 404);
        held.reset();
        QCOMPARE(user("a"), 200);
    }

    void commandLineSetsEveryOption()
    {
        const auto parsed = CommandLine::parse(
            u"velometer-service --listen [::1]:0 --listen 127.0.0.1:65535 --database sqlite:f "
            "--threads 2 --max-streams 3 --max-streams-per-address 4 "
            "--max-connections-per-address 5 --max-report-bytes 6000 --log-level debug "
            "--statistics-licence ODbL-1.0 --tile-url http://{s}.t/{z}/{x}/{y}"_s.split(u' '));
        const auto &start = std::get<CommandLine::Start>(parsed);
        const auto &o = start.options;
        const auto text = [](const auto &...value) {
            return (... + (QString::number(value) + u' '));
        };
        QCOMPARE(text(o.listen.front().port, o.listen.back().port, o.threads, o.maxStreams,
                      o.maxStreamsPerAddress, o.maxConnectionsPerAddress, o.maxReportBytes,
                      static_cast<int>(start.logLevel)),
                 u"0 65535 2 3 4 5 6000 3 "_s);
        QCOMPARE(o.listen.front().host + o.databaseFile + o.salt + o.licence + o.tiles.address,
                 u"::1f8352ODbL-1.0http://{s}.t/{z}/{x}/{y}"_s);
    }

    void commandLine_data()
    {
        const Rows<int> row("status"); // -1: the service starts
        row(" ", -1);
        row("--help", 0);
        row("--listen localhost:80", 2);
        row("--threads 0", 2);
        row("--max-report-bytes 99999999999999999999", 2);
        row("--database postgresql://host/name", 2);
        row("--statistics-licence \"", 2);
        row("--tile-url http://t/{z}/{x}.png", 2);
        row("--tile-url http://t;script-src/{z}/{x}/{y}", 2);
        row("--config no-such-file.conf", 2);
    }
    void commandLine()
    {
        QFETCH(const int, status);
        const QString line = u"velometer-service "_s + QLatin1StringView(QTest::currentDataTag());
        const auto parsed = CommandLine::parse(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        const auto *end = std::get_if<CommandLine::End>(&parsed);
        QCOMPARE(end ? end->status : -1, status);
        if (status == 2) {
            QVERIFY2(end->text.endsWith(u".\n"_s), qUtf8Printable(end->text));
            QCOMPARE(end->text.count(QLatin1Char('\n')), 1);
        }
    }

    void doesNotStartOnAnAddressInUse()
    {
        const RunningService first;
        const RunningService second(
            [&](ServerOptions &o) { o.listen = {{QStringLiteral("127.0.0.1"), first.port()}}; });
        QCOMPARE(second.port(), 0);
    }

private:
    Store open() const
    {
        QString error;
        Store store = SqliteReportStore::open(file, &error);
        if (!store) {
            qFatal("%s", qUtf8Printable(error));
        }
        return store;
    }
    static Report report(qint64 user, qint64 series, qint64 time)
    {
        Report report;
        report.userId = user;
        report.seriesId = series;
        report.clientTime = time;
        report.document = u"<a/>"_s;
        return report;
    }

    std::unique_ptr<QTemporaryDir> directory;
    QString file;
};

} // namespace velometer

VELOMETER_TEST(ServiceStoreTest)
#include "service_store_test.moc"
