#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QProcess>
#include <QVariantMap>

#include <csignal>
#include <map>
#include <memory>
#include <type_traits>

namespace velometer {

using LocationMap = QMap<uint, QDBusVariant>;

/// What a mocked object holds or is told; a literal is a text.
template <typename Value>
QVariant asVariant(const Value &value)
{
    if constexpr (std::is_array_v<Value> || std::is_pointer_v<Value>) {
        return QString::fromLatin1(value);
    } else {
        return QVariant::fromValue(value);
    }
}

/// Names and values by turns.
template <typename... Values>
QVariantMap properties(const Values &...values)
{
    const QVariantList all{asVariant(values)...};
    QVariantMap map;
    for (qsizetype i = 0; i < all.size(); i += 2) {
        map.insert(all[i].toString(), all[i + 1]);
    }
    return map;
}

/// A message bus of our own with services that have the properties the test gives them
/// (python3-dbusmock). start() is false where the tools are missing.
class MockBus
{
public:
    ~MockBus()
    {
        services.clear();
        if (!address.isEmpty()) {
            QDBusConnection::disconnectFromBus(name());
        }
        stop(daemon);
    }

    bool start()
    {
        using namespace Qt::StringLiterals;
        qDBusRegisterMetaType<LocationMap>();
        daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
        if (!daemon.waitForReadyRead(limitMs)) {
            return false;
        }
        address = QString::fromUtf8(daemon.readLine()).trimmed();
        return connection().isConnected();
    }

    QString busAddress() const { return address; }
    QDBusConnection connection() const { return QDBusConnection::connectToBus(address, name()); }

    /// Starts @p service with one object and waits until it has its name.
    bool startService(const QString &service, const QString &path, const QString &interface)
    {
        return startMock(service, {QStringLiteral("-m"), service, path, interface});
    }
    /// Starts a service with these arguments of python3-dbusmock.
    bool startMock(const QString &service, const QStringList &arguments)
    {
        using namespace Qt::StringLiterals;
        auto process = std::make_unique<Service>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
        process->setProcessEnvironment(environment);
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->setStandardOutputFile(QProcess::nullDevice());
        // The interpreter that the package belongs to; another one may come first in the path.
        process->start(u"/usr/bin/python3"_s,
                       QStringList{u"-m"_s, u"dbusmock"_s, u"--session"_s} + arguments);
        services[service] = std::move(process);
        const QString daemonName = u"org.freedesktop.DBus"_s;
        for (int tries = 0; tries < limitMs / pauseMs; ++tries) {
            const QDBusMessage owned = call(daemonName, u"/org/freedesktop/DBus"_s, daemonName,
                                            u"NameHasOwner"_s, {service});
            if (owned.arguments().value(0).toBool()) {
                return true;
            }
            if (services[service]->waitForFinished(pauseMs)) {
                return false;
            }
        }
        return false;
    }
    void stopService(const QString &service) { services.erase(service); }
    /// It keeps its name and says nothing any more.
    void freezeService(const QString &service)
    {
        ::kill(static_cast<pid_t>(services[service]->processId()), SIGSTOP);
    }
    void thawService(const QString &service)
    {
        ::kill(static_cast<pid_t>(services[service]->processId()), SIGCONT);
    }

    bool addObject(const QString &service, const QString &path, const QString &interface,
                   const QVariantMap &values)
    {
        const QString root = u'/' + QString(service).replace(u'.', u'/');
        return mock(service, root, "AddObject", path, interface, values, QStringList());
    }
    bool addMethod(const QString &service, const QString &path, const QString &interface,
                   const QString &method, const char *in, const QString &out, const QString &python)
    {
        return mock(service, path, "AddMethod", interface, method, in, out, python);
    }
    /// Changes what is there and signals it.
    bool set(const QString &service, const QString &path, const QString &interface,
             const QString &property, const QVariant &value)
    {
        return tell(service, path, QStringLiteral("org.freedesktop.DBus.Properties"), "Set",
                    interface, property, QDBusVariant(value));
    }
    /// Tells a mocked object what to be.
    template <typename... Arguments>
    bool mock(const QString &service, const QString &path, const char *method,
              const Arguments &...arguments)
    {
        return tell(service, path, QStringLiteral("org.freedesktop.DBus.Mock"), method,
                    arguments...);
    }
    template <typename... Arguments>
    bool tell(const QString &service, const QString &path, const QString &interface,
              const char *method, const Arguments &...arguments)
    {
        const QDBusMessage reply =
            call(service, path, interface, QString::fromLatin1(method), {asVariant(arguments)...});
        if (reply.type() == QDBusMessage::ReplyMessage) {
            return true;
        }
        qWarning("%s", qPrintable(reply.errorMessage()));
        return false;
    }
    QDBusMessage call(const QString &service, const QString &path, const QString &interface,
                      const QString &method, const QVariantList &arguments) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return connection().call(message);
    }

private:
    static constexpr int limitMs = 20'000;
    static constexpr int pauseMs = 20;

    struct Service : QProcess
    {
        ~Service() override { stop(*this); }
    };
    static void stop(QProcess &process)
    {
        process.kill();
        process.waitForFinished(limitMs);
    }
    static QString name() { return QStringLiteral("mock"); }

    QProcess daemon;
    QString address;
    std::map<QString, std::unique_ptr<Service>> services;
};

} // namespace velometer
