#include "context/locationhelper.h"

#include "context/doublelocation.h"
#include "support/fakeclock.h"
#include "support/fakeplatform.h"
#include "utils/utils.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

qsizetype logged(const QString &text)
{
    return Utils::getLogEntries().count(u": %1\r\n"_s.arg(text));
}

} // namespace

class LocationHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { helper.reset(); }

    void knowsNoPlaceAtFirst();
    void turnsFixesIntoTexts_data();
    void turnsFixesIntoTexts();
    void forgetsThePlaceOnTimeout();
    void collectsSamplesOnlyDuringATest();
    void leavesOutUpdatesWithoutAPlace();
    void switchesOffAfterTheGrace();
    void keepsRunningBetweenTestsInARow();
    void countsSatellites();
    void livesWithoutReceivers();
    void boundsItsSamples();

private:
    QTimer *timer() const { return helper->findChild<QTimer *>(); }
    void fireTimer() { QMetaObject::invokeMethod(timer(), "timeout", Qt::DirectConnection); }
    bool running() const
    {
        return platform->position.positionRunning && platform->position.satellitesRunning;
    }

    std::unique_ptr<FakePlatform> platform;
    std::unique_ptr<LocationHelper> helper;
};

void LocationHelperTest::init()
{
    platform = std::make_unique<FakePlatform>();
    platform->position.lastKnown =
        FakePosition::fix(46.5, 7.123456789, 512.25, QDateTime::fromSecsSinceEpoch(1'600'000'000));
    platform->position.minimumInterval = 250;
    helper = std::make_unique<LocationHelper>(*platform, nullptr);
}

void LocationHelperTest::knowsNoPlaceAtFirst()
{
    QCOMPARE(logged(u"Last known Position: 1600000000 46.5 7.12346 512.25 -1 -1"_s), 1);
    QCOMPARE(logged(u"Minimum Position Intervall: 250"_s), 1);
    QCOMPARE(platform->position.updateInterval, 1000);
    QCOMPARE(helper->getCordValid(), u"Not valid"_s);
    QCOMPARE(helper->getPosType(), u"Invalid"_s);
    QCOMPARE(helper->getLatitude(), u"0.0"_s);
    QCOMPARE(helper->getLongitude(), u"0.0"_s);
    QCOMPARE(helper->getAltitude(), u"-1"_s);
    QCOMPARE(helper->getLocationStatus(), 0);
    // A first fix is looked for at once.
    QVERIFY(running());
    QVERIFY(timer()->isActive());
    QCOMPARE(timer()->intervalAsDuration(), 30s);
}

void LocationHelperTest::turnsFixesIntoTexts_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<double>("altitude");
    QTest::addColumn<double>("accuracy");
    QTest::addColumn<QStringList>("texts"); // latitude, longitude, altitude, accuracy
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("status");
    const auto row = [](const char *name, double latitude, double longitude, double altitude,
                        double accuracy, const QString &texts, const QString &type, int status) {
        QTest::newRow(name) << latitude << longitude << altitude << accuracy << texts.split(u' ')
                            << type << status;
    };
    const auto two = u"2DCord"_s;
    const auto three = u"3DCord"_s;
    const auto none = u"Invalid"_s;
    row("six digits", 47.123456, -8.0000004, 410.1234, 12.5, u"47.1235 -8 410.123 12.5"_s, three,
        2);
    row("two-dimensional", 47.5, 8.5, noNumber, 3, u"47.5 8.5 -1 3"_s, two, 1);
    row("on the equator", 0, 8.5, noNumber, 3, u"0 8.5 -1 3"_s, two, 1);
    row("altitude infinite", 47.5, 8.5, infinity, 3, u"47.5 8.5 -1 3"_s, two, 1);
    row("accuracy not supplied", 47.5, 8.5, 0, noNumber, u"47.5 8.5 0 -1"_s, three, 2);
    row("accuracy infinite", 47.5, 8.5, 0, -infinity, u"47.5 8.5 0 -1"_s, three, 2);
    row("accuracy huge", 47.5, 8.5, 0, 1e300, u"47.5 8.5 0 1e+300"_s, three, 2);
    row("no number", noNumber, 8.5, 400, 3, u"0.0 0.0 -1 3"_s, none, 0);
    row("off the globe", 91, 8.5, 400, 3, u"0.0 0.0 -1 3"_s, none, 0);
}

void LocationHelperTest::turnsFixesIntoTexts()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(double, altitude);
    QFETCH(double, accuracy);
    QFETCH(QString, type);
    QGeoPositionInfo info = FakePosition::fix(latitude, longitude, altitude,
                                              QDateTime::fromMSecsSinceEpoch(1'700'000'000'999));
    info.setAttribute(QGeoPositionInfo::HorizontalAccuracy, accuracy);
    info.setAttribute(QGeoPositionInfo::VerticalAccuracy, 7.25);
    info.setAttribute(QGeoPositionInfo::GroundSpeed, 1.5);
    info.setAttribute(QGeoPositionInfo::Direction, 270);
    platform->position.emitPosition(info);

    const QStringList texts{helper->getLatitude(), helper->getLongitude(), helper->getAltitude(),
                            helper->getAccuracyHor()};
    QTEST(texts, "texts");
    QCOMPARE(helper->getPosType(), type);
    QTEST(helper->getLocationStatus(), "status");
    QCOMPARE(helper->hasGPSLock(), type == u"3DCord"_s);
    QCOMPARE(helper->getCordValid(), type == u"Invalid"_s ? u"Not valid"_s : u"Valid"_s);
    QCOMPARE(helper->getAccuracyVert(), u"7.25"_s);
    QCOMPARE(helper->getGroundSpeed(), u"1.5"_s);
    QCOMPARE(helper->getVertSpeed(), u"-1"_s);
    QCOMPARE(helper->getDirection(), u"270"_s);
    QCOMPARE(helper->getTimestamp(), u"1700000000000"_s);

    const std::unique_ptr<DoubleLocation> numbers = helper->getDoubleLocation();
    QCOMPARE(numbers->getTime(), 1'700'000'000'000);
    QCOMPARE(numbers->getLatitude(), texts[0].toDouble());
    QCOMPARE(numbers->getLongitude(), texts[1].toDouble());
    QCOMPARE(numbers->getAltitude(), texts[2].toDouble());
    QCOMPARE(numbers->getAccuracyHor(), texts[3].toDouble());
    QCOMPARE(numbers->getAccuracyVert(), 7.25);
}

