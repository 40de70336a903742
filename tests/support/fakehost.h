#pragma once

#include "data/testservertable.h"
#include "measurement/testhost.h"
#include "utils/deployment.h"

namespace velometer {

/// The program around a test: the servers of the current deployment, and a schedule as told.
class FakeHost : public TestHost
{
public:
    TestServer *getTestServer(const QString &hostname, int port) override
    {
        return table.find(hostname, port);
    }
    QString getScheduleInfo() const override { return schedule; }

    TestServerTable table{Deployment::current(), nullptr};
    QString schedule;
};

} // namespace velometer
