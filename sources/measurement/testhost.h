#pragma once

#include <QString>
#include <QtGlobal>

namespace velometer {

class TestServer;

/// What the controller asks of the program around it.
class TestHost
{
public:
    virtual ~TestHost() = default;

    /// The server of the table with this host name and port, null when it is not there. Borrowed;
    /// lives longer than the controller.
    virtual TestServer *getTestServer(const QString &hostname, int port) = 0;

    /// "number,count,minutes" while a series runs, else empty.
    virtual QString getScheduleInfo() const = 0;

protected:
    TestHost() = default;
    Q_DISABLE_COPY_MOVE(TestHost)
};

} // namespace velometer
