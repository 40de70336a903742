#pragma once

#include "http/server.h"

#include <QTemporaryDir>

/// The real service on any free port of loopback, with a database of its own that goes with it.
class RunningService
{
public:
    /// Two threads, short time-outs, and no look-ups of names; tests change what they need.
    static ServerOptions defaults();

    explicit RunningService(ServerOptions options = defaults());

    quint16 port() const { return m_port; } ///< 0 when it could not start
    QString databaseFile() const { return m_directory.filePath(QStringLiteral("dir/reports.db")); }
    Server &server() { return *m_server; }

    /// A figure of the metrics page, -1 when it is not there.
    qint64 metric(const QByteArray &name) const;

    /// Whether the figure becomes @p value within ten seconds.
    bool waitForMetric(const QByteArray &name, qint64 value) const;

private:
    QTemporaryDir m_directory;
    std::unique_ptr<Server> m_server;
    quint16 m_port = 0;
};
