#include "app/testseries.h"

#include "measurement/testcontroller.h"
#include "utils/clock.h"
#include "utils/utils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// How often a test that is due looks whether the one before it has ended.
constexpr auto retryPeriod = 2s;
constexpr int secondsPerMinute = 60;
constexpr qint64 usPerSecond = 1'000'000;
constexpr qint64 usPerMs = 1000;
constexpr qint64 msPerSecond = 1000;
/// The file is ours, and some hundred bytes long; whoever wrote more did not write a series.
constexpr qint64 maxStateBytes = 4096;
constexpr int maxCount = 1'000'000;
constexpr qint64 maxIntervalSeconds = 604'800; // a week

QString lockName(const QString &stateFile)
{
    return stateFile + ".lock"_L1;
}

/// A whole number from @p minimum to @p maximum.
std::optional<qint64> number(const QJsonObject &object, QLatin1StringView key, qint64 minimum,
                             qint64 maximum)
{
    const qint64 value = object.value(key).toInteger(minimum - 1);
    return value < minimum || value > maximum ? std::nullopt : std::optional(value);
}

QJsonObject toJson(const TestSeries::Interrupted &state)
{
    return {{u"count"_s, state.plan.count},
            {u"interval_s"_s, static_cast<qint64>(state.plan.interval.count())},
            {u"location"_s, state.plan.location},
            {u"next"_s, state.next},
            {u"due_ms"_s, state.dueMs},
            {u"testing"_s, state.cutOff}};
}

std::optional<TestSeries::Interrupted> fromJson(const QJsonObject &object)
{
    const auto count = number(object, "count"_L1, 2, maxCount);
    const auto interval = number(object, "interval_s"_L1, 0, maxIntervalSeconds);
    if (!count || !interval) {
        return std::nullopt;
    }
    const auto next = number(object, "next"_L1, 1, *count + 1);
    const auto due = number(object, "due_ms"_L1, 0, std::numeric_limits<qint64>::max() / 2);
    const QString location = object.value("location"_L1).toString();
    if (!next || !due || Utils::trLocation(location).isEmpty()) {
        return std::nullopt;
    }
    TestSeries::Interrupted state;
    state.plan = {location, static_cast<int>(*count), std::chrono::seconds(*interval)};
    state.next = static_cast<int>(*next);
    state.dueMs = *due;
    state.cutOff = object.value("testing"_L1).toBool() && state.next > 1;
    return state;
}

} // namespace

TestSeries::TestSeries(TestController &testController, const QString &file, QObject *parent)
    : QObject(parent)
    , controller(testController)
    , stateFile(file)
{
    connect(&timer, &ClockTimer::timeout, this, &TestSeries::due);
    connect(&controller, &TestController::testEnded, this, &TestSeries::testEnded);
}

TestSeries::~TestSeries() = default;

void TestSeries::start(const Plan &newPlan)
{
    if (running) {
        return;
    }
    plan = newPlan;
    number = 0;
    begin();
    startTest();
}

void TestSeries::begin()
{
    running = true;
    stopping = false;
    resumable = isSeries() && keep();
}

// ---- The series of an earlier run

std::optional<TestSeries::Interrupted> TestSeries::interrupted() const
{
    if (running) {
        return std::nullopt;
    }
    QFile file(stateFile);
    if (!file.open(QFile::ReadOnly)) {
        return std::nullopt;
    }
    const auto state = fromJson(QJsonDocument::fromJson(file.read(maxStateBytes)).object());
    // Its lock is free when the program that ran it has ended, in whatever way.
    QLockFile held(lockName(stateFile));
    held.setStaleLockTime(0);
    return state && held.tryLock(0) ? state : std::nullopt;
}

