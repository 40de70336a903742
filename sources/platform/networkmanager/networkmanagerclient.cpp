#include "platform/networkmanager/networkmanagerclient.h"

#include "platform/bus/busvalue.h"

#include <QSet>

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

Link linkOf(const QString &type)
{
    if (type.isEmpty()) {
        return Link::None;
    }
    if (type == "802-11-wireless"_L1) {
        return Link::Wlan;
    }
    // Wires, real or not, as the kernel sees them.
    static const QSet<QString> wired{u"802-3-ethernet"_s, u"bridge"_s,  u"bond"_s, u"team"_s,
                                     u"vlan"_s,           u"macvlan"_s, u"veth"_s};
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

/// Puts those of @p values that are read into @p kept; the rest may be of any size.
void keep(const QVariantMap &values, QVariantMap *kept)
{
    static const QSet<QString> names = {
        u"PrimaryConnection"_s,
        u"PrimaryConnectionType"_s,
        u"Metered"_s,
        u"Connectivity"_s,
        u"State"_s,
        u"Type"_s,
        u"SpecificObject"_s,
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
    connect(&retryTimer, &QTimer::timeout, this, [this] { read(&manager, managerInterface); });
    retryTimer.setSingleShot(true);
}

BusService::Presence NetworkManagerClient::presence() const
{
    // There is no manager without properties.
    const bool silent = !manager.path.isEmpty() && manager.known && manager.values.isEmpty();
    return silent ? BusService::Presence::Silent : service.presence();
}

void NetworkManagerClient::restart()
{
    retryTimer.stop();
    manager = {};
    connection = {};
    accessPoint = {};
    if (presence() == BusService::Presence::Present) {
        follow(&manager, managerPath, managerInterface);
    }
    refresh();
    Q_EMIT changed();
}

void NetworkManagerClient::follow(Object *object, const QString &path, const QString &interface)
{
    if (path == object->path) {
        return;
    }
    *object = {path, {}, path.isEmpty()};
    if (!path.isEmpty()) {
        read(object, interface);
    }
}

void NetworkManagerClient::read(Object *object, const QString &interface)
{
    service.readProperties(object->path, interface,
                           [this, object, asked = object->path](const QVariantMap &values) {
                               if (asked != object->path) {
                                   return;
                               }
                               object->known = true;
                               if (!values.isEmpty()) {
                                   object->values.clear();
                                   keep(values, &object->values);
                               } else if (object == &manager) {
                                   retryTimer.start(managerRetryInterval);
                               }
                               refresh();
                           });
}

void NetworkManagerClient::takeProperties(const QString &path, const QString &interface,
                                          const QVariantMap &values, const QStringList &invalidated)
{
    Object *object = nullptr;
    if (path == manager.path && interface == managerInterface) {
        object = &manager;
    } else if (path == connection.path && interface == connectionInterface) {
        object = &connection;
    } else if (path == accessPoint.path && interface == accessPointInterface) {
        object = &accessPoint;
    } else {
        return;
    }
    // A change of what is not known yet is half of it.
    if (object->values.isEmpty()) {
        return;
    }
    keep(values, &object->values);
    if (!invalidated.isEmpty()) {
        read(object, interface);
    }
    refresh();
}

NetworkManagerState NetworkManagerClient::describe() const
{
    NetworkManagerState state;
    state.metered =
        kindOf(manager.values.value(u"Metered"_s), NetworkManagerState::Metered::GuessNo);
    state.connectivity =
        kindOf(manager.values.value(u"Connectivity"_s), NetworkManagerState::Connectivity::Full);
    state.connecting =
        BusValue::number(manager.values.value(u"State"_s), managerConnecting, managerConnecting)
            .has_value();
    if (connection.path.isEmpty()) {
        return state;
    }
    QString type = BusValue::text(connection.values.value(u"Type"_s));
    if (type.isEmpty()) {
        type = BusValue::text(manager.values.value(u"PrimaryConnectionType"_s));
    }
    state.link = linkOf(type);
    state.activated =
        BusValue::number(connection.values.value(u"State"_s), stateActivated, stateActivated)
            .has_value();
    if (state.link == Link::Wlan && state.activated) {
        const QByteArray ssid =
            accessPoint.values.value(u"Ssid"_s).toByteArray().left(maxSsidBytes);
        state.ssid = BusValue::cleanText(QString::fromUtf8(ssid));
        state.strength = BusValue::number(accessPoint.values.value(u"Strength"_s), 0, 100);
    }
    return state;
}

void NetworkManagerClient::refresh()
{
    follow(&connection, BusValue::path(manager.values.value(u"PrimaryConnection"_s)),
           connectionInterface);
    const bool wlan = linkOf(BusValue::text(connection.values.value(u"Type"_s))) == Link::Wlan;
    follow(&accessPoint,
           wlan ? BusValue::path(connection.values.value(u"SpecificObject"_s)) : QString(),
           accessPointInterface);

    // Half an answer looks like a lost connection: what was known holds until the rest is there.
    if (!manager.known || !connection.known || !accessPoint.known) {
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
