#pragma once

#include "data/delayplan.h"
#include "data/testresults.h"
#include "measurement/measurementcontext.h"
#include "measurement/measurementsteps.h"
#include "measurement/reportdelivery.h"
#include "measurement/sessionopener.h"
#include "measurement/testids.h"
#include "measurement/testrecorder.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace velometer {

class HttpGetRequester;
class Platform;
class StoreWriter;
class TestObserver;
class TestServer;

/// How a test ended, for a program that must say so.
struct TestOutcome
{
    enum class End {
        Completed,         ///< every phase ran; the figures themselves may still be missing
        Stopped,           ///< on request
        NoNetwork,         ///< the network session did not open
        ServerUnreachable, ///< nothing answers at the test server
        Refused,           ///< the service did not accept the test
    };

    End end = End::Completed;
    qulonglong storedId = 0;       ///< row of the results table, 0 when nothing was stored
    bool storeFailed = false;      ///< results or report could not be written
    bool keptForLater = false;     ///< another program holds the store; the test waits beside it
    bool reportDelivered = false;  ///< the service has taken this test's report
    std::optional<qint64> queueId; ///< row of the queue where it waits
    bool answered = false;         ///< the service has answered a report, in whatever way
    int resent = 0;                ///< earlier reports delivered at the end of this test
    int waiting = 0;               ///< reports that wait in the queue now
    bool userGone = false; ///< the service has deleted this user; the next test gets another
};

/// Drives one complete test: context helpers, network session, reachability, user id, initialise,
/// download, upload, server-side result, RTT, report, store, and the queue of earlier reports. A
/// phase machine: every asynchronous completion sets the next phase and calls continueTest().
/// Reports to its observer; every test ends in exactly one stopTest() followed by testEnded(). Main
/// thread only.
///
/// Observer and platform are borrowed and outlive the controller; it owns everything else. Results
/// and reports go to gDB, which is open.
class TestController : public QObject, public MeasurementContext
{
    Q_OBJECT

public:
    enum class Phase {
        Init = 0,
        NetworkSession = 1,
        Reachability = 2,
        UserId = 3,
        Initialise = 4,
        DownloadStartMarker = 5,
        Download = 6,
        DownloadEndMarker = 7,
        UploadStartMarker = 8,
        Upload = 9,
        UploadResult = 10,
        UploadEndMarker = 11,
        RttStartMarker = 12,
        Rtt = 13,
        RttEndMarker = 14,
        Submit = 15,
        StoreAndResubmit = 16,
        // Between RttEndMarker and Submit, of tests whose plan asks for them.
        IdleDelays = 17,
        ExtraDownload = 18,
        ExtraUpload = 19,
    };
    Q_ENUM(Phase)

    /// How long the download and the upload last, s.
    static constexpr int standardDuration = 7;

    /// @p server as for setTestServer().
    TestController(QObject *parent, TestObserver *observer, TestServer *server, Platform &platform);
    ~TestController() override;

    /// Starts a test at the user's location (a location code), in a series with @p schedule
    /// "number,count,minutes". Does nothing while one runs.
    void runTests(QString userLocation, QString schedule = {});
    /// Offers the queued reports to the service once, without a test; ends like a test.
    void resendReports();
    /// Ends a running test now: the running phase is dropped, a partial report goes to the queue.
    /// The end comes before this returns unless the store is locked, which is waited for.
    void abortTest();
    bool isRunning() const { return running; }

    /// The ids are drawn under a lock that another program may hold: @p done is called once the new
    /// series is saved.
    void startNewSeries(const std::function<void()> &done = [] {})
    {
        ids.startNewSeries(this, done);
    }
    /// The server of the tests to come: never null, borrowed, outlives its use. A test that runs
    /// ends with the server it began with.
    void setTestServer(TestServer *server);
    TestServer *getSelectedServer() const { return selectedServer; }
    /// From the next test on.
    void setDataBudget(DataBudget budget) { nextBudget = budget; }
    /// From the next test on.
    void setDelayPlan(const DelayPlan &plan) { nextPlan = plan; }
    /// From the next test on, s: shorter ones try the program out, they are no comparable figures.
    void setMeasurementDuration(int seconds) { measurementDuration = seconds; }
    /// Shows the observer server, ids and position as they are now.
    void showInformation() { steps->showInformation(); }
    bool checkRoaming() const;

