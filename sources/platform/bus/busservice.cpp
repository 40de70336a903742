#include "platform/bus/busservice.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// Services answer within milliseconds; one that does not is as good as absent.
constexpr std::chrono::milliseconds callTimeout = 2s;

const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;
const QString ownChange = u"PropertyChanged"_s;

} // namespace

BusService::BusService(const QDBusConnection &messageBus, const QString &serviceName,
                       const QStringList &ownInterfaces, QObject *parent)
    : QObject(parent)
    , bus(messageBus)
    , service(serviceName)
    , own(ownInterfaces)
{
    if (!bus.isConnected()) {
        present = Presence::NoBus;
        return;
    }
    auto *watcher =
        new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) {
                watched = true;
                setOwner(newOwner);
            });
    listen(propertiesInterface, u"PropertiesChanged"_s);
    for (const QString &each : own) {
        listen(each, ownChange);
    }
    askForOwner();
}

void BusService::askForOwner()
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"GetNameOwner"_s);
    question << service;
    auto *watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(question, int(callTimeout.count())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *call) {
                call->deleteLater();
                if (watched) {
                    return;
                }
                const QDBusMessage reply = call->reply();
                setOwner(reply.type() == QDBusMessage::ReplyMessage
                             ? reply.arguments().value(0).toString()
                             : QString());
            });
}

void BusService::setOwner(const QString &newOwner)
{
    owner = newOwner;
    present = owner.isEmpty() ? Presence::Absent : Presence::Present;
    Q_EMIT presenceChanged();
}

void BusService::call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments, Handler handler)
{
    if (present != Presence::Present) {
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(owner, path, interface, method);
    message.setArguments(arguments);
    // A call must not start a service that the administrator has stopped.
    message.setAutoStartService(false);
    auto *watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(message, int(callTimeout.count())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, asked = owner, then = std::move(handler)](QDBusPendingCallWatcher *pending) {
                pending->deleteLater();
                if (asked == owner) {
                    then(pending->reply());
                }
            });
}

void BusService::tell(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments)
{
    if (present != Presence::Present) {
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(owner, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    bus.send(message);
}

void BusService::callForMap(const QString &path, const QString &interface, const QString &method,
                            const QVariantList &arguments, MapHandler handler)
{
    call(path, interface, method, arguments,
         [then = std::move(handler)](const QDBusMessage &reply) {
             QVariantMap values;
             // The signature first: taking apart what does not match it is undefined.
             if (reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "a{sv}"_L1) {
                 values = qdbus_cast<QVariantMap>(reply.arguments().constFirst());
             }
             then(values);
         });
}

void BusService::readProperties(const QString &path, const QString &interface, MapHandler handler)
{
    if (own.contains(interface)) {
        callForMap(path, interface, u"GetProperties"_s, {}, std::move(handler));
    } else {
        callForMap(path, propertiesInterface, u"GetAll"_s, {interface}, std::move(handler));
    }
}

void BusService::listen(const QString &interface, const QString &signalName)
{
    // No service name: with one, Qt would ask the bus for its owner and wait for the answer.
    bus.connect(QString(), QString(), interface, signalName, this,
                SLOT(handleSignal(QDBusMessage)));
}

void BusService::handleSignal(const QDBusMessage &message)
{
    if (owner.isEmpty() || message.service() != owner) {
        return;
    }
    const QVariantList arguments = message.arguments();
    if (message.interface() == propertiesInterface) {
        if (message.signature() == "sa{sv}as"_L1 && !own.contains(arguments.at(0).toString())) {
            Q_EMIT propertiesChanged(message.path(), arguments.at(0).toString(),
                                     qdbus_cast<QVariantMap>(arguments.at(1)),
                                     qdbus_cast<QStringList>(arguments.at(2)));
        }
    } else if (message.member() == ownChange && own.contains(message.interface())) {
        if (message.signature() == "sv"_L1) {
            Q_EMIT propertiesChanged(
                message.path(), message.interface(),
                {{arguments.at(0).toString(), arguments.at(1).value<QDBusVariant>().variant()}},
                {});
        }
    } else {
        Q_EMIT received(message);
    }
}

} // namespace velometer
