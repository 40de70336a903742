#include "commandline.h"
#include "reports/sqlitereportstore.h"
#include "runningservice.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <future>

using namespace Qt::StringLiterals;

/// The file that users and reports are kept in, and what the service is started with.
class ServiceStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsUsersAndSeriesOverARestart();
    void listsTheNewestFirst();
    void bringsAnOldFileForward();
    void refusesFilesThatAreNotOurs_data();
    void refusesFilesThatAreNotOurs();
    void finishesItsQueueBeforeItCloses();
    void commandLine_data();
    void commandLine();
    void doesNotStartOnAnAddressInUse();

private:
    static Report report(qint64 user, qint64 series, qint64 time);
};

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

ReportStore::UserReports reportsOf(const Store &store, qint64 user, int limit)
{
    using Reports = std::optional<ReportStore::UserReports>;
    return result<Reports>([&](auto done) { store->reportsOfUser(user, limit, done); })
        .value_or(ReportStore::UserReports{});
}

/// Runs statements on a file that no store has open; gives the first value of the last one.
QVariant sql(const QString &file, const QStringList &statements)
{
    QVariant value;
    {
        auto database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"raw"_s);
        database.setDatabaseName(file);
        database.open();
        QSqlQuery query(database);
        for (const QString &statement : statements) {
            if (!query.exec(statement)) {
                qFatal("%s", qUtf8Printable(statement));
            }
        }
        value = query.next() ? query.value(0) : QVariant();
    }
    QSqlDatabase::removeDatabase(u"raw"_s);
    return value;
}

} // namespace

Report ServiceStoreTest::report(qint64 user, qint64 series, qint64 time)
{
    Report report;
    report.userId = user;
    report.seriesId = series;
    report.clientTime = time;
    report.document = u"<a/>"_s;
    return report;
}

void ServiceStoreTest::keepsUsersAndSeriesOverARestart()
{
    const QTemporaryDir directory;
    const QString file = directory.filePath(u"new/dir/reports.db"_s);
    QString error;
    Store store = SqliteReportStore::open(file, &error);
    QVERIFY2(store, qUtf8Printable(error));
    const auto first = userOf(store, u"a"_s);
    const auto second = userOf(store, u"b"_s);
    QVERIFY(first.id > 0 && second.id > 0 && first.id != second.id);
    QCOMPARE(put(store, report(first.id, 12, 1)), ReportStore::Outcome::Stored);
    QCOMPARE(put(store, report(first.id, 7, 2)), ReportStore::Outcome::Stored);
    QCOMPARE(put(store, report(first.id, 7, 2)), ReportStore::Outcome::Repeated);

    store.reset();
    store = SqliteReportStore::open(file, &error);
    QVERIFY2(store, qUtf8Printable(error));
    QCOMPARE(userOf(store, u"a"_s).id, first.id);
    QCOMPARE(userOf(store, u"a"_s).lastSeries, 12);
    QCOMPARE(userOf(store, u"b"_s).id, second.id);
    QCOMPARE(userOf(store, u"b"_s).lastSeries, 0);
}

void ServiceStoreTest::listsTheNewestFirst()
{
    const QTemporaryDir directory;
    QString error;
    const Store store = SqliteReportStore::open(directory.filePath(u"r.db"_s), &error);
    for (const qint64 time : {20, 40, 10, 30}) {
        put(store, report(5, 1, time));
    }
    const auto three = reportsOf(store, 5, 3);
    QList<qint64> times;
    for (const Report &row : three.reports) {
        times += row.clientTime;
    }
    QCOMPARE(times, (QList<qint64>{40, 30, 20}));
    QVERIFY(three.more);
    QVERIFY(!reportsOf(store, 5, 4).more);
    // A user whom only a report made known, one without reports, and nobody.
    QVERIFY(reportsOf(store, 5, 4).userKnown);
    QVERIFY(reportsOf(store, userOf(store, u"x"_s).id, 4).userKnown);
    QVERIFY(!reportsOf(store, 6, 4).userKnown);
}

void ServiceStoreTest::bringsAnOldFileForward()
{
    const QTemporaryDir directory;
    const QString file = directory.filePath(u"old.db"_s);
    sql(file,
        {u"CREATE TABLE users(id INTEGER PRIMARY KEY, uuid TEXT UNIQUE, created "
         "INTEGER NOT NULL)"_s,
         u"CREATE TABLE reports(id INTEGER PRIMARY KEY, userid INTEGER NOT NULL REFERENCES "
         "users(id), "
         "seriesid INTEGER NOT NULL, testid INTEGER NOT NULL, client_time INTEGER NOT NULL, "
         "server_time INTEGER NOT NULL, public_ip TEXT NOT NULL, test_server TEXT NOT NULL, "
         "connection_type TEXT NOT NULL, location TEXT NOT NULL, network TEXT NOT NULL, "
         "mcc TEXT NOT NULL, mnc TEXT NOT NULL, platform TEXT NOT NULL, model TEXT NOT NULL, "
         "manufacturer TEXT NOT NULL, applet_version TEXT NOT NULL, download_min INTEGER, "
         "download_avg INTEGER, download_max INTEGER, upload_min INTEGER, upload_avg INTEGER, "
         "upload_max INTEGER, upload_client_min INTEGER, upload_client_avg INTEGER, "
         "upload_client_max INTEGER, rtt_min INTEGER, rtt_avg INTEGER, rtt_max INTEGER, "
         "latitude REAL, longitude REAL, document TEXT NOT NULL, "
         "UNIQUE(userid, seriesid, testid, client_time))"_s,
         u"INSERT INTO users VALUES(77, 'old', 1)"_s,
         u"INSERT INTO reports VALUES(1, 77, 4, 2, 1000, 1001, '10.0.0.1', 's', 'WLAN', "
         "'LocHome', 'n', '228', '01', 'p', 'm', 'f', 'V1', 1, 2, 3, 4, 5, 6, 7, 8, 9, "
         "10, 11, 12, NULL, NULL, '<a/>')"_s,
         u"PRAGMA user_version=1"_s});
    QString error;
    Store store = SqliteReportStore::open(file, &error);
    QVERIFY2(store, qUtf8Printable(error));
    QCOMPARE(userOf(store, u"old"_s).id, 77);
    QCOMPARE(userOf(store, u"old"_s).lastSeries, 4);
    const auto reports = reportsOf(store, 77, 10).reports;
    QCOMPARE(reports.size(), 1);
    QCOMPARE(reports.first().download.avg, std::optional<qint64>(2));
    QCOMPARE(put(store, report(77, 5, 2000)), ReportStore::Outcome::Stored);
    store.reset();
    // The index of the pages is what a new file has, too.
    const QString indexes = u"SELECT count(*) FROM sqlite_master WHERE name = 'reports_by_time'"_s;
    QCOMPARE(sql(file, {indexes}).toInt(), 1);
    QCOMPARE(sql(file, {u"PRAGMA user_version"_s}).toInt(), 2);
}

