#include "platform/machine/machinenetwork.h"

#include <QFile>
#include <QHostAddress>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

// Routing tables of a router may be long; a default route stands at their beginning.
constexpr qint64 maxRouteBytes = 64LL * 1024;

bool isMobileName(const QString &name)
{
    return name.startsWith("ppp"_L1) || name.startsWith("ww"_L1) || name.startsWith("rmnet"_L1);
}

bool isRoutable(const QHostAddress &address)
{
    return !address.isNull() && !address.isLoopback() && !address.isLinkLocal() &&
           !address.isMulticast();
}

QByteArray readRoutes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(maxRouteBytes) : QByteArray();
}

struct Route
{
    QString interface;
    qulonglong metric = std::numeric_limits<qulonglong>::max();
};

void keepBetter(Route &best, const QByteArray &interface, qulonglong metric)
{
    if (best.interface.isEmpty() || metric < best.metric) {
        best = {QString::fromLocal8Bit(interface), metric};
    }
}

constexpr uint routeUp = 0x1;
constexpr uint routeReject = 0x200;

bool usable(const QByteArray &hexFlags)
{
    const uint flags = hexFlags.toUInt(nullptr, 16);
    return (flags & routeUp) != 0 && (flags & routeReject) == 0;
}

bool isZero(const QByteArray &hex)
{
    return !hex.isEmpty() && std::all_of(hex.begin(), hex.end(), [](char c) { return c == '0'; });
}

} // namespace

MachineInterface describeInterface(const QString &name, QNetworkInterface::InterfaceType type,
                                   QNetworkInterface::InterfaceFlags flags,
                                   const QList<QHostAddress> &addresses)
{
    MachineInterface result;
    result.name = name;
    result.loopback = flags.testFlag(QNetworkInterface::IsLoopBack);
    result.up =
        flags.testFlag(QNetworkInterface::IsUp) && flags.testFlag(QNetworkInterface::IsRunning);
    result.routable =
        !result.loopback && std::any_of(addresses.begin(), addresses.end(), isRoutable);

    if (result.loopback) {
        result.bearer = u"Loopback"_s;
    } else if (isMobileName(name)) {
        // Before the type: modems pose as Ethernet.
        result.bearer = u"Mobile"_s;
    } else if (type == QNetworkInterface::Wifi) {
        result.bearer = u"WLAN"_s;
        result.mode = NetworkMode::Wlan;
    } else if (type == QNetworkInterface::Ethernet || type == QNetworkInterface::Virtual) {
        result.bearer = u"Ethernet"_s;
        result.mode = NetworkMode::Ethernet;
    } else {
        result.bearer = u"Unknown"_s;
    }
    return result;
}

QString defaultRouteInterface(const QByteArray &ipv4Routes, const QByteArray &ipv6Routes)
{
    Route best;
    // Iface Destination Gateway Flags RefCnt Use Metric Mask ...
    for (const QByteArray &line : ipv4Routes.split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() >= 8 && isZero(columns[1]) && isZero(columns[7]) && usable(columns[3])) {
            keepBetter(best, columns[0], columns[6].toULongLong());
        }
    }
    if (!best.interface.isEmpty()) {
        return best.interface;
    }
    // Destination Prefix Source Prefix NextHop Metric RefCnt Use Flags Iface
    for (const QByteArray &line : ipv6Routes.split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() >= 10 && isZero(columns[0]) && isZero(columns[1]) &&
            usable(columns[8])) {
            keepBetter(best, columns[9], columns[5].toULongLong(nullptr, 16));
        }
    }
    return best.interface;
}

std::optional<MachineInterface> MachineNetwork::outgoing() const
{
    std::optional<MachineInterface> first;
    for (const MachineInterface &each : interfaces) {
        if (!each.up || !each.routable) {
            continue;
        }
        if (each.name == defaultRoute) {
            return each;
        }
        if (!first) {
            first = each;
        }
    }
    return first;
}

std::optional<MachineInterface> MachineNetwork::carrier() const
{
    std::optional<MachineInterface> result = outgoing();
    if (!result || result->bearer != "Unknown"_L1) {
        return result;
    }
    std::optional<MachineInterface> below;
    for (const MachineInterface &each : interfaces) {
        if (!each.up || !each.routable || each.bearer == "Unknown"_L1) {
            continue;
        }
        if (below && below->bearer != each.bearer) {
            return result;
        }
        below = each;
    }
    return below ? below : result;
}

MachineNetwork lookUpMachineNetwork()
{
    MachineNetwork network;
    for (const QNetworkInterface &each : QNetworkInterface::allInterfaces()) {
        network.interfaces.append(
            describeInterface(each.name(), each.type(), each.flags(), each.allAddresses()));
    }
    network.defaultRoute = defaultRouteInterface(readRoutes(u"/proc/net/route"_s),
                                                 readRoutes(u"/proc/net/ipv6_route"_s));
    return network;
}

QString anonymousInterfaceName(const QString &name)
{
    static const QRegularExpression hardwareAddress(u"^(\\w+)x[0-9a-f]{12}$"_s);
    const QRegularExpressionMatch match = hardwareAddress.match(name);
    return match.hasMatch() ? match.captured(1) + u'x' : name;
}

} // namespace velometer
