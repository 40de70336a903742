#include "ui/testdisplay.h"

#include "app/testseries.h"
#include "data/result.h"
#include "data/testresults.h"
#include "data/testserver.h"
#include "db/databasemanager.h"
#include "db/dbtestresults.h"
#include "measurement/testcontroller.h"
#include "ui/pages/testtab.h"
#include "utils/clock.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include <QDateTime>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto countDownPeriod = 200ms;
constexpr auto lookPeriod = 200ms;
constexpr std::chrono::microseconds longSilence = 3s;
constexpr double bitsPerKiloBit = 1000;
constexpr double nsPerMs = 1e6;
constexpr int secondsPerMinute = 60;

/// "14 730", with thin spaces, which mean the same in every language.
QString grouped(qint64 number)
{
    constexpr int digits = 3;
    QString text = QString::number(number);
    for (qsizetype place = text.size() - digits; place > 0; place -= digits) {
        text.insert(place, QChar(0x2009));
    }
    return text;
}

} // namespace

TestDisplay::TestDisplay(TestTab *page, QObject *parent)
    : QObject(parent)
    , testTab(page)
{
    connect(&countDown, &ClockTimer::timeout, this, &TestDisplay::updateScreenNextMeasurement);
    connect(&lookAgain, &ClockTimer::timeout, this, &TestDisplay::look);
}

void TestDisplay::watch(TestController *testController, TestSeries *testSeries)
{
    countDown.stop();
    lookAgain.stop();
    controller = testController;
    series = testSeries;
    if (!series) {
        return;
    }
    connect(series, &TestSeries::missed, this, &TestDisplay::testsMissed);
    connect(series, &TestSeries::ended, this, &TestDisplay::seriesEnded);
    // After the series has heard of it: what a single test leaves is said when it is over.
    connect(controller, &TestController::testEnded, this, &TestDisplay::testEnded);
}

QString TestDisplay::summary(const DBTestResults &test)
{
    const auto rate = [](double bitsPerSecond) {
        return bitsPerSecond > 0 ? QString::number(qRound64(bitsPerSecond / bitsPerKiloBit))
                                 : tr("na");
    };
    return tr("Last test, %1\n%2 / %3 kBit/s, %4")
        .arg(QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(test.timestamp))
                 .toString(u"hh:mm"_s),
             rate(test.downloadSpeed), rate(test.uploadSpeed),
             test.rtt > 0 ? u"%1 ms"_s.arg(test.rtt) : tr("na"));
}

QString TestDisplay::endText(const TestSeries &series)
{
    return series.isSeries() ? tr("The series has ended after %1 of %2 tests.")
                                   .arg(series.getNumber())
                                   .arg(series.getCount())
                             : tr("The test has ended.");
}

void TestDisplay::prepare()
{
    stoprequestedflag = false;
    testTab->setGUIDisabled(true);
    testTab->setStoppable(true);
}

void TestDisplay::requestStop()
{
    stoprequestedflag = true;
    if (inSeries()) {
        testTab->setStatusText(tr("aborting..."));
    }
}

// ---- Series

bool TestDisplay::inSeries() const
{
    return series && series->isRunning() && series->isSeries();
}

void TestDisplay::startTest()
{
    countDown.stop();
    if (inSeries()) {
        offerAbort();
    } else {
        testTab->setGUIDisabled(true);
    }
    testTab->setStoppable(true);
    testTab->setLastTest(QString());
    rate.clear();
    heard();
    lookAgain.start(lookPeriod);
    testTab->showProgessBar(true);
    testTab->clearThroughput();
    setDownloadText(QString());
    setUploadText(QString());
    setRTTText(QString());
    testTab->setDataTransferred(QString());
}

void TestDisplay::stopTest()
{
    lookAgain.stop();
    testTab->setWaiting(QString());
    testTab->hideLive();
    testTab->setStoppable(false);
    testTab->showProgessBar(false);
    setProgress(0, 1);
    if (inSeries() && series->hasNext() && !stoprequestedflag) {
        awaitNext();
    }
}

void TestDisplay::offerAbort()
{
    testTab->setGUIDisabled(false);
    testTab->setAbortCaption(tr("Abort Test"));
}

void TestDisplay::awaitNext()
{
    offerAbort();
    countDown.start(countDownPeriod);
}

void TestDisplay::seriesEnded()
{
    countDown.stop();
    testTab->setStoppable(false);
    setStatus(tr("Start Test"));
    if (series->isSeries()) {
        setDataTransferred(QString());
    }
    testTab->setGUIDisabled(false);
    tellRunning({});
}

// ---- While a test runs

void TestDisplay::heard()
{
    heardUs = Clock::current().steadyUs();
    testTab->setWaiting(QString());
}

void TestDisplay::look()
{
    const qint64 now = Clock::current().steadyUs();
    if (rate.phase() != Result::Empty) {
        const double kiloBits = rate.bitsPerSecond(now) / bitsPerKiloBit;
        testTab->setLive(rate.phase(), grouped(qRound64(kiloBits)), tr("kBit/s now"));
    }
    if (std::chrono::microseconds(now - heardUs) >= longSilence) {
        testTab->setWaiting(awaited());
    }
    lookAgain.start(lookPeriod);
}

