#include "measurement/testcontroller.h"

#include "data/result.h"
#include "data/testservertable.h"
#include "db/databasemanager.h"
#include "measurement/testhost.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "support/fakeobserver.h"
#include "support/fakeplatform.h"
#include "support/fakeservice.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using Phase = TestController::Phase;
using End = TestOutcome::End;

namespace {

class FakeHost : public TestHost
{
public:
    TestServer *getTestServer(const QString &hostname, int port) override
    {
        return table.find(hostname, port);
    }
    QString getScheduleInfo() const override { return schedule; }

    TestServerTable table{Deployment::current(), nullptr};
    QString schedule;
};

void setIds(const QString &user, const QString &series, const QString &test)
{
    Utils::setSettingsCommonValue(u"UserId"_s, user);
    Utils::setSettingsCommonValue(u"SeriesId"_s, series);
    Utils::setSettingsCommonValue(u"TestId"_s, test);
}

void setServer(const QString &host, const QString &port)
{
    Utils::setSettingsValue(u"TestServer.Hostname"_s, host);
    Utils::setSettingsValue(u"TestServer.Port"_s, port);
}

/// The queued documents in order.
QStringList queued()
{
    QStringList documents;
    int last = 0;
    while (const auto data = gDB->getNextUnsentXMLFile(last)) {
        documents.append(data->xml);
        last = data->identification;
    }
    return documents;
}

} // namespace

class TestControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(directory.isValid());
        DatabaseManager::database_path = directory.path();
        QVERIFY(gDB->openDB());
    }

    void init()
    {
        gDB->resetDB();
        service = std::make_unique<FakeService>();
        Deployment deployment;
        deployment.webPort = service->port();
        Deployment::setCurrent(deployment);
        observer = std::make_unique<FakeObserver>();
        host = std::make_unique<FakeHost>();
        platform = std::make_unique<FakePlatform>();
        setIds(u"52077"_s, u"13"_s, u"2"_s);
        setServer(u"127.0.0.1"_s, QString::number(service->port()));
    }

    void cleanup()
    {
        controller.reset();
        platform.reset();
    }

    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void aWholeTestRunsItsPhasesInOrder()
    {
        setIds({}, {}, {});
        create();
        QList<int> phases;
        connect(controller.get(), &TestController::phaseEntered, this,
                [&](Phase phase) { phases.append(static_cast<int>(phase)); });
        runToEnd();

        QCOMPARE(phases, (QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
        QCOMPARE(ended.end, End::Completed);
        QVERIFY(ended.reportDelivered);
        QCOMPARE(ended.queueId, -1);
        QVERIFY(ended.storedId > 0);
        QVERIFY(!ended.storeFailed);

        // The service's last series was 12.
        QCOMPARE(Utils::getSettingsCommonValue(u"UserId"_s), u"52077"_s);
        QCOMPARE(Utils::getSettingsCommonValue(u"SeriesId"_s), u"13"_s);
        QCOMPARE(Utils::getSettingsCommonValue(u"TestId"_s), u"1"_s);

        // The row, from its figures on the wire: the server's upload average comes first.
        const auto row = gDB->getResultsById(ended.storedId);
        QCOMPARE(row->uploadSpeed, 200000.0);
        QVERIFY(row->uploadSpeedClient > 0);
        QVERIFY(row->downloadSpeed > 0);
        QCOMPARE(row->testServer, u"127.0.0.1"_s);
        QCOMPARE(row->location, u"Train"_s);
        QVERIFY(observer->calls.contains(u"upload 200 kBit/s"_s));
        QCOMPARE(observer->information,
                 (QStringList{u"127.0.0.1"_s, u"13"_s, u"1"_s, u"positionunknown"_s}));
        QCOMPARE(observer->calls.first(), u"status testphase_init"_s);
        QCOMPARE(observer->calls.count(u"start"_s), 1);
        QCOMPARE(observer->calls.count(u"stop"_s), 1);
        QCOMPARE(observer->calls.last(), u"stop"_s);
        QVERIFY(queued().isEmpty());
    }

    void writesTheControlRequestsByteForByte()
    {
        setIds({}, {}, {});
        platform->network.name[NetworkMode::Unknown] = u"Zürich Ñandú"_s;
        create();
        runToEnd();
        const QByteArray hostLine = "Host: 127.0.0.1:" + QByteArray::number(service->port());

        QCOMPARE(
            service->requests("getIDwithUUID"),
            QList<QByteArray>{"GET /velometer/getIDwithUUID.jsp?UUID=356938035643809 HTTP/1.1\r\n"
                              "Host: 127.0.0.1\r\nConnection: Close\r\n\r\n"});
        QCOMPARE(service->requests("initialise"),
                 {"GET /velometer/initialise.php?logtraffic=0.1&testuserid=52077&seriesid=13"
                  "&testid=1000001 HTTP/1.1\r\n" +
                  hostLine + "\r\nConnection: Close\r\n\r\n"});
        QCOMPARE(service->requests("getuploadresult"),
                 {"GET /velometer/getuploadresult.php?testuserid=52077&seriesid=13&testid=3000001 "
                  "HTTP/1.1\r\n" +
                  hostLine + "\r\nConnection: Close\r\n\r\n"});

        const QByteArray post = service->requests("redirect_iphone").value(0);
        const qsizetype split = post.indexOf("\r\n\r\n") + 4;
        const QByteArray body = post.mid(split);
        const QByteArray once = QString::fromUtf8(body).toLatin1();
        QCOMPARE(post.left(split),
                 "POST /velometer/redirect_iphone.php HTTP/1.1\r\n" + hostLine +
                     "\r\nConnection: Close\r\n"
                     "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                     QByteArray::number(once.size()) + "\r\n\r\n");
        QVERIFY(body.size() > once.size()); // encoded twice
        QVERIFY(QString::fromUtf8(once).contains(u"<Network><![CDATA[Zuerich Ñandú]]></Network>"));
    }

    void theUserIdFallsBackToTheTime_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<qlonglong>("user"); // 0: the time
        QTest::addColumn<qlonglong>("series");
        QTest::newRow("assigned") << FakeService::ok(" 52077;12\n") << 52077LL << 13LL;
        QTest::newRow("more parts") << FakeService::ok("52077;12;x") << 52077LL << 13LL;
        QTest::newRow("one part") << FakeService::ok("52077") << 0LL << 1LL;
        QTest::newRow("id 0") << FakeService::ok("0;5") << 0LL << 1LL;
        QTest::newRow("negative id") << FakeService::ok("-7;5") << 0LL << 1LL;
        QTest::newRow("beyond 64 bits") << FakeService::ok("99999999999999999999;5") << 0LL << 1LL;
        QTest::newRow("series that would overflow")
            << FakeService::ok("52077;9223372036854775807") << 52077LL << 1LL;
        QTest::newRow("no header") << QByteArray("52077;12") << 0LL << 1LL;
        QTest::newRow("nothing") << QByteArray() << 0LL << 1LL;
    }
    void theUserIdFallsBackToTheTime()
    {
        QFETCH(QByteArray, answer);
        QFETCH(qlonglong, user);
        setIds({}, {}, {});
        service->script("getIDwithUUID", {answer});
        service->script("initialise", {"HTTP/1.1 500 no\r\n\r\n"});
        create();
        const qlonglong before = Utils::getTimeInMs();
        runToEnd();
        if (user != 0)
            QCOMPARE(controller->getUserId(), user);
        else
            QVERIFY(controller->getUserId() >= before);
        QTEST(controller->getSeriesId(), "series");
        QCOMPARE(controller->getTestId(), 1);
    }

    void implausibleStoredIdsStartAgain()
    {
        setIds(u"52077"_s, u"0"_s, u"-5"_s);
        create();
        QCOMPARE(controller->getSeriesId(), 1);
        QCOMPARE(controller->getTestId(), 0);
        controller->startNewSeries();
        QCOMPARE(Utils::getSettingsCommonValue(u"SeriesId"_s), u"2"_s);
        QCOMPARE(Utils::getSettingsCommonValue(u"TestId"_s), u"0"_s);
    }

    void choosesTheServer_data()
    {
        QTest::addColumn<QString>("savedHost");
        QTest::addColumn<QString>("savedPort");
        QTest::addColumn<QString>("mcc");
        QTest::addColumn<QString>("mnc");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("operator 1") << ""
                                    << ""
                                    << "228"
                                    << "01"
                                    << "127.0.0.1:8080";
        QTest::newRow("operator 2, blanks") << ""
                                            << ""
                                            << " 228 "
                                            << " 2"
                                            << "127.0.0.2:8080";
        QTest::newRow("other operator") << ""
                                        << ""
                                        << "228"
                                        << "3"
                                        << "127.0.0.1:8080";
        QTest::newRow("no card") << ""
                                 << ""
                                 << ""
                                 << ""
                                 << "127.0.0.1:8080";
        QTest::newRow("saved") << "127.0.0.3"
                               << "8080"
                               << "228"
                               << "2"
                               << "127.0.0.3:8080";
        QTest::newRow("saved port of no entry") << "127.0.0.3"
                                                << "81"
                                                << ""
                                                << ""
                                                << "127.0.0.3:81";
        QTest::newRow("saved port missing") << "127.0.0.3"
                                            << ""
                                            << "228"
                                            << "2"
                                            << "127.0.0.2:8080";
        QTest::newRow("saved port no number") << "h.example"
                                              << "x"
                                              << ""
                                              << ""
                                              << "h.example:0";
        QTest::newRow("saved literal") << "::1"
                                       << "8080"
                                       << ""
                                       << ""
                                       << "[::1]:8080";
        QTest::newRow("saved host that would write a header") << "a\r\nX: y"
                                                              << "8080"
                                                              << "228"
                                                              << "2"
                                                              << "127.0.0.2:8080";
    }
    void choosesTheServer()
    {
        QFETCH(QString, savedHost);
        QFETCH(QString, savedPort);
        QFETCH(QString, mcc);
        QFETCH(QString, mnc);
        setServer(savedHost, savedPort);
        platform->network.mcc = mcc;
        platform->network.mnc = mnc;
        create();
        QTEST(controller->getTestServer()->getHostHeader(), "chosen");
        QCOMPARE(Utils::getSettingsValue(u"TestServer.Hostname"_s),
                 controller->getTestServer()->getHostname());
    }

    void everyFailureSaysSoAndKeepsWhatItHas_data()
    {
        QTest::addColumn<QString>("failure");
        QTest::addColumn<End>("end");
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("reports");
        QTest::addColumn<QString>("inReport");
        QTest::newRow("no network") << "session" << End::NoNetwork << "noConnectionText" << 0 << "";
        QTest::newRow("no network in a series")
            << "session in series" << End::NoNetwork << "noConnectionText" << 1 << "InitFailed";
        QTest::newRow("server unreachable")
            << "refuse" << End::ServerUnreachable << "noConnectionToServer" << 0 << "";
        QTest::newRow("not initialised")
            << "initialise" << End::Refused << "errorInit" << 1 << "InitFailed";
        QTest::newRow("network lost")
            << "lost" << End::NoNetwork << "noConnectionText" << 1 << "DownloadStart";
        QTest::newRow("stop requested") << "stop" << End::Stopped << "" << 1 << "DownloadStart";
        QTest::newRow("aborted") << "abort" << End::Stopped << "" << 1 << "DownloadStart";
    }
    void everyFailureSaysSoAndKeepsWhatItHas()
    {
        QFETCH(QString, failure);
        QFETCH(QString, error);
        QFETCH(QString, inReport);
        if (failure == "session in series"_L1)
            host->schedule = u"1,20,60"_s;
        if (failure.startsWith("session"_L1))
            platform->session.fails(NetworkSession::InvalidConfigurationError);
        if (failure == "initialise"_L1)
            service->script("initialise", {"HTTP/1.1 500 Internal Server Error\r\n\r\nsorry"});
        if (failure == "refuse"_L1)
            service->refuse();
        create();
        connect(controller.get(), &TestController::phaseEntered, this, [&](Phase phase) {
            if (phase != Phase::Download)
                return;
            if (failure == "stop"_L1)
                observer->stop = true;
            if (failure == "lost"_L1)
                QMetaObject::invokeMethod(
                    this, [this] { platform->session.lose(); }, Qt::QueuedConnection);
            if (failure == "abort"_L1)
                QMetaObject::invokeMethod(
                    this, [this] { controller->abortTest(); }, Qt::QueuedConnection);
        });
        runToEnd();

        QTEST(ended.end, "end");
        QCOMPARE(observer->calls.count(u"stop"_s), 1);
        QCOMPARE(observer->calls.last(), error.isEmpty() ? u"stop"_s : "error "_L1 + error);
        const QStringList documents = queued();
        QTEST(static_cast<int>(documents.size()), "reports");
        QTEST(ended.waiting, "reports");
        if (!inReport.isEmpty())
            QVERIFY2(documents.first().contains("<Phase>"_L1 + inReport), qPrintable(inReport));
        QVERIFY(service->requests("redirect_iphone").isEmpty());
        // Nothing of the ended test arrives later.
        const auto calls = observer->calls;
        QTest::qWait(50);
        QCOMPARE(observer->calls, calls);
    }

    void theSixthReachabilityCheckEndsTheTest()
    {
        service->refuse();
        create();
        int checks = 0;
        connect(controller.get(), &TestController::phaseEntered, this,
                [&](Phase phase) { checks += phase == Phase::Reachability ? 1 : 0; });
        runToEnd();
        QCOMPARE(checks, 6);
    }

    void aFailedSubmissionIsQueuedAndTheNextTestDeliversBoth()
    {
        service->script("redirect_iphone",
                        {"HTTP/1.1 500 no\r\n\r\nfull", true, "</PerformanceIPhone>"});
        create();
        runToEnd();
        QCOMPARE(ended.end, End::Completed);
        QVERIFY(!ended.reportDelivered);
        QVERIFY(ended.queueId > 0);
        QVERIFY(ended.storedId > 0);
        // Submitted, queued, and offered once more with the queue.
        QCOMPARE(service->requests("redirect_iphone").size(), 2);
        QCOMPARE(gDB->getNextUnsentXMLFile(0)->numberofretries, 1);
        QVERIFY(!queued().first().contains("ClientRetryTime"_L1));

        service->script("redirect_iphone",
                        {FakeService::ok("stored"), true, "</PerformanceIPhone>"});
        runToEnd();
        QVERIFY(ended.reportDelivered);
        QCOMPARE(ended.resent, 1);
        QCOMPARE(ended.waiting, 0);
        QCOMPARE(gDB->getAllResults().size(), size_t(2));
        const QByteArray resent = service->requests("redirect_iphone").last();
        QCOMPARE(resent.count("</ClientTime><ClientRetryTime>"), 1);
    }

    void oneTestWalksThroughTheWholeQueueOnce()
    {
        for (int i = 0; i < 3; ++i) {
            XMLData old;
            old.xml = u"<ClientTime>%1</ClientTime></PerformanceIPhone>"_s.arg(i);
            QVERIFY(gDB->insertOrUpdateXMLFile(&old) > 0);
        }
        create();
        controller->resendReports();
        waitForEnd();
        QCOMPARE(service->requests("redirect_iphone").size(), 3);
        QCOMPARE(ended.resent, 3);
        QCOMPARE(ended.waiting, 0);
        QVERIFY(!controller->isRunning());
    }

private:
    void create()
    {
        controller =
            std::make_unique<TestController>(nullptr, observer.get(), host.get(), *platform);
    }
    void runToEnd()
    {
        controller->runTests(u"Train"_s);
        waitForEnd();
    }
    void waitForEnd()
    {
        QSignalSpy spy(controller.get(), &TestController::testEnded);
        QVERIFY(!controller->isRunning() || spy.wait(30000));
        ended = controller->getOutcome();
    }

    QTemporaryDir directory;
    std::unique_ptr<FakeService> service;
    std::unique_ptr<FakeObserver> observer;
    std::unique_ptr<FakeHost> host;
    std::unique_ptr<FakePlatform> platform;
    std::unique_ptr<TestController> controller;
    TestOutcome ended;
};

QTEST_GUILESS_MAIN(TestControllerTest)
#include "testcontroller_test.moc"
