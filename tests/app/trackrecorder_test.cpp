#include "app/trackrecorder.h"

#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "db/databasemanager.h"
#include "support/fakeclock.h"
#include "support/fakeplatform.h"
#include "support/registeredtest.h"
#include "support/sqlitefile.h"

#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

class TrackRecorderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        directory = std::make_unique<QTemporaryDir>();
        DatabaseManager::database_path = directory->path();
        QVERIFY(gDB->openDB());
        clock = std::make_unique<FakeClock>();
        device = std::make_unique<Device>(lockFile());
        device->platform.network.links[NetworkMode::Lte] = {NetworkStatus::HomeNetwork, 71,
                                                            u"Demo"_s};
        device->platform.network.cell = 1;
        device->platform.network.radio.rsrp = -97;
        device->platform.network.setMode(NetworkMode::Lte);
        latitude = 47;
    }
    void cleanup()
    {
        device.reset();
        clock.reset();
        QVERIFY(gDB->deleteDB());
    }
    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void keepsWhatTheDeviceTells()
    {
        start({});
        drive(3);
        // Too soon after a point: it comes when the interval is over, and once.
        clock->advance(300ms);
        device->platform.network.cell = 2;
        device->platform.network.tell();
        device->platform.network.radio.rsrp = -80;
        device->platform.network.tell();
        QCOMPARE(recorder().getTrack().points, 4);
        clock->advance(800ms);
        QCOMPARE(recorder().getTrack().points, 5);
        QCOMPARE(recorder().getLastPoint().cell, 2);
        QCOMPARE(recorder().getLastPoint().rsrp, -80.0);
        // A tunnel: the place is not known any more, and a point a minute says that we are there.
        clock->advance(60s);
        clock->advance(60s);
        QCOMPARE(recorder().getTrack().points, 7);
        QVERIFY(!recorder().getLastPoint().hasPlace());
        const Track track = stop();
        QCOMPARE(track.points, 7);
        QVERIFY(qAbs(track.metres - 2 * step) < 0.5);

        const QList<TrackPoint> points = gDB->tracks().points(track.row, 0, 100);
        QCOMPARE(points.size(), 7);
        QVERIFY(!points[0].hasPlace() && points[1].hasPlace());
        QCOMPARE(points[1].operatorName, u"Demo"_s);
        QCOMPARE(points[1].signal, 71);
        QCOMPARE(points[1].speed, 36.0);
        QVERIFY(points[6] == recorder().getLastPoint());
        QCOMPARE(gDB->tracks().points(track.row, 5, 1).constFirst().time, points[5].time);
    }

    void pointsByDistanceAndByCell()
    {
        start({.metres = 25});
        drive(6);
        QCOMPARE(recorder().getTrack().points, 3); // the start, the first place, 30 m on
        device->platform.network.cell = 2;
        clock->advance(1s);
        device->platform.network.tell();
        QCOMPARE(recorder().getTrack().points, 4);
    }

    void aKillLosesFiveSecondsAtMost()
    {
        start({});
        drive(20);
        const qint64 kept = recorder().getTrack().points;
        device.reset(); // as a kill: nothing more is written
        const Track track = gDB->tracks().all().constFirst();
        QVERIFY2(kept - track.points <= 5, qPrintable(QString::number(track.points)));
        QVERIFY(!track.ended);

        clock->advance(20s);
        device = std::make_unique<Device>(lockFile());
        QVERIFY(recorder().interrupted());
        QCOMPARE(recorder().start({}, true), TrackRecorder::Start::Done);
        drive(3);
        const Track whole = stop();
        QCOMPARE(whole.row, track.row);
        QCOMPARE(whole.id, track.id);
        QCOMPARE(recorder().getLastPoint().segment, 1);
        // The way between the two segments is nobody's.
        QVERIFY(qAbs(whole.metres - track.metres - 2 * step) < 0.5);
        QVERIFY(!recorder().interrupted());
    }

    void oneThatDoesNotGoOnHasEnded()
    {
        start({});
        drive(2);
        recorder().suspend();
        QCOMPARE(gDB->tracks().all().constFirst().points, 3);
        start({});
        const QList<Track> tracks = gDB->tracks().all();
        QCOMPARE(tracks.size(), 2);
        QVERIFY(!tracks[0].ended && tracks[1].ended);
        QVERIFY(tracks[0].id != tracks[1].id);
    }

    void oneProgramAtATime()
    {
        start({});
        Device other(lockFile());
        QVERIFY(!other.recorder.interrupted());
        QCOMPARE(other.recorder.start({}, true), TrackRecorder::Start::Busy);
        QCOMPARE(gDB->tracks().all().size(), 1);
        stop();
        QCOMPARE(other.recorder.start({}, false), TrackRecorder::Start::Done);
    }

    void pausesAndGapsBreakTheLine()
    {
        start({});
        drive(2);
        recorder().setPaused(true);
        clock->advance(40s);
        QVERIFY(!device->platform.position.positionRunning); // the receiver rests
        drive(5);
        QCOMPARE(recorder().getTrack().points, 3);
        recorder().setPaused(false);
        drive(2);
        QCOMPARE(recorder().getLastPoint().segment, 1);
        QCOMPARE(recorder().elapsed(), 4s);
        // The whole program slept.
        clock->lag(10min);
        drive(1);
        QCOMPARE(recorder().getLastPoint().segment, 2);
    }

    void pointsWaitForALockedStore()
    {
        start({});
        const QSignalSpy waiting(&recorder(), &TrackRecorder::storeWaiting);
        {
            const HeldFile held(DatabaseManager::databaseFile());
            drive(100);
            QCOMPARE(gDB->tracks().all().constFirst().points, 0);
            QVERIFY(!waiting.isEmpty());
        }
        drive(5);
        QVERIFY(gDB->tracks().all().constFirst().points > 100);
        QCOMPARE(stop().points, 106);
    }

    void testsAreDueOnTheWay_data()
    {
        const Rows<int, double, int> row("seconds", "metres", "due");
        row("none", 0, 0.0, 0);
        row("by time", 10, 0.0, 3);
        row("by distance", 0, 95.0, 3);
    }
    void testsAreDueOnTheWay()
    {
        QFETCH(int, seconds);
        QFETCH(double, metres);
        const QSignalSpy due(&recorder(), &TrackRecorder::testDue);
        start({.testInterval = std::chrono::seconds(seconds), .testMetres = metres});
        drive(25);
        QTEST(static_cast<int>(due.size()), "due");
        // One that takes longer than the interval is followed by the next, not joined by it.
        recorder().testStarted();
        drive(25);
        QTEST(static_cast<int>(due.size()), "due");
        recorder().testEnded(u"3/12"_s);
        QCOMPARE(recorder().getLastPoint().test, u"3/12"_s);
        QCOMPARE(static_cast<int>(due.size()), seconds + metres > 0 ? 4 : 0);
        QCOMPARE(stop().tests, 1);
    }

