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
#include "measurement/downloadtest.h"
#include "measurement/httpgetrequester.h"
#include "measurement/requestparameters.h"
#include "measurement/rtttest.h"
#include "measurement/testhost.h"
#include "measurement/testobserver.h"
#include "measurement/uploadtest.h"
#include "platform/platform.h"
#include "utils/deployment.h"
#include "utils/units.h"
#include "utils/utils.h"

#include <QLockFile>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int testduration = 7; ///< s, of the download and of the upload
constexpr int requestTimeout = 10000;
constexpr int reachabilityTimeout = 10000;
constexpr int logEntryTimeout = 3000;
/// Ids are drawn in a moment; a program that hangs while it does must not keep the others.
constexpr int idLockTimeout = 200;
/// The check that follows the fifth is not looked at any more.
constexpr int maxReachabilityRetries = 5;

/// Ids stay where every program that reads them, a script's doubles included, has them exactly.
constexpr qlonglong maxId = qlonglong(1) << 53;

qlonglong plausibleId(qlonglong id, qlonglong minimum)
{
    return id < minimum || id > maxId ? minimum : id;
}

/// Beside the settings it guards.
QString idLockFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           "/orvak/ids.lock"_L1;
}

QString described(const NetworkConfiguration &configuration)
{
    return u"%1:%2:%3:%4"_s.arg(configuration.bearer, configuration.name,
                                QString::number(configuration.purpose),
                                QString::number(configuration.state));
}

QString kiloBitsPerSecond(qint64 bitsPerSecond)
{
    return Units::kiloBitRate(static_cast<double>(bitsPerSecond));
}

bool isOk(bool ok, const QString &header)
{
    return ok && header.contains("200 OK"_L1);
}

} // namespace

TestController::TestController(QObject *parent, TestObserver *testObserver, TestHost *testHost,
                               Platform &devicePlatform)
    : QObject(parent)
    , observer(testObserver)
    , host(testHost)
    , platform(devicePlatform)
    , deviceinfohelper(new DeviceInfoHelper(platform, this))
    , locationhelper(new LocationHelper(platform, this))
    , networkinfohelper(new NetworkInfoHelper(platform, this))
    , internetconnectionchecker(
          new TestResultLog(networkinfohelper, locationhelper, u"test"_s, this, this))
    , httpgetter(new HttpGetRequester(this, this))
{
    userid = Utils::getSettingsCommonValue(u"UserId"_s).toLongLong();
    if (userid >= 1) {
        loadIds();
    } else {
        userid = 0;
    }
    initializeTestServer();
}

TestController::~TestController() = default;

// ---- Choice of server, ids and settings

void TestController::initializeTestServer()
{
    const Deployment &deployment = Deployment::current();
    QString hostname = Utils::getSettingsValue(u"TestServer.Hostname"_s);
    QString port = Utils::getSettingsValue(u"TestServer.Port"_s);
    // The settings are a file that anyone may edit, and the host goes into requests as it is.
    if (!Endpoint::parse(Endpoint::bracketed(hostname), 0)) {
        hostname.clear();
    }
    if (port.toInt() > 65535) {
        port = u"0"_s;
    }

    if (hostname.isEmpty() || port.isEmpty()) {
        const int mcc = networkinfohelper->getMcc().trimmed().toInt();
        const int mnc = networkinfohelper->getMnc().trimmed().toInt();
        Endpoint chosen = deployment.swisscom;
        if (mcc == 228 && mnc == 1) {
            Utils::addLogEntry(u"SELECTED SWISSCOM"_s);
        } else if (mcc == 228 && mnc == 2) {
            Utils::addLogEntry(u"SELECTED SUNRISE"_s);
            chosen = deployment.sunrise;
        } else {
            Utils::addLogEntry(u"SELECTED DEFAULT"_s);
        }
        hostname = chosen.host;
        port = QString::number(chosen.port);
        Utils::setSettingsValue(u"TestServer.Hostname"_s, hostname);
        Utils::setSettingsValue(u"TestServer.Port"_s, port);
    }

    testServer = host->getTestServer(hostname, port.toInt());
    if (!testServer) {
        testServer = new TestServer(this);
        testServer->setHostname(hostname);
        testServer->setPort(port.toInt());
        Utils::addLogEntry(u"Test Server not found"_s);
    }
    selectedServer = testServer;
    Utils::addLogEntry(u"Selected TestServer: %1:%2"_s.arg(testServer->getHostname(),
                                                           QString::number(testServer->getPort())));
}

void TestController::setTestServer(TestServer *server)
{
    selectedServer = server;
    if (!running) {
        testServer = server;
    }
    if (!running && server) {
        showInformation();
    }
    if (!server) {
        Utils::addLogEntry(u"TestController::setTestServer -- called with NULL testServer"_s);
        return;
    }
    Utils::setSettingsValue(u"TestServer.Hostname"_s, server->getHostname());
    Utils::setSettingsValue(u"TestServer.Port"_s, QString::number(server->getPort()));
}

