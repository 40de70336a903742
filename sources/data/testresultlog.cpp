#include "data/testresultlog.h"

#include "context/doublelocation.h"
#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/testcontext.h"
#include "data/testserver.h"
#include "utils/sockets.h"
#include "utils/utils.h"

#include <QTcpSocket>

#include <chrono>

using namespace Qt::StringLiterals;

namespace velometer {

TestResultLog::TestResultLog(NetworkInfoHelper *network, LocationHelper *location, QString phase,
                             TestContext *context, QObject *parent)
    : QObject(parent)
    , phasename(std::move(phase))
    , controller(context)
    , networkinfo(network)
    , locationinfo(location)
{
    connect(&timer, &ClockTimer::timeout, this, &TestResultLog::rttTimeoutOccourd);
}

TestResultLog::~TestResultLog()
{
    Sockets::release(socket, this);
}

void TestResultLog::takeMeasurement(int timeoutMs)
{
    timeout = timeoutMs;
    Utils::addLogEntry(u"takeMeasurement()"_s);
    date = Utils::getTimeInMs();
    doRTTTest();
}

void TestResultLog::cancel()
{
    timer.stop();
    Sockets::release(socket, this);
}

void TestResultLog::doRTTTest()
{
    Sockets::release(socket, this);
    socket = new QTcpSocket(this);
    connect(socket, &QTcpSocket::connected, this, &TestResultLog::slotConnected);
    connect(socket, &QTcpSocket::disconnected, this, &TestResultLog::slotDisconnected);
    connect(socket, &QTcpSocket::errorOccurred, this, &TestResultLog::slotError);
    timer.start(std::chrono::milliseconds(timeout));
    const TestServer *server = controller->getTestServer();
    rttstart = Utils::getTimeInNs();
    Sockets::connectToHost(*socket, server->getHostname(), server->getPort());
}

void TestResultLog::slotConnected()
{
    rttstop = Utils::getTimeInNs();
    Utils::addLogEntry(u"RTT Connected()"_s);
    rtt = rttstop - rttstart;
    rttmeasurementFinished();
}

void TestResultLog::slotDisconnected()
{
    rtt = -1;
    Utils::addLogEntry(u"RTT slotDisconnected()"_s);
    rttmeasurementFinished();
}

void TestResultLog::slotError(QAbstractSocket::SocketError code)
{
    rtt = -1;
    Utils::addLogEntry(u"RTT slotError(): %1"_s.arg(code));
    rttmeasurementFinished();
}

void TestResultLog::rttTimeoutOccourd()
{
    rtt = -1;
    rttmeasurementFinished();
}

void TestResultLog::rttmeasurementFinished()
{
    cancel();
    fillInGPSAndNetworkData();
    controller->testResultLogReady(this);
}

void TestResultLog::fillInGPSAndNetworkData()
{
    if (date == 0) {
        date = Utils::getTimeInMs();
    }
    getGPSData();
    connectionType = networkinfo->getNetworkmode();
    const int strength = networkinfo->signal().value_or(-1);
    signalStrength = strength > 0 ? strength : -1;
    const NetworkState &state = networkinfo->state();
    cellId = state.cell.value_or(0);
    radio = isMobile(state.mode) ? state.radio : RadioSignal();
}

void TestResultLog::getGPSData()
{
    const Position here = locationinfo->rounded();
    latitude = here.latitude.value_or(0);
    longitude = here.longitude.value_or(0);
    altitude = here.altitude.value_or(noAltitude);
    hAccuracy = here.horizontalAccuracy.value_or(-1);
    vAccuracy = here.verticalAccuracy.value_or(-1);
    gpslock = here.hasLock();
}

QString TestResultLog::appendXmlToMutableString() const
{
    const auto element = [](QLatin1StringView name, const QString &value) {
        return u'<' + name + u'>' + value + "</"_L1 + name + u'>';
    };
    const auto decimals = [](double value) { return QString::number(value, 'f', 6); };

    return "<LogEntry>"_L1 + element("LogId"_L1, QString::number(logid)) +
           element("Timestamp"_L1, QString::number(date)) + element("Phase"_L1, phasename) +
           "<Position GPSLock=\""_L1 + (gpslock ? u'1' : u'0') + "\">"_L1 +
           element("Latitude"_L1, decimals(latitude)) +
           element("Longitude"_L1, decimals(longitude)) +
           element("Altitude"_L1, decimals(altitude)) +
           element("HorizontalAccuracy"_L1, decimals(hAccuracy)) +
           element("VerticalAccuracy"_L1, decimals(vAccuracy)) + "</Position>"_L1 +
           element("RTT"_L1, QString::number(rtt / 1000)) +
           element("ConnectionType"_L1, connectionType) +
           element("SignalStrength"_L1, QString::number(signalStrength, 'f', 0)) +
           element("CellID"_L1, QString::number(cellId)) +
           element("NeighboringCells"_L1, QString()) + "</LogEntry>"_L1;
}

} // namespace velometer
