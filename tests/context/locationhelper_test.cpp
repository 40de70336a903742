#include "context/locationhelper.h"

#include "context/doublelocation.h"
#include "support/fakeclock.h"
#include "support/fakeplatform.h"
#include "support/registeredtest.h"
#include "utils/utils.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

class LocationHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        clock = std::make_unique<FakeClock>();
        platform = std::make_unique<FakePlatform>();
        helper = std::make_unique<LocationHelper>(*platform, nullptr);
    }
    void cleanup()
    {
        helper.reset();
        clock.reset();
    }

    void turnsFixesIntoTexts_data()
    {
        // fix: latitude, longitude, altitude, accuracy
        const Rows<QList<double>, QString, int> row("fix", "place", "status");
        row("six digits", {47.123456, -8.0000004, 410.1234, 12.5}, "3DCord 47.1235 -8 410.123 12.5",
            2);
        row("on the equator", {0, 8.5, qQNaN(), 3}, "2DCord 0 8.5 -1 3", 1);
        row("infinite", {47.5, 8.5, qInf(), -qInf()}, "2DCord 47.5 8.5 -1 -1", 1);
        row("no number", {qQNaN(), 8.5, 400, 3}, "Invalid 0.0 0.0 -1 3", 0);
    }
    void turnsFixesIntoTexts()
    {
        QFETCH(QList<double>, fix);
        QFETCH(QString, place);
        QFETCH(int, status);
        QGeoPositionInfo info(QGeoCoordinate(fix[0], fix[1], fix[2]),
                              QDateTime::fromMSecsSinceEpoch(1'700'000'000'999));
        info.setAttribute(QGeoPositionInfo::HorizontalAccuracy, fix[3]);
        info.setAttribute(QGeoPositionInfo::VerticalAccuracy, 7.25);
        info.setAttribute(QGeoPositionInfo::GroundSpeed, 1.5);
        info.setAttribute(QGeoPositionInfo::Direction, 270);
        platform->position.emitPosition(info);

        QCOMPARE(this->place().join(u' '), place);
        const auto number = helper->getDoubleLocation();
        const QStringList texts = place.split(u' ');
        QCOMPARE((QList<double>{number->getLatitude(), number->getLongitude(),
                                number->getAltitude(), number->getAccuracyHor(),
                                number->getAccuracyVert(), double(number->getTime())}),
                 (QList<double>{texts[1].toDouble(), texts[2].toDouble(), texts[3].toDouble(),
                                texts[4].toDouble(), 7.25, 1.7e12}));
        QCOMPARE(helper->getLocationStatus(), status);
        QCOMPARE(helper->hasGPSLock(), status == 2);
        QCOMPARE(
            (QStringList{helper->getCordValid(), helper->getAccuracyVert(),
                         helper->getGroundSpeed(), helper->getDirection(), helper->getTimestamp()}),
            (QStringList{status == 0 ? u"Not valid"_s : u"Valid"_s, u"7.25"_s, u"1.5"_s, u"270"_s,
                         u"1700000000000"_s}));
    }

    void forgetsThePlaceOnTimeout()
    {
        clock->advance(65ms); // the low byte of its time is an A then
        platform->position.emitPosition(47.5, 8.5, 400);
        QCOMPARE(helper->getDoubleLocation()->getLatitude(), 47.5);
        platform->position.emitTimeout();
        QCOMPARE(place(), (QStringList{u"Invalid"_s, u"0.0"_s, u"0.0"_s, u"-1"_s, u"-1"_s}));
        QCOMPARE(helper->getCordValid(), u"Timeout"_s);
        QCOMPARE(helper->getTimestamp(), u"A"_s);
        QCOMPARE(helper->getLocationStatus(), 0);
        QCOMPARE(helper->getDoubleLocation()->getTime(), 0);
    }

    void collectsPlacesOnlyDuringATest()
    {
        platform->position.emitPosition(1, 8.5, 400);
        QVERIFY(helper->getAllLocations().isEmpty());
        helper->startService();
        QGeoPositionInfo whole({2, 8.5, 400}, QDateTime::fromSecsSinceEpoch(1'700'000'000));
        whole.setAttribute(QGeoPositionInfo::HorizontalAccuracy, 5);
        whole.setAttribute(QGeoPositionInfo::VerticalAccuracy, 9);
        platform->position.emitPosition(whole);
        platform->position.emitPosition(qQNaN(), qQNaN());
        platform->position.emitPosition(3, 8.123456789);
        helper->stopService();
        platform->position.emitPosition(4, 8.5, 400);

        QCOMPARE(helper->getLatitude(), u"4"_s);
        QCOMPARE(helper->getAllLocations().size(), 2);
        const MyLocation sample = helper->getAllLocations().at(0);
        QCOMPARE(sample.datetime, 1'700'000'000'000);
        QCOMPARE((QList<double>{sample.latitude, sample.longitude, sample.altitude,
                                sample.accuracyhor, sample.accuracyvert}),
                 (QList<double>{2, 8.5, 400, 5, 9}));
        QVERIFY(sample.lock);
        QCOMPARE(helper->getAllLocations().at(1).longitude, 8.123456789);
        QVERIFY(!helper->getAllLocations().at(1).lock);
        helper->startService();
        QVERIFY(helper->getAllLocations().isEmpty());
    }

    void runsFromTestToTestAndSwitchesOffAfterTheGrace()
    {
        for (int test = 0; test < 3; ++test) {
            helper->startService();
            // The one before does not switch off any more.
            clock->advance(31s);
            platform->position.emitPosition(47.5, 8.5);
            QCOMPARE(helper->getAllLocations().size(), 1);
            helper->stopService();
            clock->advance(29'999ms);
            QVERIFY(running());
        }
        QCOMPARE(platform->position.positionStarts, 1); // before the first test, for a warm fix
        clock->advance(1ms);
        QVERIFY(!platform->position.positionRunning && !platform->position.satellitesRunning);
        // A source that goes on signalling is not heard any more.
        platform->position.emitPosition(46.5, 8.5);
        QCOMPARE(helper->getLatitude(), u"47.5"_s);

        helper->startService();
        QVERIFY(running());
        platform->position.emitPosition(46.5, 8.5);
        QCOMPARE(helper->getAllLocations().size(), 1);
    }

    void logsWhyThereIsNoPosition()
    {
        using Problem = PositionSource::Problem;
        // Also while the sources are off: a test that begins then finds it in the log.
        clock->advance(30s);
        for (const auto &[problem, logged] :
             {std::pair{Problem::Refused, u"location service (fake)"_s},
              {Problem::NoSource, u"there is no source"_s}}) {
            const qsizetype before = Utils::getLogEntries().size();
            platform->position.setProblem(problem);
            platform->position.setProblem(problem);
            const QString lines = Utils::getLogEntries().mid(before);
            QCOMPARE(lines.count(u"Position: "_s), 1);
            QVERIFY2(lines.contains(logged), qPrintable(lines));
            QCOMPARE(helper->getProblem(), problem);
            platform->position.setProblem(Problem::None);
            QVERIFY(Utils::getLogEntries().mid(before).contains(u"known again (fake)"_s));
        }
    }

    void boundsItsSamples()
    {
        helper->startService();
        for (int i = 0; i <= 10'000; ++i) {
            platform->position.emitPosition(i / 1000, 8.5);
        }
        QCOMPARE(helper->getAllLocations().size(), 10'000);
        QCOMPARE(helper->getLatitude(), u"10"_s);
    }

private:
    QStringList place() const
    {
        return {helper->getPosType(), helper->getLatitude(), helper->getLongitude(),
                helper->getAltitude(), helper->getAccuracyHor()};
    }
    bool running() const
    {
        return platform->position.positionRunning && platform->position.satellitesRunning;
    }

    std::unique_ptr<FakeClock> clock;
    std::unique_ptr<FakePlatform> platform;
    std::unique_ptr<LocationHelper> helper;
};

} // namespace velometer

VELOMETER_TEST(LocationHelperTest)
#include "locationhelper_test.moc"
