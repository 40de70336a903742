#include "cli/testrunner.h"

#include "app/serverselection.h"
#include "cli/progressline.h"
#include "cli/testprinter.h"
#include "data/result.h"
#include "data/testresults.h"
#include "db/databasemanager.h"
#include "platform/platform.h"
#include "utils/utils.h"

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

using Phase = TestController::Phase;

constexpr qint64 nsPerSecond = 1'000'000'000;
constexpr qint64 nsPerMs = 1'000'000;
constexpr auto devicePatience = 3s;
/// A fast link reports progress thousands of times a second.
constexpr qint64 progressInterval = 100 * nsPerMs;

QString nameOf(Phase phase)
{
    switch (phase) {
    case Phase::Init: return u"init"_s;
    case Phase::NetworkSession: return u"network_session"_s;
    case Phase::Reachability: return u"reachability"_s;
    case Phase::UserId: return u"user_id"_s;
    case Phase::Initialise: return u"initialise"_s;
    case Phase::DownloadStartMarker: return u"download_start"_s;
    case Phase::Download: return u"download"_s;
    case Phase::DownloadEndMarker: return u"download_end"_s;
    case Phase::UploadStartMarker: return u"upload_start"_s;
    case Phase::Upload: return u"upload"_s;
    case Phase::UploadResult: return u"upload_result"_s;
    case Phase::UploadEndMarker: return u"upload_end"_s;
    case Phase::RttStartMarker: return u"rtt_start"_s;
    case Phase::Rtt: return u"rtt"_s;
    case Phase::RttEndMarker: return u"rtt_end"_s;
    case Phase::Submit: return u"submit"_s;
    case Phase::StoreAndResubmit: return u"store"_s;
    case Phase::IdleDelays: return u"idle_delays"_s;
    case Phase::ExtraDownload: return u"extra_download"_s;
    case Phase::ExtraUpload: return u"extra_upload"_s;
    }
    Q_UNREACHABLE();
}

/// A stream that ends early tells of the server or the link, not of the rate, unless it was we who
/// ended it.
bool isWhole(const Result *result)
{
    return result && (result->isCutByBudget() ||
                      (result->isValid() &&
                       result->getRealDuration() >= result->getDuration() * nsPerSecond / 10 * 9));
}

QStringList brokenPhases(const TestResults *record)
{
    QStringList broken;
    if (!record || !isWhole(record->getDownloadResult())) {
        broken.append(TestRunner::tr("download"));
    }
    if (!record || !isWhole(record->getUploadResult())) {
        broken.append(TestRunner::tr("upload"));
    }
    if (!record || !record->getRTTResult() || !record->getRTTResult()->isValid()) {
        broken.append(TestRunner::tr("round-trip time"));
    }
    return broken;
}

} // namespace

TestRunner::TestRunner(Plan whatToRun, ServerSelection &serverSelection, TestPrinter &results,
                       ProgressLine &progressLine, Platform &devicePlatform)
    : plan(std::move(whatToRun))
    , printer(results)
    , progress(progressLine)
    , platform(devicePlatform)
    , consent(devicePlatform)
    , session(devicePlatform, serverSelection, this, nullptr)
    , controller(&session.getController())
    , series(&session.getSeries())
    , positionWait(*controller->getLocationHelper())
{
    if (plan.allowRoaming) {
        consent.allowRoaming();
    }
    connect(&deviceTimer, &ClockTimer::timeout, this, &TestRunner::deviceReady);
    connect(&positionWait, &PositionWait::ended, this, &TestRunner::startTests);
    connect(controller, &TestController::phaseEntered, this, &TestRunner::phaseEntered);
    connect(controller, &TestController::testEnded, this, &TestRunner::testEnded);
    connect(series, &TestSeries::testStarting, this, &TestRunner::testStarting);
    connect(series, &TestSeries::missed, this, &TestRunner::testsMissed);
    connect(series, &TestSeries::ended, this, &TestRunner::finish);
    connect(&session, &TestSession::resumed, this, &TestRunner::finish);
}

TestRunner::~TestRunner() = default;

// ---- Series

void TestRunner::start()
{
    tellOfInterrupted();
    awaitDevice();
}

bool TestRunner::resume()
{
    resuming = series->interrupted().has_value();
    if (resuming) {
        awaitDevice();
    }
    return resuming;
}

