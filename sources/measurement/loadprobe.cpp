#include "measurement/loadprobe.h"

#include "utils/sockets.h"
#include "utils/utils.h"

#include <QTcpSocket>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto period = 200ms;
constexpr std::ptrdiff_t mostUnderWay = 3;
/// As long as the test of the idle line waits.
constexpr qint64 longestNs = 3'000'000'000;
constexpr qint64 nsPerSecond = 1'000'000'000;

/// SYN, SYN-ACK, ACK and reset with their options, without IP headers.
constexpr qint64 tcpBytes = 40 + 40 + 32 + 20;
constexpr qint64 packets = 4;
constexpr qint64 ipv4Header = 20;
constexpr qint64 ipv6Header = 40;

/// Of what the stream moves: not to be seen in its rate.
constexpr qint64 usualPartsPerThousand = 4;
/// Where the usual part does not pay for a probe a second.
constexpr qint64 slowPartsPerThousand = 10;

} // namespace

LoadProbe::LoadProbe(QObject *parent)
    : QObject(parent)
{
    connect(&timer, &ClockTimer::timeout, this, &LoadProbe::next);
}

LoadProbe::~LoadProbe()
{
    stop();
}

qint64 LoadProbe::bytesPerProbe(const QHostAddress &peer)
{
    const bool isIpv4 = peer.protocol() == QAbstractSocket::IPv4Protocol;
    return tcpBytes + packets * (isIpv4 ? ipv4Header : ipv6Header);
}

qint64 LoadProbe::shareOf(qint64 limit)
{
    return limit * slowPartsPerThousand / 1000;
}

void LoadProbe::start(const QTcpSocket &stream, qint64 mostBytes)
{
    peer = stream.peerAddress();
    local = stream.localAddress();
    port = stream.peerPort();
    cost = bytesPerProbe(peer);
    most = mostBytes;
    startedAt = Utils::getTimeInNs();
    started = true;
    timer.start(period);
}

void LoadProbe::stop()
{
    timer.stop();
    for (Probe &probe : probes) {
        Sockets::release(probe.socket, this);
    }
}

LoadDelays LoadProbe::delays() const
{
    LoadDelays delays;
    if (!started) {
        return delays;
    }
    Delays samples;
    QList<qint64> times;
    for (const Probe &probe : probes) {
        if (probe.isOver) {
            samples.append(probe.delay);
            times.append(probe.begun - startedAt);
        }
    }
    delays.samples = samples;
    delays.times = times;
    return delays;
}

void LoadProbe::next()
{
    timer.start(period);
    for (std::size_t i = 0; i < probes.size(); ++i) {
        if (probes[i].socket && Utils::getTimeInNs() - probes[i].begun >= longestNs) {
            lose(i);
        }
    }
    if (mayOpen()) {
        open();
    }
}

// By what the stream has moved rather than by a spacing: so the part holds on every link and at
// every moment, through its ramp-up and pauses as well.
bool LoadProbe::mayOpen() const
{
    const auto underWay =
        std::count_if(probes.begin(), probes.end(), [](const Probe &each) { return each.socket; });
    const qint64 elapsed = Utils::getTimeInNs() - startedAt;
    const bool isSlow = moved * usualPartsPerThousand / 1000 < cost * (elapsed / nsPerSecond + 1);
    const qint64 paid = moved * (isSlow ? slowPartsPerThousand : usualPartsPerThousand) / 1000;
    return underWay < mostUnderWay && bytes() + cost <= std::min(paid, most);
}

void LoadProbe::open()
{
    const std::size_t number = probes.size();
    auto *socket = new QTcpSocket(this);
    probes.push_back({.begun = Utils::getTimeInNs(), .socket = socket});
    connect(socket, &QTcpSocket::connected, this, [this, number] { connected(number); });
    connect(socket, &QTcpSocket::errorOccurred, this, [this, number] { lose(number); });
    // From the same address it takes the same route.
    socket->bind(local);
    Sockets::connectToHost(*socket, peer.toString(), port);
}

void LoadProbe::connected(std::size_t number)
{
    Probe &probe = probes[number];
    const auto time = Sockets::connectTime(*probe.socket, Utils::getTimeInNs() - probe.begun);
    if (time.resent || time.ns >= longestNs) {
        return lose(number);
    }
    probe.delay = time.ns;
    probe.isOver = true;
    Sockets::dropUnsentOnClose(*probe.socket); // a reset is shorter than a farewell
    Sockets::release(probe.socket, this);
    Q_EMIT sampled(probe.begun - startedAt, time.ns);
}

void LoadProbe::lose(std::size_t number)
{
    probes[number].isOver = true;
    Sockets::release(probes[number].socket, this);
}

} // namespace velometer
