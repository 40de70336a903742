#include "platform/position/nmeapositionsource.h"

#include "platform/position/filenmeainput.h"
#include "platform/position/sentencepipe.h"
#include "platform/position/socketnmeainput.h"
#include "utils/utils.h"

#include <QNmeaPositionInfoSource>
#include <QNmeaSatelliteInfoSource>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// Finer than people and tests look at positions.
constexpr std::chrono::milliseconds pollInterval = 100ms;
/// Receivers send some hundred bytes in that time; a source that floods gets no more of ours.
constexpr qint64 maxBytesPerPoll = 16'384;
constexpr auto inputRetryInterval = 5s;
/// Receivers tell their position every second, thrifty ones every five.
constexpr auto fixTimeout = 10s;
/// Nobody waits for the end of a longer pause in a recording.
constexpr std::chrono::milliseconds maxPause = 1min;
/// What Qt's documentation names for receivers without corrections, m: HDOP times twice this is the
/// accuracy.
constexpr double rangeError = 5.1;

std::unique_ptr<NmeaInput> inputOf(const PositionChoice &choice)
{
    using Peer = SocketNmeaInput::Peer;
    switch (choice.source) {
    case PositionChoice::Source::Platform:
    case PositionChoice::Source::NmeaFile: break;
    case PositionChoice::Source::NmeaSocket:
        return std::make_unique<SocketNmeaInput>(choice.endpoint, Peer::Plain);
    case PositionChoice::Source::Gpsd:
        return std::make_unique<SocketNmeaInput>(choice.endpoint, Peer::Gpsd);
    }
    return std::make_unique<FileNmeaInput>(choice.file);
}

/// From one time stamp of a recording to the next; none where its clock was set back.
std::chrono::milliseconds pauseBetween(int from, int to)
{
    constexpr std::chrono::milliseconds day = 24h;
    const std::chrono::milliseconds forward{to - from};
    const auto pause = forward < 0ms ? forward + day : forward;
    return pause > day / 2 ? 0ms : std::min(pause, maxPause);
}

} // namespace

NmeaPositionSource::NmeaPositionSource(const PositionChoice &choice, QObject *parent)
    : PositionSource(parent)
    , label(choice.name())
    , input(inputOf(choice))
{
    const struct
    {
        QTimer &timer;
        QString name;
        std::chrono::milliseconds interval;
        void (NmeaPositionSource::*slot)();
    } timers[] = {{pollTimer, u"poll"_s, pollInterval, &NmeaPositionSource::poll},
                  {retryTimer, u"retry"_s, inputRetryInterval, &NmeaPositionSource::retry},
                  {fixTimer, u"fix"_s, fixTimeout, &NmeaPositionSource::giveUpOnFix}};
    for (const auto &[timer, name, every, slot] : timers) {
        timer.setParent(this);
        timer.setObjectName(name);
        timer.setInterval(every);
        connect(&timer, &QTimer::timeout, this, slot);
    }
    retryTimer.setSingleShot(true);
    fixTimer.setSingleShot(true);
}

NmeaPositionSource::~NmeaPositionSource() = default;

int NmeaPositionSource::minimumUpdateInterval() const
{
    return static_cast<int>(pollInterval.count());
}

void NmeaPositionSource::setUpdateInterval(int ms)
{
    interval = ms;
    if (positionReader) {
        positionReader->setUpdateInterval(ms);
        satelliteReader->setUpdateInterval(ms);
    }
}

void NmeaPositionSource::startPosition()
{
    if (positionRunning) {
        return;
    }
    positionRunning = true;
    fixTimer.start();
    run();
    positionReader->startUpdates();
}

void NmeaPositionSource::stopPosition()
{
    if (!positionRunning) {
        return;
    }
    positionRunning = false;
    fixTimer.stop();
    positionReader->stopUpdates();
    pauseUnlessWanted();
}

void NmeaPositionSource::startSatellites()
{
    if (satellitesRunning) {
        return;
    }
    satellitesRunning = true;
    run();
    satelliteReader->startUpdates();
}

void NmeaPositionSource::stopSatellites()
{
    if (!satellitesRunning) {
        return;
    }
    satellitesRunning = false;
    satelliteReader->stopUpdates();
    pauseUnlessWanted();
}

void NmeaPositionSource::run()
{
    if (pollTimer.isActive()) {
        return;
    }
    pollTimer.start();
    const bool goesOn = input->isRecording() && input->state() == NmeaInput::State::Open;
    if (goesOn) {
        renewReaders();
    } else {
        open();
    }
    dueNs = Utils::getTimeInNs() + (goesOn ? restNs : 0);
}

