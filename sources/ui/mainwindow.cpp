#include "ui/mainwindow.h"

#include "app/serverselection.h"
#include "app/testconsent.h"
#include "app/testsession.h"
#include "data/delayplan.h"
#include "db/databasemanager.h"
#include "ui/details/detailswindow.h"
#include "ui/frame/firstframe.h"
#include "ui/frame/pagestack.h"
#include "ui/lasttest.h"
#include "ui/map/geomaptab.h"
#include "ui/pages/abouttab.h"
#include "ui/pages/historytab.h"
#include "ui/pages/linkstab.h"
#include "ui/pages/resultstab.h"
#include "ui/pages/settingstab.h"
#include "ui/pages/testtab.h"
#include "ui/pages/tracktab.h"
#include "ui/popups/messagepopup.h"
#include "ui/popups/popuplayer.h"
#include "ui/popups/storedialogue.h"
#include "ui/resultactions.h"
#include "ui/shortcuts.h"
#include "ui/testdisplay.h"
#include "ui/theme/focusring.h"
#include "ui/trackcontrol.h"
#include "utils/deployment.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include "ui_mainwindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace velometer {

MainWindow::MainWindow(Platform &devicePlatform, QWidget *parent)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui::MainWindow>())
    , platform(devicePlatform)
    , pages(new PageStack(this))
    , popups(new PopupLayer(this))
{
    ui->setupUi(this);
    new FocusRing(this);
    connect(popups, &PopupLayer::closed, pages, &PageStack::focus);
    connect(pages, &PageStack::pageClicked, this, &MainWindow::showPageOf);
    connect(new FirstFrame(this), &FirstFrame::shown, this, &MainWindow::windowReady);
}

MainWindow::~MainWindow()
{
    // Their last words go to pages that are still there.
    endSession();
}

// ---- Set-up

void MainWindow::windowReady()
{
    const bool storeOpen = gDB->openDB();
    servers = new ServerSelection(platform, this);
    consent = new TestConsent(platform, this);
    createPages();
    createPopups();
    createTests();
    getController()->showInformation();
    ui->labelLoading->hide();
    showTestTab();
    storeDialogue->tellSetAside();
    storeOpen ? offerInterrupted() : storeDialogue->tellNotOpened();
}

void MainWindow::createPages()
{
    pages->add(testTab = new TestTab(this));
    pages->add(resultsTab = new ResultsTab(this));
    pages->add(settingsTab = new SettingsTab(this));
    pages->add(linksTab = new LinksTab(this));
    pages->add(aboutTab = new AboutTab(this));
    pages->add(geomapTab = new GeoMapTab(this));
    pages->add(detailsWindow = new DetailsWindow(this));
    pages->add(historyTab = new HistoryTab(this));
    pages->add(trackTab = new TrackTab(this));
    display = new TestDisplay(testTab, this);
    connect(display, &TestDisplay::notice, this, &MainWindow::showNotice);
    pages->addBeside(testTab, historyTab);
    connectPages();
    new Shortcuts(this);
    setAdvancedMode(settingsTab->isSeriesMode());
}

void MainWindow::connectPages()
{
    for (TabBase *page : pages->pages()) {
        connect(page, &TabBase::pageClicked, this, &MainWindow::showPageOf);
        connect(page, &TabBase::makerClicked, this, &MainWindow::showOrvakWebpage);
        connect(page, &TabBase::exitClicked, this, &MainWindow::exitClicked);
        if (page != testTab) {
            connect(display, &TestDisplay::running, page, &TabBase::setRunning);
        }
    }
    // What results lead to stands beside them where there is room, and leads back.
    for (TabBase *page : std::initializer_list<TabBase *>{detailsWindow, geomapTab, historyTab}) {
        pages->addBeside(resultsTab, page);
        connect(page, &TabBase::backClicked, this, &MainWindow::showResultsTab);
    }
    pages->addBeside(resultsTab, trackTab);
    connect(trackTab, &TabBase::backClicked, this, &MainWindow::showGeomapTab);
    connect(geomapTab, &GeoMapTab::tracksClicked, this, &MainWindow::showTracks);
    connect(testTab, &TestTab::startClicked, this, &MainWindow::startTestClicked);
    connect(testTab, &TestTab::stopClicked, this, &MainWindow::stopTestClicked);
    connect(testTab, &TestTab::locationLinkClicked, this, &MainWindow::showLocationPopup);
    connect(resultsTab, &ResultsTab::mapClicked, this, &MainWindow::showGeomapTab);
    connect(resultsTab, &ResultsTab::historyClicked, this, [this] { showPage(historyTab); });
    connect(resultsTab, &ResultsTab::resultSelected, detailsWindow, &DetailsWindow::setTestResults);
    connect(resultsTab, &ResultsTab::resultSelected, this, &MainWindow::showDetailsWindow);
    connect(settingsTab, &SettingsTab::serverChosen, servers,
            qOverload<TestServer *>(&ServerSelection::choose));
    connect(settingsTab, &SettingsTab::newSeriesClicked, this, &MainWindow::startNewSeries);
    connect(settingsTab, &SettingsTab::clearDatabaseClicked, this, &MainWindow::clearLocalDatabase);
    connect(settingsTab, &SettingsTab::seriesModeChosen, this, &MainWindow::setAdvancedMode);
    connect(settingsTab, &SettingsTab::languageChosen, this, &MainWindow::setLanguage);
    connect(settingsTab, &SettingsTab::lookChosen, this, &MainWindow::lookChosen);
    connect(settingsTab, &SettingsTab::textSizeChosen, this, &MainWindow::textSizeChosen);
}

