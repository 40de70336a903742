#include "ui/mainwindow.h"

#include "data/testservertable.h"
#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "platform/platform.h"
#include "ui/details/detailswindow.h"
#include "ui/map/geomaptab.h"
#include "ui/pages/abouttab.h"
#include "ui/pages/linkstab.h"
#include "ui/pages/resultstab.h"
#include "ui/pages/settingstab.h"
#include "ui/pages/testtab.h"
#include "ui/popups/messagepopup.h"
#include "ui/popups/numberofmeasurementspopup.h"
#include "utils/deployment.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include "ui_mainwindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QUrl>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto countDownPeriod = 200ms;
/// How often a test that is due looks whether the one before it has ended.
constexpr int retryPeriod = 2000;
constexpr qlonglong msPerSecond = 1000;
constexpr int secondsPerMinute = 60;
/// Lets the waiting popup be painted before the work begins.
constexpr auto paintTime = 100ms;
constexpr int popupWidth = 400;
constexpr int popupMargin = 16;

QString locationCode(UserLocation location)
{
    switch (location) {
    case LOCATION_NOTSELECTED: return u"Unknown"_s;
    case LOCATION_INDOOR: return u"Indoor"_s;
    case LOCATION_OUTDOOR: return u"Outdoor"_s;
    case LOCATION_TRAIN: return u"Train"_s;
    case LOCATION_CAR: return u"Car"_s;
    case LOCATION_OTHER: return u"Other"_s;
    }
    Q_UNREACHABLE();
}

} // namespace

MainWindow::MainWindow(Platform &devicePlatform, QWidget *parent)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui::MainWindow>())
    , platform(devicePlatform)
    , userLocation(u"Unknown"_s)
{
    ui->setupUi(this);
    qApp->installEventFilter(this);
    QTimer::singleShot(0, this, &MainWindow::windowReady);
}

MainWindow::~MainWindow()
{
    // Its last words go to pages that are still there.
    delete controller;
    delete advtimer;
    delete advtimerscreenupdate;
}

// ---- Set-up

void MainWindow::windowReady()
{
    const bool storeOpen = gDB->openDB();
    advtimer = new QTimer(this);
    advtimerscreenupdate = new QTimer(this);
    connect(advtimerscreenupdate, &QTimer::timeout, this, &MainWindow::updateScreenNextMeasurement);
    advtimerstarttime = 0;
    createPages();
    createPopups();
    controller = new TestController(this, this, this, platform);
    connect(controller, &TestController::testEnded, this, &MainWindow::testEnded);
    controller->showInformation();
    ui->labelLoading->hide();
    showTestTab();
    if (!storeOpen) {
        showNotice(tr("ErrorTitle"),
                   tr("The results in %1 cannot be opened or written. Make room or correct the "
                      "rights of this folder, then start again.")
                       .arg(DatabaseManager::databaseFile().toHtmlEscaped()));
    }
}

void MainWindow::createPages()
{
    servers = new TestServerTable(Deployment::current(), this);
    testTab = new TestTab(this);
    resultsTab = new ResultsTab(this);
    settingsTab = new SettingsTab(this);
    linksTab = new LinksTab(this);
    aboutTab = new AboutTab(this);
    geomapTab = new GeoMapTab(this);
    detailsWindow = new DetailsWindow(this);
    connectPages();
    setAdvancedMode(settingsTab->isSeriesMode());
    testTab->setLocation(Utils::trLocation(userLocation));
}

