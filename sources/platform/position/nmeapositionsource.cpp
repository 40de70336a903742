#include "platform/position/nmeapositionsource.h"

#include "platform/position/filenmeainput.h"
#include "platform/position/socketnmeainput.h"
#include "utils/utils.h"

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
/// A sentence takes up to 0.17 s on a line of 4800 baud, and its bytes follow each other at once.
constexpr auto silence = 250ms;

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
    connect(&pollTimer, &ClockTimer::timeout, this, &NmeaPositionSource::poll);
    connect(&silenceTimer, &ClockTimer::timeout, this, &NmeaPositionSource::tell);
    connect(&retryTimer, &ClockTimer::timeout, this, &NmeaPositionSource::retry);
    connect(&fixTimer, &ClockTimer::timeout, this, &NmeaPositionSource::giveUpOnFix);
}

NmeaPositionSource::~NmeaPositionSource() = default;

int NmeaPositionSource::minimumUpdateInterval() const
{
    return static_cast<int>(pollInterval.count());
}

void NmeaPositionSource::setUpdateInterval(int ms)
{
    interval = ms;
}

void NmeaPositionSource::startPosition()
{
    if (positionRunning) {
        return;
    }
    positionRunning = true;
    fixTimer.start(fixTimeout);
    run();
}

void NmeaPositionSource::stopPosition()
{
    if (!positionRunning) {
        return;
    }
    positionRunning = false;
    fixTimer.stop();
    pauseUnlessWanted();
}

void NmeaPositionSource::startSatellites()
{
    if (satellitesRunning) {
        return;
    }
    satellitesRunning = true;
    run();
}

void NmeaPositionSource::stopSatellites()
{
    if (!satellitesRunning) {
        return;
    }
    satellitesRunning = false;
    pauseUnlessWanted();
}

void NmeaPositionSource::run()
{
    if (pollTimer.isActive()) {
        return;
    }
    pollTimer.start(pollInterval);
    const bool goesOn = input->isRecording() && input->state() == NmeaInput::State::Open;
    if (!goesOn) {
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
    silenceTimer.stop();
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
    epoch = std::make_unique<NmeaEpoch>();
    lastMoment = {};
    silenceTimer.stop();
    input->open();
    retryTimer.start(inputRetryInterval);
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
    pollTimer.start(pollInterval);
    switch (input->state()) {
    case NmeaInput::State::Closed:
    case NmeaInput::State::Opening: return;
    case NmeaInput::State::Ended: return tell();
    case NmeaInput::State::Lost:
        setProblem(Problem::Unavailable);
        if (!retryTimer.isActive()) {
            retryTimer.start(inputRetryInterval);
        }
        return;
    case NmeaInput::State::Open: break;
    }
    // It is there again; whether it finds a position will be seen.
    if (problem() == Problem::Unavailable) {
        setProblem(Problem::NoFix);
    }
    if (ahead.isEmpty()) {
        const QByteArray bytes = input->read(maxBytesPerPoll);
        ahead.append(lines.take(bytes));
        if (!bytes.isEmpty()) {
            silenceTimer.start(silence);
        }
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
                // What comes at this moment is all there: only what is not due is left.
                return tell();
            }
        }
        hand(ahead.dequeue());
    }
}

void NmeaPositionSource::hand(const NmeaSentence &sentence)
{
    if (epoch->isEndedBy(sentence)) {
        tell();
    }
    epoch->add(sentence);
}

void NmeaPositionSource::tell()
{
    epoch->close();
    const auto position = epoch->takePosition();
    const auto satellites = epoch->takeSatellites();
    if (satellites && satellitesRunning) {
        setSatellites(*satellites);
    }
    if (!position || !positionRunning || isTooSoon(position->timestamp())) {
        return;
    }
    lastMoment = position->timestamp();
    fixTimer.start(fixTimeout);
    last = Position::from(*position);
    setPosition(*position);
}

// By the moments of the positions, which come sooner or later after these. A second of a receiver
// may be some ms short.
bool NmeaPositionSource::isTooSoon(const QDateTime &moment) const
{
    const qint64 later = lastMoment.isValid() ? lastMoment.msecsTo(moment) : interval;
    return later > 0 && later < interval - interval / 10;
}

void NmeaPositionSource::giveUpOnFix()
{
    if (problem() == Problem::None) {
        setProblem(Problem::NoFix);
    }
    setTimedOut();
}

} // namespace velometer
