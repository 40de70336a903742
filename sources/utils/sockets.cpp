#include "utils/sockets.h"

#include "utils/utils.h"

#include <QNetworkProxy>
#include <QTcpSocket>

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qint64 nsPerUs = 1000;
/// Half of the second after which the kernel sends a SYN again.
constexpr qint64 leastResendWait = 500'000'000;

QAbstractSocket::NetworkLayerProtocol chosenProtocol = QAbstractSocket::AnyIPProtocol;

template <typename Value>
void setOption(const QTcpSocket &socket, int level, int option, const Value &value)
{
    const auto descriptor = static_cast<int>(socket.socketDescriptor());
    if (descriptor >= 0) {
        ::setsockopt(descriptor, level, option, &value, sizeof value);
    }
}

/// What the kernel does not tell is 0.
tcp_info factsOf(const QTcpSocket &socket)
{
    tcp_info facts = {};
    socklen_t length = sizeof facts;
    const auto descriptor = static_cast<int>(socket.socketDescriptor());
    const bool told =
        descriptor >= 0 && ::getsockopt(descriptor, IPPROTO_TCP, TCP_INFO, &facts, &length) == 0;
    return told ? facts : tcp_info{};
}

} // namespace

void Sockets::setProtocol(QAbstractSocket::NetworkLayerProtocol protocol)
{
    chosenProtocol = protocol;
}

void Sockets::connectToHost(QTcpSocket &socket, const QString &host, int port)
{
    // Through a proxy we would measure the proxy.
    socket.setProxy(QNetworkProxy::NoProxy);
    const bool possible = port >= 1 && port <= 65535;
    socket.connectToHost(host, static_cast<quint16>(possible ? port : 0), QIODevice::ReadWrite,
                         chosenProtocol);
}

void Sockets::release(QTcpSocket *&socket, const QObject *receiver)
{
    if (!socket) {
        return;
    }
    socket->disconnect(receiver);
    socket->abort();
    socket->deleteLater();
    socket = nullptr;
}

void Sockets::chooseCongestionControl(const QTcpSocket &socket, const QString &name)
{
    setOption(socket, IPPROTO_TCP, TCP_CONGESTION, std::to_array("bbr"));
    std::array<char, 16> wanted{}; // the kernel's bound
    if (!name.isEmpty() && name.size() < qsizetype(wanted.size())) {
        std::ranges::copy(name.toLatin1(), wanted.begin());
        setOption(socket, IPPROTO_TCP, TCP_CONGESTION, wanted);
    }
}

QStringList Sockets::congestionControls()
{
    const QString list =
        Utils::readFile(u"/proc/sys/net/ipv4/tcp_available_congestion_control"_s).simplified();
    return list.split(u' ', Qt::SkipEmptyParts);
}

QString Sockets::congestionControl(const QTcpSocket &socket)
{
    char name[16] = {};
    socklen_t length = sizeof name - 1;
    const auto descriptor = static_cast<int>(socket.socketDescriptor());
    if (descriptor < 0 ||
        ::getsockopt(descriptor, IPPROTO_TCP, TCP_CONGESTION, name, &length) != 0) {
        return {};
    }
    return QString::fromLatin1(name);
}

Sockets::ConnectTime Sockets::connectTime(const QTcpSocket &socket, qint64 byClock)
{
    const tcp_info facts = factsOf(socket);
    const qint64 roundTrip = qint64{facts.tcpi_rtt} * nsPerUs;
    if (roundTrip <= 0 || roundTrip > byClock) {
        return {.ns = byClock};
    }
    // A SYN goes out again after a second whether it was lost or is slow. The kernel knows by the
    // echoed timestamp which of them was answered.
    if (facts.tcpi_total_retrans > 0 && byClock - roundTrip >= leastResendWait) {
        return {.ns = byClock, .resent = true};
    }
    return {.ns = roundTrip};
}

void Sockets::dropUnsentOnClose(const QTcpSocket &socket)
{
    setOption(socket, SOL_SOCKET, SO_LINGER, linger{.l_onoff = 1, .l_linger = 0});
}

void Sockets::limitUnsent(const QTcpSocket &socket, int bytes)
{
    setOption(socket, IPPROTO_TCP, TCP_NOTSENT_LOWAT, bytes);
}

void Sockets::limitWindow(const QTcpSocket &socket, qint64 bytes)
{
    setOption(socket, IPPROTO_TCP, TCP_WINDOW_CLAMP,
              static_cast<int>(std::min<qint64>(bytes, std::numeric_limits<int>::max())));
}

qint64 Sockets::unconfirmedBytes(const QTcpSocket &socket)
{
    int bytes = 0;
    const auto descriptor = static_cast<int>(socket.socketDescriptor());
    if (descriptor < 0 || ::ioctl(descriptor, SIOCOUTQ, &bytes) != 0) {
        return 0;
    }
    return bytes;
}

qint64 Sockets::missingBytes(const QTcpSocket &socket)
{
    const tcp_info facts = factsOf(socket);
    const qint64 behindHoles = qint64{facts.tcpi_sacked} * facts.tcpi_snd_mss;
    return std::max<qint64>(0, unconfirmedBytes(socket) - behindHoles);
}

} // namespace velometer