void MainWindow::connectPages()
{
    for (TabBase *page : pages()) {
        page->hide();
        connect(page, &TabBase::pageClicked, this, &MainWindow::showPageOf);
        connect(page, &TabBase::makerClicked, this, &MainWindow::showOrvakWebpage);
        connect(page, &TabBase::exitClicked, this, &MainWindow::exitClicked);
    }
    connect(testTab, &TestTab::startClicked, this, &MainWindow::startTestClicked);
    connect(testTab, &TestTab::locationLinkClicked, this, &MainWindow::showLocationPopup);
    connect(resultsTab, &ResultsTab::mapClicked, this, &MainWindow::showGeomapTab);
    connect(resultsTab, &ResultsTab::resultSelected, detailsWindow, &DetailsWindow::setTestResults);
    connect(resultsTab, &ResultsTab::resultSelected, this, &MainWindow::showDetailsWindow);
    connect(settingsTab, &SettingsTab::serverChosen, this, &MainWindow::setTestServer);
    connect(settingsTab, &SettingsTab::newSeriesClicked, this, &MainWindow::startNewSeries);
    connect(settingsTab, &SettingsTab::clearDatabaseClicked, this, &MainWindow::clearLocalDatabase);
    connect(settingsTab, &SettingsTab::seriesModeChosen, this, &MainWindow::setAdvancedMode);
    connect(settingsTab, &SettingsTab::languageChosen, this, &MainWindow::setLanguage);
}

QList<TabBase *> MainWindow::pages() const
{
    return {testTab, resultsTab, settingsTab, linksTab, aboutTab, geomapTab, detailsWindow};
}

void MainWindow::createPopups()
{
    shade = new QWidget(this);
    shade->setObjectName(u"shade"_s);
    shade->hide();
    locationPopup = new LocationPopup(this);
    numberOfMeasurementsPopup = new NumberOfMeasurementsPopup(this);
    warningPopup = new MessagePopup(this);
    warningPopup->setObjectName(u"WarningPopup"_s);
    errorPopup = new MessagePopup(this);
    errorPopup->setObjectName(u"ErrorPopup"_s);
    waitingPopup = new MessagePopup(this);
    waitingPopup->setObjectName(u"WaitingPopup"_s);
    for (PopupBase *popup : std::initializer_list<PopupBase *>{
             locationPopup, numberOfMeasurementsPopup, warningPopup, errorPopup, waitingPopup}) {
        popup->hide();
    }
    connect(locationPopup, &LocationPopup::locationSelected, this,
            &MainWindow::locationPopupLocationSelected);
    connect(locationPopup, &PopupBase::cancelled, this, &MainWindow::locationPopupCancelClicked);
    connect(numberOfMeasurementsPopup, &NumberOfMeasurementsPopup::numberSelected, this,
            &MainWindow::numberOfMeasurementsPopupNumberSelected);
    connect(numberOfMeasurementsPopup, &PopupBase::cancelled, this,
            &MainWindow::numberOfMeasurementsPopupCancelClicked);
    connect(warningPopup, &MessagePopup::accepted, this, &MainWindow::warningPopupOkClicked);
    connect(warningPopup, &PopupBase::cancelled, this, &MainWindow::warningPopupCancelClicked);
    connect(errorPopup, &MessagePopup::accepted, this, &MainWindow::errorPopupOkClicked);
}

// A finger that rests on Enter answers one question, not all that follow.
bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *press = static_cast<QKeyEvent *>(event);
        const bool enter = press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter;
        if (enter && press->isAutoRepeat()) {
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::setOrientation(ScreenOrientation orientation)
{
    Qt::ScreenOrientation content = Qt::PrimaryOrientation;
    if (orientation == ScreenOrientationLockPortrait) {
        content = Qt::PortraitOrientation;
    } else if (orientation == ScreenOrientationLockLandscape) {
        content = Qt::LandscapeOrientation;
    }
    // Embedded in a view, this widget has no window of its own.
    const auto windows = QGuiApplication::topLevelWindows();
    for (QWindow *each : windows) {
        each->reportContentOrientationChange(content);
    }
}

void MainWindow::showExpanded()
{
    showFullScreen();
}

void MainWindow::setLanguage(const QString &language)
{
    Utils::setSettingsValue(u"Language"_s, language);
    Translations::install(language);
}

void MainWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::LanguageChange) {
        return;
    }
    ui->retranslateUi(this);
    if (servers) {
        servers->retranslate();
    }
    if (testTab) {
        testTab->setLocation(Utils::trLocation(userLocation));
    }
    if (controller) {
        controller->showInformation();
    }
}

// ---- Pages