void NmeaPositionSource::pauseUnlessWanted()
{
    if (positionRunning || satellitesRunning) {
        return;
    }
    pollTimer.stop();
    retryTimer.stop();
    restNs = std::max<qint64>(0, dueNs - Utils::getTimeInNs());
    if (!input->isRecording()) {
        input->close();
    }
}

void NmeaPositionSource::open()
{
    lines.clear();
    ahead.clear();
    timeOfDay.reset();
    renewReaders();
    input->open();
    retryTimer.start();
    if (input->state() == NmeaInput::State::Lost) {
        setProblem(Problem::Unavailable);
    }
}

void NmeaPositionSource::retry()
{
    const NmeaInput::State state = input->state();
    if (state == NmeaInput::State::Open || state == NmeaInput::State::Ended) {
        return;
    }
    setProblem(Problem::Unavailable);
    open();
}

void NmeaPositionSource::poll()
{
    switch (input->state()) {
    case NmeaInput::State::Closed:
    case NmeaInput::State::Opening:
    case NmeaInput::State::Ended: return;
    case NmeaInput::State::Lost:
        setProblem(Problem::Unavailable);
        if (!retryTimer.isActive()) {
            retryTimer.start();
        }
        return;
    case NmeaInput::State::Open: break;
    }
    // It is there again; whether it finds a position will be seen.
    if (problem() == Problem::Unavailable) {
        setProblem(Problem::NoFix);
    }
    if (ahead.isEmpty()) {
        ahead.append(lines.take(input->read(maxBytesPerPoll)));
    }
    play();
}

void NmeaPositionSource::play()
{
    const qint64 now = Utils::getTimeInNs();
    // A listener may stop the source while it is told.
    while (!ahead.isEmpty() && pollTimer.isActive()) {
        const std::optional<int> next = ahead.head().timeOfDay;
        if (input->isRecording() && next) {
            if (timeOfDay) {
                dueNs += std::chrono::nanoseconds(pauseBetween(*timeOfDay, *next)).count();
            }
            timeOfDay = next;
            if (dueNs > now) {
                return;
            }
        }
        hand(ahead.dequeue());
    }
}

void NmeaPositionSource::hand(const NmeaSentence &sentence)
{
    if (sentence.tellsPosition && positionRunning) {
        positionPipe->put(sentence.line);
        positionPipe->announce();
    }
    if (sentence.tellsSatellites && satellitesRunning) {
        satellitePipe->put(sentence.line);
        satellitePipe->announce();
    }
}

void NmeaPositionSource::renewReaders()
{
    // One of them may be telling something just now.
    for (QObject *old :
         {static_cast<QObject *>(positionReader), static_cast<QObject *>(satelliteReader),
          static_cast<QObject *>(positionPipe), static_cast<QObject *>(satellitePipe)}) {
        if (old) {
            old->disconnect();
            old->deleteLater();
        }
    }
    // The pace of a recording is ours: Qt's simulating readers lose step with each other, and the
    // one of satellites never returns from a file that tells none.
    positionReader = new QNmeaPositionInfoSource(QNmeaPositionInfoSource::RealTimeMode, this);
    satelliteReader =
        new QNmeaSatelliteInfoSource(QNmeaSatelliteInfoSource::UpdateMode::RealTimeMode, this);
    positionPipe = new SentencePipe(this);
    satellitePipe = new SentencePipe(this);
    positionReader->setDevice(positionPipe);
    positionReader->setUserEquivalentRangeError(rangeError);
    satelliteReader->setDevice(satellitePipe);
    setUpdateInterval(interval);
    connect(positionReader, &QGeoPositionInfoSource::positionUpdated, this,
            &NmeaPositionSource::takePosition);
    connect(satelliteReader, &QGeoSatelliteInfoSource::satellitesInUseUpdated, this,
            &PositionSource::satellitesInUseUpdated);
    connect(satelliteReader, &QGeoSatelliteInfoSource::satellitesInViewUpdated, this,
            &PositionSource::satellitesInViewUpdated);
    if (positionRunning) {
        positionReader->startUpdates();
    }
    if (satellitesRunning) {
        satelliteReader->startUpdates();
    }
}

void NmeaPositionSource::takePosition(const QGeoPositionInfo &info)
{
    fixTimer.start();
    last = Position::from(info);
    setPosition(info);
}

void NmeaPositionSource::giveUpOnFix()
{
    if (problem() == Problem::None) {
        setProblem(Problem::NoFix);
    }
    setTimedOut();
}

} // namespace velometer
