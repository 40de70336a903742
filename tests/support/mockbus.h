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

/// A pair (ub), as modems tell their signal.
struct Quality
{
    uint percent = 0;
    bool recent = true;
};
inline QDBusArgument &operator<<(QDBusArgument &to, const Quality &value)
{
    to.beginStructure();
    to << value.percent << value.recent;
    to.endStructure();
    return to;
}
inline const QDBusArgument &operator>>(const QDBusArgument &from, Quality &value)
{
    from.beginStructure();
    from >> value.percent >> value.recent;
    from.endStructure();
    return from;
}
Q_DECLARE_METATYPE(Quality)

/// The methods of a mocked object, a(ssss).
struct MockMethod
{
    QString name, in, out, code;
};
inline QDBusArgument &operator<<(QDBusArgument &to, const MockMethod &value)
{
    to.beginStructure();
    to << value.name << value.in << value.out << value.code;
    to.endStructure();
    return to;
}
inline const QDBusArgument &operator>>(const QDBusArgument &from, MockMethod &value)
{
    from.beginStructure();
    from >> value.name >> value.in >> value.out >> value.code;
    from.endStructure();
    return from;
}
Q_DECLARE_METATYPE(MockMethod)

using LocationMap = QMap<uint, QDBusVariant>;

/// A message bus of our own with services that have the properties the test gives them
/// (python3-dbusmock). start() is false where the tools are missing.
class MockBus
{
public:
    ~MockBus()
    {
        services.clear();
        if (!address.isEmpty())
            QDBusConnection::disconnectFromBus(name());
        stop(daemon);
    }

    bool start()
    {
        qDBusRegisterMetaType<Quality>();
        qDBusRegisterMetaType<LocationMap>();
        qDBusRegisterMetaType<MockMethod>();
        qDBusRegisterMetaType<QList<MockMethod>>();
        daemon.start(QStringLiteral("dbus-daemon"),
                     {QStringLiteral("--session"), QStringLiteral("--nofork"),
                      QStringLiteral("--print-address")});
        if (!daemon.waitForReadyRead(limitMs))
            return false;
        address = QString::fromUtf8(daemon.readLine()).trimmed();
        return connection().isConnected();
    }

    QString busAddress() const { return address; }
    QDBusConnection connection() const { return QDBusConnection::connectToBus(address, name()); }

    /// Starts @p service with one object and waits until it has its name.
    bool startService(const QString &service, const QString &path, const QString &interface)
    {
        return start(service, {QStringLiteral("-m"), service, path, interface});
    }
    /// Starts @p service as python3-dbusmock knows it by the name @p known.
    bool startKnown(const QString &service, const QString &known, const QString &parameters)
    {
        return start(service, {QStringLiteral("--template"), known, QStringLiteral("--parameters"),
                               parameters});
    }
    void stopService(const QString &service) { services.erase(service); }
    /// It keeps its name and says nothing any more.
    void freezeService(const QString &service)
    {
        ::kill(static_cast<pid_t>(services[service]->processId()), SIGSTOP);
    }

    bool addObject(const QString &service, const QString &path, const QString &interface,
                   const QVariantMap &properties)
    {
        return mock(service, root(service), QStringLiteral("AddObject"),
                    {path, interface, properties, QVariant::fromValue(QList<MockMethod>())});
    }
    bool addProperties(const QString &service, const QString &path, const QString &interface,
                       const QVariantMap &properties)
    {
        return mock(service, path, QStringLiteral("AddProperties"), {interface, properties});
    }
    /// Changes what is there and signals it.
    bool set(const QString &service, const QString &path, const QString &interface,
             const QString &property, const QVariant &value)
    {
        return succeeded(call(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                              QStringLiteral("Set"),
                              {interface, property, QVariant::fromValue(QDBusVariant(value))}));
    }
    QVariant get(const QString &service, const QString &path, const QString &interface,
                 const QString &property) const
    {
        const QDBusMessage reply =
            call(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                 QStringLiteral("Get"), {interface, property});
        return qvariant_cast<QDBusVariant>(reply.arguments().value(0)).variant();
    }
    bool addMethod(const QString &service, const QString &path, const QString &interface,
                   const MockMethod &method)
    {
        return mock(service, path, QStringLiteral("AddMethod"),
                    {interface, method.name, method.in, method.out, method.code});
    }
    bool mock(const QString &service, const QString &path, const QString &method,
              const QVariantList &arguments)
    {
        return tell(service, path, QStringLiteral("org.freedesktop.DBus.Mock"), method, arguments);
    }
    bool tell(const QString &service, const QString &path, const QString &interface,
              const QString &method, const QVariantList &arguments)
    {
        return succeeded(call(service, path, interface, method, arguments));
    }

private:
    static constexpr int limitMs = 20'000;
    static constexpr int pauseMs = 20;

    struct Service : QProcess
    {
        ~Service() override { stop(*this); }
    };
    bool start(const QString &service, const QStringList &arguments)
    {
        auto process = std::make_unique<Service>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
        process->setProcessEnvironment(environment);
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->setStandardOutputFile(QProcess::nullDevice());
        QStringList all{QStringLiteral("-m"), QStringLiteral("dbusmock"),
                        QStringLiteral("--session")};
        all += arguments;
        // The interpreter that the package belongs to; another one may come first in the path.
        process->start(QStringLiteral("/usr/bin/python3"), all);
        services[service] = std::move(process);
        for (int tries = 0; tries < limitMs / pauseMs; ++tries) {
            const QDBusMessage owned = call(
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"), {service});
            if (owned.arguments().value(0).toBool())
                return true;
            if (services[service]->waitForFinished(pauseMs))
                return false;
        }
        return false;
    }
    static bool succeeded(const QDBusMessage &reply)
    {
        if (reply.type() == QDBusMessage::ReplyMessage)
            return true;
        qWarning("%s", qPrintable(reply.errorMessage()));
        return false;
    }
    static void stop(QProcess &process)
    {
        process.kill();
        process.waitForFinished(limitMs);
    }
    static QString name() { return QStringLiteral("mock"); }
    static QString root(const QString &service)
    {
        return u'/' + QString(service).replace(u'.', u'/');
    }
    QDBusMessage call(const QString &service, const QString &path, const QString &interface,
                      const QString &method, const QVariantList &arguments) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return connection().call(message);
    }

    QProcess daemon;
    QString address;
    std::map<QString, std::unique_ptr<Service>> services;
};