bool MainWindow::showPage(TabBase *page)
{
    if (popupShown || !page) {
        return false;
    }
    for (TabBase *each : pages()) {
        if (each != page) {
            each->hide();
        }
    }
    activeTab = page;
    fitActiveTab();
    focusPage();
    return true;
}

// Back to where the keyboard was on this page.
void MainWindow::focusPage()
{
    QWidget *last = activeTab->focusWidget();
    (last && last->isVisible() && last->isEnabled() ? last : activeTab)->setFocus();
}

void MainWindow::fitActiveTab()
{
    if (!activeTab) {
        return;
    }
    activeTab->move(0, 0);
    activeTab->setFixedSize(size());
    activeTab->show();
    activeTab->activateWindow();
    if (activePopup) {
        placePopup();
    }
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    Utils::addLogEntry(
        u"Resized: %1 x %2"_s.arg(QString::number(width()), QString::number(height())));
    fitActiveTab();
}

void MainWindow::showPageOf(Page page)
{
    switch (page) {
    case Page::Test: return showTestTab();
    case Page::Results: return showResultsTab();
    case Page::Settings: return showSettingsTab();
    case Page::Links: return showLinksTab();
    case Page::About: return showAboutTab();
    }
}

void MainWindow::showTestTab()
{
    showPage(testTab);
}

void MainWindow::showResultsTab()
{
    if (showPage(resultsTab)) {
        resultsTab->updateResults();
    }
}

void MainWindow::showSettingsTab()
{
    if (controller) {
        settingsTab->setServers(servers, controller->getSelectedServer());
    }
    if (showPage(settingsTab)) {
        settingsTab->updateSettings();
    }
}

void MainWindow::showLinksTab()
{
    showPage(linksTab);
}

void MainWindow::showAboutTab()
{
    if (showPage(aboutTab)) {
        aboutTab->showDefaultPage();
    }
}

void MainWindow::showGeomapTab()
{
    holdTiles();
    if (showPage(geomapTab)) {
        geomapTab->showResultsOnMap();
    }
}

// Tiles would take their share of what is measured, and cost money where the user has not agreed
// to.
void MainWindow::holdTiles()
{
    const bool costly = controller && controller->checkRoaming() && !roamingShowed;
    if (geomapTab) {
        geomapTab->pauseDownloads(advmoderunning || costly);
    }
}

void MainWindow::showDetailsWindow()
{
    showPage(detailsWindow);
}

QString MainWindow::makerAddress()
{
    const Deployment &deployment = Deployment::current();
    return deployment.makerUrl.isEmpty() ? deployment.webAddress() + u'/' : deployment.makerUrl;
}

void MainWindow::showOrvakWebpage()
{
    Utils::addLogEntry("Open URL "_L1 + makerAddress());
    if (!popupShown) {
        QDesktopServices::openUrl(QUrl(makerAddress()));
    }
}

void MainWindow::exitClicked()
{
    if (popupShown) {
        return;
    }
    close();
    delete controller;
    controller = nullptr;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (advtimerscreenupdate) {
        advtimerscreenupdate->stop();
    }
    if (controller && controller->isRunning()) {
        stoprequestedflag = true;
        controller->abortTest();
    }
    seriesScope.reset();
    event->accept();
    Q_EMIT closed();
}

// ---- Popups

void MainWindow::openPopup(PopupBase *popup)
{
    activePopup = popup;
    placePopup();
    popup->setVisible(true);
}

void MainWindow::placePopup()
{
    const int wide = std::min(popupWidth, width() - 2 * popupMargin);
    const int high = activePopup->heightForWidth(wide);
    activePopup->setFixedSize(
        wide, std::min(high > 0 ? high : activePopup->sizeHint().height(), height()));
    activePopup->move((width() - activePopup->width()) / 2, (height() - activePopup->height()) / 2);
    shade->setGeometry(rect());
    shade->show();
    shade->raise();
    activePopup->raise();
}

void MainWindow::closePopup(PopupBase *popup)
{
    popup->setVisible(false);
    activePopup = nullptr;
    shade->hide();
    if (activeTab) {
        focusPage();
    }
}