void MainWindow::createPopups()
{
    errorPopup = new MessagePopup(this);
    errorPopup->setObjectName(u"ErrorPopup"_s);
    errorPopup->hide();
    connect(errorPopup, &MessagePopup::accepted, this, &MainWindow::errorPopupOkClicked);
    actions = new ResultActions(*popups, [this] { return isTestRunning(); }, this);
    actions->serve(*resultsTab, *detailsWindow, *historyTab, *geomapTab);
    connect(actions, &ResultActions::notice, this, &MainWindow::showNotice);
    connect(actions, &ResultActions::deleted, this, [this] { lastTest->refresh(); });
    storeDialogue = new StoreDialogue(*popups, this);
    connect(storeDialogue, &StoreDialogue::notice, this, &MainWindow::showNotice);
    connect(storeDialogue, &StoreDialogue::emptied, this, &MainWindow::storeEmptied);
    dialogue = new StartDialogue(
        *popups, *consent, [this] { return getController()->checkRoaming(); }, this);
    connect(dialogue, &StartDialogue::agreed, this, &MainWindow::startAgreed);
    connect(dialogue, &StartDialogue::declined, this, [this] { session->getSeries().discard(); });
    connect(dialogue, &StartDialogue::locationChanged, testTab,
            [this](const QString &code) { testTab->setLocation(Utils::trLocation(code)); });
    testTab->setLocation(Utils::trLocation(dialogue->getLocation()));
}

void MainWindow::createTests()
{
    session = std::make_unique<TestSession>(platform, *servers, this, nullptr);
    display->watch(&session->getController(), &session->getSeries());
    connect(session.get(), &TestSession::resumed, this, &MainWindow::seriesResumed);
    connect(getController(), &TestController::testEnded, this, &MainWindow::holdTiles);
    lastTest = new LastTest(testTab, session.get(), this);
    connect(lastTest, &LastTest::opened, detailsWindow, &DetailsWindow::setTestResults);
    connect(lastTest, &LastTest::opened, this, &MainWindow::showDetailsWindow);
    createTracks();
}

void MainWindow::createTracks()
{
    tracks = std::make_unique<TrackControl>(
        *trackTab, *geomapTab, *session, [this] { return startOnTheWay(); }, nullptr);
    connect(tracks.get(), &TrackControl::choiceAsked, actions, &ResultActions::ask);
    connect(tracks.get(), &TrackControl::notice, this, &MainWindow::showNotice);
    connect(tracks.get(), &TrackControl::mapAsked, this, [this](qulonglong row) {
        showGeomapTab();
        geomapTab->showTrack(row);
    });
}

void MainWindow::showTracks()
{
    if (showPage(trackTab)) {
        tracks->refresh();
    }
}

// Nobody is asked while he drives: what needs an answer is left out.
bool MainWindow::startOnTheWay()
{
    if (isTestRunning() || popups->isOpen() ||
        consent->askRoaming(getController()->checkRoaming())) {
        return false;
    }
    startAgreed(StartDialogue::Goal::Test, {dialogue->getLocation(), 1, {}});
    return true;
}

void MainWindow::setOrientation(ScreenOrientation orientation)
{
    const auto content = orientation == ScreenOrientationLockPortrait    ? Qt::PortraitOrientation
                         : orientation == ScreenOrientationLockLandscape ? Qt::LandscapeOrientation
                                                                         : Qt::PrimaryOrientation;
    // Embedded in a view, this widget has no window of its own.
    const auto windows = QGuiApplication::topLevelWindows();
    for (QWindow *each : windows) {
        each->reportContentOrientationChange(content);
    }
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
    if (session) {
        servers->servers().retranslate();
        testTab->setLocation(Utils::trLocation(dialogue->getLocation()));
        getController()->showInformation();
    }
}

// ---- Pages

bool MainWindow::showPage(TabBase *page)
{
    if (popups->isOpen() || !page) {
        return false;
    }
    pages->show(page);
    return true;
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    Utils::addLogEntry(u"Resized: %1 x %2"_s.arg(width()).arg(height()));
    pages->fit();
    popups->place();
}

