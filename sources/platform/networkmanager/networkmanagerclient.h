#pragma once

#include "platform/bus/busservice.h"
#include "platform/networkmanager/networkmanagerstate.h"

#include <QTimer>
#include <QVariantMap>

namespace velometer {

/// The primary connection as NetworkManager shows it on the system bus. Follows every change and a
/// restart of the service. Main thread only; nothing blocks and nothing fails: what is not known is
/// unknown.
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
        QString path; ///< empty: there is none
        QVariantMap values;
        bool known = true; ///< it has answered, or there is none
    };

    void restart();
    void follow(Object *object, const QString &path, const QString &interface);
    void read(Object *object, const QString &interface);
    void takeProperties(const QString &path, const QString &interface, const QVariantMap &values,
                        const QStringList &invalidated);
    NetworkManagerState describe() const;
    void refresh();

    BusService service;
    QTimer retryTimer; ///< asks a manager again that has not answered
    Object manager;
    Object connection;
    Object accessPoint;
    NetworkManagerState shown;
    bool complete = false;
};

} // namespace velometer
