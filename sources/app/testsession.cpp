#include "app/testsession.h"

#include "app/serverselection.h"
#include "app/startup.h"
#include "utils/utils.h"

#include <utility>

namespace velometer {

TestSession::TestSession(Platform &platform, ServerSelection &serverSelection,
                         TestObserver *observer, QObject *parent)
    : QObject(parent)
    , servers(serverSelection)
    , controller(nullptr, observer, serverSelection.current(), platform)
    , series(controller, StartUp::seriesFile(), nullptr)
    , awake(QDBusConnection::systemBus(), nullptr)
{
    connect(&series, &TestSeries::ended, &awake, &SleepInhibitor::release);
    controller.setMeasurementDuration(StartUp::measurementDuration());
    connect(&servers, &ServerSelection::changed, &controller, &TestController::setTestServer);
}

TestSession::~TestSession()
{
    servers.cancelWait();
}

std::optional<TestSeries::Interrupted> TestSession::takeInterrupted()
{
    auto waiting = series.interrupted();
    if (waiting && waiting->nextAt(Utils::getTimeInMs()) > waiting->plan.count) {
        series.resume(); // tells what was missed, and ends
        waiting.reset();
    }
    return waiting;
}

void TestSession::start(const TestSeries::Plan &plan, DataBudget budget)
{
    starting = true;
    awake.hold();
    servers.whenSettled([this, plan, budget] {
        starting = false;
        controller.setDataBudget(budget);
        series.start(plan);
    });
}

void TestSession::resume(DataBudget budget)
{
    starting = true;
    awake.hold();
    servers.whenSettled([this, budget] {
        starting = false;
        controller.setDataBudget(budget);
        const bool done = series.resume();
        if (!done) {
            awake.release();
        }
        Q_EMIT resumed(done);
    });
}

bool TestSession::stop()
{
    const bool begun = !std::exchange(starting, false);
    awake.release();
    servers.cancelWait();
    series.abort();
    controller.abortTest();
    return begun;
}

void TestSession::close()
{
    starting = false;
    awake.release();
    servers.cancelWait();
    series.suspend();
    controller.abortTest();
}

} // namespace velometer
