#pragma once

#include "utils/clocktimer.h"

#include <QLockFile>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace velometer {

class TestController;

/// The tests of one start: a single one, or a series whose tests follow each other at a fixed
/// interval from start to start. A test that is due while another runs starts when that one has
/// ended.
///
/// A series survives the end of its program: what it is and how far it has come is kept in a file
/// beside the store before each test begins and after each end. The next start finds it with
/// interrupted() and may resume() it: tests whose time has passed meanwhile, and one that was cut
/// off, are missed and not made up for. One series at a time is kept for a store; that of a program
/// which still runs is not touched, and a second program's series is then not kept.
///
/// Time comes from the clock: a test moves it. Main thread only.
class TestSeries : public QObject
{
    Q_OBJECT

public:
    struct Plan
    {
        QString location = QStringLiteral("Unknown"); ///< location code
        int count = 1;                                ///< tests, at least 1
        std::chrono::seconds interval{0};             ///< start to start
    };

    /// A series that a program has left behind.
    struct Interrupted
    {
        Plan plan;
        int next = 1;        ///< the test that was next, from 1 on; beyond the count when all began
        qint64 dueMs = 0;    ///< when, by the wall clock
        bool cutOff = false; ///< the test before it began and did not end

        /// The test that is left at a moment of the wall clock: later than @p next when the times
        /// of some have passed, beyond the count when none is.
        int nextAt(qint64 nowMs) const;
    };

    /// @p stateFile keeps the series; its folder is made when it is needed.
    TestSeries(TestController &controller, const QString &stateFile, QObject *parent);
    ~TestSeries() override;

    /// Starts the first test at once. Ends in one ended(). Does nothing while one runs.
    void start(const Plan &plan);

    /// What resume() would go on with; nothing when none waits or its program still runs.
    std::optional<Interrupted> interrupted() const;
    /// Goes on with an interrupted series: emits missed() for what fell into the gap, then waits
    /// for the next test. Ends in one ended(), at once when no test is left. False when there is
    /// none.
    bool resume();
    /// Forgets an interrupted series.
    void discard();

    /// Begins no further test. The running test goes on; ended() follows its end, or comes at once
    /// between two tests. The series is over and cannot be resumed.
    void abort();
    /// The same, but the series can be resumed.
    void suspend();

    bool isRunning() const { return running; }
    /// More than one test.
    bool isSeries() const { return plan.count > 1; }
    bool isTesting() const { return testing; }
    int getNumber() const { return number; } ///< of the running or the last test, from 1 on
    int getCount() const { return plan.count; }
    bool hasNext() const { return number < plan.count; }
    const QString &getLocation() const { return plan.location; }
    /// Until the next test is due, in whole seconds begun; 0 when it is.
    std::chrono::seconds untilNext() const;

    /// "number,count,minutes" of a series, empty for a single test.
    QString getScheduleInfo() const;

Q_SIGNALS:
    /// The next test begins now.
    void testStarting();
    /// Of a resumed series: the tests from @p first to @p last will not be made.
    void missed(int first, int last);
    /// After the last test's end; nothing of the series happens any more.
    void ended();

private:
    void begin();
    void due();
    void startTest();
    void testEnded();
    void finish(bool resumable);
    bool keep();
    void save();

    TestController &controller;
    const QString stateFile;
    std::unique_ptr<QLockFile> lock; ///< held while a series runs that is kept
    Plan plan;
    bool running = false;
    bool testing = false;
    bool stopping = false;
    bool resumable = false;
    int number = 0;
    qint64 dueUs = 0; ///< the next test, by the steady clock
    qint64 dueMs = 0; ///< the same by the wall clock, which outlives the program
    ClockTimer timer;
};

} // namespace velometer
