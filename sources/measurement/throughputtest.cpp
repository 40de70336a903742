#include "measurement/throughputtest.h"

#include "data/testserver.h"
#include "measurement/measurementcontext.h"
#include "measurement/requestparameters.h"
#include "measurement/testobserver.h"
#include "utils/sockets.h"
#include "utils/utils.h"

#include <QTcpSocket>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr qint64 intervalNs = Result::intervalNs;
constexpr int intervalsPerSecond = 10;
/// Bytes in 100 ms to bit/s.
constexpr qint64 bitsPerSecondFactor = 80;
constexpr qint64 nsInMs = 1'000'000;
constexpr auto repaintPeriod = 200ms;
/// Lets the last interval be closed by data that comes after it.
constexpr auto deadlineGrace = 100ms;

/// "HTTP/1.1 200"
constexpr qsizetype statusLineLength = 12;

bool isServed(const QByteArray &statusLine)
{
    return statusLine.startsWith("HTTP/1.") && statusLine.endsWith(" 200");
}

qint64 span(qint64 start, qint64 end)
{
    return start > 0 && end > 0 ? end - start : -1;
}

} // namespace

ThroughputTest::ThroughputTest(MeasurementContext *context, QString testName, Result::Type type,
                               qlonglong testIdOffset, QObject *parent)
    : QObject(parent)
    , controller(context)
    , socket(new QTcpSocket(this))
    , name(std::move(testName))
    , resulttype(type)
    , idOffset(testIdOffset)
    , isResult(idOffset <= TestIdOffset::upload)
    , probe(nullptr)
    , time_start(Utils::getTimeInNs())
{
    connect(&timer, &ClockTimer::timeout, this, &ThroughputTest::timeoutOccourd);
    connect(&repainttimer, &ClockTimer::timeout, this, &ThroughputTest::timeoutOccourdRepaint);
    connect(&probe, &LoadProbe::sampled, this, [this](qint64 at, qint64 delay) {
        if (isResult) {
            controller->getTestObserver()->setDelayUnderLoad(resulttype, at, delay);
        } else {
            controller->getTestObserver()->setRoundTrip(delay);
        }
    });
    connect(socket, &QTcpSocket::connected, this, &ThroughputTest::slotConnected);
    connect(socket, &QTcpSocket::disconnected, this, &ThroughputTest::slotDisconnected);
    connect(socket, &QTcpSocket::errorOccurred, this, &ThroughputTest::slotError);
}

ThroughputTest::~ThroughputTest()
{
    cancel();
}

void ThroughputTest::setByteLimit(std::optional<qint64> bytes)
{
    limit = bytes.value_or(unlimited);
}

void ThroughputTest::setProbes(std::optional<qint64> bytes)
{
    probeLimit = bytes.value_or(unlimited);
}

void ThroughputTest::doMeasurement(int seconds)
{
    // Filled in advance, so that an interval without data stands there with 0.
    for (int i = 0; i < seconds * intervalsPerSecond; ++i) {
        valuesrate.insert(i, 0);
        valuesbyte.insert(i, 0);
    }
    controller->getTestObserver()->setProgressMax(1000 * seconds);
    testduration = seconds;
    timer.start(std::chrono::seconds(testduration));
    timeconnectstart = Utils::getTimeInNs();
    const TestServer *server = controller->getTestServer();
    Sockets::connectToHost(*socket, server->getHostname(), server->getPort());
}

void ThroughputTest::cancel()
{
    timer.stop();
    repainttimer.stop();
    probe.stop();
    Sockets::release(socket, this);
}

void ThroughputTest::slotConnected()
{
    timeconnectend = Utils::getTimeInNs();
    Utils::addLogEntry(name + " Connected()"_L1);
    Sockets::chooseCongestionControl(*socket, wantedControl);
    congestionControl = Sockets::congestionControl(*socket);
    const QByteArray text = requestText().toUtf8();
    timegettimestart = Utils::getTimeInNs();
    const qint64 written = socket->write(text);
    Utils::addLogEntry(u"Written: %1"_s.arg(written));
}

qsizetype ThroughputTest::missingOfAnswer() const
{
    return statusLineLength - statusLine.size();
}

