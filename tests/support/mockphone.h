#pragma once

#include "support/mockbus.h"

/// A phone on a MockBus: a modem in a foreign LTE network, and a WLAN beside it.
class MockPhone
{
public:
    static inline const QString modemService = QStringLiteral("org.freedesktop.ModemManager1");
    static inline const QString modemPath =
        QStringLiteral("/org/freedesktop/ModemManager1/Modem/0");
    static inline const QString simPath = QStringLiteral("/org/freedesktop/ModemManager1/SIM/0");
    static inline const QString modem = modemService + QStringLiteral(".Modem");
    static inline const QString gpp = modem + QStringLiteral(".Modem3gpp");
    static inline const QString location = modem + QStringLiteral(".Location");
    static inline const QString signal = modem + QStringLiteral(".Signal");
    static inline const QString networkService = QStringLiteral("org.freedesktop.NetworkManager");
    static inline const QString networkPath = QStringLiteral("/org/freedesktop/NetworkManager");
    static inline const QString active = networkService + QStringLiteral(".Connection.Active");
    static inline const QString accessPoint = networkService + QStringLiteral(".AccessPoint");
    static inline const QString mobilePath = networkPath + QStringLiteral("/ActiveConnection/1");
    static inline const QString wlanPath = networkPath + QStringLiteral("/ActiveConnection/2");
    static inline const QString cafePath = networkPath + QStringLiteral("/AccessPoint/1");

    explicit MockPhone(MockBus &onBus)
        : bus(onBus)
    {}

    bool startModem()
    {
        return bus.startService(modemService, managers, modemService) && addModem(modemPath) &&
               bus.addObject(modemService, simPath, modemService + QStringLiteral(".Sim"),
                             {{QStringLiteral("Imsi"), QStringLiteral("228011234567890")},
                              {QStringLiteral("OperatorIdentifier"), QStringLiteral("22801")}});
    }

    bool addModem(const QString &path)
    {
        return bus.addObject(
                   modemService, path, modem,
                   {{QStringLiteral("State"), 11},
                    {QStringLiteral("Sim"), QVariant::fromValue(QDBusObjectPath(simPath))},
                    {QStringLiteral("EquipmentIdentifier"), QStringLiteral("A1")},
                    {QStringLiteral("Manufacturer"), QStringLiteral("Maker")},
                    {QStringLiteral("Model"), QStringLiteral("Modem 7")},
                    {QStringLiteral("AccessTechnologies"), 1U << 14},
                    {QStringLiteral("SignalQuality"), QVariant::fromValue(Quality{71})}}) &&
               bus.addProperties(modemService, path, gpp,
                                 {{QStringLiteral("RegistrationState"), 5U},
                                  {QStringLiteral("Imei"), QStringLiteral("356938035643809")},
                                  {QStringLiteral("OperatorCode"), QStringLiteral("310026")},
                                  {QStringLiteral("OperatorName"), QStringLiteral("Abroad")}}) &&
               bus.addProperties(modemService, path, location,
                                 {{QStringLiteral("Capabilities"), 3U},
                                  {QStringLiteral("Enabled"), 1U},
                                  {QStringLiteral("SignalsLocation"), true},
                                  {QStringLiteral("Location"),
                                   at(QStringLiteral("310,026,FFFE,002AF101,00F1E2"))}}) &&
               bus.addProperties(
                   modemService, path, signal,
                   {{QStringLiteral("Rate"), 5U},
                    {QStringLiteral("Lte"), QVariantMap{{QStringLiteral("rsrp"), -97.0},
                                                        {QStringLiteral("rsrq"), -11.5},
                                                        {QStringLiteral("snr"), 8.0}}}});
    }

    bool removeModem()
    {
        return bus.mock(modemService, managers, QStringLiteral("RemoveObject"), {modemPath}) &&
               announce();
    }
    /// Says that modems have come or gone.
    bool announce()
    {
        return bus.mock(modemService, managers, QStringLiteral("EmitSignal"),
                        {QStringLiteral("org.freedesktop.DBus.ObjectManager"),
                         QStringLiteral("InterfacesRemoved"), QStringLiteral("oas"),
                         QVariantList{pathValue(modemPath), QStringList{modem}}});
    }

    bool startNetwork()
    {
        return bus.startService(networkService, networkPath, networkService) &&
               bus.addProperties(networkService, networkPath, networkService,
                                 {{QStringLiteral("PrimaryConnection"), pathValue(mobilePath)},
                                  {QStringLiteral("PrimaryConnectionType"), QStringLiteral("gsm")},
                                  {QStringLiteral("State"), 70U},
                                  {QStringLiteral("Metered"), 3U},
                                  {QStringLiteral("Connectivity"), 4U}}) &&
               addConnection(mobilePath, QStringLiteral("gsm"), QStringLiteral("/")) &&
               addConnection(wlanPath, QStringLiteral("802-11-wireless"), cafePath) &&
               bus.addObject(networkService, cafePath, accessPoint,
                             {{QStringLiteral("Ssid"), QByteArray("Caf\xc3\xa9\n")},
                              {QStringLiteral("Strength"), QVariant::fromValue(uchar{64})}});
    }

    /// Traffic leaves by @p connection; "/" is none.
    bool leaveBy(const QString &connection)
    {
        return bus.set(networkService, networkPath, networkService,
                       QStringLiteral("PrimaryConnection"), pathValue(connection));
    }
    bool set(const QString &interface, const QString &name, const QVariant &value)
    {
        return bus.set(modemService, modemPath, interface, name, value);
    }
    static QVariant at(const QString &cell)
    {
        return QVariant::fromValue(LocationMap{{1U, QDBusVariant(cell)}});
    }

private:
    static inline const QString managers = QStringLiteral("/org/freedesktop/ModemManager1");

    static QVariant pathValue(const QString &path)
    {
        return QVariant::fromValue(QDBusObjectPath(path));
    }
    bool addConnection(const QString &path, const QString &type, const QString &specific)
    {
        return bus.addObject(networkService, path, active,
                             {{QStringLiteral("State"), 2U},
                              {QStringLiteral("Type"), type},
                              {QStringLiteral("SpecificObject"), pathValue(specific)}});
    }

    MockBus &bus;
};
