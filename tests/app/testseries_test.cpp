#include "app/testseries.h"

#include "data/testserver.h"
#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "utils/utils.h"

#include "support/fakeclock.h"
#include "support/fakeobserver.h"
#include "support/fakeplatform.h"
#include "support/registeredtest.h"

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

/// Series on a device without a network: a test begins, and ends when the event loop runs.
class TestSeriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        DatabaseManager::database_path = directory.path();
        QVERIFY(gDB->openDB());
        platform.session.fails(NetworkSession::UnknownSessionError);
    }
    void init()
    {
        clock = std::make_unique<FakeClock>();
        QFile::remove(file());
        Utils::setSettingsCommonValue(u"UserId"_s, QString());
        program();
    }
    void cleanup()
    {
        series.reset();
        controller.reset();
        clock.reset();
    }
    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void testsFollowEachOtherFromStartToStart()
    {
        series->start({u"Train"_s, 3, 180s});
        QCOMPARE(series->getScheduleInfo(), u"1,3,9"_s);
        QVERIFY(controller->isRunning());
        clock->advance(55s);
        endTest();
        QCOMPARE(series->untilNext(), 125s);
        QVERIFY(!controller->isRunning());
        clock->advance(124'999ms);
        QVERIFY(!controller->isRunning());
        controller->runTests(u"Car"_s, QString()); // not of the series, and in its way
        clock->advance(1ms);
        endTest();
        clock->advance(2s);
        QCOMPARE(controller->getScheduleInfo(), u"2,3,9"_s);
        QCOMPARE(controller->getUserLocation(), u"Train"_s);
        // It outlasts the interval: the third waits for its end, and its own interval begins then.
        clock->advance(200s);
        QCOMPARE(series->getNumber(), 2);
        endTest();
        QTRY_COMPARE(series->getNumber(), 3);
        QVERIFY(ends->isEmpty() && series->isRunning());
        endTest();
        QCOMPARE(ends->size(), 1);
        QVERIFY(!series->isRunning());
        QCOMPARE(series->untilNext(), 180s);
        QVERIFY(!QFile::exists(file()));
    }

    void aSingleTestIsNoSeries()
    {
        series->start({u"Car"_s, 1, 0s});
        QCOMPARE(controller->getScheduleInfo(), QString());
        QVERIFY(!QFile::exists(file()));
        endTest();
        QCOMPARE(ends->size(), 1);
    }

    void anAbortedSeriesIsOver()
    {
        // During a test, and between two.
        for (const bool testing : {true, false}) {
            series->start({u"Car"_s, 5, 60s});
            if (!testing) {
                endTest();
            }
            series->abort();
            QCOMPARE(ends->size(), testing ? 0 : 1);
            endTest();
            QCOMPARE(ends->size(), 1);
            clock->advance(600s);
            QCOMPARE(series->getNumber(), 1);
            program();
            QVERIFY(!series->interrupted() && !series->resume());
        }
    }

    void anInterruptedSeriesGoesOn_data()
    {
        // testing: when the program ended, in the second of five tests; gap: until the next start
        const Rows<bool, int, int, QString, int> row("testing", "gap", "next", "missed",
                                                     "untilNext");
        row("between tests, in time", false, 30, 3, "", 30);
        row("between tests, just due", false, 60, 3, "", 0);
        row("between tests, one passed", false, 61, 4, "3-3", 59);
        row("during a test", true, 30, 3, "2-2", 30);
        row("during a test, two passed", true, 150, 5, "2-4", 30);
        row("between tests, the clock set back", false, -3600, 3, "", 60);
        row("all passed", false, 1000, 6, "3-5", 0);
    }
    void anInterruptedSeriesGoesOn()
    {
        QFETCH(bool, testing);
        QFETCH(int, gap);
        QFETCH(int, next);
        QFETCH(int, untilNext);
        series->start({u"Outdoor"_s, 5, 60s});
        endTest();
        clock->advance(60s);
        if (!testing) {
            endTest();
        }
        program(); // killed and started again, a while later
        clock->stepWall(std::chrono::seconds(gap));
        const auto left = series->interrupted();
        QVERIFY(left);
        QCOMPARE(left->nextAt(Utils::getTimeInMs()), next);

        QSignalSpy missed(series.get(), &TestSeries::missed);
        QVERIFY(series->resume());
        QTEST(missed.isEmpty() ? QString()
                               : u"%1-%2"_s.arg(missed[0][0].toInt()).arg(missed[0][1].toInt()),
              "missed");
        if (next > 5) {
            QCOMPARE(ends->size(), 1);
            QVERIFY(!QFile::exists(file()));
            return;
        }
        QVERIFY(!controller->isRunning());
        QCOMPARE(series->untilNext(), std::chrono::seconds(untilNext));
        clock->advance(std::chrono::seconds(untilNext));
        QTRY_VERIFY(controller->isRunning());
        QCOMPARE(controller->getScheduleInfo(), u"%1,5,5"_s.arg(next));
        QCOMPARE(controller->getUserLocation(), u"Outdoor"_s);
        endTest();
        QCOMPARE(ends->size(), next == 5 ? 1 : 0);
    }

    void aSeriesThatRunsElsewhereIsNotTouched()
    {
        series->start({u"Car"_s, 5, 60s});
        FakeObserver watcher;
        TestController otherController(nullptr, &watcher, &server, platform);
        TestSeries other(otherController, file(), nullptr);
        QVERIFY(!other.interrupted());
        QVERIFY(!other.resume());
        other.discard();
        other.start({u"Train"_s, 7, 10s}); // runs, but is not kept
        QVERIFY(other.isRunning());
        other.abort();
        otherController.abortTest();
        series->suspend();
        QCOMPARE(series->interrupted()->plan.count, 5);
        series->discard();
        QVERIFY(!series->interrupted());
    }

    void aFileThatIsNoSeriesIsNone_data()
    {
        const Rows<QString> row("text");
        const auto with = [](const char *field, const char *value) {
            QString text = u"{\"count\":5,\"interval_s\":60,\"location\":\"Car\",\"next\":2,"
                           "\"due_ms\":1700000000000}"_s;
            const QString key = u"\"%1\":"_s.arg(QLatin1StringView(field));
            const auto at = text.indexOf(key) + key.size();
            const auto end = text.indexOf(QRegularExpression(u"[,}]"_s), at);
            return text.replace(at, end - at, QLatin1StringView(value));
        };
        row("empty", "");
        row("half written", "{\"count\":5,\"interval_s\":60,\"loc");
        row("a count beyond all", with("count", "1e18"));
        row("a single test", with("count", "1"));
        row("a negative interval", with("interval_s", "-1"));
        row("a test before the first", with("next", "0"));
        row("a test beyond the last", with("next", "7"));
        row("a time that overflows", with("due_ms", "9.3e18"));
        row("a place that is none", with("location", "\"Moon\""));
    }
    void aFileThatIsNoSeriesIsNone()
    {
        QFETCH(QString, text);
        QFile saved(file());
        QVERIFY(saved.open(QFile::WriteOnly) && saved.write(text.toUtf8()) == text.size());
        saved.close();
        QVERIFY(!series->interrupted());
        QVERIFY(!series->resume());
    }

private:
    QString file() const { return directory.filePath(u"deep/series.json"_s); }

    /// A program that has just started; the one before it was killed.
    void program()
    {
        series.reset();
        controller = std::make_unique<TestController>(nullptr, &observer, &server, platform);
        series = std::make_unique<TestSeries>(*controller, file(), nullptr);
        ends = std::make_unique<QSignalSpy>(series.get(), &TestSeries::ended);
    }
    void endTest()
    {
        controller->abortTest();
        QCoreApplication::processEvents();
    }

    QTemporaryDir directory;
    std::unique_ptr<FakeClock> clock;
    FakePlatform platform;
    FakeObserver observer;
    TestServer server{nullptr};
    std::unique_ptr<TestController> controller;
    std::unique_ptr<TestSeries> series;
    std::unique_ptr<QSignalSpy> ends;
};

} // namespace velometer

VELOMETER_TEST(TestSeriesTest)
#include "testseries_test.moc"