bool ThroughputTest::takeAnswer(const QByteArray &bytes)
{
    if (missingOfAnswer() == 0) {
        return true;
    }
    statusLine += bytes.left(missingOfAnswer());
    if (missingOfAnswer() > 0 || isServed(statusLine)) {
        return true;
    }
    Utils::addLogEntry(u"%1 refused: %2"_s.arg(name, QString::fromLatin1(statusLine)));
    finish();
    return false;
}

void ThroughputTest::begin()
{
    timegettimeend = Utils::getTimeInNs();
    repainttimer.start(repaintPeriod);
    timer.start(std::chrono::seconds(testduration) + deadlineGrace);
    time_end = akttime = mseconds = old_mseconds = max_pause = 0;
    aktinterval = 0;
    time_start = Utils::getTimeInNs();
    if (probeLimit > 0) {
        probe.start(*socket, probeLimit);
    }
}

void ThroughputTest::takeTime()
{
    akttime = Utils::getTimeInNs();
    const qint64 elapsed = akttime - time_start;
    if (mseconds >= 1) {
        max_pause = qMax(max_pause, elapsed - mseconds);
    }
    mseconds = elapsed;
}

void ThroughputTest::recordInterval(qint64 total, qint64 &oldTotal)
{
    probe.streamHasMoved(total);
    const qint64 current = mseconds / intervalNs;
    if (old_mseconds / intervalNs < current) {
        aktinterval = static_cast<int>(current - 1);
        if (aktinterval < testduration * intervalsPerSecond) {
            const qint64 delta = total - oldTotal;
            valuesrate[aktinterval] = delta * bitsPerSecondFactor;
            valuesbyte[aktinterval] = delta;
            if (const auto now = confirmedBytes()) {
                confirmed.resize(testduration * intervalsPerSecond);
                confirmed[aktinterval] = std::max<qint64>(0, *now - confirmedBefore);
                confirmedBefore = *now;
            }
            if (isResult) {
                controller->getTestObserver()->setThroughput(resulttype, aktinterval, delta);
            }
            oldTotal = total;
            old_mseconds = mseconds;
        }
    }
    controller->getTestObserver()->setProgressValue(static_cast<int>(mseconds / nsInMs));
}

void ThroughputTest::timeoutOccourdRepaint()
{
    repainttimer.start(repaintPeriod);
    controller->getTestObserver()->setProgressValue(
        static_cast<int>((Utils::getTimeInNs() - time_start) / nsInMs));
}

void ThroughputTest::timeoutOccourd()
{
    finish(totalBytes() >= limit);
}

void ThroughputTest::slotDisconnected()
{
    Utils::addLogEntry(name + " slotDisconnected()"_L1);
    finish();
}

void ThroughputTest::slotError(QAbstractSocket::SocketError code)
{
    Utils::addLogEntry(u"%1 slotError(): %2"_s.arg(name, QString::number(code)));
    finish();
}

void ThroughputTest::finish(bool cut)
{
    cancel();
    if (time_end == 0) {
        time_end = Utils::getTimeInNs();
    }
    controller->getTestObserver()->setProgress(1, 1);
    // The intervals that the limit took away are no measured zeros.
    for (int i = static_cast<int>(mseconds / intervalNs);
         cut && i < testduration * intervalsPerSecond; ++i) {
        valuesrate.remove(i);
        valuesbyte.remove(i);
    }
    result = new Result(controller->getTestServer()->getPort(), testduration, time_end - time_start,
                        totalBytes(), valuesrate, valuesbyte, max_pause,
                        span(timeconnectstart, timeconnectend),
                        span(timegettimestart, timegettimeend), resulttype, parent());
    result->setAllBytesTransfered(totalBytes());
    result->setCongestionControl(congestionControl);
    result->setCutByBudget(cut);
    confirmed.resize(std::min<qsizetype>(confirmed.size(), valuesbyte.size()));
    result->setConfirmedBytes(confirmed);
    LoadDelays delays = probe.delays();
    if (delays.samples) {
        const QString &control = resulttype == Result::Upload ? congestionControl : sendersControl;
        delays.congestion = control.isEmpty() ? std::nullopt : std::optional(control);
    }
    result->setLoadDelays(delays, probe.bytes());
    // An uploading client need not be answered before it has ended.
    result->setAccepted(isServed(statusLine) ||
                        (resulttype == Result::Upload && statusLine.isEmpty()));
    controller->measurementDone(result);
}

} // namespace velometer