void LocationHelperTest::forgetsThePlaceOnTimeout()
{
    FakeClock clock(1'700'000'000'000ms); // low byte 0x00
    platform->position.emitPosition(47.5, 8.5, 400);
    clock.advance(65ms);
    platform->position.emitTimeout();
    QCOMPARE(helper->getCordValid(), u"Timeout"_s);
    QCOMPARE(helper->getPosType(), u"Invalid"_s);
    QCOMPARE(helper->getTimestamp(), u"A"_s);
    QCOMPARE(helper->getLatitude(), u"0.0"_s);
    QCOMPARE(helper->getLongitude(), u"0.0"_s);
    QCOMPARE(helper->getAltitude(), u"-1"_s);
    QCOMPARE(helper->getAccuracyHor(), u"-1"_s);
    QCOMPARE(helper->getAccuracyVert(), u"-1"_s);
    QCOMPARE(helper->getGroundSpeed(), u"-1"_s);
    QCOMPARE(helper->getVertSpeed(), u"-1"_s);
    QCOMPARE(helper->getDirection(), u"0"_s);
    QCOMPARE(helper->getMagneticVar(), u"0"_s);
    QCOMPARE(helper->getLocationStatus(), 0);
    QCOMPARE(helper->getDoubleLocation()->getTime(), 0);
}

void LocationHelperTest::collectsSamplesOnlyDuringATest()
{
    const auto line = u"GPS Position updated: 1700000000000 %1 8.5 400 -1 -1"_s;
    platform->position.emitPosition(1, 8.5, 400);
    QVERIFY(helper->getAllLocations().isEmpty());
    helper->startService();
    platform->position.emitPosition(2, 8.5, 400);
    platform->position.emitPosition(3, 8.123456789);
    helper->stopService();
    platform->position.emitPosition(4, 8.5, 400);

    QCOMPARE(helper->getLatitude(), u"4"_s);
    QCOMPARE(helper->getAllLocations().size(), 2);
    const MyLocation sample = helper->getAllLocations().at(0);
    QCOMPARE(sample.datetime, 1'700'000'000'000);
    QCOMPARE(sample.latitude, 2.0);
    QCOMPARE(sample.longitude, 8.5);
    QCOMPARE(sample.altitude, 400.0);
    QCOMPARE(sample.accuracyhor, -1.0);
    QVERIFY(sample.lock);
    QCOMPARE(helper->getAllLocations().at(1).longitude, 8.123456789);
    QVERIFY(!helper->getAllLocations().at(1).lock);
    QCOMPARE(logged(line.arg(1)), 0);
    QCOMPARE(logged(line.arg(2)), 1);
    QCOMPARE(logged(line.arg(4)), 0);

    helper->startService();
    QVERIFY(helper->getAllLocations().isEmpty());
}

