#pragma once

#include "support/mockbus.h"

#include <initializer_list>
#include <tuple>

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
    static inline const QString packet = service + QStringLiteral(".ConnectionManager");
    static inline const QString monitor = service + QStringLiteral(".NetworkMonitor");
    static inline const QString root = QStringLiteral("/");
    static inline const QString path = QStringLiteral("/ril_0");

    explicit MockOfono(MockBus &onBus)
        : bus(onBus)
    {}

    bool start()
    {
        // The list that python3-dbusmock brings along breaks when a modem is removed.
        return bus.startKnown(service, QStringLiteral("ofono"),
                              QStringLiteral("{\"no_modem\": true}")) &&
               list(QStringLiteral("[(m, objects[m].GetAll('org.ofono.Modem')) for m in "
                                   "self.modems if m in objects]"));
    }
    /// What the service answers when asked for its modems, in Python.
    bool list(const QString &modems, const QString &signature = QStringLiteral("a(oa{sv})"))
    {
        return bus.addMethod(
            service, root, manager,
            {QStringLiteral("GetModems"), QString(), signature, QStringLiteral("ret = ") + modems});
    }
    /// As python3-dbusmock makes one: registered with GSM.
    bool addPlainModem(const QString &at = path)
    {
        return bus.mock(service, root, QStringLiteral("AddModem"), {at.mid(1), QVariantMap()});
    }
    bool addModem(const QString &at = path)
    {
        using namespace Qt::StringLiterals;
        bool done = addPlainModem(at);
        for (const auto &[interface, name, value] :
             std::initializer_list<std::tuple<QString, QString, QVariant>>{
                 {modem, u"Serial"_s, u"356938035643809"_s},
                 {sim, u"MobileCountryCode"_s, u"228"_s},
                 {sim, u"MobileNetworkCode"_s, u"01"_s},
                 {sim, u"SubscriberIdentity"_s, u"228011234567890"_s},
                 {net, u"Technology"_s, u"lte"_s},
                 {net, u"CellId"_s, 0x2af101U},
                 {net, u"LocationAreaCode"_s, QVariant::fromValue(ushort{0x12ab})},
                 {net, u"MobileCountryCode"_s, u"310"_s},
                 {net, u"MobileNetworkCode"_s, u"026"_s},
                 {net, u"Name"_s, u"Abroad"_s},
                 {net, u"Strength"_s, QVariant::fromValue(uchar{71})},
                 {net, u"Status"_s, u"roaming"_s}})
            done = done && set(interface, name, value, at);
        return done;
    }
    bool removeModem()
    {
        return bus.mock(service, root, QStringLiteral("RemoveObject"), {path}) &&
               bus.mock(service, root, QStringLiteral("RemoveObject"),
                        {path + QStringLiteral("/operator/op1")}) &&
               bus.mock(service, root, QStringLiteral("EmitSignal"),
                        {manager, QStringLiteral("ModemRemoved"), QStringLiteral("o"),
                         QVariantList{QVariant::fromValue(QDBusObjectPath(path))}});
    }
    bool set(const QString &interface, const QString &name, const QVariant &value,
             const QString &at = path)
    {
        return bus.tell(service, at, interface, QStringLiteral("SetProperty"),
                        {name, QVariant::fromValue(QDBusVariant(value))});
    }
    /// What an interface of the modem answers when asked, in Python.
    bool answer(const QString &interface, const QString &method, const QString &values)
    {
        return bus.addMethod(
            service, path, interface,
            {method, QString(), QStringLiteral("a{sv}"),
             QStringLiteral("ret = dbus.Dictionary({%1}, signature='sv')").arg(values)});
    }

private:
    MockBus &bus;
};
