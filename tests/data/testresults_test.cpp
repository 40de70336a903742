#include "data/testresults.h"

#include "data/remoteinitialvalues.h"
#include "data/testresultlog.h"

#include "support/fakecontext.h"
#include "support/registeredtest.h"

using namespace Qt::StringLiterals;

namespace velometer {

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
    void malformedFactsBecomeZero_data()
    {
        const Rows<QString, int, bool> row("answer", "mss", "error");
        row("text", "MSS:abc;", 0, true);
        row("negative stays", "MSS:-5;", -5, false);
        row("service says so", "MSS:1460;Web100:failed;", 1460, true);
        row("no semicolon", "MSS:1460\r\n", 1460, false);
    }
    void malformedFactsBecomeZero()
    {
        QFETCH(QString, answer);
        RemoteInitialValues values(nullptr);
        values.remoteInitialValuesLoaded(answer);
        QTEST(values.getMss(), "mss");
        QTEST(values.isWeb100Error(), "error");
    }

    void derivesVelocityAndDistance_data()
    {
        // figures: velocity, distance in m, duration, vertical and horizontal accuracy
        const Rows<Fix, Fix, QList<double>> row("start", "end", "figures");
        const Fix origin{47.0, 400, 10, 1'000'000};
        const auto after = [&](double km, qint64 ms) {
            return Fix{47.0 + km * kilometre, 400, 20, 1'000'000 + ms};
        };
        row("a kilometre a minute", origin, after(1.001, 60'000), {60, 1001, 60, 15, 7.5});
        row("no fix at the end", origin, {48.0, -1, 20, 1'060'000}, {-1, -1, -1, 15, 7.5});
        row("no accuracy at the start", {47.0, 400, 0, 1'000'000}, after(1, 50'000),
            {-1001, -1, -1, 20, 10});
        row("no position at the start", {0, -1, -1, 0}, after(1, 50'000), {-1, -1, -1, 20, 10});
        row("none at all", {0, -1, -1, 0}, {0, -1, -1, 0}, {-1, -1, -1, -1, -1});
        row("time goes back", origin, after(1, -5000), {-1, 1000, -5, 15, 7.5});
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
        QCOMPARE(results.getAccuracyHor(), figures[4]);
    }

    void tellsTypeAndRadioOfTheWholeTest_data()
    {
        const Rows<QList<NetworkMode>, QString, QString, double> row("modes", "reported", "stored",
                                                                     "rsrp");
        using enum NetworkMode;
        const auto mobile = u"Mobile(mixed)"_s;
        const auto mixed = u"Mixed(WLAN,Mobile)"_s;
        row("one", {Lte, Lte}, "LteMode", "Mobile(LTE)", -95);
        row("WLAN alone", {Wlan}, "WlanMode", "WLAN", 0);
        row("WLAN among several", {Lte, Wlan}, mixed, mixed, -90);
        row("mobile mixed", {Nr, Lte, Lte}, mobile, mobile, -100);
        row("no log", {}, mobile, mobile, 0);
    }
    void tellsTypeAndRadioOfTheWholeTest()
    {
        QFETCH(QList<NetworkMode>, modes);
        FakeContext context;
        TestResults results(13, 3, nullptr);
        for (const NetworkMode mode : modes) {
            context.platform.network.radio.rsrp =
                -90 - 10 * static_cast<double>(results.getTestResultLogs().size());
            context.platform.network.setMode(mode);
            auto *entry = new TestResultLog(context.network.get(), context.location.get(), u"x"_s,
                                            &context, &results);
            entry->fillInGPSAndNetworkData();
            results.addTestResultLog(entry);
            QCOMPARE(entry->getLogid(), results.getTestResultLogs().size());
        }
        QTEST(results.reportConnectionType(), "reported");
        QTEST(results.storedConnectionType(), "stored");
        QTEST(results.finished(FinishedTest()).network.rsrp.value_or(0), "rsrp");
    }

    void takesTheServersUploadFigures()
    {
        TestResults results(nullptr);
        const auto speeds = [&](const QString &answer) {
            results.setServerSideUpload(answer);
            return QList<qint64>{results.getServerUploadMin(), results.getServerUploadAvg(),
                                 results.getServerUploadMax()};
        };
        QCOMPARE(speeds(u"120;350"_s), (QList<qint64>{0, 0, 0}));
        QCOMPARE(speeds(u"120;350;9000000000"_s), (QList<qint64>{120, 350, 9'000'000'000}));
        QVERIFY(!results.hasServerUpload()); // of no upload
        QCOMPARE(speeds(u"120;x;900"_s), (QList<qint64>{120, 0, 900}));
    }
};

} // namespace velometer

VELOMETER_TEST(TestResultsTest)
#include "testresults_test.moc"
