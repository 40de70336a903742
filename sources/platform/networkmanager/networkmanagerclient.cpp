#include "platform/networkmanager/networkmanagerclient.h"

#include "platform/bus/busvalue.h"

#include <QSet>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

using Link = NetworkManagerState::Link;

namespace {

const QString serviceName = u"org.freedesktop.NetworkManager"_s;
const QString managerPath = u"/org/freedesktop/NetworkManager"_s;
const QString managerInterface = u"org.freedesktop.NetworkManager"_s;
const QString connectionInterface = u"org.freedesktop.NetworkManager.Connection.Active"_s;
const QString accessPointInterface = u"org.freedesktop.NetworkManager.AccessPoint"_s;

constexpr auto managerRetryInterval = 10s;
constexpr qint64 stateActivated = 2;
constexpr qint64 managerConnecting = 40;
/// What the standard allows for the name of a WLAN.
constexpr qsizetype maxSsidBytes = 32;

/// More connections at a time are in no device that measures one.
constexpr qsizetype maxConnections = 64;
/// A VPN over a VPN over a bond; more is a circle.
constexpr int maxCarriers = 4;

/// What a connection of @p type is by itself; Other for what another one carries.
Link linkOf(const QString &type)
{
    if (type.isEmpty()) {
        return Link::None;
    }
    if (type == "802-11-wireless"_L1) {
        return Link::Wlan;
    }
    // Wires, real or not, as the kernel sees them.
    static const QSet<QString> wired{u"802-3-ethernet"_s, u"infiniband"_s, u"pppoe"_s, u"bridge"_s,
                                     u"bond"_s,           u"team"_s,       u"vlan"_s,  u"macvlan"_s,
                                     u"veth"_s,           u"adsl"_s};
    if (wired.contains(type)) {
        return Link::Ethernet;
    }
    if (type == "gsm"_L1 || type == "cdma"_L1) {
        return Link::Mobile;
    }
    if (type == "bluetooth"_L1) {
        return Link::Bluetooth;
    }
    return Link::Other;
}

/// What has other connections as its ports.
bool isBundle(const QString &type)
{
    return type == "bridge"_L1 || type == "bond"_L1 || type == "team"_L1;
}

QString typeOf(const QVariantMap &connection)
{
    return BusValue::text(connection.value(u"Type"_s));
}

bool isActivated(const QVariantMap &connection)
{
    return BusValue::number(connection.value(u"State"_s), stateActivated, stateActivated)
        .has_value();
}

bool isDefault(const QVariantMap &connection)
{
    return BusValue::flag(connection.value(u"Default"_s)).value_or(false) ||
           BusValue::flag(connection.value(u"Default6"_s)).value_or(false);
}

/// In the order in which NetworkManager prefers them where several could carry the traffic.
int preference(Link link)
{
    switch (link) {
    case Link::Ethernet: return 1;
    case Link::Wlan: return 2;
    case Link::Mobile: return 3;
    case Link::Bluetooth: return 4;
    case Link::None:
    case Link::Other: break;
    }
    return 5;
}

/// Puts those of @p values that are read into @p kept; the rest may be of any size.
void keep(const QVariantMap &values, QVariantMap *kept)
{
    static const QSet<QString> names = {
        u"PrimaryConnection"_s,
        u"PrimaryConnectionType"_s,
        u"ActiveConnections"_s,
        u"Metered"_s,
        u"Connectivity"_s,
        u"State"_s,
        u"Type"_s,
        u"SpecificObject"_s,
        u"Devices"_s,
        u"Master"_s,
        u"Controller"_s,
        u"Default"_s,
        u"Default6"_s,
        u"Ssid"_s,
        u"Strength"_s,
    };
    for (auto each = values.cbegin(); each != values.cend(); ++each) {
        if (names.contains(each.key())) {
            kept->insert(each.key(), each.value());
        }
    }
}

template <typename Kind>
Kind kindOf(const QVariant &value, Kind last)
{
    return static_cast<Kind>(BusValue::number(value, 0, static_cast<qint64>(last)).value_or(0));
}

} // namespace

