#include "main/commandline.h"
#include "runningservice.h"
#include "storequestions.h"
#include "support/registeredtest.h"
#include "support/sqlitefile.h"

#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <csignal>

#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

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

/// The file of a service without a data base server, and what the service is started with.
class ServiceFileTest : public QObject
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
             "'<UUID>490154203237518</UUID>490154203237518,4901'||"
             "'<ServerDataDownload>sent 3 bytes in 4 ms</ServerDataDownload>' ELSE document END"_s,
             u"DROP TABLE settings"_s, u"DROP TABLE allowances"_s, u"DROP TABLE figures"_s,
             u"DROP INDEX reports_by_age"_s,
             u"UPDATE users SET uuid = 'a' WHERE id = %1"_s.arg(first.id),
             u"UPDATE users SET uuid = 'b' WHERE id = %1"_s.arg(second.id),
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
            QTRY_VERIFY(QFile::exists(name));
            QVERIFY(!(QFile::permissions(name) & others));
        }
        QCOMPARE(userOf(store, u"a"_s).id, first.id);
        QCOMPARE(userOf(store, u"a"_s).lastSeries, 12);
        QCOMPARE(userOf(store, u"b"_s).id, second.id);
        QCOMPARE(userOf(store, u"b"_s).lastSeries, 0);
        QCOMPARE(testsOf(store, first.id).size(), 2);
        store.reset();
        QCOMPARE(sql(file, {u"PRAGMA user_version"_s}), 8);
        QCOMPARE(sql(file, {u"SELECT substr(document, 1, 23) FROM reports WHERE seriesid = 7"_s}),
                 u"<UUID></UUID>,4901<Serv"_s);
        QCOMPARE(sql(file, {u"SELECT count(*) FROM users WHERE length(uuid) = 66"_s}), 2);
        QCOMPARE(sql(file, {u"SELECT group_concat(seriesid) FROM reports WHERE verified"_s}), 7);
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
        QVERIFY(!SqlReportStore::open({.database = file}, &error));
        QVERIFY2(error.contains(reason), qUtf8Printable(error));
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
        QFile config(file);
        QVERIFY(config.open(QIODevice::WriteOnly) && config.write("[Service]\nOldSalts=1,2\n") > 0);
        config.close();
        const auto parsed = CommandLine::parse(
            u"velometer-service --listen [::1]:0 --listen 127.0.0.1:65535 --database sqlite:f "
            "--threads 2 --max-streams 3 --max-streams-per-address 4 "
            "--max-connections-per-address 5 --max-report-bytes 6000 --log-level debug "
            "--statistics-licence ODbL-1.0 --tile-url http://{s}.t/{z}/{x}/{y}"_s.split(u' ') +
            QStringList{u"--config"_s, file});
        const auto &start = std::get<CommandLine::Start>(parsed);
        const auto &o = start.options;
        const auto text = [](const auto &...value) {
            return (... + (QString::number(value) + u' '));
        };
        QCOMPARE(text(o.listen.front().port, o.listen.back().port, o.threads, o.maxStreams,
                      o.maxStreamsPerAddress, o.maxConnectionsPerAddress, o.maxReportBytes,
                      static_cast<int>(start.logLevel)),
                 u"0 65535 2 3 4 5 6000 3 "_s);
        QCOMPARE(o.listen.front().host + o.store.database + o.salts.join(u',') + o.licence +
                     o.tiles.address,
                 u"::1f8352,1,2ODbL-1.0http://{s}.t/{z}/{x}/{y}"_s);
    }

    void commandLine_data()
    {
        const Rows<int> row("status"); // -1: the service starts
        row(" ", -1);
        row("--help", 0);
        row("--listen localhost:80", 2);
        row("--threads 0", 2);
        row("--max-report-bytes 99999999999999999999", 2);
        row("--database postgresql://host/name", -1);
        row("--database postgresql:name", 2);
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
    Store open() const { return openStore(storeOptions(file)); }

    std::unique_ptr<QTemporaryDir> directory;
    QString file;
};

} // namespace velometer

VELOMETER_TEST(ServiceFileTest)
#include "service_file_test.moc"
