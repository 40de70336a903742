#pragma once

#include "support/mockbus.h"

namespace velometer {

/// oFono on a MockBus, without modems at first. A modem that is added stands in a foreign LTE
/// network.
class MockOfono
{
public:
    static inline const QString service = QStringLiteral("org.ofono");
    static inline const QString manager = service + QStringLiteral(".Manager");
    static inline const QString modem = service + QStringLiteral(".Modem");
    static inline const QString sim = service + QStringLiteral(".SimManager");
    static inline const QString net = service + QStringLiteral(".NetworkRegistration");
    static inline const QString monitor = service + QStringLiteral(".NetworkMonitor");
    static inline const QString root = QStringLiteral("/");
    static inline const QString path = QStringLiteral("/ril_0");

    explicit MockOfono(MockBus &onBus)
        : bus(onBus)
    {}

    bool start()
    {
        using namespace Qt::StringLiterals;
        // The list that python3-dbusmock brings along breaks when a modem is removed.
        return bus.startMock(service, {u"--template"_s, u"ofono"_s, u"--parameters"_s,
                                       u"{\"no_modem\": true}"_s}) &&
               list(u"[(m, objects[m].GetAll('org.ofono.Modem')) for m in self.modems "
                    "if m in objects]"_s);
    }
    /// What the service answers when asked for its modems, in Python.
    bool list(const QString &modems, const QString &signature = QStringLiteral("a(oa{sv})"))
    {
        return bus.addMethod(service, root, manager, QStringLiteral("GetModems"), "", signature,
                             QStringLiteral("ret = ") + modems);
    }
    /// As python3-dbusmock makes one: registered with GSM.
    bool addPlainModem() { return bus.mock(service, root, "AddModem", path.mid(1), QVariantMap()); }
    bool addModem()
    {
        const auto all = [&](const QString &interface, const QVariantMap &values) {
            bool done = true;
            for (auto each = values.cbegin(); each != values.cend(); ++each) {
                done = done && set(interface, each.key(), each.value());
            }
            return done;
        };
        return addPlainModem() && all(modem, properties("Serial", "356938035643809")) &&
               all(sim, properties("MobileCountryCode", "228", "MobileNetworkCode", "01",
                                   "SubscriberIdentity", "228011234567890")) &&
               all(net,
                   properties("Technology", "lte", "CellId", 0x2af101U, "LocationAreaCode",
                              ushort{0x12ab}, "MobileCountryCode", "310", "MobileNetworkCode",
                              "026", "Name", "Abroad", "Strength", uchar{71}, "Status", "roaming"));
    }
    bool removeModem()
    {
        return bus.mock(service, root, "RemoveObject", path) &&
               bus.mock(service, root, "RemoveObject", path + QStringLiteral("/operator/op1")) &&
               bus.mock(service, root, "EmitSignal", manager, "ModemRemoved", "o",
                        QVariantList{asVariant(QDBusObjectPath(path))});
    }
    bool set(const QString &interface, const QString &name, const QVariant &value)
    {
        return bus.tell(service, path, interface, "SetProperty", name, QDBusVariant(value));
    }
    /// What an interface of the modem answers when asked, in Python.
    bool answer(const QString &interface, const QString &method, const QString &values)
    {
        return bus.addMethod(
            service, path, interface, method, "", QStringLiteral("a{sv}"),
            QStringLiteral("ret = dbus.Dictionary({%1}, signature='sv')").arg(values));
    }

private:
    MockBus &bus;
};

} // namespace velometer
