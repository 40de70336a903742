#include "cli/testrunner.h"

#include "app/serverselection.h"
#include "app/startup.h"
#include "cli/progressline.h"
#include "cli/testprinter.h"
#include "data/result.h"
#include "data/testresults.h"
#include "db/databasemanager.h"
#include "support/fakeplatform.h"
#include "support/registeredtest.h"
#include "utils/utils.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTemporaryFile>

Q_DECLARE_METATYPE(velometer::ExitStatus)

namespace velometer {

using End = TestOutcome::End;
using Format = CommandLine::Format;

/// A runner on a device without a network: its tests end at once, without any traffic.
class Run
{
public:
    Run(TestRunner::Plan plan, Format format)
        : output(open(file))
        , errors(open(errorFile))
        , printer(format, output, u"en"_s)
        , progress(errors, ProgressLine::Mode::Silent)
    {
        platform.session.fails(NetworkSession::UnknownSessionError);
        plan.waitPosition = plan.waitPosition.value_or(0s);
        runner = std::make_unique<TestRunner>(plan, servers, printer, progress, platform);
        finished = std::make_unique<QSignalSpy>(runner.get(), &TestRunner::finished);
    }

    QList<QJsonObject> lines()
    {
        QList<QJsonObject> objects;
        file.seek(0);
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (!line.isEmpty()) {
                objects.append(QJsonDocument::fromJson(line).object());
            }
        }
        return objects;
    }
    QByteArray messages()
    {
        errorFile.seek(0);
        return errorFile.readAll();
    }
    bool endsWith(ExitStatus status)
    {
        if (finished->isEmpty() && !finished->wait()) {
            return false;
        }
        // A second end would come from the event loop.
        QCoreApplication::processEvents();
        return finished->size() == 1 && finished->at(0).at(0).value<ExitStatus>() == status;
    }

    FakePlatform platform;
    QTemporaryFile file;
    QTemporaryFile errorFile;
    Output output;
    Output errors;
    TestPrinter printer;
    ProgressLine progress;
    ServerSelection servers{platform, nullptr};
    std::unique_ptr<TestRunner> runner;
    std::unique_ptr<QSignalSpy> finished;

private:
    static int open(QTemporaryFile &file)
    {
        file.open();
        return file.handle();
    }
};

class TestRunnerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        DatabaseManager::database_path = directory.path();
        QVERIFY(gDB->openDB());
    }
    void init()
    {
        Utils::setSettingsCommonValue(u"UserId"_s, QString());
        QFile::remove(StartUp::seriesFile());
    }
    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void waitsForAPositionUntilItIsStopped()
    {
        TestRunner::Plan plan;
        plan.waitPosition = 600s;
        Run run(plan, Format::Json);
        run.runner->start();
        QTRY_VERIFY(run.messages().contains("600 s"));
        run.runner->stop(ExitStatus::Terminated);
        QVERIFY(run.endsWith(ExitStatus::Terminated));
        QCOMPARE(run.platform.session.openCalls, 0);
    }

    void endsAtOnceBetweenTests()
    {
        Run run({{u"Unknown"_s, 2, 604'800s}}, Format::Json);
        run.runner->start();
        QTRY_COMPARE(run.lines().size(), 1);
        QVERIFY(run.finished->isEmpty());
        run.runner->stop(ExitStatus::Terminated);
        QVERIFY(run.endsWith(ExitStatus::Terminated));
        QCOMPARE(run.platform.session.openCalls, 1);

        // What is left of it is told by the next start, and waits for --resume.
        Run next({}, Format::Json);
        next.runner->start();
        QVERIFY(next.messages().startsWith("A series was interrupted: test 2 of 2 is next."));
        QVERIFY(next.endsWith(ExitStatus::Unreachable));
        Run resumed({}, Format::Json);
        QVERIFY(resumed.runner->resume());
        QTest::qWait(0);
        QVERIFY(resumed.finished->isEmpty());
        resumed.runner->stop(ExitStatus::Interrupted);
        QVERIFY(resumed.endsWith(ExitStatus::Interrupted));
        QCOMPARE(resumed.platform.session.openCalls, 0);
    }

    void saysFirstThatTheConnectionIsMetered()
    {
        const QString guess = u"The connection is metered (guessed from its kind); a test may cost "
                              "money. A test uses at most 50 MB.\n"_s;
        for (const auto &[metered, budget, line] :
             {std::tuple{"no"_L1, 0, QString()},
              {"yes"_L1, 0, u"The connection is metered; a test may cost money.\n"_s},
              {"yes guessed"_L1, 50'000'000, guess}}) {
            Run run({{u"Train"_s, 2}, false, DataBudget(budget)}, Format::Json);
            run.platform.complete = false;
            run.runner->start();
            QCoreApplication::processEvents();
            QCOMPARE(run.messages(), QByteArray());
            QCOMPARE(run.platform.session.openCalls, 0);
            // The device answers.
            run.platform.told.metered = metered.startsWith("yes"_L1);
            run.platform.told.meteredGuessed = metered.endsWith("guessed"_L1);
            run.platform.setComplete();
            // A failed test does not end the series.
            QVERIFY(run.endsWith(ExitStatus::Unreachable));
            const QByteArray failure = "noConnectionText\n";
            QCOMPARE(run.messages(), line.toUtf8() + failure + failure);
            QCOMPARE(run.lines().value(1)["schedule"_L1], u"2,2,0"_s);
            QCOMPARE(run.lines().value(1)["location"_L1], u"Train"_s);
        }
    }

    void aDeviceThatNeverAnswersHoldsNoTest()
    {
        for (const bool stopped : {false, true}) {
            Run run({}, Format::Json);
            run.platform.complete = false;
            run.runner->start();
            QCoreApplication::processEvents();
            if (stopped) {
                run.runner->stop(ExitStatus::Terminated);
            }
            QVERIFY(run.endsWith(stopped ? ExitStatus::Terminated : ExitStatus::Unreachable));
            run.platform.setComplete();
            QTest::qWait(150); // longer than a poll takes
            QCOMPARE(run.platform.session.openCalls, stopped ? 0 : 1);
        }
    }

    void judgesATest_data()
    {
        const Rows<End, bool, int, bool, int, ExitStatus> row("end", "storeFailed", "downloadMs",
                                                              "cut", "responseTime", "status");
        const bool no = false;
        row("nine tenths of the time", End::Completed, no, 6300, no, 5, ExitStatus::Done);
        row("cut short", End::Completed, no, 6299, no, 5, ExitStatus::Broken);
        row("cut by the budget", End::Completed, no, 10, true, 5, ExitStatus::Refused);
        row("cut by the budget, not whole", End::Completed, no, 10, true, -1, ExitStatus::Broken);
        row("no download", End::Completed, no, 0, no, 5, ExitStatus::Broken);
        row("no round trip", End::Completed, no, 7000, no, -1, ExitStatus::Broken);
        row("not stored", End::Completed, true, 7000, true, 5, ExitStatus::Store);
        row("no server", End::ServerUnreachable, no, 0, no, -1, ExitStatus::Unreachable);
    }
    void judgesATest()
    {
        const auto [end, storeFailed, downloadMs, cut, responseTime, status] =
            currentRow<End, bool, int, bool, int, ExitStatus>();
        IntervalTable values;
        for (int i = 0; i < 70; ++i) {
            values.insert(i, 1000);
        }
        const auto throughput = [&](int ms, Result::Type type, QObject *parent) {
            return new Result(80, 7, ms * 1'000'000LL, 70'000, values, values, 0, 0, 0, type,
                              parent);
        };
        TestOutcome outcome;
        outcome.end = end;
        outcome.storeFailed = storeFailed;
        TestResults record(1, 1, nullptr);
        if (downloadMs > 0) {
            record.setDownloadResult(throughput(downloadMs, Result::Download, &record));
            record.getDownloadResult()->setCutByBudget(cut);
        }
        record.setUploadResult(throughput(7100, Result::Upload, &record));
        record.setRTTResult(new Result(80, QHash<int, int>{{1, responseTime}}, &record));
        QCOMPARE(TestRunner::statusOf(outcome, &record), status);
    }

private:
    QTemporaryDir directory;
};

} // namespace velometer

VELOMETER_TEST(TestRunnerTest)
#include "testrunner_test.moc"
