#include "measurement/testcontroller.h"

#include "context/deviceinfohelper.h"
#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/result.h"
#include "data/testresultlog.h"
#include "data/testserver.h"
#include "db/databasemanager.h"
#include "db/storewriter.h"
#include "measurement/controlrequests.h"
#include "measurement/httpgetrequester.h"
#include "measurement/measurementsteps.h"
#include "measurement/testobserver.h"
#include "measurement/testrecorder.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int requestTimeout = 10000;
constexpr int reachabilityTimeout = 10000;
/// The check that follows the fifth is not looked at any more.
constexpr int maxReachabilityRetries = 5;

/// How often a test waits for room in a service that has none; the fourth refusal ends it.
constexpr int mostAdmissions = 3;

/// The phase that follows the one whose marker has been taken.
TestController::Phase afterMarker(TestController::Phase marker)
{
    return static_cast<TestController::Phase>(static_cast<int>(marker) + 1);
}

bool isOk(bool ok, const QString &header)
{
    return ok && header.contains("200 OK"_L1);
}

} // namespace

TestController::TestController(QObject *parent, TestObserver *testObserver, TestServer *server,
                               Platform &platform)
    : QObject(parent)
    , selectedServer(server)
    , testServer(server)
    , observer(testObserver)
    , deviceinfohelper(new DeviceInfoHelper(platform, this))
    , locationhelper(new LocationHelper(platform, this))
    , networkinfohelper(new NetworkInfoHelper(platform, this))
    , internetconnectionchecker(
          new TestResultLog(networkinfohelper, locationhelper, u"test"_s, this, this))
    , httpgetter(new HttpGetRequester(this, this))
    , session(new SessionOpener(platform, this))
    , writer(new StoreWriter(this))
    , delivery(new ReportDelivery(*httpgetter, *writer, this))
    , recorder(new TestRecorder(*this, this))
    , steps(new MeasurementSteps(*this, *recorder, this))
{
    connect(session, &SessionOpener::opened, this, &TestController::connectionOpened);
    connect(session, &SessionOpener::failed, this, &TestController::connectionError);
    connect(writer, &StoreWriter::waiting, this, [this] {
        observer->setNotice(tr("Another program holds the results locked; waiting for them."));
    });
}

TestController::~TestController() = default;

// ---- What is set between tests

void TestController::setTestServer(TestServer *server)
{
    selectedServer = server;
    if (!running) {
        testServer = server;
        showInformation();
    }
}

bool TestController::checkRoaming() const
{
    return networkinfohelper->roaming();
}

int TestController::getMSS() const
{
    return recorder->record() ? recorder->record()->getInitialValues()->getMss() : 0;
}

// ---- The phase machine

void TestController::runTests(QString location, QString seriesSchedule)
{
    if (running) {
        return;
    }
    prepare();
    userLocation = std::move(location);
    schedule = std::move(seriesSchedule);
    advance(Phase::Init);
}

void TestController::resendReports()
{
    if (running) {
        return;
    }
    prepare();
    continueLater(Phase::StoreAndResubmit);
}

void TestController::prepare()
{
    recorder->clear();
    schedule.clear();
    testServer = selectedServer;
    delivery->begin(testServer);
    dataBudget = nextBudget;
    delayPlan = nextPlan;
    steps->setPlan(delayPlan);
    outcome = TestOutcome();
    testScope = std::make_unique<QObject>();
    running = true;
    ending = false;
    admissions = 0;
}

void TestController::advance(Phase next)
{
    teststatus = next;
    continueTest();
}

void TestController::continueLater(Phase next)
{
    teststatus = next;
    QTimer::singleShot(0, testScope.get(), [this] { continueTest(); });
}