void TestController::loadIds()
{
    testid = plausibleId(Utils::getSettingsCommonValue(u"TestId"_s).toLongLong(), 0);
    seriesid = plausibleId(Utils::getSettingsCommonValue(u"SeriesId"_s).toLongLong(), 1);
}

void TestController::loadUserId()
{}

void TestController::saveUserSettings()
{
    Utils::setSettingsCommonValue(u"UserId"_s, QString::number(userid));
    Utils::setSettingsCommonValue(u"SeriesId"_s, QString::number(seriesid));
    Utils::setSettingsCommonValue(u"TestId"_s, QString::number(testid));
    Utils::setSettingsValue(u"TestServer.Hostname"_s, selectedServer->getHostname());
    Utils::setSettingsValue(u"TestServer.Port"_s, QString::number(selectedServer->getPort()));
}

void TestController::startNewSeries()
{
    testid = 0;
    ++seriesid;
    saveUserSettings();
}

bool TestController::checkRoaming() const
{
    return networkinfohelper->roaming();
}

QString TestController::getScheduleInfo() const
{
    return host->getScheduleInfo();
}

int TestController::getMSS() const
{
    return testResults ? testResults->getInitialValues()->getMss() : 0;
}

// ---- The phase machine

void TestController::runTests(QString location)
{
    if (running) {
        return;
    }
    prepare();
    userLocation = std::move(location);
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
    xmldata.reset();
    testServer = selectedServer;
    dataBudget = nextBudget;
    outcome = TestOutcome();
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
    if (netsession && netsession->isOpen()) {
        Utils::addLogEntry(u"Connection is open!"_s);
        return advance(Phase::Reachability);
    }
    if (netsession) {
        netsession->disconnect(this);
        netsession.release()->deleteLater(); // its error signal may have ended the last test
    }
    netsession = platform.createNetworkSession();
    const auto configurations = netsession->allConfigurations();
    for (const NetworkConfiguration &configuration : configurations) {
        Utils::addLogEntry("Connection:"_L1 + described(configuration));
    }
    const NetworkConfiguration chosen = netsession->defaultConfiguration();
    Utils::addLogEntry("Default Connection:"_L1 + described(chosen));
    if (!chosen.valid && !netsession->canStartAndStopInterfaces() &&
        chosen.state != NetworkConfiguration::Active) {
        Utils::addLogEntry(u"No default access point available"_s);
    }
    connect(netsession.get(), &NetworkSession::opened, this, &TestController::connectionOpened);
    connect(netsession.get(), &NetworkSession::error, this, &TestController::connectionError);
    netsession->open();
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
    } else {
        stopServices();
        if (!getScheduleInfo().isEmpty() && userid >= 1) {
            createRecord();
            addInitFailedEntry();
            showInformation();
            queuePartialReport();
        }
    }
    if (concluded) {
        endTest(TestOutcome::End::Completed);
    } else {
        endTest(TestOutcome::End::NoNetwork, tr("noConnectionText"));
    }
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
    userid = Utils::getSettingsCommonValue(u"UserId"_s).toLongLong();
    if (userid >= 1) {
        loadIds();
        return advance(Phase::Initialise);
    }
    const Deployment &deployment = Deployment::current();
    const QString uuid = QString::fromLatin1(QUrl::toPercentEncoding(deviceinfohelper->getImei()));
    const QString text =
        u"GET /velometer/getIDwithUUID.jsp?UUID=%1 HTTP/1.1\r\n"
        "Host: %2\r\n"
        "Connection: Close\r\n\r\n"_s.arg(uuid, Endpoint::bracketed(deployment.webHost));
    cancelActivity = [this] { httpgetter->cancel(); };
    httpgetter->doRequest(deployment.webHost, deployment.webPort, text, requestTimeout);
}

void TestController::userIdAnswered(bool ok, const QString &body)
{
    const QStringList parts = body.trimmed().split(u';');
    userid = ok && parts.size() >= 2 ? plausibleId(parts[0].toLongLong(), 0) : 0;
    if (userid != 0) {
        seriesid = plausibleId(parts[1].toLongLong(), 0) + 1;
    } else {
        // A test is worth more than a proper id: go on with one that hardly anyone else has.
        userid = Utils::getTimeInMs();
        seriesid = 1;
    }
    testid = 0;
    continueLater(Phase::Initialise);
}

void TestController::requestInitialise()
{
    {
        // Another program of the family may draw its ids at this moment, from the same settings.
        QLockFile lock(idLockFile());
        lock.tryLock(idLockTimeout);
        if (Utils::getSettingsCommonValue(u"UserId"_s).toLongLong() == userid) {
            loadIds();
        }
        createRecord();
        showInformation();
        saveUserSettings();
    }
    request("GET /velometer/initialise.php?logtraffic=0.1&"_L1 +
            testParameters(*this, TestIdOffset::initialise) + " HTTP/1.1\r\nHost: "_L1 +
            testServer->getHostHeader() + "\r\nConnection: Close\r\n\r\n"_L1);
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
    test->doMeasurement(testduration);
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
    test->doMeasurement(testduration);
}

