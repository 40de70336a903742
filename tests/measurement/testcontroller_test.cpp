#include "measurement/testcontroller.h"

#include "data/result.h"
#include "data/testdetails.h"
#include "data/testserver.h"
#include "db/databasemanager.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "support/fakeclock.h"
#include "support/fakeobserver.h"
#include "support/fakeplatform.h"
#include "support/fakeservice.h"
#include "support/registeredtest.h"
#include "support/silentpeer.h"
#include "support/sqlitefile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QMetaEnum>
#include <QSettings>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

using Phase = TestController::Phase;
using End = TestOutcome::End;

namespace {

const QStringList idKeys{u"UserId"_s, u"SeriesId"_s, u"TestId"_s};

void saveIds(const QStringList &ids)
{
    for (int i = 0; i < 3; ++i) {
        Utils::setSettingsCommonValue(idKeys[i], ids.value(i));
    }
}

QStringList savedIds()
{
    QStringList ids;
    for (const QString &key : idKeys) {
        ids += Utils::getSettingsCommonValue(key);
    }
    return ids;
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
        schedule.clear();
        platform = std::make_unique<FakePlatform>();
        saveIds({u"52077"_s, u"13"_s, u"2"_s});
        server.setHostname(u"127.0.0.1"_s);
        server.setPort(service->port());
    }