void TestController::continueTest()
{
    Utils::addLogEntry(u"Status: %1"_s.arg(static_cast<int>(teststatus)));
    steps->settle();
    cancelActivity = [this] { steps->cancel(); };
    if (observer->stopRequested()) {
        return stopOnRequest();
    }
    Q_EMIT phaseEntered(teststatus);
    switch (teststatus) {
    case Phase::Init: return beginTest();
    case Phase::NetworkSession: return openSession();
    case Phase::Reachability: return checkReachability();
    case Phase::UserId: return obtainUserId();
    case Phase::Initialise: return requestInitialise();
    case Phase::DownloadStartMarker: return steps->markDownloadStart();
    case Phase::Download: return steps->runDownload(measurementDuration);
    case Phase::DownloadEndMarker: return steps->markDownloadEnd();
    case Phase::UploadStartMarker: return steps->markUploadStart();
    case Phase::Upload: return steps->runUpload(measurementDuration);
    case Phase::UploadResult: return request(ControlRequests::uploadResult(*this));
    case Phase::UploadEndMarker: return steps->markUploadEnd();
    case Phase::RttStartMarker: return steps->markRttStart();
    case Phase::Rtt: return steps->runRtt();
    case Phase::RttEndMarker: return steps->markRttEnd();
    case Phase::Submit: return submitReport();
    case Phase::StoreAndResubmit: return storeAndResubmit();
    case Phase::IdleDelays: return steps->runIdleDelays();
    case Phase::ExtraDownload: return steps->runExtraDownload();
    case Phase::ExtraUpload: return steps->runExtraUpload();
    }
}

/// What the plan still asks for, and the report in the end.
TestController::Phase TestController::nextBeyondUsual() const
{
    const TestResults &record = *recorder->record();
    const bool mayLoad = delayPlan.underLoad && steps->mayLoadMore();
    if (delayPlan.idleSamples > DelayPlan::countedSamples && !record.hasIdleDelays()) {
        return Phase::IdleDelays;
    }
    if (mayLoad && !record.getExtraDownloadResult()) {
        return Phase::ExtraDownload;
    }
    return mayLoad && !record.getExtraUploadResult() ? Phase::ExtraUpload : Phase::Submit;
}

void TestController::beginTest()
{
    observer->setStatus(tr("testphase_init"));
    numberOfRetries = 0;
    observer->startTest();
    startServices();
    advance(Phase::NetworkSession);
}

void TestController::openSession()
{
    if (session->isOpen()) {
        Utils::addLogEntry(u"Connection is open!"_s);
        return advance(Phase::Reachability);
    }
    session->open();
}

void TestController::connectionOpened()
{
    if (!running || teststatus != Phase::NetworkSession) {
        return;
    }
    Utils::addLogEntry(u"Connected!"_s);
    advance(Phase::Reachability);
}

void TestController::connectionError(NetworkSession::SessionError error)
{
    Utils::addLogEntry(u"Connection Error: %1"_s.arg(static_cast<int>(error)));
    if (!running || ending) {
        return;
    }
    dropActivity();
    if (recorder->isComplete()) {
        return keepAndEnd(TestOutcome::End::Completed);
    }
    if (!recorder->record() && !schedule.isEmpty() && ids.getUserId() >= 1) {
        return ids.draw(testScope.get(), [this] {
            recorder->begin(dataBudget);
            recorder->addInitFailed();
            showInformation();
            keepAndEnd(TestOutcome::End::NoNetwork, tr("noConnectionText"));
        });
    }
    // Perhaps it went away in the middle of the test.
    keepAndEnd(TestOutcome::End::NoNetwork, tr("noConnectionText"));
}

void TestController::checkReachability()
{
    cancelActivity = [this] { internetconnectionchecker->cancel(); };
    internetconnectionchecker->takeMeasurement(reachabilityTimeout);
}

void TestController::reachabilityChecked(qlonglong rtt)
{
    ++numberOfRetries;
    if (numberOfRetries <= maxReachabilityRetries) {
        return advance(rtt >= 0 ? Phase::UserId : Phase::Reachability);
    }
    keepAndEnd(TestOutcome::End::ServerUnreachable, tr("noConnectionToServer"));
}

