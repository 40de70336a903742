#include "data/testresults.h"

#include "data/testresultlog.h"

#include "support/fakecontext.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Fix
{
    double latitude;
    double altitude;
    double accuracy;
    qint64 ms;
};

TestResults::Location location(const Fix &fix)
{
    auto result = std::make_unique<DoubleLocation>();
    result->setLatitude(fix.latitude);
    result->setLongitude(8.5);
    result->setAltitude(fix.altitude);
    result->setAccuracyVert(fix.accuracy);
    result->setAccuracyHor(fix.accuracy / 2);
    result->setTime(fix.ms);
    return result;
}

/// Degrees of latitude that make a kilometre on a sphere of radius 6371 km.
constexpr double kilometre = 0.0089932;

} // namespace

class TestResultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void derivesVelocityAndDistance_data()
    {
        QTest::addColumn<Fix>("start");
        QTest::addColumn<Fix>("end");
        QTest::addColumn<QList<double>>("figures"); // velocity, distance in m, duration, accuracy
        const Fix origin{47.0, 400, 10, 1'000'000};
        const auto after = [&](double km, qint64 ms) {
            return Fix{47.0 + km * kilometre, 400, 20, 1'000'000 + ms};
        };
        using Figures = QList<double>;
        QTest::newRow("a kilometre a minute")
            << origin << after(1.001, 60'000) << Figures{60, 1001, 60, 15};
        QTest::newRow("truncated to fives")
            << origin << after(1, 50'000) << Figures{70, 1000, 50, 15};
        QTest::newRow("no fix at the end")
            << origin << Fix{48.0, -1, 20, 1'060'000} << Figures{-1, -1, -1, 15};
        QTest::newRow("no accuracy")
            << Fix{47.0, 400, 0, 1'000'000} << after(1, 50'000) << Figures{-1001, -1, -1, 0};
        QTest::newRow("the same moment") << origin << after(1, 0) << Figures{-1, 1000, 0, 15};
        QTest::newRow("time goes back") << origin << after(1, -5000) << Figures{-1, 1000, -5, 15};
    }
    void derivesVelocityAndDistance()
    {
        QFETCH(Fix, start);
        QFETCH(Fix, end);
        QFETCH(QList<double>, figures);
        TestResults results(13, 3, nullptr);
        results.setDownloadLocationStart(location(start));
        results.setRttLocationEnd(location(end));
        results.calculateAdditionalValues();
        QCOMPARE(results.getVelocity(), figures[0]);
        QVERIFY2(qAbs(results.getDistance() - figures[1]) < 1,
                 qPrintable(QString::number(results.getDistance())));
        QCOMPARE(results.getDistanceDurationInSeconds(), figures[2]);
        QCOMPARE(results.getAccuracyVert(), figures[3]);
    }

    void namesTheConnectionTypeOfTheWholeTest_data()
    {
        QTest::addColumn<QList<NetworkMode>>("modes");
        QTest::addColumn<QString>("reported");
        QTest::addColumn<QString>("stored");
        using Modes = QList<NetworkMode>;
        QTest::newRow("one") << Modes{NetworkMode::Lte, NetworkMode::Lte} << "LteMode"
                             << "Mobile(LTE)";
        QTest::newRow("WLAN alone") << Modes{NetworkMode::Wlan} << "WlanMode"
                                    << "WLAN";
        QTest::newRow("WLAN among several")
            << Modes{NetworkMode::Lte, NetworkMode::Wlan} << "Mixed(WLAN,Mobile)"
            << "Mixed(WLAN,Mobile)";
        QTest::newRow("mobile mixed") << Modes{NetworkMode::Nr, NetworkMode::Lte} << "Mobile(mixed)"
                                      << "Mobile(mixed)";
        QTest::newRow("no log") << Modes{} << "Mobile(mixed)"
                                << "Mobile(mixed)";
    }
    void namesTheConnectionTypeOfTheWholeTest()
    {
        QFETCH(QList<NetworkMode>, modes);
        FakeContext context;
        TestResults results(13, 3, nullptr);
        QString cells;
        for (const NetworkMode mode : modes) {
            context.platform.network.setMode(mode);
            auto *entry = new TestResultLog(context.network.get(), context.location.get(), u"x"_s,
                                            &context, &results);
            entry->fillInGPSAndNetworkData();
            results.addTestResultLog(entry);
            QCOMPARE(entry->getLogid(), results.getTestResultLogs().size());
        }
        QTEST(results.reportConnectionType(), "reported");
        QTEST(results.storedConnectionType(), "stored");
    }

    void takesTheServersUploadFigures_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QList<qint64>>("speeds");
        using Speeds = QList<qint64>;
        QTest::newRow("three parts") << "120;350;9000000000" << Speeds{120, 350, 9'000'000'000};
        QTest::newRow("not a number") << "120;x;900" << Speeds{120, 0, 900};
        QTest::newRow("two parts") << "120;350" << Speeds{0, 0, 0};
        QTest::newRow("nothing") << "" << Speeds{0, 0, 0};
    }
    void takesTheServersUploadFigures()
    {
        QFETCH(QString, answer);
        TestResults results(nullptr);
        results.setServerSideUpload(answer);
        const QList<qint64> speeds{results.getServerUploadMin(), results.getServerUploadAvg(),
                                   results.getServerUploadMax()};
        QTEST(speeds, "speeds");
    }
};

QTEST_GUILESS_MAIN(TestResultsTest)
#include "testresults_test.moc"
