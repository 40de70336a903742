#pragma once

#include "platform/networkstate.h"

#include <QByteArray>
#include <QList>
#include <QNetworkInterface>
#include <QString>

#include <functional>
#include <optional>

namespace velometer {

/// A network interface of this machine, as far as the back ends need it.
struct MachineInterface
{
    QString name;
    QString bearer; ///< "Ethernet", "WLAN", "Loopback", "Mobile" or "Unknown"
    NetworkMode mode = NetworkMode::Unknown;
    bool loopback = false;
    bool up = false;       ///< up and running
    bool routable = false; ///< has an address that is neither loopback nor link-local
};

/// The network side of this machine at one moment.
struct MachineNetwork
{
    QList<MachineInterface> interfaces;
    QString defaultRoute; ///< interface name; empty when there is none

    /// The interface that traffic to the network leaves by: that of the default route, else the
    /// first that is up with a routable address. Nothing when there is only loopback.
    std::optional<MachineInterface> outgoing() const;
    /// The same, or where that is a tunnel what carries it, as far as there is but one way.
    std::optional<MachineInterface> carrier() const;
};

/// Where the back ends get the present state from.
using MachineNetworkLookUp = std::function<MachineNetwork()>;

/// Asks the kernel, which takes well under a millisecond.
MachineNetwork lookUpMachineNetwork();

/// Wired-like virtual interfaces (bridges, virtual cables) count as Ethernet.
MachineInterface describeInterface(const QString &name, QNetworkInterface::InterfaceType type,
                                   QNetworkInterface::InterfaceFlags flags,
                                   const QList<QHostAddress> &addresses);

/// The interface of the default route with the lowest metric in the kernel's tables (the texts of
/// /proc/net/route and /proc/net/ipv6_route), IPv4 first; empty when there is none.
QString defaultRouteInterface(const QByteArray &ipv4Routes, const QByteArray &ipv6Routes);

/// Interface names that systems build from the hardware address ("enx0050b6..") without that
/// address: configuration names travel with reports.
QString anonymousInterfaceName(const QString &name);

} // namespace velometer
