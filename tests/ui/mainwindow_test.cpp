// The application's window as a person uses it: real buttons by their object names, on a fake
// device against a fake service.

#include "ui/mainwindow.h"

#include "app/startup.h"
#include "data/testdetails.h"
#include "ui/details/detailswindow.h"
#include "ui/frame/tabbase.h"
#include "ui/map/geomaptab.h"
#include "ui/pages/historytab.h"
#include "ui/pages/resultstab.h"
#include "ui/pages/testtab.h"
#include "ui/plot/throughputplot.h"
#include "ui/popups/popupbase.h"
#include "utils/deployment.h"

#include "support/application.h"
#include "support/fakeclock.h"
#include "support/fakeservice.h"
#include "support/registeredtest.h"

#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSqlQuery>

#include <functional>

namespace velometer {

namespace {

constexpr int limitMs = 30'000;

/// Calls once, when a window is painted.
class FirstPaint : public QObject
{
public:
    FirstPaint(QWidget *window, std::function<void()> call)
        : painted(std::move(call))
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && painted) {
            std::exchange(painted, nullptr)();
        }
        return false;
    }

private:
    std::function<void()> painted;
};

} // namespace

class MainWindowTest : public QObject, protected Application
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        service = std::make_unique<FakeService>();
        Deployment deployment;
        deployment.webPort = service->port();
        deployment.swisscom = {u"127.0.0.1"_s, service->port()};
        Deployment::setCurrent(deployment);
        Utils::setSettingsValue(u"TestServer.Hostname"_s, QString());
        Utils::setSettingsValue(u"CostWarning"_s, u"set"_s);
        Utils::setSettingsValue(u"AdvMode"_s, QString());
        Utils::setSettingsValue(u"MaxBytes"_s, QString());
        platform.network = {};
        platform.told = {};
    }

    void cleanup() { window.reset(); }

    void theFirstFrameWaitsForNothing()
    {
        store = std::make_unique<StoredTests>();
        for (const bool shown : {true, false}) {
            window = std::make_unique<MainWindow>(platform);
            bool early = false;
            // The store and all pages come after it.
            const FirstPaint paint(window.get(), [&] { early = !window->getController(); });
            window->setVisible(shown);
            // A minimised window goes on with its series.
            QTRY_VERIFY(window->getController());
            QCOMPARE(early, shown);
        }
    }

    void asksBeforeATest_data()
    {
        const Rows<bool, bool, bool, QString, QString> row("accepted", "roaming", "series",
                                                           "presses", "shown");
        const bool yes = true;
        const bool no = false;
        row("the first start ever", no, no, no, "buttonOk buttonTrain",
            "WarningPopup LocationPopup test Train");
        row("costs accepted long ago", yes, no, no, "buttonCar", "LocationPopup test Car");
        row("everything asks", no, yes, yes, "buttonOk buttonIndoor buttonOk buttonSingle",
            "WarningPopup LocationPopup WarningPopup NumberOfMeasurementsPopup test Indoor");
        row("a series", yes, no, yes, "buttonOther buttonMultiple",
            "LocationPopup NumberOfMeasurementsPopup series Other");
        row("location refused", yes, no, no, "buttonCancel", "LocationPopup nothing");
        row("roaming refused", yes, yes, no, "buttonOutdoor buttonCancel",
            "LocationPopup WarningPopup nothing");
    }
    void asksBeforeATest()
    {
        const auto [accepted, roaming, series, presses, shown] =
            currentRow<bool, bool, bool, QString, QString>();
        Utils::setSettingsValue(u"CostWarning"_s, accepted ? u"set"_s : QString());
        if (roaming) {
            roam();
        }
        create(series);

        click(u"buttonStartTest"_s);
        QStringList seen;
        for (const QString &button : presses.split(u' ')) {
            seen.append(openPopup());
            click(button);
        }
        QCOMPARE(openPopup(), QString());
        const TestController &controller = *window->getController();
        seen.append(!controller.isRunning() ? u"nothing"_s
                    : window->getScheduleInfo().isEmpty()
                        ? u"test "_s + controller.getUserLocation()
                        : u"series "_s + controller.getUserLocation());
        QCOMPARE(seen.join(u' '), shown);
    }

    void theCostWarningSaysWhatTheConnectionCosts()
    {
        using Told = std::optional<bool>;
        for (const auto &[metered, guessed, budget, hints] :
             {std::tuple{Told(), false, QString(), u""_s},
              {Told(true), false, QString(), u"<br><br>This connection is metered."_s},
              {Told(true), true, u"50000000"_s,
               u"<br><br>This connection is probably metered. A test uses at most 50 MB."_s}}) {
            Utils::setSettingsValue(u"CostWarning"_s, QString());
            Utils::setSettingsValue(u"MaxBytes"_s, budget);
            platform.told.metered = metered;
            platform.told.meteredGuessed = guessed;
            create(false);
            click(u"buttonStartTest"_s);
            QCOMPARE(label(u"labelMessage"_s), u"CostsQuestion"_s + hints);
            QVERIFY(window->rect().contains(shown<PopupBase>()->geometry()));
        }
    }

    void aBudgetSetBeforeATestEndsItEarly()
    {
        service->script("downloadtest", {"HTTP/1.0 200 OK\r\n\r\n" + QByteArray(60'000, 'x')});
        Utils::setSettingsValue(u"MaxBytes"_s, u"100000"_s);
        create(false);
        click(u"buttonStartTest"_s);
        click(u"buttonOutdoor"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!window->isTestRunning(), limitMs);
        QVERIFY(line().endsWith(u"\nThe data budget ended the test early."_s));
        const auto details = gDB->getDetailsById(gDB->getAllResults().front()->myTestId);
        // Half of it, less what is kept for the round-trip times meanwhile.
        QCOMPARE(details->getLong(u"downloadedBytes"_s), 49'500);
    }

    void asksOnlyOnceWhatWasAccepted()
    {
        Utils::setSettingsValue(u"CostWarning"_s, QString());
        roam();
        create(true);
        for (const QString &press : {u"buttonStartTest"_s, u"buttonOk"_s, u"buttonTrain"_s,
                                     u"buttonOk"_s, u"buttonCancel"_s}) {
            click(press);
        }
        // Costs, place and roaming are settled now, how many is asked each time.
        click(u"buttonStartTest"_s);
        QCOMPARE(openPopup(), u"NumberOfMeasurementsPopup"_s);
        // A place chosen outside the dialogue starts nothing.
        click(u"buttonCancel"_s);
        window->showLocationPopup();
        click(u"buttonCar"_s);
        QCOMPARE(openPopup(), QString());
        QVERIFY(!window->getController()->isRunning());
        QVERIFY(label(u"labelLocation"_s).contains(Utils::trLocation(u"Car"_s)));
    }

    void pagesDoNotSwitchUnderAPopup()
    {
        create(false);
        QTest::keyClick(page(), Qt::Key_Return);
        for (const auto *name : {"buttonResults1", "buttonSettings2", "buttonAbout1"}) {
            page()->findChild<QAbstractButton *>(QString::fromLatin1(name))->click();
        }
        QCOMPARE(page()->objectName(), u"TestTab"_s);
        page()->findChild<QAbstractButton *>(u"buttonClose"_s)->click();
        QVERIFY(window->isVisible());
        window->clearLocalDatabase();
        window->startNewSeries();
        QCOMPARE(openPopup(), u"LocationPopup"_s);

        // What was pressed for the page answers nothing.
        QTest::keyClick(window->focusWidget(), Qt::Key_Return);
        QTest::mouseClick(button(u"buttonCar"_s), Qt::LeftButton);
        QCOMPARE(openPopup(), u"LocationPopup"_s);
        QTRY_VERIFY(window->findChild<PopupLayer *>()->isSettled());

        // Nor does the keyboard leave it.
        QSet<QString> stops;
        for (int i = 0; i < 8; ++i) {
            stops.insert(window->focusWidget()->objectName());
            QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(stops.size(), 6);
        QVERIFY(stops.contains(u"buttonCancel"_s) && !stops.contains(u"buttonStartTest"_s));
        // Return that is held down answers no second question.
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(window->focusWidget(), &repeated);
        QCOMPARE(openPopup(), u"LocationPopup"_s);

        QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
        QCOMPARE(openPopup(), QString());
        for (const auto *name : {"Results", "Settings", "Links", "About", "Test"}) {
            const QString tab = QString::fromLatin1(name);
            click(u"button"_s + tab + u'2');
            QCOMPARE(page()->objectName(), tab + u"Tab"_s);
        }
    }

    void aTestEndsOnThePage()
    {
        service->serveForAWhile();
        create(false);
        QCOMPARE(label(u"labelServer"_s), u"127.0.0.1"_s);
        click(u"buttonStartTest"_s);
        click(u"buttonOutdoor"_s);
        QVERIFY(!button(u"buttonStartTest"_s)->isEnabled());
        window->setThroughput(1, 0, 1000);
        QVERIFY(!shown<ThroughputPlot>(u"plot"_s)->isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!window->isTestRunning(), limitMs);
        QCOMPARE(button(u"buttonStartTest"_s)->text(), u"Start Test"_s);
        QVERIFY(button(u"buttonStartTest"_s)->isEnabled());
        QCOMPARE(shown<QLineEdit>(u"labelUpload"_s)->text(), u"200 kBit/s"_s);
        QVERIFY(shown<QLineEdit>(u"labelDownload"_s)->text().endsWith(u" kBit/s"_s));
        const auto rows = gDB->getAllResults();
        QCOMPARE(rows.size(), size_t(1));
        QCOMPARE(rows.front()->location, u"Outdoor"_s);
        // Its curve is there for the details.
        QVERIFY(!gDB->getIntervals(rows.front()->myTestId, 1).isEmpty());
    }

    void saysInOneSentenceWhatFailed()
    {
        service->refuse();
        create(false);
        click(u"buttonStartTest"_s);
        click(u"buttonOutdoor"_s);
        QTRY_COMPARE_WITH_TIMEOUT(openPopup(), u"ErrorPopup"_s, limitMs);
        QVERIFY(!window->isTestRunning());
        QCOMPARE(label(u"labelTitle"_s) + u' ' + label(u"labelMessage"_s),
                 u"ErrorTitle noConnectionToServer"_s);
        QVERIFY(Utils::getLogEntries().contains(u": Error: noConnectionToServer"_s));
        click(u"buttonOk"_s);
        QCOMPARE(openPopup(), QString());
    }

    void aSeriesCountsAndAnAbortEndsIt()
    {
        FakeClock clock;
        create(true);
        startSeries(20, 180);
        QCOMPARE(window->getScheduleInfo(), u"1,20,60"_s);
        QCOMPARE(button(u"buttonStartTest"_s)->text(), u"Abort Test"_s);
        window->setStatus(u"measuring"_s);
        QCOMPARE(line(), u"1/20: measuring"_s);
        window->setDataTransferred(u"1 MB"_s);
        window->setErrorText(u"nobody is there to press OK"_s);
        QCOMPARE(line(), u"1/20: measuring"_s);
        QCOMPARE(openPopup(), QString());
        endTest();
        // Between two tests the line names the next one, and counts down from the start of the
        // last.
        for (const auto &[passed, shown] :
             {std::pair{200ms, u"3:00"_s}, {54'800ms, u"2:05"_s}, {124'999ms, u"0:01"_s}}) {
            clock.advance(passed);
            QCOMPARE(line(), u"2/20: Next measurement in %1 minutes."_s.arg(shown));
        }
        clock.advance(1ms);
        QVERIFY(window->getController()->isRunning());
        QCOMPARE(window->getScheduleInfo(), u"2,20,60"_s);

        click(u"buttonStartTest"_s);
        QCOMPARE(button(u"buttonStartTest"_s)->text(), u"aborting..."_s);
        endTest();
        QVERIFY(!window->isTestRunning());
        QCOMPARE(button(u"buttonStartTest"_s)->text(), u"Start Test"_s);
        clock.advance(600s);
        QVERIFY(!window->getController()->isRunning());

        // Also one in the count-down.
        startSeries(2, 60);
        window->setAdvancedMode(false); // of the next series
        QCOMPARE(window->getScheduleInfo(), u"1,2,2"_s);
        endTest();
        click(u"buttonStartTest"_s);
        QVERIFY(!window->isTestRunning());
        QCOMPARE(line(), QString());
    }

    void offersToGoOnWithAnInterruptedSeries_data()
    {
        const Rows<int, QString, QString> row("gap", "press", "then");
        row("go on", 100, "buttonOk", "7,20,60");
        row("go on, one missed", 280, "buttonOk", "8,20,60");
        row("forget it", 100, "buttonCancel", "");
        row("too late for any", 100'000, "buttonOk", "");
    }
    void offersToGoOnWithAnInterruptedSeries()
    {
        const auto [gap, press, then] = currentRow<int, QString, QString>();
        FakeClock clock;
        create(true);
        startSeries(20, 180);
        for (int test = 1; test < 6; ++test) {
            endTest();
            clock.advance(180s);
        }
        endTest();
        window.reset();
        clock.advance(std::chrono::seconds(gap));
        window = std::make_unique<MainWindow>(platform);
        window->show();
        QTRY_VERIFY(shown<PopupBase>());
        QCOMPARE(label(u"labelMessage"_s),
                 gap > 1000
                     ? u"The interrupted series is over: its tests from 7 to 20 were missed."_s
                     : u"A series was interrupted. Test %1 of 20 was next. Continue?"_s.arg(
                           gap > 180 ? 8 : 7));
        click(press);
        if (gap == 280) {
            QCOMPARE(label(u"labelMessage"_s), u"Tests from 7 to 7 of 20 were missed."_s);
            click(u"buttonOk"_s);
        }
        if (!then.isEmpty()) {
            QCOMPARE(button(u"buttonStartTest"_s)->text(), u"Abort Test"_s);
            clock.advance(79s);
            QCOMPARE(line(), u"%1/20: Next measurement in 0:01 minutes."_s.arg(then.first(1)));
            clock.advance(1s);
        }
        QCOMPARE(window->getScheduleInfo(), then);
        QCOMPARE(window->getController()->isRunning(), !then.isEmpty());
        QCOMPARE(label(u"labelLocation"_s).contains(Utils::trLocation(u"Train"_s)),
                 !then.isEmpty());
        window.reset();
        QFile::remove(StartUp::seriesFile());
    }

    void aTestIsStoppedWhereItWasStartedAndItsReportKept()
    {
        for (const bool series : {false, true}) {
            FakeClock clock;
            create(series);
            if (series) {
                startSeries(20, 180);
            } else {
                click(u"buttonStartTest"_s);
                click(u"buttonOutdoor"_s);
            }
            QTRY_VERIFY_WITH_TIMEOUT(window->getController()->getPhase() >=
                                         TestController::Phase::DownloadStartMarker,
                                     limitMs);
            click(u"buttonStop"_s);
            QVERIFY(!window->isTestRunning());
            QVERIFY(!button(u"buttonStop"_s));
            QVERIFY(button(u"buttonStartTest"_s)->isEnabled());
            QCOMPARE(button(u"buttonStartTest"_s)->text(), u"Start Test"_s);
            QVERIFY2(line().contains(u"Stopped."_s), qPrintable(line()));
            QCOMPARE(gDB->countUnsentXMLFiles(), 1);
            clock.advance(600s);
            QVERIFY(!window->getController()->isRunning());
        }
    }

    void theRunningFigureIsLargeAndSilenceIsExplained()
    {
        FakeClock clock;
        create(true);
        startSeries(20, 180);
        const auto live = [this] {
            const auto *figure = shown<QLabel>(u"labelLive"_s);
            return figure ? figure->text().remove(QChar(0x2009)) : QString();
        };
        window->setStatus(u"download"_s);
        QCOMPARE(live(), QString());
        // The last second counts, what was passed over as nothing.
        for (int interval = 0; interval < 22; ++interval) {
            if (interval != 17) {
                window->setThroughput(1, interval, interval < 12 ? 999'999 : 125'000);
            }
            clock.advance(100ms);
        }
        QCOMPARE(live(), u"9000"_s);
        clock.advance(1s);
        QVERIFY(live().toInt() < 5000);
        QVERIFY(!shown<QLabel>(u"labelWaiting"_s));
        clock.advance(3s);
        QCOMPARE(live(), u"0"_s);
        QCOMPARE(label(u"labelWaiting"_s), u"Waiting for a network connection."_s);
        window->setThroughput(2, 0, 25'000);
        clock.advance(200ms);
        QVERIFY(!shown<QLabel>(u"labelWaiting"_s));
        QCOMPARE(live(), u"1000"_s);
        window->setRoundTrip(45'400'000);
        QCOMPARE(live(), u"45"_s);
        // The other pages say what runs, and lead back.
        click(u"buttonSettings2"_s);
        window->setStatus(u"measuring"_s);
        QCOMPARE(button(u"buttonRunning"_s)->text(), u"measuring"_s);
        click(u"buttonRunning"_s);
        QVERIFY(shown<TestTab>());
        click(u"buttonStop"_s);
        QCOMPARE(live(), QString());
        click(u"buttonSettings2"_s);
        QVERIFY(!button(u"buttonRunning"_s));
    }

    void keysLeadToEveryPageAndBack()
    {
        create(false);
        store->add({});
        const auto press = [this](int key, Qt::KeyboardModifiers modifiers) {
            window->activateWindow();
            QTest::keyClick(window.get(), Qt::Key(key), modifiers);
        };
        for (const auto &[key, name] : {std::pair{Qt::Key_2, u"ResultsTab"_s},
                                        {Qt::Key_3, u"SettingsTab"_s},
                                        {Qt::Key_4, u"LinksTab"_s},
                                        {Qt::Key_5, u"AboutTab"_s},
                                        {Qt::Key_1, u"TestTab"_s}}) {
            press(key, Qt::AltModifier);
            QCOMPARE(page()->objectName(), name);
        }
        press(Qt::Key_F1, Qt::NoModifier);
        QVERIFY(label(u"labelMessage"_s).contains(u"Ctrl+Return"_s));
        press(Qt::Key_2, Qt::AltModifier); // under the sheet nothing happens
        QCOMPARE(page()->objectName(), u"TestTab"_s);
        window->errorPopupOkClicked();
        press(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(page()->objectName(), u"ResultsTab"_s);
        QVERIFY(shown<QLineEdit>(u"search"_s));
        for (const auto &[key, modifiers] :
             {std::pair<int, Qt::KeyboardModifier>{Qt::Key_Escape, Qt::NoModifier},
              {Qt::Key_Back, Qt::NoModifier},
              {Qt::Key_Left, Qt::AltModifier}}) {
            for (const bool map : {false, true}) {
                map ? window->showGeomapTab() : window->showDetailsWindow();
                QTest::keyClick(page(), Qt::Key(key), modifiers);
                QCOMPARE(page()->objectName(), u"ResultsTab"_s);
            }
        }
        press(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(openPopup(), u"LocationPopup"_s);
    }

    void aWideWindowShowsWhatBelongsTogether()
    {
        create(false);
        store->add({});
        window->resize(1200, 700);
        click(u"buttonResults2"_s);
        const auto *list = shown<ResultsTab>();
        const auto *details = shown<DetailsWindow>();
        QVERIFY(list && details);
        QVERIFY(list->x() >= 100 && details->x() >= list->x() + list->width());
        QVERIFY(details->x() + details->width() <= 1200);
        window->showGeomapTab();
        QVERIFY(shown<GeoMapTab>() && shown<ResultsTab>() && !shown<DetailsWindow>());
        click(u"buttonResults2"_s);
        QTRY_VERIFY(button(u"buttonHistory"_s));
        click(u"buttonHistory"_s); // beside the results, where it was asked for
        QVERIFY(shown<ResultsTab>() && shown<HistoryTab>());
        window->showTestTab();
        QVERIFY(shown<TestTab>() && shown<HistoryTab>());
        window->showGeomapTab();
        window->resize(800, 700);
        QVERIFY(!shown<ResultsTab>());
        QCOMPARE(shown<GeoMapTab>()->width(), 720);
        click(u"buttonTest1"_s);
        QVERIFY(shown<TestTab>() && !shown<GeoMapTab>());
        window->resize(320, 480);
        QCOMPARE(shown<TestTab>()->size(), QSize(320, 480));
    }

    void closingQueuesThePartialReport()
    {
        create(false);
        click(u"buttonStartTest"_s);
        click(u"buttonOutdoor"_s);
        QTRY_VERIFY_WITH_TIMEOUT(window->getController()->getPhase() >=
                                     TestController::Phase::DownloadStartMarker,
                                 limitMs);
        QSignalSpy closed(window.get(), &MainWindow::closed);
        button(u"buttonClose"_s)->click();
        QCOMPARE(closed.count(), 1);
        QVERIFY(!window->getController());
        QCOMPARE(gDB->countUnsentXMLFiles(), 1);
    }

    void aSeriesTellsAtItsEndThatATestWasLost()
    {
        create(true);
        startSeries(2, 0);
        QTRY_VERIFY_WITH_TIMEOUT(window->getController()->getPhase() >=
                                     TestController::Phase::DownloadStartMarker,
                                 limitMs);
        QVERIFY(QSqlQuery().exec(u"DROP TABLE xmlfiles"_s));
        endTest();
        QCOMPARE(openPopup(), QString());
        QTRY_VERIFY(window->getController()->isRunning());
        endTest();
        QCOMPARE(openPopup(), u"ErrorPopup"_s);
        QVERIFY(label(u"labelMessage"_s).contains(DatabaseManager::database_path));
        QVERIFY(!window->isTestRunning());
        QCOMPARE(button(u"buttonStartTest"_s)->text(), u"Start Test"_s);
    }

    void clearingLeavesNothingBehindOrSaysSo()
    {
        create(false);
        store->addIntervals(1, 1, u"5"_s);
        window->showSettingsTab();
        click(u"buttonClearDatabase"_s);
        QVERIFY(label(u"labelMessage"_s).startsWith(u"Stored tests that are deleted: 0. "_s));
        click(u"buttonCancel"_s);
        QVERIFY(!gDB->getIntervals(1, 1).isEmpty());
        click(u"buttonClearDatabase"_s);
        click(u"buttonOk"_s);
        QCOMPARE(openPopup(), u"WaitingPopup"_s);
        QTRY_COMPARE(openPopup(), u"ErrorPopup"_s);
        QCOMPARE(label(u"labelMessage"_s), u"Database has been reseted"_s);
        QVERIFY(gDB->getIntervals(1, 1).isEmpty());
        click(u"buttonOk"_s);
        click(u"buttonNewSeries"_s);
        QVERIFY(label(u"labelMessage"_s).startsWith(u"Starting new Test Series with Id: "_s));
        click(u"buttonOk"_s);

        gDB->deleteDB();
        window->clearLocalDatabase();
        click(u"buttonOk"_s);
        QTRY_COMPARE(openPopup(), u"ErrorPopup"_s);
        QVERIFY(label(u"labelMessage"_s).startsWith(u"Nothing was deleted"_s));
    }

private:
    void roam()
    {
        platform.network.mode = NetworkMode::Lte;
        platform.network.links[NetworkMode::Lte].status = NetworkStatus::Roaming;
    }

    void create(bool series)
    {
        Utils::setSettingsValue(u"AdvMode"_s, series ? u"set"_s : u"notset"_s);
        open();
    }

    /// Past the questions.
    void startSeries(int count, int interval)
    {
        click(u"buttonStartTest"_s);
        if (openPopup() == "LocationPopup"_L1) {
            click(u"buttonTrain"_s);
        }
        QCOMPARE(openPopup(), u"NumberOfMeasurementsPopup"_s);
        window->numberOfMeasurementsPopupNumberSelected(count, interval);
        QVERIFY(window->getController()->isRunning());
    }

    /// The running test ends as an aborted one does, without its minutes of measurements.
    void endTest() { window->getController()->abortTest(); }
    TabBase *page() const { return shown<TabBase>(); }
    /// The name of the popup that is open, empty when there is none.
    QString openPopup() const
    {
        const auto *popup = shown<PopupBase>();
        return popup ? popup->objectName() : QString();
    }
    QString line() const { return label(u"labelDataTransfered"_s); }

    std::unique_ptr<FakeService> service;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(MainWindowTest)

#include "mainwindow_test.moc"
