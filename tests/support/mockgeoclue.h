#pragma once

#include "support/mockbus.h"

/// A location service on a MockBus that refuses to tell the position, as one does whose user or
/// agent has not allowed it.
class MockGeoClue
{
public:
    explicit MockGeoClue(MockBus &onBus)
        : bus(onBus)
    {}

    bool start()
    {
        return bus.startService(service, QStringLiteral("/org/freedesktop/GeoClue2"), service) &&
               bus.addObject(service, managerPath, manager,
                             {{QStringLiteral("AvailableAccuracyLevel"), 8U}}) &&
               bus.addObject(service, clientPath, client,
                             {{QStringLiteral("DesktopId"), QString()},
                              {QStringLiteral("TimeThreshold"), 0U},
                              {QStringLiteral("RequestedAccuracyLevel"), 0U}}) &&
               bus.addMethod(service, managerPath, manager,
                             {QStringLiteral("GetClient"), QString(), QStringLiteral("o"),
                              QStringLiteral("ret = dbus.ObjectPath('%1')").arg(clientPath)}) &&
               bus.addMethod(service, clientPath, client,
                             {QStringLiteral("Start"), QString(), QString(),
                              QStringLiteral("raise dbus.exceptions.DBusException('Not allowed', "
                                             "name='org.freedesktop.DBus.Error.AccessDenied')")});
    }

    void freeze() { bus.freezeService(service); }

    /// For which program the position was asked.
    QString desktopId() const
    {
        return bus.get(service, clientPath, client, QStringLiteral("DesktopId")).toString();
    }

private:
    static inline const QString service = QStringLiteral("org.freedesktop.GeoClue2");
    static inline const QString managerPath = QStringLiteral("/org/freedesktop/GeoClue2/Manager");
    static inline const QString clientPath = QStringLiteral("/org/freedesktop/GeoClue2/Client/1");
    static inline const QString manager = service + QStringLiteral(".Manager");
    static inline const QString client = service + QStringLiteral(".Client");

    MockBus &bus;
};