bool TestSeries::resume()
{
    const auto state = interrupted();
    if (!state) {
        return false;
    }
    plan = state->plan;
    const qint64 now = Utils::getTimeInMs();
    const int next = state->nextAt(now);
    const int firstMissed = state->next - (state->cutOff ? 1 : 0);
    number = next - 1;
    const qint64 interval = plan.interval.count() * msPerSecond;
    // By a clock that was set back, no test is further away than the interval.
    dueMs = std::clamp(state->dueMs + (next - state->next) * interval, now, now + interval);
    dueUs = Clock::current().steadyUs() + (dueMs - now) * usPerMs;
    begin();
    save();
    if (next > firstMissed) {
        Utils::addLogEntry(u"Missed tests of the series: %1 to %2"_s.arg(firstMissed).arg(number));
        Q_EMIT missed(firstMissed, number);
    }
    if (hasNext()) {
        timer.start(std::chrono::milliseconds(dueMs - now));
    } else {
        finish(false);
    }
    return true;
}

int TestSeries::Interrupted::nextAt(qint64 nowMs) const
{
    const qint64 interval = plan.interval.count() * msPerSecond;
    if (interval == 0 || nowMs <= dueMs) {
        return next;
    }
    const qint64 passed = (nowMs - dueMs - 1) / interval + 1;
    return static_cast<int>(std::min<qint64>(next + passed, plan.count + 1));
}

void TestSeries::discard()
{
    if (interrupted()) {
        QFile::remove(stateFile);
    }
}

// False when another program's series is kept, or nothing can be written.
bool TestSeries::keep()
{
    QDir().mkpath(QFileInfo(stateFile).path());
    lock = std::make_unique<QLockFile>(lockName(stateFile));
    lock->setStaleLockTime(0);
    if (lock->tryLock(0)) {
        return true;
    }
    lock.reset();
    Utils::addLogEntry(u"This series is not kept for a restart: %1 is in use"_s.arg(stateFile));
    return false;
}

void TestSeries::save()
{
    if (!resumable) {
        return;
    }
    const Interrupted state{plan, number + 1, dueMs, testing};
    QSaveFile file(stateFile);
    if (!file.open(QFile::WriteOnly) ||
        file.write(QJsonDocument(toJson(state)).toJson(QJsonDocument::Compact)) < 0 ||
        !file.commit()) {
        Utils::addLogEntry(u"The series could not be kept in %1"_s.arg(stateFile));
    }
}

// ---- Its tests

void TestSeries::due()
{
    if (controller.isRunning()) {
        return timer.start(retryPeriod);
    }
    startTest();
}

void TestSeries::startTest()
{
    ++number;
    testing = true;
    dueUs = Clock::current().steadyUs() + plan.interval.count() * usPerSecond;
    dueMs = Utils::getTimeInMs() + plan.interval.count() * msPerSecond;
    save();
    if (hasNext()) {
        timer.start(plan.interval);
    }
    Q_EMIT testStarting();
    controller.runTests(plan.location, getScheduleInfo());
}

void TestSeries::testEnded()
{
    if (!testing) {
        return;
    }
    testing = false;
    if (stopping || !hasNext()) {
        return finish(false);
    }
    save();
    if (untilNext() == 0s) {
        // It has waited for the end of this one.
        timer.start(0s);
    }
}

void TestSeries::abort()
{
    stopping = true;
    if (running && !testing) {
        finish(false);
    }
}

void TestSeries::suspend()
{
    if (running) {
        finish(hasNext());
    }
}

void TestSeries::finish(bool toBeResumed)
{
    timer.stop();
    running = testing = false;
    if (resumable && !toBeResumed) {
        QFile::remove(stateFile);
    }
    resumable = false;
    lock.reset();
    Q_EMIT ended();
}

std::chrono::seconds TestSeries::untilNext() const
{
    const qint64 left = std::max<qint64>(0, dueUs - Clock::current().steadyUs());
    return std::chrono::seconds((left + usPerSecond - 1) / usPerSecond);
}

QString TestSeries::getScheduleInfo() const
{
    if (!isSeries()) {
        return {};
    }
    const qint64 minutes = plan.count * plan.interval.count() / secondsPerMinute;
    return u"%1,%2,%3"_s.arg(QString::number(number), QString::number(plan.count),
                             QString::number(minutes));
}

} // namespace velometer