    void cleanup()
    {
        controller.reset();
        platform.reset();
    }

    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void aWholeTestRunsItsPhasesAndWritesItsRequestsByteForByte()
    {
        saveIds({});
        service->script("getIDwithUUID", {FakeService::ok(" 52077;12;x\n")});
        platform->network.links[NetworkMode::Unknown].name = u"Zürich Ñandú"_s;
        service->serveForAWhile();
        create();
        QList<int> phases;
        connect(controller.get(), &TestController::phaseEntered, this,
                [&](Phase phase) { phases.append(static_cast<int>(phase)); });
        runToEnd();

        QCOMPARE(phases, (QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
        QCOMPARE(ended.end, End::Completed);
        QVERIFY(ended.reportDelivered && !ended.storeFailed);
        QVERIFY(!ended.queueId);
        // The service's last series was 12.
        QCOMPARE(savedIds(), (QStringList{u"52077"_s, u"13"_s, u"1"_s}));

        // The row: the server's upload average comes first.
        const auto row = gDB->getResultsById(ended.storedId);
        QCOMPARE(row->uploadSpeed, 200000.0);
        // All of it in the ramp-up; a slow machine may add intervals without a byte.
        QVERIFY(row->uploadSpeedClient <= 0);
        QVERIFY(row->downloadSpeed > 0 && row->downloadSpeed <= 20'019 * 8 / 0.7);
        QVERIFY(observer->calls.contains(u"up 200 kBit/s"_s));
        QCOMPARE(observer->information,
                 (QStringList{u"127.0.0.1"_s, u"13"_s, u"1"_s, u"positionunknown"_s}));
        QCOMPARE(observer->calls.count(u"stop"_s), 1);
        QCOMPARE(observer->calls.last(), u"stop"_s);
        QCOMPARE(gDB->countUnsentXMLFiles(), 0);

        // On the wire:
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

    void aPlanAddsItsPhasesAndTheirDelays_data()
    {
        const Rows<qint64, QString> row("budget", "phases");
        row("no budget", 0, "IdleDelays ExtraDownload ExtraUpload");
        row("nothing left", 100'000, "IdleDelays");
    }
    void aPlanAddsItsPhasesAndTheirDelays()
    {
        const auto [budget, phases] = currentRow<qint64, QString>();
        service->serveForAWhile();
        service->script("downloadtest",
                        {"HTTP/1.0 200 OK\r\n\r\n" + QByteArray(80'000, 'x'), true, {}, 1000});
        create();
        controller->setDataBudget(DataBudget(budget));
        controller->setDelayPlan(
            {.idleSamples = 5, .underLoad = true, .congestionControl = u"reno"_s});
        QStringList beyond;
        connect(controller.get(), &TestController::phaseEntered, this, [&](Phase phase) {
            if (phase >= Phase::IdleDelays) {
                beyond += QString::fromLatin1(QMetaEnum::fromType<Phase>().valueToKey(int(phase)));
            }
        });
        runToEnd();
        QCOMPARE(ended.end, End::Completed);
        QCOMPARE(beyond.join(u' '), phases);

        const FinishedTest test = gDB->getTest(*gDB->getResultsById(ended.storedId));
        QCOMPARE(test.idleDelays.value_or(Delays()).size(), 5);
        QCOMPARE(test.rtt.samples.value_or(Delays()).size(), 3);
        // The control is asked for, and the load of its own has other ids: it is no test.
        const auto downloads = service->requests("downloadtest");
        QVERIFY(downloads[0].contains("cc=reno"));
        const bool isLoaded = beyond.size() > 1;
        QCOMPARE(downloads.size(), isLoaded ? 2 : 1);
        QVERIFY(!isLoaded ||
                (downloads[1].contains("cc=cubic") && downloads[1].contains("4000003")));
        QCOMPARE(test.extraUploadLoad.samples.has_value(), isLoaded);
        QCOMPARE(service->requests("redirect_iphone").constFirst().contains("extra_upload"),
                 isLoaded);
    }

    void implausibleIdsStartAgain()
    {
        // A user of more than 64 bits is replaced by one that nobody can guess, a series that would
        // overflow by 1.
        QSet<qlonglong> users;
        for (const QByteArray answer :
             {"99999999999999999999;5", "99999999999999999999;5", "52077;9223372036854775807"}) {
            saveIds({});
            service->script("getIDwithUUID", {FakeService::ok(answer)});
            service->script("initialise", {"HTTP/1.1 500 no\r\n\r\n"});
            create();
            runToEnd();
            const qlonglong user = controller->getUserId();
            QVERIFY(answer[0] == '9' ? user > 0 && user < 1LL << 53 : user == 52077);
            QVERIFY(std::abs(user - Utils::getTimeInMs()) > 60'000);
            users.insert(user);
            QCOMPARE(savedIds().mid(1), (QStringList{u"1"_s, u"1"_s}));
        }
        QCOMPARE(users.size(), 3);
        saveIds({u"52077"_s, u"0"_s, u"-5"_s});
        create();
        QCOMPARE(controller->getTestId(), 0);
        bool done = false;
        controller->startNewSeries([&] { done = true; });
        QVERIFY(done);
        QCOMPARE(savedIds(), (QStringList{u"52077"_s, u"2"_s, u"0"_s}));
    }

    void anIdIsDrawnOnceWhoeverElseDraws()
    {
        TestIds first;
        TestIds second;
        second.startNewSeries(nullptr, [] {});
        const QString lockFile =
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
            "/orvak/ids.lock"_L1;
        QLockFile other(lockFile);
        QVERIFY(other.tryLock());
        QStringList drawn;
        QObject context;
        for (TestIds *ids : {&first, &second}) {
            ids->draw(&context, [&drawn, ids] {
                drawn.append(u"%1/%2"_s.arg(ids->getSeriesId()).arg(ids->getTestId()));
                QCOMPARE(savedIds().last(), QString::number(ids->getTestId()));
            });
        }
        QTest::qWait(60); // several looks at the lock
        QCOMPARE(drawn, QStringList());
        other.unlock();
        QTRY_COMPARE(drawn.size(), 2);
        drawn.sort();
        QCOMPARE(drawn, (QStringList{u"14/1"_s, u"14/2"_s}));

        // Another program draws so that the file looks as it did when this one read it.
        QFile file(QSettings(u"orvak"_s, u"VelometerCommon"_s).fileName());
        const QDateTime time = QFileInfo(file).lastModified();
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray content = file.readAll().replace("TestId=2", "TestId=5");
        QVERIFY(file.seek(0) && file.write(content) == content.size() && file.flush());
        QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
        first.draw(&context, [&first] { QCOMPARE(first.getTestId(), 6); });
    }

    void waitsForRoomWhenTheServiceSaysHowLong()
    {
        const QByteArray full =
            "HTTP/1.1 503 Busy\r\nContent-Type: text/plain\r\nRetry-After: 1\r\n"
            "\r\nFull.";
        for (const bool stops : {false, true}) {
            service->script("initialise", {full});
            create();
            QTimer::singleShot(300, controller.get(), [&] {
                service->script("initialise", {FakeService::ok("Client-Hostname:x;")});
                if (stops) {
                    controller->abortTest();
                }
            });
            const auto before = service->requests("initialise").size();
            runToEnd();
            QCOMPARE(ended.end, stops ? TestOutcome::End::Stopped : TestOutcome::End::Completed);
            QCOMPARE(service->requests("initialise").size(), before + (stops ? 1 : 2));
        }
    }

    void everyFailureSaysSoAndKeepsWhatItHas_data()
    {
        const Rows<End, QString, QString> row("end", "error", "inReport");
        const auto download = u"DownloadStart"_s;
        const auto lost = u"noConnectionText"_s;
        row("no network", End::NoNetwork, lost, {});
        row("no network in a series", End::NoNetwork, lost, "InitFailed");
        row("server unreachable", End::ServerUnreachable, "noConnectionToServer", {});
        row("not initialised", End::Refused, "errorInit", "InitFailed");
        row("no room", End::Refused, u"4 Str\u00f6me laufen schon."_s, "InitFailed");
        row("no room, a page", End::Refused, "errorInit", "InitFailed");
        row("network lost", End::NoNetwork, lost, download);
        row("stop requested", End::Stopped, {}, download);
        row("aborted", End::Stopped, {}, download);
    }
    void everyFailureSaysSoAndKeepsWhatItHas()
    {
        const QByteArray failure = QTest::currentDataTag();
        QFETCH(QString, error);
        QFETCH(QString, inReport);
        if (failure.endsWith("series")) {
            schedule = u"1,20,60"_s;
        }
        if (failure.startsWith("no network")) {
            platform->session.fails(NetworkSession::InvalidConfigurationError);
        }
        if (failure == "not initialised") {
            service->script("initialise", {"HTTP/1.1 500 Internal Server Error\r\n\r\nsorry"});
        }
        if (failure.startsWith("no room")) {
            const QByteArray type = failure.endsWith("page") ? "html" : "plain; charset=utf-8";
            service->script("initialise", {"HTTP/1.1 503 Busy\r\ncontent-type: text/" + type +
                                           "\r\n\r\n4\x1b Str\u00f6me\n laufen schon."});
        }
        if (failure == "server unreachable") {
            service->refuse();
        }
        create();
        controller->setMeasurementDuration(TestController::standardDuration);
        connect(controller.get(), &TestController::phaseEntered, this, [&](Phase phase) {
            if (phase != Phase::Download) {
                return;
            }
            observer->stop = failure == "stop requested";
            if (failure == "network lost") {
                QTimer::singleShot(0, this, [this] { platform->session.lose(); });
            }
            if (failure == "aborted") {
                service->script("downloadtest", {"HTTP/1.0 200 OK\r\n\r\nx", false});
                QTimer::singleShot(0, controller.get(), &TestController::abortTest);
            }
        });
        runToEnd();

        QTEST(ended.end, "end");
        QCOMPARE(observer->calls.count(u"stop"_s), 1);
        QCOMPARE(observer->calls.last(), error.isEmpty() ? u"stop"_s : "error "_L1 + error);
        QCOMPARE(gDB->countUnsentXMLFiles(), inReport.isEmpty() ? 0 : 1);
        QCOMPARE(ended.waiting, gDB->countUnsentXMLFiles());
        QVERIFY(inReport.isEmpty() ||
                gDB->getNextUnsentXMLFile(0)->xml.contains("<Phase>"_L1 + inReport));
        QVERIFY(service->requests("redirect_iphone").isEmpty());
        QTRY_COMPARE(service->open(), 0); // nothing is fetched any more
        // Nothing of the ended test arrives later.
        const auto calls = observer->calls;
        QTest::qWait(50);
        QCOMPARE(observer->calls, calls);
    }

    void aFailedSubmissionIsQueuedAndTheNextTestDeliversTheWholeQueue()
    {
        service->script("redirect_iphone",
                        {"HTTP/1.1 500 no\r\n\r\nfull", true, "</PerformanceIPhone>"});
        create();
        runToEnd();
        QCOMPARE(ended.end, End::Completed);
        // Streams too short for a rate have none, whatever the server says of its own.
        const auto row = gDB->getResultsById(ended.storedId);
        QCOMPARE((QList<double>{row->downloadSpeed, row->uploadSpeed, row->uploadSpeedClient}),
                 (QList<double>{-1, -1, -1}));
        QVERIFY(observer->calls.contains(u"up na"_s));
        QVERIFY(!ended.reportDelivered && ended.queueId && ended.storedId > 0);
        // Submitted and queued; what was just refused is not offered again in the same test.
        QCOMPARE(service->requests("redirect_iphone").size(), 1);
        const auto waiting = gDB->getNextUnsentXMLFile(0);
        QCOMPARE(waiting->numberofretries, 0);
        QVERIFY(!waiting->xml.contains("ClientRetryTime"_L1));

        // Rows as other programs may have left them.
        const QString old = u"'<ClientTime>1</ClientTime></PerformanceIPhone>'"_s;
        QVERIFY(QSqlQuery().exec(
            u"INSERT INTO xmlfiles VALUES(-7,0,%1),(0,0,%1),(6000000000,0,%1)"_s.arg(old)));
        service->script("redirect_iphone",
                        {FakeService::ok("stored"), true, "</PerformanceIPhone>"});
        runToEnd();
        QVERIFY(ended.reportDelivered);
        QCOMPARE(ended.resent, 4);
        QCOMPARE(ended.waiting, 0);
        QCOMPARE(gDB->getAllResults().size(), size_t(2));
        // The failed one, the next test's, and the four of the queue.
        const auto sent = service->requests("redirect_iphone");
        QCOMPARE(sent.size(), 6);
        QCOMPARE(sent[2].count("</ClientTime><ClientRetryTime>"), 1);

        // Who has deleted himself on the service begins anew, and nothing of his is offered again.
        service->script("redirect_iphone",
                        {"HTTP/1.1 410 Gone\r\n\r\ndeleted", true, "</PerformanceIPhone>"});
        runToEnd();
        QCOMPARE((QList{ended.userGone, ended.reportDelivered, ended.storedId > 0}),
                 (QList{true, false, true}));
        QCOMPARE(ended.waiting, 0);
        QCOMPARE(savedIds(), (QStringList{u"0"_s, u"0"_s, u"0"_s}));
        service->script("getIDwithUUID", {FakeService::ok("52078;0")});
        service->script("redirect_iphone",
                        {FakeService::ok("stored"), true, "</PerformanceIPhone>"});
        runToEnd();
        QCOMPARE(savedIds(), (QStringList{u"52078"_s, u"1"_s, u"1"_s}));
    }

    void aTestIsStoredWithItsReportBeforeItIsSent()
    {
        service->script("redirect_iphone", {{}, false});
        create();
        controller->runTests(u"Train"_s);
        QTRY_COMPARE_WITH_TIMEOUT(service->requests("redirect_iphone").size(), 1, 10000);
        // What a kill would leave now:
        const auto row = gDB->getAllResults();
        QCOMPARE(row.size(), size_t(1));
        const FinishedTest stored = gDB->getTest(*row.front());
        QVERIFY(stored.download.bytes && stored.rtt.samples && stored.network.mode);
        QCOMPARE(stored.report.delivered, false);
        QCOMPARE(stored.report.queueId, 1);
        QCOMPARE(gDB->getNextUnsentXMLFile(0)->numberofretries, -1);
        controller->abortTest();
        QCOMPARE(controller->getOutcome().end, End::Stopped);
        QCOMPARE(controller->getOutcome().queueId, 1);
        QCOMPARE(gDB->getAllResults().size(), size_t(1));
        QCOMPARE(gDB->countUnsentXMLFiles(), 1);
    }

    void aTestThatCannotBeStoredIsDeliveredAllTheSame()
    {
        QVERIFY(QSqlQuery().exec(u"CREATE TRIGGER broken BEFORE INSERT ON testresults BEGIN SELECT "
                                 "RAISE(ABORT, 'x'); END"_s));
        create();
        runToEnd();
        QVERIFY(QSqlQuery().exec(u"DROP TRIGGER IF EXISTS broken"_s));
        QVERIFY(ended.storeFailed && ended.reportDelivered && !ended.queueId);
        QCOMPARE(ended.storedId, 0);
    }

    void aSilentServiceIsLeftAfterTenSeconds_data()
    {
        const Rows<QByteArray, Phase> row("path", "next");
        row("user id", "getIDwithUUID", Phase::Initialise);
        row("initialise", "initialise", Phase::Initialise); // the end
        row("upload result", "getuploadresult", Phase::UploadEndMarker);
        row("report", "redirect_iphone", Phase::StoreAndResubmit);
    }
    void aSilentServiceIsLeftAfterTenSeconds()
    {
        QFETCH(QByteArray, path);
        QFETCH(Phase, next);
        saveIds({});
        service->script(path, {{}, false});
        FakeClock clock;
        create();
        controller->runTests(u"Train"_s);
        for (int i = 0; i < 500 && service->requests(path).isEmpty(); ++i) {
            QTest::qWait(2);
            clock.advance(controller->getPhase() == Phase::Rtt ? 200ms : 0ms);
        }
        QSignalSpy left(controller.get(), &TestController::phaseEntered);
        QSignalSpy end(controller.get(), &TestController::testEnded);
        clock.advance(9999ms);
        QTest::qWait(0);
        QVERIFY(left.isEmpty() && end.isEmpty());
        clock.advance(1ms);
        if (path == "initialise") {
            QCOMPARE(end.size(), 1);
        } else {
            QTRY_VERIFY(!left.isEmpty());
            QCOMPARE(left.first().first().value<Phase>(), next);
        }
        controller->abortTest();
        QVERIFY(platform->position.positionRunning);
        clock.advance(30s);
        QVERIFY(!platform->position.positionRunning);
    }

    void anUnreachableServerIsLeftAfterSixChecksOfTenSeconds()
    {
        const SilentPeer peer;
        server.setPort(peer.port());
        FakeClock clock;
        create();
        controller->runTests(u"Train"_s);
        QTRY_COMPARE(controller->getPhase(), Phase::Reachability);
        for (int check = 0; check < 6; ++check) {
            QVERIFY(controller->isRunning());
            clock.advance(9999ms);
            QVERIFY(controller->isRunning());
            clock.advance(1ms);
        }
        QCOMPARE(controller->getOutcome().end, End::ServerUnreachable);
    }

    void anEndWaitsForALockedStore()
    {
        create();
        std::unique_ptr<HeldFile> held;
        connect(controller.get(), &TestController::phaseEntered, this, [&](Phase phase) {
            if (phase == Phase::Download) {
                held = std::make_unique<HeldFile>(DatabaseManager::databaseFile());
                QTimer::singleShot(0, controller.get(), &TestController::abortTest);
                QTimer::singleShot(400, this, [&] {
                    QVERIFY(controller->isRunning());
                    controller->abortTest(); // an impatient user
                    platform->session.lose();
                    held.reset();
                });
            }
        });
        runToEnd();
        QCOMPARE(ended.end, End::Stopped);
        QVERIFY(!ended.storeFailed);
        QCOMPARE(gDB->countUnsentXMLFiles(), 1);
    }

    void aBudgetIsSharedAndLeavesItsMark_data()
    {
        // served: by the download, header included; downloaded, uploaded: bytes at most, a
        // hundredth of each share being the probes'
        const Rows<qint64, int, qint64, qint64, QString> row("budget", "served", "downloaded",
                                                             "uploaded", "reached");
        row("both ended", 200'000, 300'000, 99'000, 99'990, "download,upload");
        row("the upload gets what is left", 200'000, 30'000, 30'000, 168'300, "upload");
        row("none", 0, 20'000, 20'000, -1, {});
    }
    void aBudgetIsSharedAndLeavesItsMark()
    {
        QFETCH(qint64, budget);
        QFETCH(int, served);
        QFETCH(qint64, uploaded);
        QFETCH(QString, reached);
        const QByteArray head = "HTTP/1.0 200 OK\r\n\r\n";
        service->script("downloadtest", {head + QByteArray(served - head.size(), 'x')});
        if (budget > 0) {
            service->script("uploadtest", {{}, false});
        }
        create();
        controller->setDataBudget(DataBudget(budget));
        controller->runTests(u"Train"_s);
        // Of the next test:
        controller->setDataBudget(DataBudget());
        TestServer other(u"Other"_s, u"127.0.0.9"_s, 1, {}, {}, {}, {}, nullptr);
        controller->setTestServer(&other);
        waitForEnd();

        QCOMPARE(ended.end, End::Completed);
        QVERIFY(ended.reportDelivered);
        const auto details = gDB->getDetailsById(ended.storedId);
        QTEST(details->getLong(u"downloadedBytes"_s), "downloaded");
        if (uploaded >= 0) {
            QCOMPARE(details->getLong(u"uploadedBytes"_s), uploaded);
        }
        QCOMPARE(details->getString(u"budgetReached"_s), reached);
        QCOMPARE(details->contains(u"budgetReached"_s), !reached.isEmpty());
        QCOMPARE(details->getLong(u"dataBudget"_s), reached.isEmpty() ? 0 : budget);
        QVERIFY(gDB->getResultsById(ended.storedId)->rtt >= 0 &&
                controller->getTestResults()->getRTTResult()->isValid());
        controller->runTests(u"Train"_s);
        QCOMPARE(controller->getTestServer(), &other);
        controller->abortTest();
    }

private:
    void create()
    {
        controller = std::make_unique<TestController>(nullptr, observer.get(), &server, *platform);
        controller->setMeasurementDuration(1);
    }
    void runToEnd()
    {
        controller->runTests(u"Train"_s, schedule);
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
    TestServer server{nullptr};
    QString schedule;
    std::unique_ptr<FakePlatform> platform;
    std::unique_ptr<TestController> controller;
    TestOutcome ended;
};

} // namespace velometer

VELOMETER_TEST(TestControllerTest)
#include "testcontroller_test.moc"
