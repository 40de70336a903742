#pragma once

#include "support/mockbus.h"

namespace velometer {

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
        using namespace Qt::StringLiterals;
        const QString managerPath = u"/org/freedesktop/GeoClue2/Manager"_s;
        const QString manager = service + u".Manager"_s;
        return bus.startService(service, u"/org/freedesktop/GeoClue2"_s, service) &&
               bus.addObject(service, managerPath, manager,
                             properties("AvailableAccuracyLevel", 8U)) &&
               bus.addObject(service, clientPath, client,
                             properties("DesktopId", "", "TimeThreshold", 0U,
                                        "RequestedAccuracyLevel", 0U)) &&
               bus.addMethod(service, managerPath, manager, u"GetClient"_s, "", u"o"_s,
                             u"ret = dbus.ObjectPath('%1')"_s.arg(clientPath)) &&
               bus.addMethod(service, clientPath, client, u"Start"_s, "", QString(),
                             u"raise dbus.exceptions.DBusException('Not allowed', "
                             "name='org.freedesktop.DBus.Error.AccessDenied')"_s);
    }

    void freeze() { bus.freezeService(service); }

    /// For which program the position was asked.
    QString desktopId() const
    {
        using namespace Qt::StringLiterals;
        const auto reply = bus.call(service, clientPath, u"org.freedesktop.DBus.Properties"_s,
                                    u"Get"_s, {client, u"DesktopId"_s});
        return qvariant_cast<QDBusVariant>(reply.arguments().value(0)).variant().toString();
    }

private:
    static inline const QString service = QStringLiteral("org.freedesktop.GeoClue2");
    static inline const QString clientPath = QStringLiteral("/org/freedesktop/GeoClue2/Client/1");
    static inline const QString client = service + QStringLiteral(".Client");

    MockBus &bus;
};

} // namespace velometer