void MainWindow::showNotice(const QString &title, const QString &message)
{
    errorPopup->setMessage({title, message, tr("OK"), {}});
    popupShown = true;
    openPopup(errorPopup);
}

void MainWindow::errorPopupOkClicked()
{
    closePopup(errorPopup);
    popupShown = false;
}

void MainWindow::showWarning(const QString &title, const QString &message)
{
    popupShown = true;
    warningPopup->setMessage({title, message, tr("Yes, start test"), tr("No, don't test")});
    openPopup(warningPopup);
}

void MainWindow::showLocationPopup()
{
    if (testrunning || (popupShown && teststatus != 3)) {
        return;
    }
    if (teststatus != 3) {
        teststatus = -1;
    }
    popupShown = true;
    openPopup(locationPopup);
}

void MainWindow::showNumberOfMeasurementsPopup()
{
    if (testrunning) {
        return;
    }
    popupShown = true;
    openPopup(numberOfMeasurementsPopup);
}

// ---- The questions before a test

void MainWindow::startTestClicked()
{
    if (!controller || popupShown) {
        return;
    }
    if (testrunning) {
        if (advancedmode) {
            testTab->setStatusText(tr("aborting..."));
            stoprequestedflag = true;
        }
        return;
    }
    advancedmode = chosenmode;
    teststatus = 0;
    stoprequestedflag = false;
    startTestRun();
}

void MainWindow::startTestRun()
{
    if (teststatus == 0) {
        if (!Utils::getSettingsValue(u"CostWarning"_s).isEmpty()) {
            teststatus = 2;
        } else {
            teststatus = 1;
            showWarning(tr("Costs"), costsQuestion());
        }
    }
    if (teststatus == 2) {
        if (userLocation == "Unknown"_L1) {
            teststatus = 3;
            showLocationPopup();
        } else {
            teststatus = 4;
        }
    }
    if (teststatus == 4) {
        if (!controller->checkRoaming() || roamingShowed) {
            teststatus = 6;
        } else {
            teststatus = 5;
            showWarning(tr("Roaming"), tr("RoamingQuestion"));
        }
    }
    if (teststatus == 6) {
        if (advancedmode) {
            teststatus = 7;
            showNumberOfMeasurementsPopup();
        } else {
            runTest();
        }
    } else if (teststatus == 8 && advancedmode) {
        seriesScope = std::make_unique<QObject>();
        runTest();
    }
}

QString MainWindow::costsQuestion() const
{
    QStringList hints;
    const PlatformFacts facts = platform.facts();
    if (facts.metered.value_or(false)) {
        hints.append(facts.meteredGuessed ? tr("This connection is probably metered.")
                                          : tr("This connection is metered."));
    }
    const DataBudget budget = DataBudget::remembered();
    if (budget.bytes()) {
        hints.append(tr("A test uses at most %1.").arg(budget.text()));
    }
    const QString question = tr("CostsQuestion");
    return hints.isEmpty() ? question : question + "<br><br>"_L1 + hints.join(u' ');
}

void MainWindow::runTest()
{
    controller->setDataBudget(DataBudget::remembered());
    controller->runTests(userLocation);
}

void MainWindow::warningPopupOkClicked()
{
    closePopup(warningPopup);
    popupShown = false;
    if (teststatus == 5) {
        roamingShowed = true;
    }
    ++teststatus;
    Utils::setSettingsValue(u"CostWarning"_s, u"set"_s);
    startTestRun();
}

void MainWindow::warningPopupCancelClicked()
{
    cancelDialogue(warningPopup);
}

void MainWindow::locationPopupLocationSelected(UserLocation location)
{
    closePopup(locationPopup);
    popupShown = false;
    userLocation = locationCode(location);
    testTab->setLocation(Utils::trLocation(userLocation));
    if (teststatus >= 0) {
        teststatus = 4;
    }
    startTestRun();
}

void MainWindow::locationPopupCancelClicked()
{
    cancelDialogue(locationPopup);
}

void MainWindow::numberOfMeasurementsPopupNumberSelected(int count, int interval)
{
    closePopup(numberOfMeasurementsPopup);
    popupShown = false;
    aktnumberoftests = numberoftests = count;
    timebetweentests = interval;
    teststatus = 8;
    startTestRun();
}

