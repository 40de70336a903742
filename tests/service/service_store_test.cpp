#include "main/commandline.h"
#include "reports/sqlitereportstore.h"
#include "runningservice.h"
#include "support/registeredtest.h"
#include "support/sqlitefile.h"

#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <csignal>
#include <future>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

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

ReportStore::UserReports reportsOf(const Store &store, qint64 user, int limit,
                                   std::optional<qint64> before = {})
{
    using Reports = std::optional<ReportStore::UserReports>;
    return result<Reports>([&](auto done) { store->reportsOfUser(user, before, limit, done); })
        .value_or(ReportStore::UserReports{});
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
            {u"DROP INDEX reports_by_time"_s, u"DROP TABLE streams"_s,
             u"UPDATE reports SET download_avg = 5, document = CASE seriesid WHEN 7 THEN "
             "'<ServerDataDownload>sent 3 bytes in 4 ms</ServerDataDownload>' ELSE document END"_s,
             u"ALTER TABLE reports DROP COLUMN verified"_s,
             u"ALTER TABLE reports DROP COLUMN service_late"_s, u"PRAGMA user_version=1"_s});
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
        QCOMPARE(reportsOf(store, first.id, 10).reports.size(), 2);
        store.reset();
        QCOMPARE(sql(file, {u"SELECT count(*) FROM sqlite_master WHERE name='reports_by_time'"_s}),
                 1);
        QCOMPARE(sql(file, {u"PRAGMA user_version"_s}), 3);
        QCOMPARE(sql(file, {u"SELECT group_concat(seriesid) FROM reports WHERE verified"_s}), 7);
    }

    void listsTheNewestFirst()
    {
        const Store store = open();
        for (const qint64 time : {20, 40, 10, 30}) {
            put(store, report(5, 1, time));
        }
        const auto three = reportsOf(store, 5, 3);
        QList<qint64> times;
        for (const Report &row : three.reports) {
            times += row.clientTime;
        }
        QCOMPARE(times, (QList<qint64>{40, 30, 20}));
        QCOMPARE(reportsOf(store, 5, 3, three.older).reports.constFirst().clientTime, 10);
        QCOMPARE(three.count, 4);
        QVERIFY(!reportsOf(store, 5, 4).older);
        QVERIFY(reportsOf(store, 6, 3, three.older).reports.isEmpty());
        // A user whom only a report made known, one without reports, and nobody.
        QVERIFY(reportsOf(store, 5, 4).userKnown);
        QVERIFY(reportsOf(store, userOf(store, u"x"_s).id, 4).userKnown);
        QVERIFY(!reportsOf(store, 6, 4).userKnown);
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
        QCOMPARE(reportsOf(store, 5, 1).reports.constFirst().verified, verified);
        QCOMPARE(
            reportsOf(store, 5, 1).reports.constFirst().serviceLate,
            sql(file,
                {u"SELECT count(*) FROM streams WHERE direction = 2 AND userid = 5 AND seriesid = 6 AND testid = 0"_s})
                    .toInt() == 1);
        claimed.uploadIntervals = 4;
        claimed.clientTime = 11;
        put(store, claimed);
        QVERIFY(!reportsOf(store, 5, 1).reports.constFirst().verified);
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
            "--max-connections-per-address 5 --max-report-bytes 6000 --log-level debug"_s.split(
                u' '));
        const auto &start = std::get<CommandLine::Start>(parsed);
        const auto &o = start.options;
        const auto text = [](const auto &...value) {
            return (... + (QString::number(value) + u' '));
        };
        QCOMPARE(text(o.listen.front().port, o.listen.back().port, o.threads, o.maxStreams,
                      o.maxStreamsPerAddress, o.maxConnectionsPerAddress, o.maxReportBytes,
                      static_cast<int>(start.logLevel)),
                 u"0 65535 2 3 4 5 6000 3 "_s);
        QCOMPARE(o.listen.front().host + o.databaseFile + o.salt, u"::1f8352"_s);
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
