#include "app/trackrecorder.h"

#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "db/databasemanager.h"
#include "utils/clock.h"
#include "utils/utils.h"

#include <QDBusConnection>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto pulseInterval = 60s;
/// With the time that writing takes less than the five seconds that are promised.
constexpr auto storingInterval = 4s;
/// After that nobody knows where the device was meanwhile.
constexpr qint64 gapMs = 90'000;
/// A receiver tells its position every second; after that it has lost it.
constexpr qint64 placeAgeUs = 10'000'000;
constexpr double kmhPerMetreSecond = 3.6;
constexpr qint64 usPerMilli = 1000;
/// Five hours, when the store has not taken anything for so long.
constexpr qsizetype mostUnstored = 20'000;

qint64 steadyUs()
{
    return Clock::current().steadyUs();
}

qint64 inUs(std::chrono::microseconds time)
{
    return time.count();
}

/// Receivers tell more digits than they know; each costs room in every point.
std::optional<double> rounded(const std::optional<double> &value, double steps)
{
    return value ? std::optional(std::round(*value * steps) / steps) : std::nullopt;
}

} // namespace

TrackRecorder::TrackRecorder(LocationHelper &locationHelper, NetworkInfoHelper &networkHelper,
                             const QString &lockName, QObject *parent)
    : QObject(parent)
    , location(locationHelper)
    , network(networkHelper)
    , lockFile(lockName)
    , awake(QDBusConnection::systemBus(), nullptr)
    , writer(nullptr)
{
    // A program that records for days is not dead.
    lockFile.setStaleLockTime(0ms);
    connect(&location, &LocationHelper::changed, this, &TrackRecorder::placeTold);
    connect(&network, &NetworkInfoHelper::changed, this, &TrackRecorder::look);
    connect(&next, &ClockTimer::timeout, this, &TrackRecorder::look);
    connect(&pulse, &ClockTimer::timeout, this, &TrackRecorder::keep);
    connect(&storing, &ClockTimer::timeout, this, &TrackRecorder::flush);
    connect(&nextTest, &ClockTimer::timeout, this, &TrackRecorder::lookForTest);
    connect(&writer, &StoreWriter::waiting, this, &TrackRecorder::storeWaiting);
}

TrackRecorder::~TrackRecorder() = default;

bool TrackRecorder::lock()
{
    return lockFile.isLocked() || lockFile.tryLock(0ms);
}

std::optional<Track> TrackRecorder::interrupted()
{
    if (recording || !lock()) {
        return std::nullopt;
    }
    const QList<Track> tracks = gDB->tracks().all();
    lockFile.unlock();
    return tracks.isEmpty() || tracks.constFirst().ended ? std::nullopt
                                                         : std::optional(tracks.constFirst());
}

TrackRecorder::Start TrackRecorder::start(const Plan &wanted, bool goesOn)
{
    const auto before = interrupted();
    if (recording || !lock()) {
        return Start::Busy;
    }
    TrackStore &store = gDB->tracks();
    const qint64 now = Utils::getTimeInMs();
    last = {};
    if (before) {
        track = *before;
        last = store.lastPoint(track.row).value_or(TrackPoint());
        if (!goesOn && !store.setEnded(track, std::max(last.time, track.started))) {
            return Start::StoreFailed;
        }
    }
    if (!before || !goesOn) {
        const auto begun = store.begin(now);
        if (!begun) {
            lockFile.unlock();
            return Start::StoreFailed;
        }
        track = *begun;
        last = {};
    }
    plan = wanted;
    segment = track.points > 0 ? last.segment + 1 : 0;
    unstored.clear();
    unstoredMetres = 0;
    testName.clear();
    keptUs = 0;
    ranUs = 0;
    runningSinceUs = steadyUs();
    testUs.reset();
    metresSinceTest = 0;
    stopping = false;
    testing = false;
    paused = false;
    recording = true;
    awake.hold();
    location.keepOn(true);
    keep();
    return Start::Done;
}

std::chrono::milliseconds TrackRecorder::elapsed() const
{
    const bool runs = recording && !paused;
    const std::chrono::microseconds ran(ranUs + (runs ? steadyUs() - runningSinceUs : 0));
    return std::chrono::floor<std::chrono::milliseconds>(ran);
}

Track TrackRecorder::getTrack() const
{
    Track whole = track;
    whole.points += unstored.size();
    whole.metres += unstoredMetres;
    whole.tests += std::count_if(unstored.begin(), unstored.end(),
                                 [](const TrackPoint &each) { return !each.test.isEmpty(); });
    return whole;
}

void TrackRecorder::setPaused(bool wanted)
{
    if (!recording || paused == wanted) {
        return;
    }
    if (wanted) {
        ranUs += steadyUs() - runningSinceUs;
        next.stop();
        pulse.stop();
        nextTest.stop();
        awake.release();
        flush();
    }
    paused = wanted;
    location.keepOn(!wanted);
    if (!wanted) {
        runningSinceUs = steadyUs();
        ++segment;
        keptUs = 0;
        awake.hold();
        keep();
    }
}

void TrackRecorder::placeTold()
{
    if (location.position() && location.getProblem() == PositionSource::Problem::None) {
        placeUs = steadyUs();
    }
    look();
}