    /// The record of the running or the last test; null before the first. Gone with the next
    /// runTests.
    const TestResults *getTestResults() const { return recorder->record(); }
    const TestOutcome &getOutcome() const { return outcome; }
    /// Everything known of the test that ended last, whatever its end.
    const FinishedTest &getFinishedTest() const { return recorder->finished(); }
    Phase getPhase() const { return teststatus; }

    // MeasurementContext
    TestServer *getTestServer() const override { return testServer; }
    QString getUserLocation() const override { return userLocation; }
    qlonglong getUserId() const override { return ids.getUserId(); }
    qlonglong getSeriesId() const override { return ids.getSeriesId(); }
    qlonglong getTestId() const override { return ids.getTestId(); }
    QString getScheduleInfo() const override { return schedule; }
    LocationHelper *getLocationHelper() const override { return locationhelper; }
    NetworkInfoHelper *getNetWorkInfoHelper() const override { return networkinfohelper; }
    DeviceInfoHelper *getDeviceInfoHelper() const override { return deviceinfohelper; }
    TestObserver *getTestObserver() const override { return observer; }
    int getMSS() const override;
    void testResultLogReady(TestResultLog *log) override;
    void measurementDone(Result *result) override;
    void httpRequestDone(bool ok, QString header, QString body) override;

Q_SIGNALS:
    /// continueTest is about to work on this phase.
    void phaseEntered(TestController::Phase phase);
    void testEnded(const TestOutcome &outcome);

private Q_SLOTS:
    void continueTest();
    void connectionOpened();
    void connectionError(NetworkSession::SessionError error);

private:
    // One short function a phase, in the order of the phases.
    void beginTest();
    void openSession();
    void checkReachability();
    void obtainUserId();
    void requestInitialise();
    void submitReport();
    void storeAndResubmit();

    void initialiseAnswered(bool ok, const QString &header, const QString &body);
    void uploadResultAnswered(bool ok, const QString &header, const QString &body);

    void reachabilityChecked(qlonglong rtt);
    void request(const QString &text);

    bool isBeyondUsual() const { return teststatus >= Phase::IdleDelays; }
    Phase nextBeyondUsual() const;
    void prepare();
    void advance(Phase next);
    void continueLater(Phase next);
    void stopOnRequest();
    void keepAndEnd(TestOutcome::End end, const QString &errorText = QString());
    void store(const std::function<void()> &done);
    void dropActivity();
    void waitForRoom(std::chrono::seconds wait);
    void endTest(TestOutcome::End end, const QString &errorText = QString());
    void startServices();
    void stopServices();

    TestServer *selectedServer = nullptr;
    TestServer *testServer = nullptr; ///< of the running or the last test
    DataBudget nextBudget;
    DelayPlan nextPlan;
    DelayPlan delayPlan;   ///< of the running or the last test
    DataBudget dataBudget; ///< of the running or the last test
    int measurementDuration = standardDuration;
    QString userLocation;
    QString schedule;
    TestIds ids;
    TestObserver *observer;
    DeviceInfoHelper *deviceinfohelper;
    LocationHelper *locationhelper;
    NetworkInfoHelper *networkinfohelper;
    TestResultLog *internetconnectionchecker;
    int numberOfRetries = 0;
    int admissions = 0;                 ///< times that the service has had no room for this test
    std::unique_ptr<QObject> admission; ///< lives while the test waits for room
    HttpGetRequester *httpgetter;
    SessionOpener *session;
    StoreWriter *writer;
    ReportDelivery *delivery;
    TestRecorder *recorder;
    MeasurementSteps *steps;
    Phase teststatus = Phase::Init;

    bool running = false;
    bool ending = false; ///< all that is left is to keep what there is
    /// Silences what the current phase has under way.
    std::function<void()> cancelActivity;
    /// Context of delayed calls; a new test replaces it, so that no call of an old one arrives.
    std::unique_ptr<QObject> testScope;
    TestOutcome outcome;
};

} // namespace velometer