void MainWindow::numberOfMeasurementsPopupCancelClicked()
{
    cancelDialogue(numberOfMeasurementsPopup);
}

void MainWindow::cancelDialogue(PopupBase *popup)
{
    closePopup(popup);
    popupShown = false;
    teststatus = 0;
}

// ---- Tests and series

void MainWindow::setAdvancedMode(bool on)
{
    chosenmode = on;
    if (!testrunning) {
        advancedmode = on;
    }
}

bool MainWindow::inSeries() const
{
    return advancedmode && numberoftests > 1;
}

QString MainWindow::getScheduleInfo() const
{
    if (!inSeries()) {
        return {};
    }
    const qlonglong minutes = qlonglong(numberoftests) * timebetweentests / secondsPerMinute;
    return u"%1,%2,%3"_s.arg(numberoftests - aktnumberoftests).arg(numberoftests).arg(minutes);
}

void MainWindow::startTest()
{
    advmoderunning = true;
    advtimerscreenupdate->stop();
    --aktnumberoftests;
    if (advancedmode && aktnumberoftests >= 1) {
        advtimerstarttime = Utils::getTimeInMs();
        armNextMeasurement(1000 * timebetweentests);
    }
    testrunning = true;
    holdTiles();
    if (inSeries()) {
        testTab->setAbortCaption(tr("Abort Test"));
    } else {
        testTab->setGUIDisabled(true);
    }
    testTab->showProgessBar(true);
    testTab->clearThroughput();
    setDownloadText(QString());
    setUploadText(QString());
    setRTTText(QString());
    testTab->setDataTransferred(QString());
}

void MainWindow::armNextMeasurement(int milliseconds)
{
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, seriesScope.get(),
                       [this] { startNextMeasurement(); });
}

void MainWindow::startNextMeasurement()
{
    if (!controller || !inSeries() || aktnumberoftests < 1) {
        return;
    }
    if (advmoderunning) {
        return armNextMeasurement(retryPeriod);
    }
    runTest();
}

void MainWindow::stopTest()
{
    advmoderunning = false;
    holdTiles();
    if (!inSeries()) {
        return endSingleTest();
    }
    testTab->showProgessBar(false);
    if (stoprequestedflag) {
        aktnumberoftests = -1;
        numberoftests = 0;
        advtimer->stop();
        endSeries();
    } else if (aktnumberoftests > 0) {
        advtimerscreenupdate->start(countDownPeriod);
    } else {
        aktnumberoftests = -1;
        endSeries();
    }
    setProgress(0, 1);
}

void MainWindow::endSingleTest()
{
    testrunning = false;
    setStatus(tr("Start Test"));
    testTab->setGUIDisabled(false);
    testTab->showProgessBar(false);
    setProgress(0, 1);
}

void MainWindow::endSeries()
{
    seriesScope.reset();
    advtimerscreenupdate->stop();
    testrunning = false;
    setStatus(tr("Start Test"));
    setDataTransferred(QString());
    testTab->setGUIDisabled(false);
}

void MainWindow::updateScreenNextMeasurement()
{
    if (stopRequested()) {
        advtimerscreenupdate->stop();
        advtimer->stop();
        return stopTest();
    }
    const qlonglong passed = (Utils::getTimeInMs() - advtimerstarttime) / msPerSecond;
    const qlonglong remaining = std::max<qlonglong>(0, timebetweentests - passed);
    setStatus(tr("Next measurement in %1:%2 minutes.")
                  .arg(remaining / secondsPerMinute)
                  .arg(remaining % secondsPerMinute, 2, 10, QChar(u'0')));
}