void TestController::obtainUserId()
{
    ids.load();
    if (ids.getUserId() >= 1) {
        return advance(Phase::Initialise);
    }
    const Deployment &deployment = Deployment::current();
    cancelActivity = [this] { httpgetter->cancel(); };
    httpgetter->doRequest(deployment.webHost, deployment.webPort,
                          ControlRequests::userId(deviceinfohelper->getImei()), requestTimeout);
}

void TestController::requestInitialise()
{
    ids.draw(testScope.get(), [this] {
        recorder->begin(dataBudget);
        showInformation();
        request(ControlRequests::initialise(*this));
    });
}

void TestController::initialiseAnswered(bool ok, const QString &header, const QString &body)
{
    if (isOk(ok, header)) {
        recorder->record()->getInitialValues()->remoteInitialValuesLoaded(
            body + "Local-IP:"_L1 + httpgetter->getLocalIP() + u';');
        return continueLater(Phase::DownloadStartMarker);
    }
    if (const auto wait = ControlRequests::comeBack(header); wait && admissions < mostAdmissions) {
        ++admissions;
        return waitForRoom(*wait);
    }
    Utils::addLogEntry(u"Test Init Error"_s);
    Utils::addLogEntry(u"Header: %1"_s.arg(header.left(200)));
    Utils::addLogEntry(u"Body: %1"_s.arg(body.left(200)));
    recorder->addInitFailed();
    const QString reason = ControlRequests::refusal(header, body);
    keepAndEnd(TestOutcome::End::Refused, reason.isEmpty() ? tr("errorInit") : reason);
}

/// Asks again under the same ids, for which the service keeps a place in its queue.
void TestController::waitForRoom(std::chrono::seconds wait)
{
    Utils::addLogEntry(u"No room, next try in %1 s"_s.arg(wait.count()));
    observer->setStatus(tr("testphase_room").arg(wait.count()));
    admission = std::make_unique<QObject>();
    cancelActivity = [this] { admission.reset(); };
    QTimer::singleShot(wait, admission.get(),
                       [this] { request(ControlRequests::initialise(*this)); });
}

void TestController::uploadResultAnswered(bool ok, const QString &header, const QString &body)
{
    if (!isOk(ok, header)) {
        Utils::addLogEntry(u"Error getting server side upload results: %1"_s.arg(body));
    }
    recorder->record()->setServerSideUpload(body);
    continueLater(Phase::UploadEndMarker);
}

void TestController::submitReport()
{
    stopServices();
    recorder->complete();
    observer->setStatus(tr("testphase_sendresults"));
    cancelActivity = [this] { delivery->cancel(); };
    recorder->makeReport();
    store([this] {
        delivery->submit(recorder->report(), [this] { advance(Phase::StoreAndResubmit); });
    });
}

void TestController::storeAndResubmit()
{
    if (recorder->record()) {
        steps->showTransferred();
    }
    cancelActivity = [this] { delivery->cancel(); };
    delivery->walkQueue([this] { endTest(TestOutcome::End::Completed); });
}

// ---- Completions

void TestController::testResultLogReady(TestResultLog *log)
{
    Utils::addLogEntry("TestResultLogReady! RTT: "_L1 + QString::number(log->getRTT() / 1000000));
    if (!running) {
        return;
    }
    if (log == internetconnectionchecker) {
        return reachabilityChecked(log->getRTT());
    }
    recorder->record()->addTestResultLog(log);
    advance(teststatus == Phase::RttEndMarker ? nextBeyondUsual() : afterMarker(teststatus));
}

