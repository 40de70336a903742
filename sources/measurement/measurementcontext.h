#pragma once

#include "data/testcontext.h"

namespace velometer {

class Result;
class TestObserver;

/// The running test as its measurements and the request helper see it.
class MeasurementContext : public TestContext
{
public:
    virtual TestObserver *getTestObserver() const = 0;
    /// Segment size towards this client in bytes, 0 when the service did not tell.
    virtual int getMSS() const = 0;

    /// A measurement has ended, successfully or not; called exactly once for each. The result is a
    /// child of the measurement's parent.
    virtual void measurementDone(Result *result) = 0;

    /// A control request has ended; called exactly once for each. @p ok is false when no header was
    /// found in what came.
    virtual void httpRequestDone(bool ok, QString header, QString body) = 0;
};

} // namespace velometer