void LocationHelperTest::leavesOutUpdatesWithoutAPlace()
{
    helper->startService();
    platform->position.emitPosition(QGeoPositionInfo());
    platform->position.emitPosition(noNumber, noNumber);
    QCOMPARE(helper->getTimestamp(), u"1700000000000"_s);
    QVERIFY(helper->getAllLocations().isEmpty());
}

void LocationHelperTest::switchesOffAfterTheGrace()
{
    const qsizetype stopped = logged(u"GPS stopped"_s);
    helper->startService();
    QVERIFY(!timer()->isActive());
    helper->stopService();
    helper->stopService();
    QVERIFY(timer()->isActive() && running());
    fireTimer();
    fireTimer();
    QVERIFY(!platform->position.positionRunning && !platform->position.satellitesRunning);
    QCOMPARE(logged(u"GPS stopped"_s), stopped + 1);

    // A source that goes on signalling is not heard any more.
    platform->position.emitPosition(47.5, 8.5);
    QCOMPARE(helper->getLatitude(), u"0.0"_s);

    helper->startService();
    QVERIFY(running());
    platform->position.emitPosition(47.5, 8.5);
    QCOMPARE(helper->getAllLocations().size(), 1);
}

void LocationHelperTest::keepsRunningBetweenTestsInARow()
{
    const qsizetype started = logged(u"GPS started"_s);
    for (int test = 0; test < 3; ++test) {
        helper->startService();
        platform->position.emitPosition(47.5, 8.5);
        QCOMPARE(helper->getAllLocations().size(), 1);
        helper->stopService();
    }
    QCOMPARE(platform->position.positionStarts, 1);
    QCOMPARE(logged(u"GPS started"_s), started);
}

void LocationHelperTest::countsSatellites()
{
    platform->position.emitSatellitesInUse({3});
    QCOMPARE(helper->getSatNumInUse(), u"1"_s);
    helper->startService();
    platform->position.emitSatellitesInUse({3, 17});
    platform->position.emitSatellitesInView({3, 17, 22});
    QCOMPARE(helper->getSatNumInUse(), u"2"_s);
    QCOMPARE(helper->getSatInUse(), u"3 17 "_s);
    QCOMPARE(helper->getSatNumInView(), u"3"_s);
    QCOMPARE(helper->getSatInView(), u"3 17 22 "_s);
    QCOMPARE(logged(u"Satellites in Use (1): 3 "_s), 0);
    QCOMPARE(logged(u"Satellites in Use (2): 3 17 "_s), 1);
    QCOMPARE(logged(u"Satellites in View (3): 3 17 22 "_s), 1);
    platform->position.emitSatellitesInView(QList<int>(100'000, 7));
    QCOMPARE(helper->getSatNumInView(), u"100000"_s);
    QCOMPARE(helper->getSatInView().size(), 512);
}

void LocationHelperTest::livesWithoutReceivers()
{
    helper.reset();
    platform->position.hasPosition = false;
    platform->position.hasSatellites = false;
    const qsizetype lastKnown = Utils::getLogEntries().count(u"Last known Position"_s);
    helper = std::make_unique<LocationHelper>(*platform, nullptr);
    helper->startService();
    helper->stopService();
    fireTimer();
    QCOMPARE(Utils::getLogEntries().count(u"Last known Position"_s), lastKnown);
    QCOMPARE(helper->getLocationStatus(), 0);
    QCOMPARE(helper->getDoubleLocation()->getLatitude(), 0.0);
}

// Last: it fills the diagnostic log.
void LocationHelperTest::boundsItsSamples()
{
    helper->startService();
    for (int i = 0; i < 10'001; ++i)
        platform->position.emitPosition(i < 10'000 ? 1 : 2, 8.5);
    QCOMPARE(helper->getAllLocations().size(), 10'000);
    QCOMPARE(helper->getLatitude(), u"2"_s);
}

QTEST_GUILESS_MAIN(LocationHelperTest)
#include "locationhelper_test.moc"
