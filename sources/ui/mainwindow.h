#pragma once

#include "app/testseries.h"
#include "measurement/testobserver.h"
#include "ui/frame/tabbase.h"
#include "ui/popups/startdialogue.h"
#include "ui/testdisplay.h"

#include <QMainWindow>
#include <QString>

#include <memory>

namespace velometer {

class AboutTab;
class DetailsWindow;
class GeoMapTab;
class LastTest;
class HistoryTab;
class LinksTab;
class MessagePopup;
class PageStack;
class Platform;
class PopupLayer;
class ResultActions;
class ResultsTab;
class ServerSelection;
class SettingsTab;
class StoreDialogue;
class TestConsent;
class TestController;
class TestSession;
class TestTab;
class TrackControl;
class TrackTab;

namespace Ui {
class MainWindow;
}

/// The application: owns pages, popups, the controller and the classes around it, switches between
/// the pages, stacks the popups and hands on what the controller reports.
///
/// The window paints a loading screen and makes everything else when that stands, or after a moment
/// where nobody looks; until then there is no page and no controller. While one of its popups is
/// open, or, for some actions, while a test runs, requests of pages are ignored. Closing it during
/// a test puts the partial report into the queue, keeps what is left of a series for the next
/// start, and returns at once. Main thread only.
class MainWindow : public QMainWindow, public TestObserver
{
    Q_OBJECT

public:
    enum ScreenOrientation {
        ScreenOrientationLockPortrait = 0,
        ScreenOrientationLockLandscape = 1,
        ScreenOrientationAuto = 2,
    };

    /// Size that every page is designed for, px.
    static constexpr QSize designSize{480, 854};

    /// @p platform is borrowed and outlives the window.
    explicit MainWindow(Platform &platform, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Tells the system which way up the content is.
    void setOrientation(ScreenOrientation orientation);
    void showExpanded() { showFullScreen(); }

    /// Null before the loading screen is over and after exitClicked().
    TestController *getController() const;
    /// Null as long as the controller is.
    ServerSelection *getServers() const { return servers; }
    DetailsWindow *getDetailsWindow() const { return detailsWindow; }
    /// A test or a series is in progress, or about to begin.
    bool isTestRunning() const;

    /// Series mode on or off; a test or series that runs ends in the mode it began in.
    void setAdvancedMode(bool on) { advancedmode = on; }
    /// Shows every text in @p language ("de" or "en") from now on and remembers it.
    void setLanguage(const QString &language);

    /// "number,count,minutes" while a series runs, else empty.
    QString getScheduleInfo() const;

    // TestObserver: handed on to what shows the tests.
    void setStatus(QString text) override { display->setStatus(text); }
    void setProgressMax(int max) override { display->setProgressMax(max); }
    void setProgressValue(int value) override { display->setProgressValue(value); }
    void setProgress(int value, int max) override { display->setProgress(value, max); }
    void startTest() override;
    void stopTest() override { display->stopTest(); }
    void setDownloadText(QString text) override { display->setDownloadText(text); }
    void setUploadText(QString text) override { display->setUploadText(text); }
    void setRTTText(QString text) override { display->setRTTText(text); }
    void setDataTransferred(QString text) override { display->setDataTransferred(text); }
    void setErrorText(QString text) override { display->setErrorText(text); }
    bool stopRequested() override { return display->stopRequested(); }
    void setInformation(QString server, QString seriesId, QString testId, QString position) override
    {
        display->setInformation(server, seriesId, testId, position);
    }
    void setThroughput(int resulttype, int interval, qint64 bytes) override
    {
        display->setThroughput(resulttype, interval, bytes);
    }
    void setRoundTrip(qint64 time) override { display->setRoundTrip(time); }
    void setDelayUnderLoad(int resulttype, qint64 at, qint64 delay) override
    {
        display->setDelayUnderLoad(resulttype, at, delay);
    }

public Q_SLOTS:
    void startTestClicked();
    void stopTestClicked();
    void showLocationPopup();
    void showNumberOfMeasurementsPopup();

    // The answers of the popups, as they give them.
    void locationPopupLocationSelected(UserLocation where) { dialogue->locationSelected(where); }
    void locationPopupCancelClicked() { dialogue->cancel(); }
    void numberOfMeasurementsPopupNumberSelected(int count, int interval) ///< interval in s
    {
        dialogue->numberSelected(count, interval);
    }
    void numberOfMeasurementsPopupCancelClicked() { dialogue->cancel(); }
    void warningPopupOkClicked() { dialogue->warningAccepted(); }
    void warningPopupCancelClicked() { dialogue->cancel(); }
    void errorPopupOkClicked();

    void showPageOf(Page page);
    void showTestTab() { showPageOf(Page::Test); }
    void showResultsTab() { showPageOf(Page::Results); }
    void showSettingsTab() { showPageOf(Page::Settings); }
    void showLinksTab() { showPageOf(Page::Links); }
    void showAboutTab() { showPageOf(Page::About); }
    void showGeomapTab();
    void showTracks();
    void showDetailsWindow();
    void searchResults();
    void showShortcuts();
    void showOrvakWebpage();

    void clearLocalDatabase();
    void startNewSeries();
    void exitClicked();

Q_SIGNALS:
    /// The window has closed: the program may end.
    void closed();
    /// On the settings page, as Appearance calls them.
    void lookChosen(const QString &name);
    void textSizeChosen(bool larger);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void windowReady();

private:
    void createPages();
    void connectPages();
    void createPopups();
    void createTests();
    void createTracks();
    bool startOnTheWay();
    bool showPage(TabBase *page);
    void holdTiles();
    void showNotice(const QString &title, const QString &message);
    void storeEmptied(bool done);
    void seriesResumed(bool done);
    void offerInterrupted();
    void endSession();
    void startAgreed(StartDialogue::Goal goal, const TestSeries::Plan &plan);

    std::unique_ptr<Ui::MainWindow> ui;
    Platform &platform;
    PageStack *pages;
    PopupLayer *popups;
    TestTab *testTab = nullptr;
    ResultsTab *resultsTab = nullptr;
    SettingsTab *settingsTab = nullptr;
    LinksTab *linksTab = nullptr;
    AboutTab *aboutTab = nullptr;
    GeoMapTab *geomapTab = nullptr;
    DetailsWindow *detailsWindow = nullptr;
    HistoryTab *historyTab = nullptr;
    TrackTab *trackTab = nullptr;
    MessagePopup *errorPopup = nullptr;
    ServerSelection *servers = nullptr;
    TestConsent *consent = nullptr;
    StartDialogue *dialogue = nullptr;
    StoreDialogue *storeDialogue = nullptr;
    TestDisplay *display = nullptr;
    LastTest *lastTest = nullptr;
    ResultActions *actions = nullptr;
    std::unique_ptr<TestSession> session;
    std::unique_ptr<TrackControl> tracks;
    bool advancedmode = false;
};

} // namespace velometer