void TestController::requestUploadResult()
{
    request("GET /velometer/getuploadresult.php?"_L1 + testParameters(*this, TestIdOffset::upload) +
            " HTTP/1.1\r\nHost: "_L1 + testServer->getHostHeader() +
            "\r\nConnection: Close\r\n\r\n"_L1);
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
    observer->setStatus(tr("testphase_sendresults"));
    makeReport();
    testResults->setSizeOfXmInBytes(xmldata->xml.toUtf8().size());
    postReport();
}

void TestController::submissionAnswered(bool ok, const QString &header, const QString &body)
{
    const bool fromQueue = xmldata->identification != -1;
    xmldata->successfull = isOk(ok, header);
    outcome.answered |= ok;
    if (!xmldata->successfull) {
        Utils::addLogEntry(u"Error saving results: %1"_s.arg(body));
        ++xmldata->numberofretries;
        queueReport();
    } else if (!fromQueue) {
        outcome.reportDelivered = true;
    } else if (gDB->deleteUnsentXMLFile(xmldata->identification)) {
        Utils::addLogEntry(u"Result retry successfull!"_s);
        if (xmldata->identification == outcome.queueId) {
            outcome.reportDelivered = true;
            outcome.queueId = -1;
        } else {
            ++outcome.resent;
        }
    }
    continueLater(Phase::StoreAndResubmit);
}

void TestController::storeAndResubmit()
{
    const int lastId = xmldata ? xmldata->identification : 0;
    if (xmldata && xmldata->identification == -1) {
        storeTest();
        const QString mode = networkinfohelper->getNetworkmode();
        const QString prefix =
            mode.isEmpty() ? QString() : Utils::trConnectionTypeShort(mode) + u' ';
        showInformation();
        observer->setDataTransferred(tr("DataTransferred") + prefix + ": "_L1 +
                                     Units::megabytes(finished.totalBytes()));
    }
    xmldata = gDB->getNextUnsentXMLFile(lastId);
    if (!xmldata) {
        return endTest(TestOutcome::End::Completed);
    }
    resubmit();
}

void TestController::makeReport()
{
    finished = testResults->finished(Surroundings::of(*this));
    xmldata = TestReport::document(finished);
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
    finished.storedId = Known::atLeast(1, static_cast<qint64>(outcome.storedId));
    finished.report = {outcome.reportDelivered, Known::atLeast(0, outcome.queueId), outcome.resent};
}

void TestController::resubmit()
{
    Utils::addLogEntry(u"Found old result: %1,%2"_s.arg(QString::number(xmldata->identification),
                                                        QString::number(xmldata->numberofretries)));
    teststatus = Phase::Submit; // its answer is judged like a submission's
    xmldata->xml.replace(
        "</ClientTime>"_L1,
        u"</ClientTime><ClientRetryTime>%1</ClientRetryTime>"_s.arg(Utils::getTimeInMs()));
    postReport();
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
    } else if (teststatus == Phase::Submit) {
        submissionAnswered(ok, header, body);
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
    if (!testResults) {
        return;
    }
    const bool complete = xmldata && xmldata->identification == -1;
    if (complete) {
        if (teststatus == Phase::Submit) {
            queueReport(); // its answer is not waited for any more; the service takes a report once
        }
        storeTest();
    } else if (!concluded) {
        queuePartialReport();
    }
}

void TestController::queuePartialReport()
{
    testResults->setTimestamp(Utils::getTimeInMs());
    makeReport();
    queueReport();
}

void TestController::queueReport()
{
    const bool isOwn = xmldata->identification == -1;
    const int row = gDB->insertOrUpdateXMLFile(xmldata.get());
    if (row == -1) {
        outcome.storeFailed = true;
    } else if (isOwn) {
        outcome.queueId = row;
    }
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
    ++testid;
    testResults = new TestResults(seriesid, testid, this);
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
    observer->setInformation(testServer->getHostname(), QString::number(seriesid),
                             QString::number(testid), position);
}

void TestController::request(const QString &text)
{
    cancelActivity = [this] { httpgetter->cancel(); };
    httpgetter->doRequest(testServer->getHostname(), testServer->getPort(), text, requestTimeout);
}

// The body's UTF-8 bytes go out as Latin-1 characters, which the requester encodes once more: the
// service knows this encoding and the length that counts the bytes before it.
void TestController::postReport()
{
    const QByteArray body = xmldata->xml.toUtf8();
    request("POST /velometer/redirect_iphone.php HTTP/1.1\r\nHost: "_L1 +
            testServer->getHostHeader() +
            "\r\nConnection: Close\r\n"
            "Content-Type: application/x-www-form-urlencoded\r\n"
            "Content-Length: "_L1 +
            QString::number(body.size()) + "\r\n\r\n"_L1 + QString::fromLatin1(body));
}

} // namespace velometer