// In one sentence: who has been silent.
QString TestDisplay::awaited() const
{
    switch (controller->getPhase()) {
    case TestController::Phase::Init:
    case TestController::Phase::NetworkSession: return tr("Waiting for a network connection.");
    case TestController::Phase::UserId:
    case TestController::Phase::Submit:
    case TestController::Phase::StoreAndResubmit:
        return tr("Waiting for an answer of the service at %1.").arg(Deployment::current().webHost);
    default:
        return tr("Waiting for an answer of the test server %1.")
            .arg(controller->getTestServer()->getHostname());
    }
}

void TestDisplay::updateScreenNextMeasurement()
{
    const auto remaining = series->untilNext().count();
    setStatus(tr("Next measurement in %1:%2 minutes.")
                  .arg(remaining / secondsPerMinute)
                  .arg(remaining % secondsPerMinute, 2, 10, QChar(u'0')));
    countDown.start(countDownPeriod);
}

void TestDisplay::testsMissed(int first, int last)
{
    const int count = series->getCount();
    if (last == count && series->getNumber() == count) {
        Q_EMIT notice(tr("Test Series"),
                      tr("The interrupted series is over: its tests from %1 to %2 were missed.")
                          .arg(first)
                          .arg(last));
    } else {
        // The line on the page counts down already.
        Q_EMIT notice(tr("Test Series"),
                      tr("Tests from %1 to %2 of %3 were missed.").arg(first).arg(last).arg(count));
    }
}

// An unattended series is not stopped by a notice; what it lost is told when it is over.
void TestDisplay::testEnded(const TestOutcome &outcome)
{
    resultLost |= outcome.storeFailed;
    if (series->isRunning()) {
        return;
    }
    if (std::exchange(resultLost, false)) {
        Q_EMIT notice(tr("ErrorTitle"),
                      tr("The test could not be stored in %1. Make room or correct "
                         "the rights of this folder.")
                          .arg(DatabaseManager::databaseFile().toHtmlEscaped()));
        return;
    }
    if (outcome.end == TestOutcome::End::Stopped) {
        testTab->addNote(tr("Stopped."));
    }
    const TestResults *record = controller->getTestResults();
    if (outcome.end == TestOutcome::End::Completed && record &&
        !record->phasesCutByBudget().isEmpty()) {
        testTab->addNote(tr("The data budget ended the test early."));
    }
    if (outcome.userGone) {
        testTab->addNote(tr("On the service everything of this user was deleted; the next test "
                            "begins with a new user."));
    }
    if (outcome.keptForLater) {
        testTab->addNote(tr("Another program holds the results; this test joins them later."));
    }
    if (!outcome.reportDelivered && outcome.queueId) {
        testTab->addNote(tr("The report waits and goes out with the next test."));
    }
}

void TestDisplay::tellRunning(const QString &text)
{
    testTab->setLocationFixed(!text.isEmpty());
    Q_EMIT running(text);
}

// ---- What a test reports

void TestDisplay::setStatus(QString text)
{
    heard();
    // The rate of a phase that is over is no live figure.
    rate.clear();
    testTab->hideLive();
    tellRunning(series && series->isRunning() ? text : QString());
    if (!inSeries()) {
        testTab->setStatusText(text);
        return;
    }
    const int number = series->getNumber() + (series->isTesting() ? 0 : 1);
    testTab->setDataTransferred(
        u"%1/%2: %3"_s.arg(QString::number(number), QString::number(series->getCount()), text));
}

void TestDisplay::setProgressMax(int max)
{
    testTab->setProgressMaxValue(max);
}

void TestDisplay::setProgressValue(int value)
{
    testTab->setProgressValue(value);
}

void TestDisplay::setProgress(int value, int max)
{
    testTab->setProgressMaxValue(max);
    testTab->setProgressValue(value);
}

void TestDisplay::setDownloadText(QString text)
{
    testTab->setDownloadText(text);
}

void TestDisplay::setUploadText(QString text)
{
    testTab->setUploadText(text);
}

void TestDisplay::setRTTText(QString text)
{
    testTab->setRTTText(text);
}

void TestDisplay::setDataTransferred(QString text)
{
    if (!inSeries() || !series->hasNext()) {
        testTab->setDataTransferred(text);
    }
}

void TestDisplay::setErrorText(QString text)
{
    if (inSeries()) {
        return;
    }
    Utils::addLogEntry(u"Error: %1"_s.arg(text));
    Q_EMIT notice(tr("ErrorTitle"), text.toHtmlEscaped());
}

void TestDisplay::setInformation(QString server, QString seriesId, QString testId, QString position)
{
    const TestServer *chosen = controller ? controller->getTestServer() : nullptr;
    testTab->setTestserver(
        chosen && chosen->getHostname() == server ? chosen->getName() : QString(), server);
    // Before the first test there is no series yet.
    testTab->setTestSeries(seriesId == "0"_L1 ? tr("na") : seriesId + u'/' + testId);
    testTab->setPosition(position);
}

void TestDisplay::setThroughput(int resulttype, int interval, qint64 bytes)
{
    heard();
    rate.add(resulttype, interval, bytes, Clock::current().steadyUs());
    testTab->addThroughput(resulttype, interval, bytes);
}

void TestDisplay::setDelayUnderLoad(int resulttype, qint64 at, qint64 delay)
{
    testTab->addDelay(resulttype, at, delay);
}

void TestDisplay::setRoundTrip(qint64 time)
{
    heard();
    testTab->setLive(Result::Rtt, grouped(qRound64(static_cast<double>(time) / nsPerMs)),
                     tr("ms now"));
}

} // namespace velometer
