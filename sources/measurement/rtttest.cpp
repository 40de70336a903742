#include "measurement/rtttest.h"

#include "data/result.h"
#include "data/testserver.h"
#include "measurement/measurementcontext.h"
#include "measurement/testobserver.h"
#include "utils/sockets.h"
#include "utils/utils.h"

#include <QTcpSocket>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// A connect that takes longer tells nothing about the radio link any more.
constexpr auto connectTimeout = 3000ms;
constexpr auto pauseBetween = 200ms;

} // namespace

RttTest::RttTest(MeasurementContext *context, QObject *parent, int connects)
    : QObject(parent)
    , controller(context)
    , lastConnect(connects)
{
    connect(&timer, &ClockTimer::timeout, this, &RttTest::rttTimeoutOccourd);
    connect(&timerPause, &ClockTimer::timeout, this, &RttTest::pauseOver);
    controller->getTestObserver()->setProgress(0, lastConnect + 1);
}

RttTest::~RttTest()
{
    Sockets::release(socket, this);
}

void RttTest::doMeasurement()
{
    const TestServer *server = controller->getTestServer();
    rtt = -1;
    Sockets::release(socket, this);
    socket = new QTcpSocket(this);
    connect(socket, &QTcpSocket::connected, this, &RttTest::slotConnected);
    connect(socket, &QTcpSocket::disconnected, this, &RttTest::slotDisconnected);
    connect(socket, &QTcpSocket::errorOccurred, this, &RttTest::slotError);
    timer.start(connectTimeout);
    rttstart = Utils::getTimeInNs();
    Sockets::connectToHost(*socket, ipadress.isEmpty() ? server->getHostname() : ipadress,
                           server->getPort());
}

void RttTest::cancel()
{
    cancelled = true;
    timer.stop();
    timerPause.stop();
    Sockets::release(socket, this);
}

void RttTest::slotConnected()
{
    rttstop = Utils::getTimeInNs();
    Utils::addLogEntry(u"RTT Connected()"_s);
    rtt = Sockets::connectTime(*socket, rttstop - rttstart).ns;
    ipadress = socket->peerAddress().toString();
    rttmeasurementFinished();
}

void RttTest::slotDisconnected()
{
    Utils::addLogEntry(u"RTT slotDisconnected()"_s);
    rttmeasurementFinished();
}

void RttTest::slotError(QAbstractSocket::SocketError code)
{
    Utils::addLogEntry(u"RTT slotError(): %1"_s.arg(code));
    rttmeasurementFinished();
}

void RttTest::rttTimeoutOccourd()
{
    rttmeasurementFinished();
}

void RttTest::rttmeasurementFinished()
{
    timer.stop();
    Sockets::release(socket, this);
    // A time beyond 2^31 ns wraps to a negative value, which the statistics leave out.
    if (testsexecuted >= 1) {
        responsetimes.insert(testsexecuted, static_cast<int>(rtt));
    }
    controller->getTestObserver()->setProgressValue(testsexecuted + 1);
    if (rtt > 0) {
        controller->getTestObserver()->setRoundTrip(rtt);
    }
    if (cancelled) {
        return;
    }
    if (testsexecuted >= lastConnect) {
        testExecuted();
        return;
    }
    ++testsexecuted;
    timerPause.start(pauseBetween);
}

void RttTest::pauseOver()
{
    doMeasurement();
}

void RttTest::testExecuted()
{
    result = new Result(controller->getTestServer()->getPort(), responsetimes, parent());
    controller->measurementDone(result);
}

} // namespace velometer
