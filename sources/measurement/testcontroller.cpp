#include "measurement/testcontroller.h"

#include "context/deviceinfohelper.h"
#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/result.h"
#include "data/surroundings.h"
#include "data/testreport.h"
#include "data/testresultlog.h"
#include "data/testserver.h"
#include "db/databasemanager.h"
#include "measurement/controlrequests.h"
#include "measurement/downloadtest.h"
#include "measurement/httpgetrequester.h"
#include "measurement/rtttest.h"
#include "measurement/testobserver.h"
#include "measurement/uploadtest.h"
#include "utils/deployment.h"
#include "utils/units.h"
#include "utils/utils.h"

#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int requestTimeout = 10000;
constexpr int reachabilityTimeout = 10000;
constexpr int logEntryTimeout = 3000;
/// The check that follows the fifth is not looked at any more.
constexpr int maxReachabilityRetries = 5;

QString kiloBitsPerSecond(qint64 bitsPerSecond)
{
    return Units::kiloBitRate(static_cast<double>(bitsPerSecond));
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
    , delivery(new ReportDelivery(*httpgetter, this))
{
    connect(session, &SessionOpener::opened, this, &TestController::connectionOpened);
    connect(session, &SessionOpener::failed, this, &TestController::connectionError);
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

void TestController::startNewSeries(const std::function<void()> &done)
{
    ids.startNewSeries(this, done);
}

bool TestController::checkRoaming() const
{
    return networkinfohelper->roaming();
}

int TestController::getMSS() const
{
    return testResults ? testResults->getInitialValues()->getMss() : 0;
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
    // It may be the parent of what has just signalled the end of the last test.
    if (testResults) {
        testResults->deleteLater();
    }
    testResults = nullptr;
    schedule.clear();
    testServer = selectedServer;
    delivery->begin(testServer);
    dataBudget = nextBudget;
    outcome = TestOutcome();
    complete = false;
    finished = FinishedTest();
    concluded = false;
    testScope = std::make_unique<QObject>();
    running = true;
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
    cancelActivity = nullptr;
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
    case Phase::DownloadStartMarker: return markDownloadStart();
    case Phase::Download: return runDownload();
    case Phase::DownloadEndMarker: return markDownloadEnd();
    case Phase::UploadStartMarker: return markUploadStart();
    case Phase::Upload: return runUpload();
    case Phase::UploadResult: return requestUploadResult();
    case Phase::UploadEndMarker: return markUploadEnd();
    case Phase::RttStartMarker: return markRttStart();
    case Phase::Rtt: return runRtt();
    case Phase::RttEndMarker: return markRttEnd();
    case Phase::Submit: return submitReport();
    case Phase::StoreAndResubmit: return storeAndResubmit();
    }
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
    if (!running) {
        return;
    }
    dropActivity();
    if (testResults) {
        // The network went away in the middle of the test.
        keepUnfinishedTest();
        if (concluded) {
            return endTest(TestOutcome::End::Completed);
        }
    } else {
        stopServices();
        if (!schedule.isEmpty() && ids.getUserId() >= 1) {
            return ids.draw(testScope.get(), [this] {
                createRecord();
                addInitFailedEntry();
                showInformation();
                queuePartialReport();
                endTest(TestOutcome::End::NoNetwork, tr("noConnectionText"));
            });
        }
    }
    endTest(TestOutcome::End::NoNetwork, tr("noConnectionText"));
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
    stopServices();
    if (testResults) {
        queuePartialReport();
    }
    endTest(TestOutcome::End::ServerUnreachable, tr("noConnectionToServer"));
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

void TestController::userIdAnswered(bool ok, const QString &body)
{
    ids.assignUser(ok, body);
    continueLater(Phase::Initialise);
}

void TestController::requestInitialise()
{
    ids.draw(testScope.get(), [this] {
        createRecord();
        showInformation();
        request(ControlRequests::initialise(*this));
    });
}

void TestController::initialiseAnswered(bool ok, const QString &header, const QString &body)
{
    if (isOk(ok, header)) {
        testResults->getInitialValues()->remoteInitialValuesLoaded(body + "Local-IP:"_L1 +
                                                                   httpgetter->getLocalIP() + u';');
        return continueLater(Phase::DownloadStartMarker);
    }
    Utils::addLogEntry(u"Test Init Error"_s);
    Utils::addLogEntry(u"Header: %1"_s.arg(header.left(200)));
    Utils::addLogEntry(u"Body: %1"_s.arg(body.left(200)));
    stopServices();
    addInitFailedEntry();
    queuePartialReport();
    endTest(TestOutcome::End::Refused, tr("errorInit"));
}

void TestController::markDownloadStart()
{
    testResults->setDownloadLocationStart(locationhelper->getDoubleLocation());
    takeLogEntry(u"DownloadStart"_s, Phase::Download);
}

void TestController::runDownload()
{
    observer->setStatus(tr("testphase_download"));
    auto *test = new DownloadTest(this, testResults);
    test->setByteLimit(testResults->getDataBudget().downloadShare());
    cancelActivity = [test] { test->cancel(); };
    test->doMeasurement(measurementDuration);
}

void TestController::markDownloadEnd()
{
    const qint64 rate = testResults->getDownloadResult()->getRateAvg();
    observer->setDownloadText(rate > 0 ? kiloBitsPerSecond(rate) : tr("na"));
    showInformation();
    observer->setStatus(tr("testphase_wait"));
    testResults->setDownloadLocationEnd(locationhelper->getDoubleLocation());
    takeLogEntry(u"DownloadEnd"_s, Phase::UploadStartMarker);
}

void TestController::markUploadStart()
{
    testResults->setUploadLocationStart(locationhelper->getDoubleLocation());
    takeLogEntry(u"UploadStart"_s, Phase::Upload);
}

void TestController::runUpload()
{
    observer->setStatus(tr("testphase_upload"));
    auto *test = new UploadTest(this, testResults);
    const qint64 downloaded = testResults->getDownloadResult()->getAllBytesTransfered();
    test->setByteLimit(testResults->getDataBudget().uploadShare(downloaded));
    cancelActivity = [test] { test->cancel(); };
    test->doMeasurement(measurementDuration);
}

void TestController::requestUploadResult()
{
    request(ControlRequests::uploadResult(*this));
}

void TestController::uploadResultAnswered(bool ok, const QString &header, const QString &body)
{
    if (!isOk(ok, header)) {
        Utils::addLogEntry(u"Error getting server side upload results: %1"_s.arg(body));
    }
    testResults->setServerSideUpload(body);
    continueLater(Phase::UploadEndMarker);
}

void TestController::markUploadEnd()
{
    const qint64 serverRate = testResults->getServerUploadAvg();
    const qint64 clientRate = testResults->getUploadResult()->getRateAvg();
    if (serverRate > 0) {
        observer->setUploadText(kiloBitsPerSecond(serverRate));
    } else {
        observer->setUploadText(clientRate > 0 ? kiloBitsPerSecond(clientRate) : tr("na"));
    }
    showInformation();
    observer->setStatus(tr("testphase_wait"));
    testResults->setUploadLocationEnd(locationhelper->getDoubleLocation());
    takeLogEntry(u"UploadEnd"_s, Phase::RttStartMarker);
}

void TestController::markRttStart()
{
    testResults->setRttLocationStart(locationhelper->getDoubleLocation());
    takeLogEntry(u"RttStart"_s, Phase::Rtt);
}

void TestController::runRtt()
{
    observer->setStatus(tr("testphase_rtt"));
    auto *test = new RttTest(this, testResults);
    cancelActivity = [test] { test->cancel(); };
    test->doMeasurement();
}

void TestController::markRttEnd()
{
    const int average = testResults->getRTTResult()->getResponseAvg();
    observer->setRTTText(average >= 1 ? Units::wholeMilliseconds(average) : tr("na"));
    showInformation();
    observer->setStatus(tr("testphase_wait"));
    testResults->setRttLocationEnd(locationhelper->getDoubleLocation());
    takeLogEntry(u"RttEnd"_s, Phase::Submit);
}

void TestController::submitReport()
{
    testResults->setTimestamp(Utils::getTimeInMs());
    stopServices();
    testResults->setAllLocations(locationhelper->getAllLocations());
    testResults->calculateAdditionalValues();
    complete = true;
    observer->setStatus(tr("testphase_sendresults"));
    const QString report = makeReport();
    testResults->setSizeOfXmInBytes(report.toUtf8().size());
    // Its answer is not waited for any more.
    cancelActivity = [this] { delivery->keepSubmitted(); };
    delivery->submit(report, [this] { advance(Phase::StoreAndResubmit); });
}

void TestController::storeAndResubmit()
{
    if (testResults) {
        storeTest();
        showTransferred();
    }
    cancelActivity = [this] { delivery->cancel(); };
    delivery->walkQueue([this] { endTest(TestOutcome::End::Completed); });
}

void TestController::showTransferred()
{
    const QString mode = networkinfohelper->getNetworkmode();
    const QString prefix = mode.isEmpty() ? QString() : Utils::trConnectionTypeShort(mode) + u' ';
    showInformation();
    observer->setDataTransferred(tr("DataTransferred") + prefix + ": "_L1 +
                                 Units::megabytes(finished.totalBytes()));
}

QString TestController::makeReport()
{
    finished = testResults->finished(Surroundings::of(*this));
    return TestReport::document(finished)->xml;
}

void TestController::storeTest()
{
    concluded = true;
    noteOutcome();
    const qulonglong id = gDB->storeTest(finished);
    testResults->setMyTestId(static_cast<qlonglong>(id));
    outcome.storedId = id;
    outcome.storeFailed |= id == 0;
}

void TestController::noteOutcome()
{
    const ReportDelivery::Outcome &reports = delivery->getOutcome();
    outcome.storeFailed |= reports.storeFailed;
    outcome.reportDelivered = reports.delivered;
    outcome.queueId = reports.queueId;
    outcome.answered = reports.answered;
    outcome.resent = reports.resent;
    finished.storedId = Known::atLeast(1, static_cast<qint64>(outcome.storedId));
    finished.report = {reports.delivered, reports.queueId, reports.resent};
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
    testResults->addTestResultLog(log);
    advance(afterLogEntry);
}

void TestController::measurementDone(Result *result)
{
    Utils::addLogEntry(u"MeasurementDone!"_s);
    if (!running) {
        return;
    }
    if (teststatus == Phase::Download) {
        testResults->setDownloadResult(result);
        advance(Phase::DownloadEndMarker);
    } else if (teststatus == Phase::Upload) {
        testResults->setUploadResult(result);
        advance(Phase::UploadResult);
    } else if (teststatus == Phase::Rtt) {
        testResults->setRTTResult(result);
        advance(Phase::RttEndMarker);
    }
}

void TestController::httpRequestDone(bool ok, QString header, QString body)
{
    if (!running) {
        return;
    }
    if (teststatus == Phase::UserId) {
        userIdAnswered(ok, body);
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
    if (!running) {
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
    keepUnfinishedTest();
    endTest(TestOutcome::End::Stopped);
}

// What a test has at the moment it is cut short goes to the queue; one that was complete is stored
// too.
void TestController::keepUnfinishedTest()
{
    stopServices();
    if (!testResults || concluded) {
        return;
    }
    if (complete) {
        storeTest();
    } else {
        queuePartialReport();
    }
}

void TestController::queuePartialReport()
{
    testResults->setTimestamp(Utils::getTimeInMs());
    delivery->keep(makeReport());
}

void TestController::endTest(TestOutcome::End end, const QString &errorText)
{
    running = false;
    testScope.reset();
    outcome.end = end;
    outcome.waiting = gDB->countUnsentXMLFiles();
    if (!finished.timestamp) {
        finished = Surroundings::of(*this); // it did not get as far as a report
    }
    noteOutcome();
    const TestOutcome ended = outcome;
    observer->stopTest();
    if (!errorText.isEmpty()) {
        observer->setErrorText(errorText);
    }
    Q_EMIT testEnded(ended);
}

// ---- Steps that several phases share

void TestController::createRecord()
{
    testResults = new TestResults(ids.getSeriesId(), ids.getTestId(), this);
    testResults->setDataBudget(dataBudget);
    testResults->setUserLocation(userLocation);
    testResults->setTestServer(testServer->getHostname());
    testResults->setConnectionType(networkinfohelper->getNetworkmode());
}

void TestController::addInitFailedEntry()
{
    auto *entry =
        new TestResultLog(networkinfohelper, locationhelper, u"InitFailed"_s, this, testResults);
    entry->fillInGPSAndNetworkData();
    testResults->addTestResultLog(entry);
}

void TestController::takeLogEntry(const QString &name, Phase next)
{
    auto *entry = new TestResultLog(networkinfohelper, locationhelper, name, this, testResults);
    afterLogEntry = next;
    cancelActivity = [entry] { entry->cancel(); };
    entry->takeMeasurement(logEntryTimeout);
}

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

void TestController::showInformation()
{
    QString position;
    switch (locationhelper->getLocationStatus()) {
    case 0: position = tr("positionunknown"); break;
    case 2:
        position =
            tr("positionknown")
                .arg(QString::number(
                         static_cast<qint64>(locationhelper->getAccuracyHor().toFloat())),
                     QString::number(static_cast<qint64>(locationhelper->getAltitude().toFloat())));
        break;
    default: position = tr("positionabout"); break;
    }
    observer->setInformation(testServer->getHostname(), QString::number(ids.getSeriesId()),
                             QString::number(ids.getTestId()), position);
}

void TestController::request(const QString &text)
{
    cancelActivity = [this] { httpgetter->cancel(); };
    httpgetter->doRequest(testServer->getHostname(), testServer->getPort(), text, requestTimeout);
}

} // namespace velometer
