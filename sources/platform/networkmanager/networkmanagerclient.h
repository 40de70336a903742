#pragma once

#include "platform/bus/busservice.h"
#include "platform/networkmanager/networkmanagerstate.h"
#include "utils/clocktimer.h"

#include <QVariantMap>

#include <functional>

namespace velometer {

/// The primary connection as NetworkManager shows it on the system bus. A tunnel, a bridge or a
/// bond is shown as what carries it. Follows every change and a restart of the service. Main thread
/// only; nothing blocks and nothing fails: what is not known is unknown.
class NetworkManagerClient : public QObject
{
    Q_OBJECT

public:
    explicit NetworkManagerClient(const QDBusConnection &bus, QObject *parent = nullptr);

    BusService::Presence presence() const;
    /// Whether all first answers are there, or will never come. Then it stays true.
    bool isComplete() const { return complete; }
    const NetworkManagerState &state() const { return shown; }

Q_SIGNALS:
    /// state() or presence() is another than before.
    void changed();
    /// Once, when isComplete() becomes true; never when it was from the start.
    void completed();

private:
    /// An object on the way from the manager to the access point.
    struct Object
    {
        QString interface;
        QVariantMap values;
        bool known = false; ///< it has answered
    };

    void restart();
    QVariantMap valuesOf(const QString &path) const { return objects.value(path).values; }
    QString primary() const;
    QString carrier() const;
    QString carrierOfTunnel(const QString &tunnel) const;
    QString best(const std::function<bool(const QVariantMap &)> &fits) const;
    QMap<QString, QString> wanted() const;
    void follow();
    void read(const QString &path);
    void takeProperties(const QString &path, const QString &interface, const QVariantMap &values,
                        const QStringList &invalidated);
    NetworkManagerState describe() const;
    void refresh();

    BusService service;
    ClockTimer retryTimer;         ///< asks a manager again that has not answered
    QMap<QString, Object> objects; ///< by path: the manager and what is followed from it
    NetworkManagerState shown;
    bool complete = false;
};

} // namespace velometer