void TestController::measurementDone(Result *result)
{
    Utils::addLogEntry(u"MeasurementDone!"_s);
    if (!running) {
        return;
    }
    if (teststatus == Phase::Download) {
        recorder->record()->setDownloadResult(result);
        advance(Phase::DownloadEndMarker);
    } else if (teststatus == Phase::Upload) {
        recorder->record()->setUploadResult(result);
        advance(Phase::UploadResult);
    } else if (teststatus == Phase::Rtt) {
        recorder->record()->setRTTResult(result);
        advance(Phase::RttEndMarker);
    } else if (teststatus == Phase::IdleDelays) {
        steps->takeIdleDelays(*result);
        advance(nextBeyondUsual());
    } else if (teststatus == Phase::ExtraDownload) {
        recorder->record()->setExtraDownloadResult(result);
        advance(nextBeyondUsual());
    } else if (teststatus == Phase::ExtraUpload) {
        recorder->record()->setExtraUploadResult(result);
        advance(nextBeyondUsual());
    }
}

void TestController::httpRequestDone(bool ok, QString header, QString body)
{
    if (!running) {
        return;
    }
    if (teststatus == Phase::UserId) {
        ids.assignUser(ok, body);
        continueLater(Phase::Initialise);
    } else if (teststatus == Phase::Initialise) {
        initialiseAnswered(ok, header, body);
    } else if (teststatus == Phase::UploadResult) {
        uploadResultAnswered(ok, header, body);
    } else {
        delivery->answered(ok, header, body);
    }
}

// ---- Ends

void TestController::abortTest()
{
    if (!running || ending) {
        return;
    }
    dropActivity();
    stopOnRequest();
}

void TestController::dropActivity()
{
    if (cancelActivity) {
        std::exchange(cancelActivity, nullptr)();
    }
}

void TestController::stopOnRequest()
{
    Utils::addLogEntry(u"Stop requested"_s);
    keepAndEnd(TestOutcome::End::Stopped);
}

// What a test has at the moment it is cut short goes to the queue; one that was complete is stored
// too.
void TestController::keepAndEnd(TestOutcome::End end, const QString &errorText)
{
    ending = true;
    stopServices();
    const auto kept = [this, end, errorText] { endTest(end, errorText); };
    if (isBeyondUsual()) {
        recorder->complete(); // nothing of the test's own figures is missing
    }
    if (!recorder->record() || recorder->isStored()) {
        kept();
    } else if (recorder->isComplete()) {
        store(kept);
    } else {
        recorder->makeReport();
        delivery->keep(recorder->report().xml, kept);
    }
}

void TestController::store(const std::function<void()> &done)
{
    writer->write([this] { return recorder->store(); },
                  [this, done](bool stored) {
                      outcome.keptForLater = !stored && recorder->keepForLater();
                      outcome.storeFailed = !stored && !outcome.keptForLater;
                      delivery->setOwn(recorder->report().identification, outcome.keptForLater);
                      done();
                  });
}

void TestController::endTest(TestOutcome::End end, const QString &errorText)
{
    running = ending = false;
    testScope.reset();
    outcome.end = end;
    outcome.waiting = gDB->countUnsentXMLFiles();
    const ReportDelivery::Outcome &reports = delivery->getOutcome();
    outcome.storedId = static_cast<qulonglong>(recorder->finished().storedId.value_or(0));
    outcome.storeFailed |= reports.storeFailed;
    outcome.reportDelivered = reports.delivered;
    outcome.queueId = reports.queueId;
    outcome.answered = reports.answered;
    outcome.resent = reports.resent;
    outcome.userGone = reports.goneUser > 0;
    ids.forgetUser(this, reports.goneUser);
    recorder->conclude(reports);
    const TestOutcome ended = outcome;
    observer->stopTest();
    if (!errorText.isEmpty()) {
        observer->setErrorText(errorText);
    }
    Q_EMIT testEnded(ended);
}

// ---- Steps that several phases share

void TestController::startServices()
{
    locationhelper->startService();
    deviceinfohelper->startService();
    networkinfohelper->startService();
}

void TestController::stopServices()
{
    locationhelper->stopService();
    deviceinfohelper->stopService();
    networkinfohelper->stopService();
}

void TestController::request(const QString &text)
{
    cancelActivity = [this] { httpgetter->cancel(); };
    httpgetter->doRequest(testServer->getHostname(), testServer->getPort(), text, requestTimeout);
}

} // namespace velometer
