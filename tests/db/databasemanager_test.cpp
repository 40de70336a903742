#include "db/databasemanager.h"

#include "data/testdetails.h"
#include "db/storewriter.h"
#include "support/fakeclock.h"
#include "support/registeredtest.h"
#include "support/sqlitefile.h"
#include "utils/utils.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

class DatabaseManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        delete std::exchange(gDB, nullptr);
        QVERIFY(directory.isValid());
        DatabaseManager::database_path = directory.filePath(u"a/b/c"_s);
    }
    void init()
    {
        db = std::make_unique<DatabaseManager>(nullptr);
        QVERIFY(db->openDB());
        db->resetDB();
    }
    void cleanup() { db.reset(); }

    void anotherVersionIsSetAsideTheOwnIsKept_data()
    {
        const Rows<QString, QString> row("statement", "aside");
        row("own version", "SELECT 1", {});
        row("newer version", "UPDATE version SET v = 7", ".version-7");
        row("the same once more", "UPDATE version SET v = 7", ".version-7-2");
        row("no version table", "DROP TABLE version", ".version-unknown");
    }
    void anotherVersionIsSetAsideTheOwnIsKept()
    {
        QFETCH(QString, statement);
        QFETCH(QString, aside);
        QVERIFY(store(13, 3) > 0);
        XMLData report;
        QVERIFY(db->insertOrUpdateXMLFile(&report));
        QVERIFY(sql(u"INSERT INTO testintervals VALUES(1,1,'7')"_s));
        QVERIFY(sql(statement));
        db = std::make_unique<DatabaseManager>(nullptr);
        QVERIFY(db->openDB());
        const int kept = aside.isEmpty() ? 1 : 0;
        QCOMPARE(static_cast<int>(db->getAllResults().size()), kept);
        QCOMPARE(db->countUnsentXMLFiles(), kept);
        QCOMPARE(static_cast<int>(db->getIntervals(1, Result::Download).size()), kept);
        QCOMPARE(value(u"SELECT v FROM version"_s), 6);
        QCOMPARE(value(u"PRAGMA journal_mode"_s), u"wal"_s);
        QCOMPARE(value(u"PRAGMA synchronous"_s), 2);
        if (kept == 0) {
            QCOMPARE(db->getAsideFile(), DatabaseManager::databaseFile() + aside);
            QVERIFY(sql(u"ATTACH '%1' AS aside"_s.arg(db->getAsideFile())));
            QCOMPARE(value(u"SELECT count(*) FROM aside.testresults, aside.xmlfiles"_s), 1);
        }
    }

    void aFileFromBeforeTheIntervalsKeepsItsTests()
    {
        QVERIFY(store(13, 3) > 0);
        QVERIFY(sql(u"DROP TABLE testintervals"_s));
        db = std::make_unique<DatabaseManager>(nullptr);
        QVERIFY(db->openDB());
        QCOMPARE(static_cast<int>(db->getAllResults().size()), 1);
        QVERIFY(db->getIntervals(1, Result::Upload).isEmpty());
        QVERIFY(sql(u"INSERT INTO testintervals VALUES(1,2,'0,12500000000,3')"_s));
        QCOMPARE(db->getIntervals(1, Result::Upload),
                 (IntervalTable{{0, 0}, {1, 12'500'000'000}, {2, 3}}));
        QVERIFY(sql(u"UPDATE testintervals SET bytes = '5,,-3,x,' || hex(zeroblob(100000))"_s));
        QCOMPARE(db->getIntervals(1, Result::Upload).value(0), 5);
        QCOMPARE(db->getIntervals(1, Result::Upload).value(2), 0);
        QVERIFY(db->getIntervals(1, Result::Upload).size() < 10'000);
    }

    void storesARowOfRoundedFigures()
    {
        FinishedTest test;
        test.timestamp = 1'700'000'000'123;
        test.server.host = u"o'host"_s;
        test.location = u"Indoor"_s;
        test.download.averageRate = 4'000'000'000'000;
        test.upload.averageRate = 8000;
        test.rtt.average = 45'999'999;
        test.movement = {55, 1000.6, 61, 9.2, 14.7};
        const auto stored = [&] {
            const auto row = db->getResultsById(db->storeTest(test));
            return QVariantList{
                row->timestamp,         row->downloadSpeed, row->uploadSpeed,
                row->uploadSpeedClient, row->rtt,           row->testServer,
                row->location,          row->velocity,      row->distance,
                row->accuracyvert,      row->accuracyhor,   row->distanceDurationInSeconds};
        };
        QVariantList row{1'700'000'000'123.0, 4e12, 8000.0, 8000.0, 45LL, u"o'host"_s,
                         u"Indoor"_s,         55.0, 1001.0, 15.0,   9.0,  61.0};
        QCOMPARE(stored(), row);
        test.serverAverageRate = 7000;
        row[2] = 7000.0;
        QCOMPARE(stored(), row);
    }

    void idsThatStartAgainDoNotOverwriteAnOlderTest()
    {
        const qulonglong first = store(1, 1);
        QVERIFY(first > 0 && store(1, 1) != first);
        store(1, 2);
        const auto all = db->getAllResults();
        QCOMPARE(all.size(), size_t(3));
        QCOMPARE(all.front()->testId, 2); // newest first
    }

    void aTestIsStoredWholeOrNotAtAll()
    {
        for (const char *table : {"testresults", "testdetails", "testintervals", "xmlfiles"}) {
            QVERIFY(sql(
                u"CREATE TRIGGER broken BEFORE INSERT ON %1 BEGIN SELECT RAISE(ABORT, 'x'); END"_s
                    .arg(QLatin1StringView(table))));
            FinishedTest test;
            test.upload.intervalBytes = {1, 2};
            XMLData report;
            QCOMPARE(db->storeTest(test, &report), 0);
            QVERIFY(!report.identification && db->countUnsentXMLFiles() == 0);
            QVERIFY(sql(u"DROP TRIGGER broken"_s));
            QVERIFY(db->getAllResults().empty() && !db->getDetailsById(1));
            QVERIFY(db->getIntervals(1, Result::Upload).isEmpty());
        }
    }

    void aTestKnowsWhatBecameOfItsReport()
    {
        const auto queued = [&] {
            XMLData document;
            return db->storeTest({}, &document);
        };
        const auto report = [&](qulonglong id) {
            return db->getTest(*db->getResultsById(id)).report;
        };
        const qulonglong first = queued();
        const qulonglong second = queued();
        QCOMPARE(report(second).queueId, 2);
        QVERIFY(db->deleteUnsentXMLFile(2));
        // Its row in the queue is used again.
        const qulonglong third = queued();
        QCOMPARE(report(third).queueId, 2);
        QCOMPARE(report(third).delivered, false);
        QCOMPARE(report(second).queueId, std::nullopt);
        QCOMPARE(report(second).delivered, true);
        QCOMPARE(report(first).delivered, false);
    }

    void sumsAndLocatesTests()
    {
        QCOMPARE(db->getTotalMegabytesInDB(), 0.0);
        QVERIFY(!db->locationsAvailable());
        FinishedTest test;
        test.download.averageRate = 0;
        test.download.bytes = 1'572'864;
        test.movement.verticalAccuracy = 12;
        const auto add = [&](const QString &type, double latitude, double longitude) {
            ++*test.download.averageRate;
            test.network.type = type;
            test.position.latitude = latitude;
            test.position.longitude = longitude;
            db->storeTest(test);
        };
        add(u"WLAN"_s, 47.5, 8.5);
        add(u"Mixed(WLAN,Mobile)"_s, 0, 0); // no position
        add(u"Mobile(LTE)"_s, 0, 8.25);     // on the equator
        QCOMPARE(db->getTotalMegabytesInDB(), 4.5);
        QCOMPARE(db->getTotalMegabytesOverMobileInDB(), 1.5);
        const auto locations = db->getLocationsOfTests();
        QCOMPARE(locations.size(), size_t(2));
        QCOMPARE(locations[0].myTestId, 3);
        QCOMPARE((QList<double>{locations[1].latitude, locations[1].longitude,
                                locations[1].accuracy, locations[1].downloadSpeed}),
                 (QList<double>{47.5, 8.5, 12, 1}));
    }

    void theQueueIsWalkedInOrderUpToTwentyAttempts()
    {
        QVERIFY(sql(u"INSERT INTO xmlfiles VALUES(3,0,'three ä %1 %2'),(5,20,'five'),(-1,2,'-1'),"
                    "(0,3,'0'),(6000000000,19,'far')"_s));
        QStringList walk;
        std::unique_ptr<XMLData> report;
        for (qint64 last = std::numeric_limits<qint64>::min();
             (report = db->getNextUnsentXMLFile(last)) && walk.size() < 9;
             last = *report->identification) {
            walk += u"%1 %2 %3"_s.arg(*report->identification)
                        .arg(QString::number(report->numberofretries), report->xml);
            report->numberofretries = 20;
            report->xml = u"changed"_s;
            QCOMPARE(db->insertOrUpdateXMLFile(report.get()), report->identification);
        }
        QCOMPARE(walk, (QStringList{u"-1 2 -1"_s, u"0 3 0"_s, u"3 0 three ae %1 %2"_s,
                                    u"6000000000 19 far"_s}));
        QCOMPARE(db->countUnsentXMLFiles(), 0);
        QCOMPARE(value(u"SELECT xml FROM xmlfiles WHERE id > 5"_s), u"far"_s);
        QVERIFY(db->deleteUnsentXMLFile(6'000'000'000));
        QCOMPARE(value(u"SELECT count(*) FROM xmlfiles"_s), 4);
        XMLData apostrophe;
        apostrophe.xml = u"it's"_s;
        QCOMPARE(db->insertOrUpdateXMLFile(&apostrophe), std::nullopt);
    }

    void aLockedStoreIsWaitedForAMinute_data()
    {
        // after: s until the lock is gone; stored: in the end
        const Rows<int, bool, int> row("after", "stored", "told");
        row("free", 0, true, 0);
        row("a moment", 1, true, 0);
        row("most of a minute", 59, true, 1);
        row("a minute", 61, false, 1);
    }
    void aLockedStoreIsWaitedForAMinute()
    {
        QFETCH(int, after);
        FakeClock clock;
        auto held =
            after == 0 ? nullptr : std::make_unique<HeldFile>(DatabaseManager::databaseFile());
        StoreWriter writer(nullptr);
        QSignalSpy told(&writer, &StoreWriter::waiting);
        std::optional<bool> stored;
        writer.write([&] { return store(13, 3) > 0; }, [&](bool done) { stored = done; });
        for (int second = 0; second < 61 && !stored; ++second) {
            if (second == after) {
                held.reset();
            }
            for (int i = 0; i < 5; ++i) {
                clock.advance(200ms);
            }
        }
        QTEST(stored.value(), "stored");
        QTEST(static_cast<int>(told.size()), "told");
        QCOMPARE(db->getAllResults().size(), size_t(*stored ? 1 : 0));
    }

    void aTestThatWaitsBesideTheStoreJoinsItOnce()
    {
        FinishedTest test;
        test.seriesId = 13;
        test.testId = 3;
        test.timestamp = 1'700'000'000'123;
        test.upload.intervalBytes = {7, 8};
        XMLData report;
        report.xml = u"<a/>"_s;
        auto held = std::make_unique<HeldFile>(DatabaseManager::databaseFile());
        QVERIFY(DatabaseManager::keepForLater(test, report));
        QDir folder(QFileInfo(DatabaseManager::databaseFile()).path());
        const QStringList kept = folder.entryList({u"*.spare-*"_s});
        QCOMPARE(kept.size(), 1);
        const auto reopen = [&] {
            db = std::make_unique<DatabaseManager>(nullptr);
            QVERIFY(db->openDB());
        };
        reopen(); // a start finds the store held: it waits on
        QCOMPARE(db->getAllResults().size(), 0U);
        held.reset();
        // A kill may come between the commit and the removal.
        QVERIFY(QFile::copy(folder.filePath(kept.first()), folder.filePath(kept.first() + u'2')));
        QVERIFY(store(13, 4) > 0);
        reopen();
        QCOMPARE(folder.entryList({u"*.spare-*"_s}), QStringList());
        const auto rows = db->getAllResults();
        QCOMPARE(rows.size(), 2U);
        QCOMPARE(db->getTest(*rows.at(1)).upload.intervalBytes, (QList<qint64>{7, 8}));
        QCOMPARE(db->getTest(*rows.at(1)).report.queueId,
                 db->getNextUnsentXMLFile(0)->identification);
        QCOMPARE(db->countUnsentXMLFiles(), 1);
    }

    void deletesATestWithAllThatBelongsToIt_data()
    {
        const Rows<QString, bool> row("obstacle", "deleted");
        row("none", "SELECT 1", true);
        // The last of its steps: then none has happened.
        row("a row that stays",
            "CREATE TRIGGER t BEFORE DELETE ON testresults BEGIN SELECT RAISE(FAIL, 'no'); END",
            false);
    }
    void deletesATestWithAllThatBelongsToIt()
    {
        const auto [obstacle, deleted] = currentRow<QString, bool>();
        QList<qulonglong> ids;
        for (const qlonglong test : {3, 4, 5}) {
            FinishedTest finished;
            finished.testId = test;
            finished.download.intervalBytes = {test};
            XMLData report;
            report.xml = u"<a%1/>"_s.arg(test);
            ids.append(db->storeTest(finished, &report));
        }
        QVERIFY(db->deleteUnsentXMLFile(*db->getNextUnsentXMLFile(0)->identification));
        QVERIFY(sql(obstacle));
        ids.removeAt(1);
        ids.append(99); // never there
        QCOMPARE(db->countReportsOf(ids), 1);
        QCOMPARE(db->deleteTests(ids), deleted);
        QCOMPARE(db->countReportsOf(ids), deleted ? 0 : 1);
        const auto count = [](const QString &table) {
            return value(u"SELECT count(DISTINCT id) FROM "_s + table).toInt();
        };
        for (const QString &table : {u"testresults"_s, u"testdetails"_s, u"testintervals"_s}) {
            QCOMPARE(count(table), deleted ? 1 : 3);
        }
        QCOMPARE(count(u"xmlfiles"_s), deleted ? 1 : 2);
        QCOMPARE(db->getNextUnsentXMLFile(0)->xml, u"<a4/>"_s);
        sql(u"DROP TRIGGER t"_s);
    }

private:
    qulonglong store(qlonglong series, qlonglong test)
    {
        FinishedTest finished;
        finished.seriesId = series;
        finished.testId = test;
        return db->storeTest(finished);
    }
    static bool sql(const QString &statement) { return QSqlQuery().exec(statement); }
    static QVariant value(const QString &statement)
    {
        QSqlQuery query(statement);
        return query.next() ? query.value(0) : QVariant();
    }

    QTemporaryDir directory;
    std::unique_ptr<DatabaseManager> db;
};

} // namespace velometer

VELOMETER_TEST(DatabaseManagerTest)
#include "databasemanager_test.moc"