NetworkManagerClient::NetworkManagerClient(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , service(bus, serviceName)
    , complete(service.presence() == BusService::Presence::NoBus)
{
    connect(&service, &BusService::presenceChanged, this, &NetworkManagerClient::restart);
    connect(&service, &BusService::propertiesChanged, this, &NetworkManagerClient::takeProperties);
    connect(&retryTimer, &ClockTimer::timeout, this, [this] { read(managerPath); });
}

BusService::Presence NetworkManagerClient::presence() const
{
    // There is no manager without properties.
    const Object manager = objects.value(managerPath);
    return manager.known && manager.values.isEmpty() ? BusService::Presence::Silent
                                                     : service.presence();
}

void NetworkManagerClient::restart()
{
    retryTimer.stop();
    objects.clear();
    refresh();
    Q_EMIT changed();
}

QString NetworkManagerClient::primary() const
{
    return BusValue::path(valuesOf(managerPath).value(u"PrimaryConnection"_s));
}

/// The activated connection that fits and stands by itself, the preferred one of several; empty
/// when there is none.
QString NetworkManagerClient::best(const std::function<bool(const QVariantMap &)> &fits) const
{
    QString found;
    int foundPreference = preference(Link::Other);
    for (auto each = objects.cbegin(); each != objects.cend(); ++each) {
        const int its = preference(linkOf(typeOf(each->values)));
        if (its < foundPreference && isActivated(each->values) && fits(each->values)) {
            found = each.key();
            foundPreference = its;
        }
    }
    return found;
}

QString NetworkManagerClient::carrierOfTunnel(const QString &tunnel) const
{
    // NetworkManager says so of the VPNs that it makes itself.
    QString base = BusValue::path(valuesOf(tunnel).value(u"SpecificObject"_s));
    if (objects.value(base).interface == connectionInterface) {
        return base;
    }
    QString withRoute = best(isDefault);
    if (!withRoute.isEmpty()) {
        return withRoute;
    }
    // The tunnel itself has the default route. Bridges without one connect containers.
    return best([](const QVariantMap &values) { return !isBundle(typeOf(values)); });
}

/// The connection that the primary one's traffic goes through in the end; itself when it stands by
/// itself or nobody knows.
QString NetworkManagerClient::carrier() const
{
    QString path = primary();
    for (int carriers = 0; carriers < maxCarriers; ++carriers) {
        const QVariantMap values = valuesOf(path);
        QString below;
        if (isBundle(typeOf(values))) {
            const QStringList devices = BusValue::paths(values.value(u"Devices"_s), maxConnections);
            below = best([&](const QVariantMap &port) {
                // The name that older ones know comes second.
                const QString controller = BusValue::path(port.value(u"Controller"_s));
                return devices.contains(
                    controller.isEmpty() ? BusValue::path(port.value(u"Master"_s)) : controller);
            });
        } else if (linkOf(typeOf(values)) == Link::Other) {
            below = carrierOfTunnel(path);
        }
        if (below.isEmpty()) {
            break;
        }
        path = below;
    }
    return path;
}

QMap<QString, QString> NetworkManagerClient::wanted() const
{
    QMap<QString, QString> interfaces;
    if (service.presence() != BusService::Presence::Present) {
        return interfaces;
    }
    interfaces[managerPath] = managerInterface;
    if (primary().isEmpty()) {
        return interfaces;
    }
    interfaces[primary()] = connectionInterface;
    const QString type = typeOf(valuesOf(primary()));
    if (isBundle(type) || linkOf(type) == Link::Other) {
        for (const QString &each :
             BusValue::paths(valuesOf(managerPath).value(u"ActiveConnections"_s), maxConnections)) {
            interfaces[each] = connectionInterface;
        }
    }
    const QVariantMap below = valuesOf(carrier());
    const QString point = BusValue::path(below.value(u"SpecificObject"_s));
    if (linkOf(typeOf(below)) == Link::Wlan && !point.isEmpty()) {
        interfaces[point] = accessPointInterface;
    }
    return interfaces;
}

void NetworkManagerClient::follow()
{
    const QMap<QString, QString> interfaces = wanted();
    objects.removeIf([&](const auto &each) { return !interfaces.contains(each.key()); });
    for (auto each = interfaces.cbegin(); each != interfaces.cend(); ++each) {
        if (objects.value(each.key()).interface != each.value()) {
            objects[each.key()] = {each.value(), {}, false};
            read(each.key());
        }
    }
}

void NetworkManagerClient::read(const QString &path)
{
    service.readProperties(path, objects.value(path).interface,
                           [this, path](const QVariantMap &values) {
                               const auto object = objects.find(path);
                               if (object == objects.end()) {
                                   return;
                               }
                               object->known = true;
                               if (!values.isEmpty()) {
                                   object->values.clear();
                                   keep(values, &object->values);
                               } else if (path == managerPath) {
                                   retryTimer.start(managerRetryInterval);
                               }
                               refresh();
                           });
}

void NetworkManagerClient::takeProperties(const QString &path, const QString &interface,
                                          const QVariantMap &values, const QStringList &invalidated)
{
    const auto object = objects.find(path);
    // A change of what is not known yet is half of it.
    if (object == objects.end() || object->interface != interface || object->values.isEmpty()) {
        return;
    }
    keep(values, &object->values);
    if (!invalidated.isEmpty()) {
        read(path);
    }
    refresh();
}

NetworkManagerState NetworkManagerClient::describe() const
{
    const QVariantMap manager = valuesOf(managerPath);
    NetworkManagerState state;
    state.metered = kindOf(manager.value(u"Metered"_s), NetworkManagerState::Metered::GuessNo);
    state.connectivity =
        kindOf(manager.value(u"Connectivity"_s), NetworkManagerState::Connectivity::Full);
    state.connecting =
        BusValue::number(manager.value(u"State"_s), managerConnecting, managerConnecting)
            .has_value();
    if (primary().isEmpty()) {
        return state;
    }
    const QVariantMap connection = valuesOf(carrier());
    QString type = typeOf(connection);
    if (type.isEmpty()) {
        type = BusValue::text(manager.value(u"PrimaryConnectionType"_s));
    }
    state.link = linkOf(type);
    state.activated = isActivated(valuesOf(primary()));
    if (state.link == Link::Wlan && state.activated) {
        const QVariantMap point = valuesOf(BusValue::path(connection.value(u"SpecificObject"_s)));
        const QByteArray ssid = point.value(u"Ssid"_s).toByteArray().left(maxSsidBytes);
        state.ssid = BusValue::cleanText(QString::fromUtf8(ssid));
        state.strength = BusValue::number(point.value(u"Strength"_s), 0, 100);
    }
    return state;
}

void NetworkManagerClient::refresh()
{
    follow();
    // Half an answer looks like a lost connection: what was known holds until the rest is there.
    if (std::any_of(objects.cbegin(), objects.cend(),
                    [](const Object &each) { return !each.known; })) {
        return;
    }
    NetworkManagerState state = describe();
    if (state != shown) {
        shown = std::move(state);
        Q_EMIT changed();
    }
    if (complete || presence() == BusService::Presence::Asking) {
        return;
    }
    complete = true;
    Q_EMIT completed();
}

} // namespace velometer
