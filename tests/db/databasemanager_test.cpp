#include "db/databasemanager.h"

#include "data/result.h"
#include "data/testdetails.h"
#include "data/testresults.h"
#include "support/rows.h"
#include "utils/utils.h"

#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

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

    void anotherVersionIsWipedTheOwnIsKept_data()
    {
        const Rows<QString, int> row("statement", "kept");
        row("own version", "SELECT 1", 1);
        row("newer version", "UPDATE version SET v = 7", 0);
        row("no version table", "DROP TABLE version", 0);
    }
    void anotherVersionIsWipedTheOwnIsKept()
    {
        QFETCH(QString, statement);
        QFETCH(int, kept);
        QVERIFY(store(13, 3) > 0);
        XMLData report;
        QVERIFY(db->insertOrUpdateXMLFile(&report) > 0);
        QVERIFY(db->storeIntervals(1, Result::Download, {{0, 7}}));
        QVERIFY(sql(statement));
        db = std::make_unique<DatabaseManager>(nullptr);
        QVERIFY(db->openDB());
        QCOMPARE(static_cast<int>(db->getAllResults().size()), kept);
        QCOMPARE(db->countUnsentXMLFiles(), kept);
        // Row ids start again: what a wiped test left would become the next one's.
        QCOMPARE(static_cast<int>(db->getIntervals(1, Result::Download).size()), kept);
        QSqlQuery version(u"SELECT * FROM version"_s);
        QVERIFY(version.next());
        QCOMPARE(version.value(0).toInt(), 6);
    }

    void aFileFromBeforeTheIntervalsKeepsItsTests()
    {
        QVERIFY(store(13, 3) > 0);
        QVERIFY(sql(u"DROP TABLE testintervals"_s));
        db = std::make_unique<DatabaseManager>(nullptr);
        QVERIFY(db->openDB());
        QCOMPARE(static_cast<int>(db->getAllResults().size()), 1);
        QVERIFY(db->getIntervals(1, Result::Upload).isEmpty());
        const IntervalTable bytes{{0, 0}, {1, 12'500'000'000}, {2, 3}};
        QVERIFY(db->storeIntervals(1, Result::Upload, {{0, 9}, {1, 9}, {2, 9}, {3, 9}}));
        QVERIFY(db->storeIntervals(1, Result::Upload, bytes));
        QCOMPARE(db->getIntervals(1, Result::Upload), bytes);
        QVERIFY(db->storeIntervals(1, Result::Download, {}));
        QVERIFY(db->getIntervals(1, Result::Download).isEmpty());
        QVERIFY(sql(u"UPDATE testintervals SET bytes = '5,,-3,x,' || hex(zeroblob(100000))"_s));
        QCOMPARE(db->getIntervals(1, Result::Upload).value(0), 5);
        QCOMPARE(db->getIntervals(1, Result::Upload).value(2), 0);
        QVERIFY(db->getIntervals(1, Result::Upload).size() < 10'000);
    }

    void storesARowOfRoundedFigures()
    {
        TestResults results(13, 3, nullptr);
        results.setTimestamp(1'700'000'000'123);
        results.setTestServer(u"host.example"_s);
        results.setUserLocation(u"Indoor"_s);
        // 1543.25 bytes in 10 s are 1234.6 bit/s, a rate already cut to whole numbers
        results.setDownloadResult(new Result(80, 7, 10'000'000'000, 5'000'000'000'000, {}, {}, 0, 0,
                                             0, Result::Download, &results));
        results.setUploadResult(
            new Result(80, 7, 1'000'000'000, 1000, {}, {}, 0, 0, 0, Result::Upload, &results));
        results.setRTTResult(new Result(80, {{1, 45'999'999}}, &results));
        const qulonglong id = db->storeTestResults(&results);
        auto row = db->getResultsById(id);
        QVERIFY(row);
        QCOMPARE(row->timestamp, 1'700'000'000'123.0);
        QCOMPARE(row->downloadSpeed, 4'000'000'000'000.0);
        QCOMPARE(row->uploadSpeed, 8000.0); // the server gave none
        QCOMPARE(row->rtt, 45);
        QCOMPARE(row->connectionType, u"Mobile(mixed)"_s);
        QCOMPARE(row->testServer, u"host.example"_s);

        results.setServerSideUpload(u"1;7000;2"_s);
        row = db->getResultsById(db->storeTestResults(&results));
        QCOMPARE(row->uploadSpeed, 7000.0);
        QCOMPARE(row->uploadSpeedClient, 8000.0);
    }

    void idsThatStartAgainDoNotOverwriteAnOlderTest()
    {
        const qulonglong first = store(1, 1);
        QVERIFY(first > 0 && store(1, 1) != first);
        store(1, 2);
        TestResults refused(1, 3, nullptr);
        refused.setTestServer(u"o'host"_s);
        QCOMPARE(db->storeTestResults(&refused), 0); // and not the id of another test
        const auto all = db->getAllResults();
        QCOMPARE(all.size(), size_t(3));
        QCOMPARE(all.front()->testId, 2); // newest first
    }

    void detailsComeBackWithTheirKinds()
    {
        TestDetails details(nullptr, 7);
        details.putString(u"text"_s, u"%1 \u00e4"_s);
        details.putLong(u"long"_s, 9'000'000'000'000LL);
        details.putDouble(u"double"_s, 123456789.125);
        QVERIFY(db->storeTestDetails(&details));
        details.putString(u"text"_s, u"changed"_s);
        QVERIFY(db->storeTestDetails(&details)); // replaces
        const auto read = db->getDetailsById(7);
        QVERIFY(read);
        QCOMPARE(read->getData().size(), 3);
        QCOMPARE(read->getString(u"text"_s), u"changed"_s);
        QCOMPARE(read->getLong(u"long"_s), 9'000'000'000'000LL);
        QCOMPARE(read->getDouble(u"double"_s), 123456789.125);
    }

    void oneBadDetailDoesNotTakeTheOthersWithIt()
    {
        TestDetails details(nullptr, 7);
        details.putString(u"bad"_s, u"it's"_s);
        details.putString(u"good"_s, u"text"_s);
        QVERIFY(!db->storeTestDetails(&details));
        QCOMPARE(db->getDetailsById(7)->getData().keys(), QStringList{u"good"_s});
    }

    void sumsAndLocatesTests()
    {
        QCOMPARE(db->getTotalMegabytesInDB(), 0.0);
        QVERIFY(!db->locationsAvailable());
        const auto add = [&](qlonglong id, const QString &type, double latitude, double longitude) {
            QVERIFY(
                sql(u"INSERT INTO testresults(id,downloadSpeed,connectionType) VALUES(%1,%1,'%2')"_s
                        .arg(id)
                        .arg(type)));
            TestDetails details(nullptr, id);
            details.putLong(u"totalBytes"_s, 1572864);
            details.putDouble(u"deviceLatitude"_s, latitude);
            details.putDouble(u"deviceLongitude"_s, longitude);
            details.putDouble(u"deviceAccuracyVert"_s, 12);
            db->storeTestDetails(&details);
        };
        add(1, u"WLAN"_s, 47.5, 8.5);
        add(2, u"WLAN"_s, 0, 0);           // no position
        add(3, u"Mobile(LTE)"_s, 0, 8.25); // on the equator
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
        QVERIFY(sql(
            u"INSERT INTO xmlfiles VALUES(3,0,'three ä %1 %2'),(5,20,'five'),(8,19,'eight')"_s));
        auto report = db->getNextUnsentXMLFile(-1);
        QCOMPARE(report->identification, 3);
        QCOMPARE(report->xml, u"three ae %1 %2"_s);
        report = db->getNextUnsentXMLFile(3);
        QCOMPARE(report->identification, 8);
        QVERIFY(!db->getNextUnsentXMLFile(8));

        report->numberofretries = 20;
        report->xml = u"changed"_s;
        QCOMPARE(db->insertOrUpdateXMLFile(report.get()), 8);
        QVERIFY(!db->getNextUnsentXMLFile(3));
        QSqlQuery query(u"SELECT xml FROM xmlfiles WHERE id = 8"_s);
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toString(), u"eight"_s);

        QVERIFY(db->deleteUnsentXMLFile(3));
        QVERIFY(!db->getNextUnsentXMLFile(-1));
        XMLData apostrophe;
        apostrophe.xml = u"it's"_s;
        QCOMPARE(db->insertOrUpdateXMLFile(&apostrophe), -1);
        QCOMPARE(apostrophe.identification, -1);
    }

private:
    qulonglong store(qlonglong series, qlonglong test)
    {
        TestResults results(series, test, nullptr);
        return db->storeTestResults(&results);
    }
    static bool sql(const QString &statement) { return QSqlQuery().exec(statement); }

    QTemporaryDir directory;
    std::unique_ptr<DatabaseManager> db;
};

} // namespace velometer

QTEST_GUILESS_MAIN(velometer::DatabaseManagerTest)
#include "databasemanager_test.moc"