void ServiceStoreTest::refusesFilesThatAreNotOurs_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("reason");
    QTest::newRow("of a newer version") << u"newer"_s << u"newer version"_s;
    QTest::newRow("no database") << u"text"_s << u"no database"_s;
    QTest::newRow("a directory") << u"directory"_s << u"unable to open"_s;
    QTest::newRow("below a file") << u"below"_s << u"directory cannot be made"_s;
    QTest::newRow("another program's") << u"foreign"_s << u"cannot be brought"_s;
}

void ServiceStoreTest::refusesFilesThatAreNotOurs()
{
    QFETCH(const QString, kind);
    QFETCH(const QString, reason);
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"r.db"_s);
    QString opened = path;
    if (kind == u"newer"_s) {
        sql(path, {u"PRAGMA user_version=999"_s});
    } else if (kind == u"foreign"_s) {
        sql(path, {u"CREATE TABLE users(name TEXT)"_s});
    } else if (kind == u"directory"_s) {
        QDir().mkpath(path);
    } else {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(4096, 'x'));
        opened += kind == u"below"_s ? u"/r.db"_s : QString();
    }
    QString error;
    QVERIFY(!SqliteReportStore::open(opened, &error));
    QVERIFY2(error.contains(reason), qUtf8Printable(error));
}

void ServiceStoreTest::finishesItsQueueBeforeItCloses()
{
    const QTemporaryDir directory;
    const QString file = directory.filePath(u"r.db"_s);
    QString error;
    Store store = SqliteReportStore::open(file, &error);
    std::atomic<int> stored = 0;
    for (int i = 0; i < 300; ++i) {
        store->storeReport(report(1, 1, i), [&stored](ReportStore::Outcome outcome) {
            stored += outcome == ReportStore::Outcome::Stored ? 1 : 0;
        });
    }
    store.reset();
    QCOMPARE(stored, 300);
    QCOMPARE(sql(file, {u"SELECT count(*) FROM reports"_s}).toInt(), 300);
}

void ServiceStoreTest::commandLine_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("status"); // -1: the service starts
    const auto row = [](const char *arguments, int status) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << status;
    };
    row("", -1);
    row("--listen [::1]:0 --listen 127.0.0.1:65535 --threads 2 --log-level debug", -1);
    row("--database sqlite:relative.db", -1);
    row("--version", 0);
    row("--help", 0);
    row("--listen 127.0.0.1:65536", 2);
    row("--listen 127.0.0.1", 2);
    row("--listen localhost:80", 2);
    row("--listen ::1:8080", 2);
    row("--listen [127.0.0.1]:8080", 2);
    row("--listen 300.0.0.1:8080", 2);
    row("--threads 0", 2);
    row("--threads two", 2);
    row("--max-streams -1", 2);
    row("--max-report-bytes 99999999999999999999", 2);
    row("--log-level loud", 2);
    row("--database postgresql://host/name", 2);
    row("--database sqlite:", 2);
    row("--config no-such-file.conf", 2);
    row("--no-such-option", 2);
    row("start", 2);
}

void ServiceStoreTest::commandLine()
{
    QFETCH(const QString, arguments);
    QFETCH(const int, status);
    const auto parsed = CommandLine::parse(QStringList{u"velometer-service"_s} +
                                           arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    const auto *end = std::get_if<CommandLine::End>(&parsed);
    QCOMPARE(end ? end->status : -1, status);
    if (status == 2) {
        // One sentence.
        QVERIFY2(end->text.endsWith(u".\n"_s), qUtf8Printable(end->text));
        QVERIFY2(!end->text.endsWith(u"..\n"_s), qUtf8Printable(end->text));
        QCOMPARE(end->text.count(QLatin1Char('\n')), 1);
    }
}

void ServiceStoreTest::doesNotStartOnAnAddressInUse()
{
    const RunningService first;
    const QTemporaryDir directory;
    auto options = RunningService::defaults();
    options.databaseFile = directory.filePath(u"r.db"_s);
    options.listen = {{.address = "127.0.0.1", .port = first.port()}};
    Server second(options);
    QString error;
    QVERIFY(!second.start(&error));
    QVERIFY2(error.contains(QString::number(first.port())), qUtf8Printable(error));
}

QTEST_GUILESS_MAIN(ServiceStoreTest)
#include "service_store_test.moc"
