#pragma once

#include "app/sleepinhibitor.h"
#include "app/testseries.h"
#include "data/databudget.h"
#include "data/delayplan.h"
#include "measurement/testcontroller.h"

#include <QObject>

#include <optional>

namespace velometer {

class Platform;
class ServerSelection;

/// The controller and its series as a program holds them: the server is chosen before the first
/// test begins, an end of the program keeps what there is, and the device does not go to sleep
/// while a test or a series runs. Main thread only. gDB is open.
class TestSession : public QObject
{
    Q_OBJECT

public:
    /// Everything is borrowed and outlives the session.
    TestSession(Platform &platform, ServerSelection &servers, TestObserver *observer,
                QObject *parent);
    ~TestSession() override;

    TestController &getController() { return controller; }
    TestSeries &getSeries() { return series; }

    /// The series that an earlier run did not end, when it can be continued. One whose last test is
    /// overdue is over: TestSeries::missed() tells it.
    std::optional<TestSeries::Interrupted> takeInterrupted();

    /// Of the tests to come, before start() or resume(); none: the usual figures.
    void setDelayPlan(const DelayPlan &plan) { controller.setDelayPlan(plan); }

    /// Starts as soon as the server is settled, see ServerSelection::whenSettled.
    void start(const TestSeries::Plan &plan, DataBudget budget);
    /// The same with the series that was interrupted. Ends in resumed().
    void resume(DataBudget budget);
    /// From start() or resume() to the end of the last test.
    bool isActive() const { return starting || series.isRunning(); }

    /// The user has had enough: a running test ends now, its partial report goes to the queue, and
    /// its series is over. False when no test had begun yet; then none will.
    bool stop();
    /// The program ends: a running test ends now, its partial report goes to the queue, and what is
    /// left of a series can be resumed.
    void close();

Q_SIGNALS:
    /// False: there was no series any more, another program has taken it.
    void resumed(bool done);

private:
    ServerSelection &servers;
    TestController controller;
    TestSeries series;
    SleepInhibitor awake;
    bool starting = false;
};

} // namespace velometer
