#pragma once

#include "app/sleepinhibitor.h"
#include "db/storewriter.h"
#include "track/track.h"
#include "utils/clocktimer.h"

#include <QLockFile>
#include <QObject>

#include <chrono>
#include <optional>

namespace velometer {

class LocationHelper;
class NetworkInfoHelper;

/// Records a track: where the device is and what it hears of its network, without any traffic. It
/// asks nothing; a point is made of what the system signals, at most one an interval, and one a
/// minute when nothing changes, so that a longer gap is a pause or a crash. Points are on the disk
/// within five seconds; while another program holds the store they wait in memory. A crash leaves a
/// track without an end, which the next start can go on with. One program at a time records into a
/// store. Main thread only. gDB is open.
class TrackRecorder : public QObject
{
    Q_OBJECT

public:
    struct Plan
    {
        std::chrono::seconds interval{1}; ///< shortest time from point to point
        double metres = 0; ///< when above 0, a point this far from the last one, or in another cell
        std::chrono::seconds testInterval{0}; ///< from test to test, start to start; 0: none
        double testMetres = 0;                ///< the same by distance
    };
    enum class Start {
        Done,
        Busy,        ///< another program records into this store
        StoreFailed, ///< the store takes nothing
    };

    /// The helpers are borrowed and outlive the recorder; @p lockFile keeps other programs off.
    TrackRecorder(LocationHelper &locationHelper, NetworkInfoHelper &networkHelper,
                  const QString &lockFile, QObject *parent);
    ~TrackRecorder() override;

    /// The track that a program has left without an end; nothing when none is, or that program
    /// still runs.
    std::optional<Track> interrupted();
    /// Begins a track. One that was interrupted ends where it stands, or with @p goesOn is the one
    /// that goes on.
    Start start(const Plan &plan, bool goesOn);
    /// The track has ended; one ended() follows when all is stored, or cannot be.
    void stop();
    /// The program ends: what there is is stored, and the track can be gone on with.
    void suspend();

    void setPaused(bool paused);
    bool isPaused() const { return paused; }
    bool isRecording() const { return recording; }

    /// While a test runs no other is due.
    void testStarted();
    /// @p name "3/12" of one that has been stored goes into the track; empty: it was not.
    void testEnded(const QString &name);

    /// With the points that are not stored yet; of the last track after its end.
    Track getTrack() const;
    const TrackPoint &getLastPoint() const { return last; }
    /// Between the start and now, without pauses.
    std::chrono::milliseconds elapsed() const;

Q_SIGNALS:
    void pointKept();
    /// Time or distance say so: whoever runs tests answers with testStarted().
    void testDue();
    /// The store has been locked for a while: points wait.
    void storeWaiting();
    /// False: the last points, or the end, could not be stored.
    void ended(bool stored);

private:
    void placeTold();
    void look();
    void keep();
    void arm();
    bool isDue() const;
    TrackPoint pointNow() const;
    void lookForTest();
    void flush();
    void flushed(bool done, qsizetype points, double length);
    void finish();
    bool lock();

    LocationHelper &location;
    NetworkInfoHelper &network;
    QLockFile lockFile;
    SleepInhibitor awake;
    StoreWriter writer;
    Plan plan;
    Track track; ///< as stored
    TrackPoint last;
    QList<TrackPoint> unstored;
    double unstoredMetres = 0;
    int segment = 0;
    bool recording = false;
    bool paused = false;
    bool stopping = false;
    bool writing = false;
    bool testing = false;
    QString testName;   ///< of a test that ended after the last point
    qint64 placeUs = 0; ///< when the position was told last, steady
    qint64 keptUs = 0;  ///< when the last point was made, steady; 0: none of this run
    qint64 runningSinceUs = 0;
    qint64 ranUs = 0;             ///< before the last pause
    std::optional<qint64> testUs; ///< when the last test was due
    double metresSinceTest = 0;
    ClockTimer next;  ///< of what was told too soon after the last point
    ClockTimer pulse; ///< a point a minute
    ClockTimer storing;
    ClockTimer nextTest;
};

} // namespace velometer
