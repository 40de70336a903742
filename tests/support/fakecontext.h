#pragma once

#include "context/deviceinfohelper.h"
#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/testserver.h"
#include "measurement/measurementcontext.h"
#include "support/fakeobserver.h"
#include "support/fakeplatform.h"

namespace velometer {

/// A running test for one record or measurement alone: fixed ids, the fake device, and what was
/// reported back.
class FakeContext : public MeasurementContext
{
public:
    TestServer *getTestServer() const override { return server.get(); }
    qlonglong getUserId() const override { return 52077; }
    qlonglong getSeriesId() const override { return 13; }
    qlonglong getTestId() const override { return 3; }
    QString getUserLocation() const override { return QStringLiteral("Indoor"); }
    QString getScheduleInfo() const override { return schedule; }
    LocationHelper *getLocationHelper() const override { return location.get(); }
    NetworkInfoHelper *getNetWorkInfoHelper() const override { return network.get(); }
    DeviceInfoHelper *getDeviceInfoHelper() const override { return device.get(); }
    TestObserver *getTestObserver() const override { return &observer; }
    int getMSS() const override { return mss; }
    void testResultLogReady(TestResultLog *log) override { entries.append(log); }
    void measurementDone(Result *result) override { results.append(result); }
    void httpRequestDone(bool ok, QString header, QString body) override
    {
        answers.append({ok, header, body});
    }

    struct Answer
    {
        bool ok;
        QString header;
        QString body;
    };

    FakePlatform platform;
    std::unique_ptr<TestServer> server = std::make_unique<TestServer>(nullptr);
    std::unique_ptr<LocationHelper> location = std::make_unique<LocationHelper>(platform, nullptr);
    std::unique_ptr<NetworkInfoHelper> network =
        std::make_unique<NetworkInfoHelper>(platform, nullptr);
    std::unique_ptr<DeviceInfoHelper> device =
        std::make_unique<DeviceInfoHelper>(platform, nullptr);
    mutable FakeObserver observer;
    QString schedule;
    int mss = 1460;
    QList<TestResultLog *> entries;
    QList<Result *> results;
    QList<Answer> answers;
};

} // namespace velometer