void TestRunner::tellOfInterrupted()
{
    const auto waiting = series->interrupted();
    if (!waiting) {
        return;
    }
    const int next = waiting->nextAt(Utils::getTimeInMs());
    if (next > waiting->plan.count) {
        progress.message(tr("The series that was interrupted is over: its tests from %1 to %2 were "
                            "missed.")
                             .arg(waiting->next)
                             .arg(waiting->plan.count));
        series->discard();
    } else {
        progress.message(tr("A series was interrupted: test %1 of %2 is next. --resume continues "
                            "it; a new series takes its place.")
                             .arg(next)
                             .arg(waiting->plan.count));
    }
}

// A service of the device that hangs is not waited for.
void TestRunner::awaitDevice()
{
    connect(&platform, &Platform::completed, this, &TestRunner::deviceReady);
    deviceTimer.start(platform.isComplete() ? 0ms : devicePatience);
}

void TestRunner::deviceReady()
{
    if (std::exchange(deviceAwaited, true) || isFinished) {
        return;
    }
    deviceTimer.stop();
    if (const QString notice = consent.notice(plan.budget); !notice.isEmpty()) {
        progress.message(notice);
    }
    if (const auto limit = positionWait.start(plan.waitPosition)) {
        progress.message(tr("Waiting for a position, at most %1 s.").arg(limit->count()));
    } else {
        startTests();
    }
}

void TestRunner::startTests()
{
    session.setDelayPlan(plan.delays);
    if (resuming) {
        session.resume(plan.budget);
    } else {
        session.start(plan.series, plan.budget);
    }
}

void TestRunner::testStarting()
{
    testing = true;
    errorText.clear();
    stopStatus.reset();
    shownPhase.reset();
    if (series->isSeries()) {
        progress.setTest(u"%1/%2"_s.arg(series->getNumber()).arg(series->getCount()));
    }
}

void TestRunner::testsMissed(int first, int last)
{
    for (int number = first; number <= last; ++number) {
        printer.missed(tr("Test %1 of %2 was missed.").arg(number).arg(series->getCount()));
    }
    progress.message(
        first == last
            ? tr("Test %1 of %2 was missed.").arg(first).arg(series->getCount())
            : tr("Tests %1 to %2 of %3 were missed.").arg(first).arg(last).arg(series->getCount()));
}

void TestRunner::resend()
{
    resending = true;
    waitingBefore = gDB->countUnsentXMLFiles();
    controller->resendReports();
}

void TestRunner::stop(ExitStatus reason)
{
    stopStatus = reason;
    seriesStopped = true;
    if (!controller->isRunning()) {
        status = reason;
    }
    positionWait.cancel();
    session.close();
    finish();
}

void TestRunner::testEnded(const TestOutcome &outcome)
{
    progress.clear();
    if (resending) {
        return resendEnded(outcome);
    }

    const TestResults *record = controller->getTestResults();
    ExitStatus ended = statusOf(outcome, record);
    if (outcome.end == TestOutcome::End::Stopped && stopStatus) {
        ended = *stopStatus;
    }
    const QString message = failureText(outcome, ended);
    printer.ended(controller->getFinishedTest(), ended, message);
    if (!message.isEmpty()) {
        progress.message(message);
    }
    // A stop keeps its status; that what the test had is lost must be said all the same.
    if (outcome.storeFailed && ended != ExitStatus::Store) {
        progress.message(storeFailure());
    }
    if (outcome.keptForLater) {
        progress.message(tr("Another program holds %1; the test joins it with the next one.")
                             .arg(DatabaseManager::databaseFile()));
    }
    warnOfUndelivered(outcome);

    if (status == ExitStatus::Done || seriesStopped) {
        status = ended;
    }
    testing = false;
    finish();
}

void TestRunner::resendEnded(const TestOutcome &outcome)
{
    using End = TestOutcome::End;
    if (outcome.storeFailed) {
        status = ExitStatus::Store;
    } else if (outcome.end == End::Stopped && stopStatus) {
        status = *stopStatus;
    } else if (outcome.resent >= waitingBefore) {
        status = ExitStatus::Done;
    } else {
        status = outcome.answered ? ExitStatus::Broken : ExitStatus::Unreachable;
    }

    if (status == ExitStatus::Store) {
        progress.message(
            tr("The reports in %1 cannot be written.").arg(DatabaseManager::databaseFile()));
    } else if (status == ExitStatus::Broken) {
        progress.message(tr("The service did not take every report."));
    } else if (status == ExitStatus::Unreachable) {
        progress.message(tr("The service cannot be reached."));
    }
    finish();
}

void TestRunner::finish()
{
    // The series may hear of the end of its last test first; the test is told before.
    if (testing || session.isActive() || std::exchange(isFinished, true)) {
        return;
    }
    deviceTimer.stop();
    Q_EMIT finished(status);
}

