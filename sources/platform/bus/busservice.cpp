#include "platform/bus/busservice.h"

#include "utils/clocktimer.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <chrono>
#include <limits>
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

void BusService::ask(const QDBusMessage &question, Handler handler)
{
    // Without a limit of the bus: time is that of our own clock.
    constexpr int endless = std::numeric_limits<int>::max();
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(question, endless), this);
    auto *patience = new ClockTimer(watcher);
    const auto end = [watcher, then = std::move(handler)](const QDBusMessage &reply) {
        watcher->disconnect();
        watcher->deleteLater();
        then(reply);
    };
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, patience, end] {
        patience->stop();
        end(watcher->reply());
    });
    connect(patience, &ClockTimer::timeout, watcher,
            [end] { end(QDBusMessage::createError(QDBusError::NoReply, u"no answer in time"_s)); });
    patience->start(callTimeout);
}

void BusService::askForOwner()
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"GetNameOwner"_s);
    question << service;
    ask(question, [this](const QDBusMessage &reply) {
        if (!watched) {
            setOwner(reply.type() == QDBusMessage::ReplyMessage
                         ? reply.arguments().value(0).toString()
                         : QString());
        }
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
    ask(message, [asked = owner, this, then = std::move(handler)](const QDBusMessage &reply) {
        if (asked == owner) {
            then(reply);
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
