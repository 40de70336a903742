#pragma once

#include "http/server.h"
#include "socketclient.h"
#include "support/sqlitefile.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>

namespace velometer {

/// The real service on any free port of loopback, with a database of its own that goes with it.
class RunningService
{
public:
    /// With two threads, short time-outs, and no look-ups of names, but for what @p change sets.
    explicit RunningService(const std::function<void(ServerOptions &)> &change =
                                [](ServerOptions &) {})
    {
        ServerOptions options;
        options.store.database = databaseFile();
        options.listen = {{QStringLiteral("127.0.0.1"), 0}};
        options.salts = {QStringLiteral("new"), QStringLiteral("8352")};
        options.threads = 2;
        options.shutdownGrace = std::chrono::milliseconds(100);
        options.reportPause = std::chrono::milliseconds(300);
        options.resolver = [](const std::string &) { return std::string(); };
        change(options);
        server = std::make_unique<Server>(std::move(options));
        QString error;
        if (server->start(&error)) {
            servicePort = port(0);
        } else {
            qWarning("%s", qUtf8Printable(error));
        }
    }

    quint16 port() const { return servicePort; } ///< 0 when it could not start
    /// Of the listener with that number.
    quint16 port(std::size_t listener) const
    {
        const std::string address = server->addresses().at(listener);
        return static_cast<quint16>(std::stoi(address.substr(address.rfind(':') + 1)));
    }
    Server &get() { return *server; }
    QString databaseFile() const { return directory.filePath(QStringLiteral("dir/reports.db")); }

    /// Everything the service answers to @p request.
    QByteArray exchange(const QByteArray &request) const
    {
        SocketClient client(servicePort);
        client.send(request);
        return client.receiveAll();
    }
    QByteArray get(const QByteArray &target) const
    {
        return exchange("GET " + target + " HTTP/1.1\r\nHost: x\r\nConnection: Close\r\n\r\n");
    }

    /// A figure of the metrics page, -1 when it is not there.
    qint64 metric(const QByteArray &name) const
    {
        const QByteArray key = "\nvelometer_" + name + ' ';
        const QByteArray text = get("/metrics");
        const auto at = text.indexOf(key);
        return at < 0 ? -1 : text.mid(at + key.size()).split('\n').constFirst().toLongLong();
    }

    /// Whether the figure becomes @p value within ten seconds.
    bool waitForMetric(const QByteArray &name, qint64 value) const
    {
        return QTest::qWaitFor([&] { return metric(name) == value; }, 10'000);
    }

private:
    QTemporaryDir directory;
    std::unique_ptr<Server> server;
    quint16 servicePort = 0;
};

/// Runs statements on a database file; gives the first value of the last one.
inline QVariant sql(const QString &file, const QStringList &statements)
{
    const SqliteFile database(file);
    QVariant value;
    for (const QString &statement : statements) {
        value = database.rows(statement).value(0).value(0);
    }
    return value;
}

} // namespace velometer
