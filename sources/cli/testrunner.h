#pragma once

#include "app/positionwait.h"
#include "app/testconsent.h"
#include "app/testsession.h"
#include "cli/exitstatus.h"
#include "figures/finishedtest.h"
#include "measurement/testobserver.h"
#include "utils/clocktimer.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace velometer {

class Platform;
class ProgressLine;
class ServerSelection;
class TestPrinter;

/// Runs the tests of one call of the program, a single one or a series, and prints what becomes of
/// them. A test that fails does not end the series. Main thread only. gDB is open.
class TestRunner : public QObject, public TestObserver
{
    Q_OBJECT

public:
    struct Plan
    {
        TestSeries::Plan series{};
        bool allowRoaming = false;
        // The braces let a plan be written without these three.
        // NOLINTBEGIN(readability-redundant-member-init)
        DataBudget budget{}; ///< of each test
        /// For a first position before the first test; without it as PositionWait thinks right.
        std::optional<std::chrono::seconds> waitPosition{};
        DelayPlan delays{};
        // NOLINTEND(readability-redundant-member-init)
    };

    /// Everything but the plan is borrowed and outlives the runner.
    TestRunner(Plan plan, ServerSelection &servers, TestPrinter &printer, ProgressLine &progress,
               Platform &platform);
    ~TestRunner() override;

    TestController &getController() { return *controller; }

    /// Starts the first test as soon as the device has told about itself, at the latest after three
    /// seconds, and where it is, see PositionWait; says before it when the connection is metered,
    /// and when a series of an earlier run waits. Ends in one finished().
    void start();
    /// The same once more, after finished(): of all tests the status of the first one that was not
    /// done. Nothing is waited for.
    void again()
    {
        isFinished = false;
        startTests();
    }
    /// As start(), with an interrupted series in place of the plan's. False when none waits.
    bool resume();
    /// Offers the waiting reports once. Ends in one finished().
    void resend();
    /// Ends the running test and the series now; finished() says @p status.
    void stop(ExitStatus status);

    // TestObserver
    void setStatus(QString text) override;
    void setProgressMax(int max) override;
    void setProgressValue(int value) override;
    void setProgress(int value, int max) override;
    void startTest() override {}
    void stopTest() override {}
    void setDownloadText(QString text) override;
    void setUploadText(QString text) override;
    void setRTTText(QString text) override;
    void setDataTransferred(QString text) override;
    void setErrorText(QString text) override { errorText = text; }
    void setNotice(QString text) override;
    bool stopRequested() override;
    void setInformation(QString, QString, QString, QString) override {}

    /// What became of a test in terms of the program's exit status; a stop counts as interrupted.
    static ExitStatus statusOf(const TestOutcome &outcome, const TestResults *record);

Q_SIGNALS:
    /// Of several tests the status of the first one that was not done.
    void finished(ExitStatus status);

private:
    void awaitDevice();
    void deviceReady();
    void startTests();
    void tellOfInterrupted();
    void testStarting();
    void testsMissed(int first, int last);
    void phaseEntered(TestController::Phase phase);
    void testEnded(const TestOutcome &outcome);
    void resendEnded(const TestOutcome &outcome);
    static QString storeFailure();
    QString budgetText() const;
    QString failureText(const TestOutcome &outcome, ExitStatus status) const;
    void warnOfUndelivered(const TestOutcome &outcome);
    void showProgress();
    void finish();

    const Plan plan;
    TestPrinter &printer;
    ProgressLine &progress;
    const Platform &platform;

    bool deviceAwaited = false;
    bool resuming = false;
    bool resending = false;
    int waitingBefore = 0;
    std::optional<ExitStatus> stopStatus; ///< the user's, or that of a refusal
    bool seriesStopped = false;
    bool testing = false; ///< a test has begun and its end has not been told
    bool isFinished = false;
    ExitStatus status = ExitStatus::Done;
    QString errorText;
    std::optional<TestController::Phase> shownPhase;
    int progressValue = 0;
    int progressMax = 0;
    qint64 shownAt = 0;
    ClockTimer deviceTimer;
    TestConsent consent;
    TestSession session;
    TestController *controller; ///< of the session, as is the series
    TestSeries *series;
    PositionWait positionWait;
};

} // namespace velometer