ExitStatus TestRunner::statusOf(const TestOutcome &outcome, const TestResults *record)
{
    if (outcome.storeFailed) {
        return ExitStatus::Store;
    }
    switch (outcome.end) {
    case TestOutcome::End::Completed:
        if (!brokenPhases(record).isEmpty()) {
            return ExitStatus::Broken;
        }
        return record->phasesCutByBudget().isEmpty() ? ExitStatus::Done : ExitStatus::Refused;
    case TestOutcome::End::Stopped: return ExitStatus::Interrupted;
    case TestOutcome::End::NoNetwork:
    case TestOutcome::End::ServerUnreachable: return ExitStatus::Unreachable;
    case TestOutcome::End::Refused: return ExitStatus::Broken;
    }
    Q_UNREACHABLE();
}

QString TestRunner::storeFailure()
{
    return tr("The test could not be stored in %1.").arg(DatabaseManager::databaseFile());
}

QString TestRunner::budgetText() const
{
    const TestResults &record = *controller->getTestResults();
    const DataBudget budget = record.getDataBudget();
    return tr("The test reached its data budget (%1) and is stored as far as it came; --max-bytes "
              "gives it more, --max-bytes 0 lifts the limit.")
        .arg(budget.endedEarly(record.phasesCutByBudget().join(u',')));
}

QString TestRunner::failureText(const TestOutcome &outcome, ExitStatus ended) const
{
    switch (ended) {
    case ExitStatus::Done: return {};
    case ExitStatus::Refused:
        if (outcome.end == TestOutcome::End::Completed) {
            return budgetText();
        }
        return consent.roamingRefusal();
    case ExitStatus::HungUp:
    case ExitStatus::Interrupted:
    case ExitStatus::Terminated: return tr("The test was stopped.");
    case ExitStatus::Store: return storeFailure();
    case ExitStatus::Broken:
    case ExitStatus::Unreachable:
    case ExitStatus::Usage: break;
    }
    if (!errorText.isEmpty()) {
        return errorText;
    }
    if (outcome.end == TestOutcome::End::Completed) {
        return tr("The test is incomplete; missing or cut short: %1.")
            .arg(brokenPhases(controller->getTestResults()).join(", "_L1));
    }
    return tr("The test failed.");
}

void TestRunner::warnOfUndelivered(const TestOutcome &outcome)
{
    if (outcome.userGone) {
        progress.message(tr("On the service everything of this user was deleted, and it takes no "
                            "more tests of his; the next test begins with a new user."));
    }
    if (!outcome.reportDelivered && outcome.queueId) {
        progress.message(tr("The report waits in the queue and goes out with the next test."));
    }
}

// ---- TestObserver

bool TestRunner::stopRequested()
{
    // A network may tell only after the start that it roams; once data flows it is too late.
    const Phase phase = controller->getPhase();
    const bool beforeTraffic = phase == Phase::Init || phase == Phase::DownloadStartMarker;
    if (!resending && !stopStatus && beforeTraffic &&
        consent.askRoaming(controller->checkRoaming())) {
        stopStatus = ExitStatus::Refused;
    }
    return stopStatus.has_value();
}

void TestRunner::phaseEntered(Phase phase)
{
    if (resending || shownPhase == phase) {
        return;
    }
    shownPhase = phase;
    printer.phase(nameOf(phase), series->getNumber(), series->getCount());
}

void TestRunner::setStatus(QString text)
{
    progress.setStatus(text);
}

void TestRunner::setNotice(QString text)
{
    progress.message(text);
}

void TestRunner::setProgressMax(int max)
{
    progressMax = max;
}

void TestRunner::setProgressValue(int value)
{
    progressValue = value;
    if (Utils::getTimeInNs() - shownAt >= progressInterval) {
        showProgress();
    }
}

void TestRunner::setProgress(int value, int max)
{
    // "1 of 1" is the end of a phase, in whatever unit it counted.
    const bool ended = value == 1 && max == 1;
    progressMax = ended ? progressMax : max;
    progressValue = ended ? progressMax : value;
    showProgress();
}

void TestRunner::showProgress()
{
    shownAt = Utils::getTimeInNs();
    progress.setProgress(progressValue, progressMax);
    printer.progress(std::min(progressValue, progressMax), progressMax);
}

void TestRunner::setDownloadText(QString text)
{
    progress.setFigure(tr("Download: %1").arg(text));
}

void TestRunner::setUploadText(QString text)
{
    progress.setFigure(tr("Upload: %1").arg(text));
}

void TestRunner::setRTTText(QString text)
{
    progress.setFigure(tr("Round-trip time: %1").arg(text));
}

void TestRunner::setDataTransferred(QString text)
{
    progress.setFigure(text);
}

} // namespace velometer