private:
    /// Metres that the device moves in a second.
    static constexpr double step = 10;

    struct Device
    {
        explicit Device(const QString &lockName)
            : recorder(location, network, lockName, nullptr)
        {}
        FakePlatform platform;
        LocationHelper location{platform, nullptr};
        NetworkInfoHelper network{platform, nullptr};
        TrackRecorder recorder;
    };

    QString lockFile() const { return directory->filePath(u"track.lock"_s); }
    TrackRecorder &recorder() { return device->recorder; }
    void start(const TrackRecorder::Plan &plan)
    {
        QCOMPARE(recorder().start(plan, false), TrackRecorder::Start::Done);
    }
    /// Northwards, a position each second.
    void drive(int seconds)
    {
        constexpr double metresPerDegree = 111'195;
        for (int i = 0; i < seconds; ++i) {
            clock->advance(1s);
            latitude += step / metresPerDegree;
            QGeoPositionInfo info({latitude, 8, 400},
                                  QDateTime::fromMSecsSinceEpoch(clock->wallMs()));
            info.setAttribute(QGeoPositionInfo::GroundSpeed, step);
            device->platform.position.emitPosition(info);
        }
    }
    Track stop()
    {
        const QSignalSpy ended(&recorder(), &TrackRecorder::ended);
        recorder().stop();
        const bool stored = ended.size() == 1 && ended[0][0].toBool();
        const Track track = gDB->tracks().all().constFirst();
        return stored && track.ended ? track : Track();
    }

    std::unique_ptr<QTemporaryDir> directory;
    std::unique_ptr<FakeClock> clock;
    std::unique_ptr<Device> device;
    double latitude = 47;
};

} // namespace velometer

VELOMETER_TEST(TrackRecorderTest)
#include "trackrecorder_test.moc"
