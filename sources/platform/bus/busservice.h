#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace velometer {

/// One well-known service on a message bus: whether it is there, its answers and its signals. All
/// calls are asynchronous and answered within two seconds, else failed. Answers and signals of an
/// owner that has gone are dropped, and so is what other programs send in the service's name.
/// Main thread only.
class BusService : public QObject
{
    Q_OBJECT

public:
    /// The more of a service there is, the higher.
    enum class Presence {
        Asking, ///< the bus has not said yet
        NoBus,
        Absent,
        Silent, ///< it is there and does not answer; for clients, the service never says it itself
        Present,
    };

    /// Gets the answer, or an error message.
    using Handler = std::function<void(const QDBusMessage &reply)>;
    using MapHandler = std::function<void(const QVariantMap &values)>;

    /// @p ownInterfaces hand out their properties themselves, with GetProperties and
    /// PropertyChanged, rather than through the standard interface for properties.
    BusService(const QDBusConnection &messageBus, const QString &serviceName,
               const QStringList &ownInterfaces = {}, QObject *parent = nullptr);

    Presence presence() const { return present; }

    /// Calls @p handler once, never before this returns, unless the service goes away first. Does
    /// nothing while the service is not there.
    void call(const QString &path, const QString &interface, const QString &method,
              const QVariantList &arguments, Handler handler);
    /// Calls without waiting for an answer; for farewells.
    void tell(const QString &path, const QString &interface, const QString &method,
              const QVariantList &arguments);
    /// Like call(), for a method that answers with a dictionary a{sv}; gets an empty one when the
    /// object answers with anything else.
    void callForMap(const QString &path, const QString &interface, const QString &method,
                    const QVariantList &arguments, MapHandler handler);
    /// All properties of one interface; an empty map when the object does not answer with any.
    void readProperties(const QString &path, const QString &interface, MapHandler handler);

    /// Hands signals of any object of the service on through received().
    void listen(const QString &interface, const QString &signalName);

Q_SIGNALS:
    /// Whenever the service appears, vanishes, or is there under a new owner; once at first.
    void presenceChanged();
    void propertiesChanged(const QString &path, const QString &interface, const QVariantMap &values,
                           const QStringList &invalidated);
    void received(const QDBusMessage &message);

private Q_SLOTS:
    void handleSignal(const QDBusMessage &message);

private:
    void ask(const QDBusMessage &question, Handler handler);
    void askForOwner();
    void setOwner(const QString &newOwner);

    QDBusConnection bus;
    const QString service;
    const QStringList own; ///< interfaces that hand out their properties themselves
    QString owner;         ///< unique name; empty while the service is not there
    Presence present = Presence::Asking;
    bool watched = false; ///< the bus told of the owner before it was asked
};

} // namespace velometer
