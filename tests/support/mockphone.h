#pragma once

#include "support/mockbus.h"

namespace velometer {

/// A phone on a MockBus: a modem in a foreign LTE network, and a WLAN beside it.
class MockPhone
{
public:
    static inline const QString modemService = QStringLiteral("org.freedesktop.ModemManager1");
    static inline const QString managers = QStringLiteral("/org/freedesktop/ModemManager1");
    static inline const QString modemPath = managers + QStringLiteral("/Modem/0");
    static inline const QString modem = modemService + QStringLiteral(".Modem");
    static inline const QString gpp = modem + QStringLiteral(".Modem3gpp");
    static inline const QString location = modem + QStringLiteral(".Location");
    static inline const QString signal = modem + QStringLiteral(".Signal");
    static inline const QString networkService = QStringLiteral("org.freedesktop.NetworkManager");
    static inline const QString networkPath = QStringLiteral("/org/freedesktop/NetworkManager");
    static inline const QString mobilePath = networkPath + QStringLiteral("/ActiveConnection/1");
    static inline const QString wlanPath = networkPath + QStringLiteral("/ActiveConnection/2");
    static inline const QString upperPath = networkPath + QStringLiteral("/ActiveConnection/3");
    /// Of the connection that leaveByUpper() makes.
    static inline const QDBusObjectPath device{networkPath + QStringLiteral("/Devices/3")};

    explicit MockPhone(MockBus &onBus)
        : bus(onBus)
    {}

    bool startModem()
    {
        return bus.startService(modemService, managers, modemService) && addModem(modemPath) &&
               bus.addObject(modemService, simPath, modemService + QStringLiteral(".Sim"),
                             properties("Imsi", "228011234567890", "OperatorIdentifier", "22801"));
    }

    bool addModem(const QString &path)
    {
        const auto add = [&](const QString &interface, const QVariantMap &values) {
            return bus.mock(modemService, path, "AddProperties", interface, values);
        };
        return bus.addObject(modemService, path, modem,
                             properties("State", 11, "Sim", QDBusObjectPath(simPath),
                                        "EquipmentIdentifier", "A1", "Manufacturer", "Maker",
                                        "Model", "Modem 7", "AccessTechnologies", 1U << 14,
                                        "SignalQuality", quality(71), "CurrentBands",
                                        QVariant::fromValue(QList<uint>{50}))) &&
               add(gpp, properties("RegistrationState", 5U, "Imei", "356938035643809",
                                   "OperatorCode", "310026", "OperatorName", "Abroad")) &&
               add(location,
                   properties("Capabilities", 3U, "Enabled", 1U, "SignalsLocation", true,
                              "Location", at(QStringLiteral("310,026,FFFE,002AF101,00F1E2")))) &&
               add(signal, properties("Rate", 5U, "Lte",
                                      properties("rsrp", -97.0, "rsrq", -11.5, "snr", 8.0)));
    }

    bool removeModem()
    {
        return bus.mock(modemService, managers, "RemoveObject", modemPath) && announce();
    }
    /// Says that modems have come or gone.
    bool announce()
    {
        return bus.mock(modemService, managers, "EmitSignal", "org.freedesktop.DBus.ObjectManager",
                        "InterfacesRemoved", "oas",
                        QVariantList{asVariant(QDBusObjectPath(modemPath)), QStringList{modem}});
    }

    bool startNetwork()
    {
        const QString cafe = networkPath + QStringLiteral("/AccessPoint/1");
        const auto connect = [&](const QString &path, const char *type, const QString &point) {
            return bus.addObject(
                networkService, path, networkService + QStringLiteral(".Connection.Active"),
                properties("State", 2U, "Type", type, "SpecificObject", QDBusObjectPath(point),
                           "Default", false, "Controller", QDBusObjectPath("/")));
        };
        return bus.startService(networkService, networkPath, networkService) &&
               bus.mock(networkService, networkPath, "AddProperties", networkService,
                        properties("PrimaryConnection", QDBusObjectPath(mobilePath),
                                   "PrimaryConnectionType", "gsm", "State", 70U, "Metered", 3U,
                                   "Connectivity", 4U, "ActiveConnections",
                                   QList{QDBusObjectPath(mobilePath), QDBusObjectPath(wlanPath),
                                         QDBusObjectPath(upperPath)})) &&
               connect(mobilePath, "gsm", QStringLiteral("/")) &&
               connect(wlanPath, "802-11-wireless", cafe) &&
               bus.addObject(
                   networkService, cafe, networkService + QStringLiteral(".AccessPoint"),
                   properties("Ssid", QByteArray("Caf\xc3\xa9\n"), "Strength", uchar{64}));
    }

    /// Traffic leaves by a connection of @p type over what there is; @p below is what
    /// NetworkManager names as that.
    bool leaveByUpper(const char *type, const QString &below)
    {
        return bus.addObject(networkService, upperPath,
                             networkService + QStringLiteral(".Connection.Active"),
                             properties("State", 2U, "Type", type, "SpecificObject",
                                        QDBusObjectPath(below), "Devices", QList{device})) &&
               leaveBy(upperPath);
    }
    bool setConnection(const QString &path, const QString &name, const QVariant &value)
    {
        return bus.set(networkService, path, networkService + QStringLiteral(".Connection.Active"),
                       name, value);
    }
    /// Traffic leaves by @p connection; "/" is none.
    bool leaveBy(const QString &connection)
    {
        return bus.set(networkService, networkPath, networkService,
                       QStringLiteral("PrimaryConnection"), asVariant(QDBusObjectPath(connection)));
    }
    bool set(const QString &interface, const QString &name, const QVariant &value)
    {
        return bus.set(modemService, modemPath, interface, name, value);
    }
    static QVariant at(const QString &fields)
    {
        return asVariant(LocationMap{{1U, QDBusVariant(fields)}});
    }
    /// A pair (ub), as modems tell their signal.
    static QVariant quality(uint percent)
    {
        QDBusArgument pair;
        pair.beginStructure();
        pair << percent << true;
        pair.endStructure();
        return asVariant(pair);
    }

private:
    static inline const QString simPath = managers + QStringLiteral("/SIM/0");

    MockBus &bus;
};

} // namespace velometer