// An unattended series is not stopped by a notice; what it lost is told when it is over.
void MainWindow::testEnded(const TestOutcome &outcome)
{
    resultLost |= outcome.storeFailed;
    if (testrunning || popupShown) {
        return;
    }
    if (std::exchange(resultLost, false)) {
        showNotice(tr("ErrorTitle"), tr("The test could not be stored in %1. Make room or correct "
                                        "the rights of this folder.")
                                         .arg(DatabaseManager::databaseFile().toHtmlEscaped()));
        return;
    }
    const TestResults *record = controller->getTestResults();
    if (outcome.end == TestOutcome::End::Completed && record &&
        !record->phasesCutByBudget().isEmpty()) {
        testTab->addNote(tr("The data budget ended the test early."));
    }
    if (!outcome.reportDelivered && outcome.queueId >= 0) {
        testTab->addNote(tr("The report waits and goes out with the next test."));
    }
}

// ---- What the controller reports

void MainWindow::setStatus(QString text)
{
    if (!inSeries() || aktnumberoftests < 0) {
        testTab->setStatusText(text);
        return;
    }
    const int number =
        advmoderunning ? numberoftests - aktnumberoftests : numberoftests + 1 - aktnumberoftests;
    testTab->setDataTransferred(
        u"%1/%2: %3"_s.arg(QString::number(number), QString::number(numberoftests), text));
}

void MainWindow::setProgressMax(int max)
{
    testTab->setProgressMaxValue(max);
}

void MainWindow::setProgressValue(int value)
{
    testTab->setProgressValue(value);
}

void MainWindow::setProgress(int value, int max)
{
    testTab->setProgressMaxValue(max);
    testTab->setProgressValue(value);
}

void MainWindow::setDownloadText(QString text)
{
    testTab->setDownloadText(text);
}

void MainWindow::setUploadText(QString text)
{
    testTab->setUploadText(text);
}

void MainWindow::setRTTText(QString text)
{
    testTab->setRTTText(text);
}

void MainWindow::setDataTransferred(QString text)
{
    if (!inSeries() || aktnumberoftests <= 0) {
        testTab->setDataTransferred(text);
    }
}

void MainWindow::setErrorText(QString text)
{
    if (inSeries()) {
        return;
    }
    Utils::addLogEntry(u"Error: %1"_s.arg(text));
    showNotice(tr("ErrorTitle"), text.toHtmlEscaped());
}

void MainWindow::setInformation(QString server, QString seriesId, QString testId, QString position)
{
    testTab->setTestserver(server);
    // Before the first test there is no series yet.
    testTab->setTestSeries(seriesId == "0"_L1 ? tr("na") : seriesId + u'/' + testId);
    testTab->setPosition(position);
}

void MainWindow::setThroughput(int resulttype, int interval, qint64 bytes)
{
    testTab->addThroughput(resulttype, interval, bytes);
}

TestServer *MainWindow::getTestServer(const QString &hostname, int port)
{
    return servers->find(hostname, port);
}

void MainWindow::setTestServer(TestServer *server)
{
    if (controller) {
        controller->setTestServer(server);
    }
}

// ---- Actions of the settings page

void MainWindow::clearLocalDatabase()
{
    if (popupShown || testrunning) {
        return;
    }
    waitingPopup->setMessage({tr("Please Wait"), tr("Database is beeing reseted..."), {}, {}});
    popupShown = true;
    openPopup(waitingPopup);
    QTimer::singleShot(paintTime, this, &MainWindow::clearLocalDatabaseImpl);
}

void MainWindow::clearLocalDatabaseImpl()
{
    closePopup(waitingPopup);
    const bool cleared = gDB->resetDB();
    resultsTab->updateResults();
    if (cleared) {
        geomapTab->clearMarkers();
        showNotice(tr("Clear Database"), tr("Database has been reseted"));
    } else {
        showNotice(tr("ErrorTitle"),
                   tr("Nothing was deleted: the results in %1 cannot be written at the moment. Try "
                      "again when no other program uses them.")
                       .arg(DatabaseManager::databaseFile().toHtmlEscaped()));
    }
}

void MainWindow::startNewSeries()
{
    if (popupShown || testrunning) {
        return;
    }
    controller->startNewSeries();
    controller->showInformation();
    showNotice(tr("Information"), tr("Starting new Test Series with Id:") + u' ' +
                                      QString::number(controller->getSeriesId()));
}

} // namespace velometer
