#pragma once

#include <QString>
#include <QtGlobal>

namespace velometer {

class DeviceInfoHelper;
class LocationHelper;
class NetworkInfoHelper;
class TestResultLog;
class TestServer;

/// The running test as its records see it. Implemented by the controller; everything handed out is
/// borrowed from it and lives as long as the test.
class TestContext
{
public:
    virtual ~TestContext() = default;

    virtual TestServer *getTestServer() const = 0;
    virtual qlonglong getUserId() const = 0;
    virtual qlonglong getSeriesId() const = 0;
    virtual qlonglong getTestId() const = 0;
    virtual QString getUserLocation() const = 0; ///< location code
    /// "number,count,minutes" of a series, empty for a single test.
    virtual QString getScheduleInfo() const = 0;

    virtual LocationHelper *getLocationHelper() const = 0;
    virtual NetworkInfoHelper *getNetWorkInfoHelper() const = 0;
    virtual DeviceInfoHelper *getDeviceInfoHelper() const = 0;

    /// A log entry has finished its sample; called exactly once per takeMeasurement.
    virtual void testResultLogReady(TestResultLog *log) = 0;

protected:
    TestContext() = default;
    Q_DISABLE_COPY_MOVE(TestContext)
};

} // namespace velometer
