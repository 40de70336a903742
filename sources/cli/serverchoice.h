#pragma once

#include <QCoreApplication>
#include <QString>

#include <memory>

namespace velometer {

class TestServer;
class TestServerTable;

/// The server that the user named.
class ServerChoice
{
    Q_DECLARE_TR_FUNCTIONS(ServerChoice)

public:
    /// A name of @p table in any letter case, or an endpoint (port 80 when it names none), which
    /// need not be in the table. When @p text is neither, server() is null and error() says so in
    /// one sentence with the names there are.
    ServerChoice(const QString &text, const TestServerTable &table);
    ~ServerChoice();
    Q_DISABLE_COPY_MOVE(ServerChoice)

    /// Lives as long as the table and this choice do.
    TestServer *server() const { return chosen; }
    QString error() const { return failure; }

private:
    TestServer *chosen = nullptr;
    std::unique_ptr<TestServer> own; ///< an endpoint that is not in the table
    QString failure;
};

} // namespace velometer
