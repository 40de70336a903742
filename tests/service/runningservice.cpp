#include "runningservice.h"

#include "socketclient.h"

#include <QTest>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

ServerOptions RunningService::defaults()
{
    ServerOptions options;
    options.listen = {{.address = "127.0.0.1", .port = 0}};
    options.salt = u"8352"_s;
    options.threads = 2;
    options.shutdownGrace = 100ms;
    options.reportPause = 300ms;
    options.resolver = [](const std::string &) { return std::string(); };
    return options;
}

RunningService::RunningService(ServerOptions options)
{
    options.databaseFile = databaseFile();
    m_server = std::make_unique<Server>(std::move(options));
    QString error;
    if (m_server->start(&error)) {
        const std::string address = m_server->addresses().front();
        m_port = static_cast<quint16>(std::stoi(address.substr(address.rfind(':') + 1)));
    } else {
        qWarning("%s", qUtf8Printable(error));
    }
}

qint64 RunningService::metric(const QByteArray &name) const
{
    const QByteArray key = "\nvelometer_" + name + ' ';
    const QByteArray text = SocketClient::get(m_port, "/metrics");
    const auto at = text.indexOf(key);
    if (at < 0) {
        return -1;
    }
    const auto from = at + key.size();
    return text.mid(from, text.indexOf('\n', from) - from).toLongLong();
}

bool RunningService::waitForMetric(const QByteArray &name, qint64 value) const
{
    return QTest::qWaitFor([&] { return metric(name) == value; }, 10'000);
}
