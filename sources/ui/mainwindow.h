#pragma once

#include "measurement/testhost.h"
#include "measurement/testobserver.h"
#include "ui/frame/tabbase.h"
#include "ui/popups/locationpopup.h"

#include <QMainWindow>
#include <QString>
#include <QTimer>

#include <memory>

namespace velometer {

class AboutTab;
class DetailsWindow;
class GeoMapTab;
class LinksTab;
class MessagePopup;
class NumberOfMeasurementsPopup;
class Platform;
class PopupBase;
class ResultsTab;
class SettingsTab;
class TestController;
class TestServerTable;
class TestTab;
struct TestOutcome;

namespace Ui {
class MainWindow;
}

/// The application: owns pages, popups and the test controller, switches between the pages, leads
/// through the questions before a test, schedules the tests of a series and shows what the
/// controller reports.
///
/// The window paints a loading screen first and makes everything else from a zero timer, so until
/// then there is no page and no controller. While one of its popups is open, or, for some actions,
/// while a test runs, requests of pages are ignored. Closing it during a test puts the partial
/// report into the queue and returns at once. Main thread only.
class MainWindow : public QMainWindow, public TestObserver, public TestHost
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
    void showExpanded();

    /// Null before the loading screen is over and after exitClicked().
    TestController *getController() const { return controller; }
    DetailsWindow *getDetailsWindow() const { return detailsWindow; }
    bool isTestRunning() const { return testrunning; }

    /// Where showOrvakWebpage() leads.
    static QString makerAddress();

    /// Series mode on or off; a test or series that runs ends in the mode it began in.
    void setAdvancedMode(bool on);
    /// Shows every text in @p language ("de" or "en") from now on and remembers it.
    void setLanguage(const QString &language);

    // TestHost
    TestServer *getTestServer(const QString &hostname, int port) override;
    QString getScheduleInfo() const override;

    // TestObserver
    void setStatus(QString text) override;
    void setProgressMax(int max) override;
    void setProgressValue(int value) override;
    void setProgress(int value, int max) override;
    void startTest() override;
    void stopTest() override;
    void setDownloadText(QString text) override;
    void setUploadText(QString text) override;
    void setRTTText(QString text) override;
    void setDataTransferred(QString text) override;
    void setErrorText(QString text) override;
    bool stopRequested() override { return stoprequestedflag; }
    void setInformation(QString server, QString seriesId, QString testId,
                        QString position) override;
    void setThroughput(int resulttype, int interval, qint64 bytes) override;

public Q_SLOTS:
    void startTestClicked();
    void showLocationPopup();
    void showNumberOfMeasurementsPopup();

    void locationPopupLocationSelected(UserLocation location);
    void locationPopupCancelClicked();
    void numberOfMeasurementsPopupNumberSelected(int count, int interval); ///< interval in s
    void numberOfMeasurementsPopupCancelClicked();
    void warningPopupOkClicked();
    void warningPopupCancelClicked();
    void errorPopupOkClicked();

    void showPageOf(Page page);
    void showTestTab();
    void showResultsTab();
    void showSettingsTab();
    void showLinksTab();
    void showAboutTab();
    void showGeomapTab();
    void showDetailsWindow();
    void showOrvakWebpage();

    void clearLocalDatabase();
    void startNewSeries();
    void exitClicked();

Q_SIGNALS:
    /// The window has closed: the program may end.
    void closed();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void windowReady();
    void startNextMeasurement();
    void updateScreenNextMeasurement();
    void clearLocalDatabaseImpl();

private:
    void createPages();
    void connectPages();
    void createPopups();
    QList<TabBase *> pages() const;
    void setTestServer(TestServer *server);
    bool showPage(TabBase *page);
    void fitActiveTab();
    void focusPage();
    void holdTiles();
    void openPopup(PopupBase *popup);
    void closePopup(PopupBase *popup);
    void placePopup();
    void showNotice(const QString &title, const QString &message);
    void showWarning(const QString &title, const QString &message);
    void cancelDialogue(PopupBase *popup);
    QString costsQuestion() const;
    void startTestRun();
    void runTest();
    void armNextMeasurement(int milliseconds);
    bool inSeries() const;
    void endSingleTest();
    void endSeries();
    void testEnded(const TestOutcome &outcome);

    int teststatus = -1;
    std::unique_ptr<Ui::MainWindow> ui;
    Platform &platform;
    LocationPopup *locationPopup = nullptr;
    NumberOfMeasurementsPopup *numberOfMeasurementsPopup = nullptr;
    MessagePopup *warningPopup = nullptr;
    MessagePopup *errorPopup = nullptr;
    MessagePopup *waitingPopup = nullptr;
    TestServerTable *servers = nullptr;
    TestTab *testTab = nullptr;
    ResultsTab *resultsTab = nullptr;
    SettingsTab *settingsTab = nullptr;
    LinksTab *linksTab = nullptr;
    AboutTab *aboutTab = nullptr;
    GeoMapTab *geomapTab = nullptr;
    DetailsWindow *detailsWindow = nullptr;
    QWidget *shade = nullptr; ///< darkens the page under a popup
    TabBase *activeTab = nullptr;
    PopupBase *activePopup = nullptr;
    TestController *controller = nullptr;
    bool popupShown = false;
    bool testrunning = false;
    bool roamingShowed = false;
    bool stoprequestedflag = false;
    bool advancedmode = false;
    bool chosenmode = false; ///< what advancedmode becomes with the next start
    int numberoftests = 0;
    int aktnumberoftests = -1;
    int timebetweentests = 0;        ///< s
    qlonglong advtimerstarttime = 0; ///< ms
    QTimer *advtimer = nullptr;
    QTimer *advtimerscreenupdate = nullptr;
    bool advmoderunning = false;
    bool resultLost = false; ///< a test could not be stored, and the user has not heard of it
    QString userLocation;
    /// Context of a series' armed timers. It ends with the series, so that none of them finds a
    /// later one.
    std::unique_ptr<QObject> seriesScope;
};

} // namespace velometer