void MainWindow::showPageOf(Page page)
{
    switch (page) {
    case Page::Test: showPage(testTab); return;
    case Page::Links: showPage(linksTab); return;
    case Page::Results:
        if (showPage(resultsTab)) {
            resultsTab->updateResults();
            if (pages->isWide()) {
                detailsWindow->showNewest();
            }
        }
        return;
    case Page::Settings:
        if (servers) {
            settingsTab->setServers(&servers->servers(), servers->current());
        }
        if (showPage(settingsTab)) {
            settingsTab->updateSettings();
        }
        return;
    case Page::About:
        if (showPage(aboutTab)) {
            aboutTab->showDefaultPage();
        }
        return;
    }
}

void MainWindow::searchResults()
{
    showResultsTab();
    resultsTab->search();
}

void MainWindow::showShortcuts()
{
    if (!popups->isOpen()) {
        showNotice(tr("Keys"), Shortcuts::sheet());
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
    if (session) {
        const bool costly = consent->askRoaming(getController()->checkRoaming()).has_value();
        geomapTab->pauseDownloads(session->getSeries().isTesting() || costly);
    }
}

void MainWindow::showDetailsWindow()
{
    showPage(detailsWindow);
}

void MainWindow::showOrvakWebpage()
{
    const QString address = Deployment::current().makerAddress();
    Utils::addLogEntry("Open URL "_L1 + address);
    if (!popups->isOpen()) {
        showLinksTab();
        linksTab->openPage(address);
    }
}

void MainWindow::exitClicked()
{
    if (!popups->isOpen() && close()) {
        endSession();
    }
}

void MainWindow::endSession()
{
    if (display) {
        display->watch(nullptr, nullptr);
    }
    if (tracks) {
        tracks->suspend();
        tracks.reset();
    }
    session.reset();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (session) {
        display->requestStop();
        tracks->suspend();
        session->close();
        if (getController()->isRunning()) {
            // Another program holds the store locked: what the test has is kept first.
            connect(getController(), &TestController::testEnded, this, &QWidget::close,
                    Qt::QueuedConnection);
            return event->ignore();
        }
    }
    event->accept();
    Q_EMIT closed();
}

void MainWindow::showNotice(const QString &title, const QString &message)
{
    errorPopup->setMessage({title, message, tr("OK"), {}});
    popups->show(errorPopup);
}

void MainWindow::errorPopupOkClicked()
{
    popups->close(errorPopup);
}

void MainWindow::showNumberOfMeasurementsPopup()
{
    if (!isTestRunning() && !popups->isOpen()) {
        dialogue->askNumber();
    }
}

void MainWindow::showLocationPopup()
{
    if (!isTestRunning() && !popups->isOpen()) {
        dialogue->askLocation();
    }
}

// ---- Tests and series

bool MainWindow::isTestRunning() const
{
    return session && session->isActive();
}

QString MainWindow::getScheduleInfo() const
{
    return isTestRunning() ? session->getSeries().getScheduleInfo() : QString();
}

void MainWindow::startTestClicked()
{
    if (!session || popups->isOpen()) {
        return;
    }
    if (!getScheduleInfo().isEmpty()) {
        display->requestStop();
        session->getSeries().abort();
    } else if (!isTestRunning()) {
        dialogue->begin(advancedmode ? StartDialogue::Goal::Series : StartDialogue::Goal::Test);
    }
}

void MainWindow::stopTestClicked()
{
    if (session && session->isActive() && !session->stop()) {
        display->seriesEnded();
    }
}

void MainWindow::startAgreed(StartDialogue::Goal goal, const TestSeries::Plan &plan)
{
    display->prepare();
    session->setDelayPlan(DelayPlan::remembered());
    if (goal == StartDialogue::Goal::Resumption) {
        session->resume(DataBudget::remembered());
    } else {
        session->start(plan, DataBudget::remembered());
    }
}

void MainWindow::seriesResumed(bool done)
{
    if (done) {
        dialogue->setLocation(session->getSeries().getLocation());
        display->awaitNext();
    } else {
        display->seriesEnded();
    }
}

void MainWindow::offerInterrupted()
{
    if (const auto waiting = session->takeInterrupted()) {
        dialogue->offer(*waiting);
    }
}

void MainWindow::startTest()
{
    display->startTest();
    holdTiles();
}

TestController *MainWindow::getController() const
{
    return session ? &session->getController() : nullptr;
}

// ---- Actions of the settings page

void MainWindow::clearLocalDatabase()
{
    if (!popups->isOpen() && !isTestRunning()) {
        storeDialogue->askToEmpty();
    }
}

void MainWindow::storeEmptied(bool done)
{
    resultsTab->updateResults();
    lastTest->refresh();
    if (done) {
        geomapTab->clearMarkers();
    }
}

void MainWindow::startNewSeries()
{
    if (popups->isOpen() || isTestRunning()) {
        return;
    }
    getController()->startNewSeries([this] {
        getController()->showInformation();
        showNotice(tr("Information"), tr("Starting new Test Series with Id:") + u' ' +
                                          QString::number(getController()->getSeriesId()));
    });
}

} // namespace velometer