TrackPoint TrackRecorder::pointNow() const
{
    TrackPoint point;
    point.time = Utils::getTimeInMs();
    point.segment = segment;
    const auto &place = location.position();
    if (place && place->hasPlace() && placeUs > 0 && steadyUs() - placeUs < placeAgeUs) {
        constexpr double degreeSteps = 1e7; // a centimetre
        point.latitude = rounded(place->latitude, degreeSteps);
        point.longitude = rounded(place->longitude, degreeSteps);
        point.altitude = rounded(place->altitude, 10);
        point.accuracy = rounded(place->horizontalAccuracy, 10);
        if (place->groundSpeed && *place->groundSpeed >= 0) {
            point.speed = rounded(*place->groundSpeed * kmhPerMetreSecond, 10);
        }
    }
    const NetworkState &state = network.state();
    const NetworkState::Link mobile = state.mobile().value_or(NetworkState::Link());
    point.mode = network.getNetworkmode();
    point.operatorName = mobile.name;
    point.mcc = state.mcc;
    point.mnc = state.mnc;
    point.cell = state.cell;
    point.lac = state.lac;
    point.signal = mobile.signal;
    point.rsrp = state.radio.rsrp;
    point.rsrq = state.radio.rsrq;
    point.snr = state.radio.snr;
    point.band = state.radio.band;
    return point;
}

bool TrackRecorder::isDue() const
{
    if (plan.metres <= 0) {
        return true;
    }
    const TrackPoint now = pointNow();
    return now.mode != last.mode || now.cell != last.cell || now.hasPlace() != last.hasPlace() ||
           Tracks::metresBetween(last, now) >= plan.metres;
}

void TrackRecorder::look()
{
    if (!recording || paused || stopping) {
        return;
    }
    const qint64 rest = keptUs + inUs(plan.interval) - steadyUs();
    if (keptUs > 0 && rest > 0) {
        if (!next.isActive()) {
            next.start(std::chrono::milliseconds(rest / usPerMilli + 1));
        }
    } else if (keptUs == 0 || isDue()) {
        keep();
    }
}

void TrackRecorder::keep()
{
    if (!recording || paused || stopping || unstored.size() >= mostUnstored) {
        return;
    }
    if (track.points + unstored.size() >= Tracks::mostPoints) {
        return stop();
    }
    TrackPoint point = pointNow();
    if (last.time > 0 && last.segment == segment && std::abs(point.time - last.time) > gapMs) {
        point.segment = ++segment;
    }
    point.test = std::exchange(testName, QString());
    const double metres = Tracks::metresBetween(last, point);
    unstoredMetres += metres;
    metresSinceTest += metres;
    unstored.append(point);
    last = point;
    keptUs = steadyUs();
    next.stop();
    pulse.start(pulseInterval);
    if (!storing.isActive()) {
        storing.start(storingInterval);
    }
    Q_EMIT pointKept();
    lookForTest();
}

void TrackRecorder::lookForTest()
{
    if (testing || paused || !recording || stopping) {
        return;
    }
    const qint64 now = steadyUs();
    const qint64 interval = inUs(plan.testInterval);
    const bool byTime = interval > 0 && (!testUs || now >= *testUs + interval);
    const bool byDistance = plan.testMetres > 0 && (!testUs || metresSinceTest >= plan.testMetres);
    if (byTime || byDistance) {
        testUs = now;
        metresSinceTest = 0;
        Q_EMIT testDue();
    }
    if (interval > 0 && testUs) {
        nextTest.start(std::chrono::milliseconds(
            std::max<qint64>(*testUs + interval - steadyUs(), 0) / usPerMilli + 1));
    }
}

void TrackRecorder::testStarted()
{
    testing = true;
}

void TrackRecorder::testEnded(const QString &name)
{
    testing = false;
    testName = name;
    if (!recording) {
        return;
    }
    if (!name.isEmpty() && !paused) {
        keep();
    } else {
        lookForTest();
    }
}

void TrackRecorder::flush()
{
    if (writing || unstored.isEmpty()) {
        return;
    }
    writing = true;
    const QList<TrackPoint> points = unstored;
    const double metres = unstoredMetres;
    writer.write(
        [this, points, metres] { return gDB->tracks().append(track, points, metres); },
        [this, count = points.size(), metres](bool done) { flushed(done, count, metres); });
}

void TrackRecorder::flushed(bool done, qsizetype points, double length)
{
    writing = false;
    if (done) {
        unstored.remove(0, points);
        unstoredMetres -= length;
    }
    if (stopping) {
        return finish();
    }
    if (!unstored.isEmpty() && !storing.isActive()) {
        storing.start(storingInterval);
    }
}

void TrackRecorder::stop()
{
    if (!recording || stopping) {
        return;
    }
    if (!paused && steadyUs() - keptUs >= inUs(plan.interval)) {
        keep();
    }
    stopping = true;
    next.stop();
    pulse.stop();
    storing.stop();
    nextTest.stop();
    if (writing) {
        return;
    }
    if (unstored.isEmpty()) {
        finish();
    } else {
        flush();
    }
}

void TrackRecorder::finish()
{
    const qint64 now = Utils::getTimeInMs();
    const bool isWhole = unstored.isEmpty();
    const auto done = [this](bool stored) {
        if (!paused) {
            ranUs += steadyUs() - runningSinceUs;
        }
        recording = false;
        location.keepOn(false);
        awake.release();
        lockFile.unlock();
        Q_EMIT ended(stored);
    };
    if (!isWhole) {
        return done(false);
    }
    writer.write([this, now] { return gDB->tracks().setEnded(track, now); }, done);
}

void TrackRecorder::suspend()
{
    if (!recording) {
        return;
    }
    writer.cancel();
    if (!unstored.isEmpty() && gDB->tracks().append(track, unstored, unstoredMetres)) {
        unstored.clear();
        unstoredMetres = 0;
    }
    recording = false;
    next.stop();
    pulse.stop();
    storing.stop();
    nextTest.stop();
    location.keepOn(false);
    awake.release();
    lockFile.unlock();
}

} // namespace velometer
