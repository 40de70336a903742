// Pictures of every page for the documents: the real window in a real shell, with a store of
// made-up tests. Run by scripts/screenshots on an X server of its own.
//     velometer_screenshots FOLDER SHELL LANGUAGE

#include "data/testdetails.h"
#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "platform/platform.h"
#include "ui/details/detailswindow.h"
#include "ui/mainwindow.h"
#include "ui/map/geomap.h"
#include "ui/map/geomaptab.h"
#include "ui/map/mapswidget.h"
#include "ui/map/marker.h"
#include "ui/shell.h"
#include "utils/deployment.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <cstdio>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int settleMs = 700;
constexpr int worldZoom = 5;

struct Example
{
    int series;
    int test;
    qint64 time; ///< s
    double download;
    double upload;
    int rtt;
    const char *type;
    const char *location;
    const char *server;
    double latitude;
    double longitude;
};

const Example examples[] = {
    {12, 4, 1'795'363'860, 38'412'000, 14'980'200, 31, "Mobile(LTE)", "Outdoor", "speed-zh.example",
     47.2266, 8.8184},
    {12, 3, 1'795'363'680, 212'004'700, 41'200'100, 17, "Mobile(5G)", "Outdoor", "speed-zh.example",
     47.2391, 8.7951},
    {12, 2, 1'795'363'500, 0, 0, 0, "Mixed(WLAN,Mobile)", "Train", "speed-zh.example", 47.2035,
     8.8602},
    {12, 1, 1'795'363'320, 92'110'500, 33'876'400, 9, "WLAN", "Indoor", "speed-be.example", 47.2007,
     8.7879},
    {11, 2, 1'795'277'000, 4'871'300, 1'410'900, 74, "Mobile(UMTS)", "Car", "speed-zh.example",
     47.2550, 8.8360},
    {11, 1, 1'795'276'820, 187'600, 64'200, 412, "Mobile(GSM)", "Car", "speed-zh.example", 47.1802,
     8.8255},
};

bool run(const QString &statement)
{
    QSqlQuery query(QSqlDatabase::database());
    if (query.exec(statement)) {
        return true;
    }
    std::fprintf(stderr, "%s\n", qPrintable(query.lastError().text()));
    return false;
}

/// Bytes per 100 ms that wander round a rate.
IntervalTable wander(double bitsPerSecond)
{
    IntervalTable bytes;
    for (int i = 0; i < 70; ++i) {
        const double ramp = std::min(1.0, (i + 1) / 8.0);
        const double wave = 1.0 + 0.12 * std::sin(i / 3.1) + 0.07 * std::sin(i * 1.7);
        bytes.insert(i, static_cast<qint64>(bitsPerSecond / 80 * ramp * wave));
    }
    return bytes;
}

bool fill()
{
    qulonglong id = 0;
    bool stored = true;
    // The newest test stands first, and has the highest id.
    for (auto example = std::rbegin(examples); example != std::rend(examples); ++example) {
        const Example &each = *example;
        ++id;
        const QString type = QString::fromLatin1(each.type);
        stored =
            stored &&
            run(u"INSERT INTO testresults(id,timestamp,seriesid,testid,downloadSpeed,uploadSpeed,"
                "uploadSpeedClient,rtt,connectionType,location,server,velocity,distance,"
                "accuracyvert,accuracyhor,distanceDurationInSeconds) VALUES(%1,%2,%3,%4,%5,%6,%6,"
                "%7,'%8','%9'"_s.arg(id)
                    .arg(each.time * 1000)
                    .arg(each.series)
                    .arg(each.test)
                    .arg(each.download, 0, 'f', 0)
                    .arg(each.upload, 0, 'f', 0)
                    .arg(each.rtt)
                    .arg(type, QString::fromLatin1(each.location)) +
                u",'%1',5,120,8,12,17)"_s.arg(QString::fromLatin1(each.server)));
        TestDetails details(nullptr, static_cast<qlonglong>(id));
        const auto figure = [&](const QString &key, double value) {
            if (value > 0) {
                details.putLong(key, static_cast<qlonglong>(value));
            }
        };
        figure(u"downloadAverage"_s, each.download);
        figure(u"downloadMaximum"_s, each.download * 1.09);
        figure(u"uploadAverage"_s, each.upload);
        figure(u"uploadMaximum"_s, each.upload * 1.06);
        figure(u"rttAverage"_s, each.rtt * 1e6);
        figure(u"rttMinimum"_s, each.rtt * 0.9e6);
        figure(u"downloadedBytes"_s, each.download * 7 / 8);
        figure(u"uploadedBytes"_s, each.upload * 7 / 8);
        details.putLong(u"totalBytes"_s,
                        static_cast<qlonglong>((each.download + each.upload) * 7 / 8) + 9000);
        details.putString(u"connectionType"_s, type);
        details.putString(u"networkCell"_s, u"28394241"_s);
        details.putString(u"gsmSignalStrength"_s, u"71"_s);
        details.putString(u"deviceIP"_s, u"198.51.100.23"_s);
        details.putString(u"externalIP"_s, u"10.62.1.7"_s);
        details.putDouble(u"deviceLatitude"_s, each.latitude);
        details.putDouble(u"deviceLongitude"_s, each.longitude);
        details.putDouble(u"deviceAltitude"_s, 412);
        details.putDouble(u"deviceDistance"_s, 120);
        details.putDouble(u"deviceVelocity"_s, 5);
        details.putDouble(u"deviceAccuracyVert"_s, 900);
        details.putDouble(u"deviceAccuracyHor"_s, 120);
        details.putString(u"testServerName"_s, u"Swisscom"_s);
        details.putString(u"testServerDomain"_s, u"example"_s);
        details.putString(u"testServerIP"_s, u"192.0.2.10"_s);
        details.putLong(u"testServerPort"_s, 80);
        details.putString(u"testServerCountry"_s, u"CH"_s);
        details.putString(u"testServerState"_s, u"Zürich"_s);
        details.putString(u"testServerCity"_s, u"Zürich"_s);
        details.putLong(u"testDate"_s, each.time * 1000);
        details.putLong(u"testTime"_s, each.time * 1000);
        details.putLong(u"testSeriesId"_s, each.series);
        details.putLong(u"testTestId"_s, each.test);
        stored = stored && gDB->storeTestDetails(&details);
        if (each.download > 0) {
            stored = stored && gDB->storeIntervals(id, 1, wander(each.download)) &&
                     gDB->storeIntervals(id, 2, wander(each.upload));
        }
    }
    return stored;
}

class Camera
{
public:
    Camera(MainWindow &mainWindow, QString folderForPictures, QString pictureSuffix)
        : window(mainWindow)
        , folder(std::move(folderForPictures))
        , suffix(std::move(pictureSuffix))
    {}

    void take(const QString &name)
    {
        QTest::qWait(settleMs);
        const QString file = QDir(folder).filePath(name + suffix + ".png"_L1);
        const QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0);
        if (picture.isNull() || !picture.save(file)) {
            std::fprintf(stderr, "%s cannot be written\n", qPrintable(file));
            failed = true;
        }
    }

    void press(const QString &name)
    {
        const auto all = window.findChildren<QAbstractButton *>(name);
        for (QAbstractButton *each : all) {
            if (each->isVisible()) {
                return each->click();
            }
        }
        std::fprintf(stderr, "no button %s\n", qPrintable(name));
        failed = true;
    }

    bool failed = false;

private:
    MainWindow &window;
    const QString folder;
    const QString suffix;
};

/// What the controller would report in the middle of an upload.
void showRunningTest(MainWindow &window)
{
    window.startTest();
    window.setInformation(u"speed-zh.example"_s, u"12"_s, u"5"_s,
                          TestController::tr("positionknown").arg(u"8"_s, u"412"_s));
    window.setDownloadText(u"38412 kBit/s"_s);
    const IntervalTable download = wander(38'412'000);
    const IntervalTable upload = wander(14'980'000);
    for (int i = 0; i < 70; ++i) {
        window.setThroughput(1, i, download.value(i));
    }
    for (int i = 0; i < 44; ++i) {
        window.setThroughput(2, i, upload.value(i));
    }
    window.setStatus(TestController::tr("testphase_upload"));
    window.setProgress(4400, 7000);
}

void takeAll(MainWindow &window, Camera &camera)
{
    camera.take(u"test"_s);
    camera.press(u"buttonStartTest"_s);
    camera.take(u"costs"_s);
    camera.press(u"buttonOk"_s);
    camera.take(u"location"_s);
    camera.press(u"buttonCancel"_s);
    window.setAdvancedMode(true);
    window.showNumberOfMeasurementsPopup();
    camera.take(u"series"_s);
    camera.press(u"buttonCancel"_s);
    window.setAdvancedMode(false);
    showRunningTest(window);
    camera.take(u"running"_s);
    window.stopTest();
    window.setErrorText(TestController::tr("noConnectionToServer"));
    camera.take(u"error"_s);
    camera.press(u"buttonOk"_s);
    window.showResultsTab();
    camera.take(u"results"_s);
    const auto newest = gDB->getResultsById(std::size(examples));
    window.getDetailsWindow()->setTestResults(newest.get());
    window.showDetailsWindow();
    camera.take(u"details"_s);
    window.showGeomapTab();
    MapsWidget *map = window.findChild<GeoMapTab *>()->map();
    map->markerClicked(map->shownMarkers().front().get());
    camera.take(u"map"_s);
    map->map()->setZoomLevel(worldZoom);
    camera.take(u"world"_s);
    window.showSettingsTab();
    camera.take(u"settings"_s);
    window.showLinksTab();
    camera.take(u"links"_s);
    window.showAboutTab();
    camera.take(u"about"_s);
}

} // namespace

} // namespace velometer

using namespace velometer;

int main(int argc, char *argv[])
{
    qputenv("TZ", "UTC");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication application(argc, argv);
    QApplication::setOrganizationName(u"orvak"_s);
    QApplication::setApplicationName(u"Velometer"_s);
    QApplication::setStyle(u"Fusion"_s);
    const QStringList arguments = QApplication::arguments();
    const auto kind = Shell::fromName(arguments.value(2));
    if (arguments.size() != 4 || !kind) {
        std::fprintf(stderr, "usage: velometer_screenshots FOLDER SHELL LANGUAGE\n");
        return 2;
    }
    Translations::install(arguments.at(3));
    // Nothing is fetched for a picture: the map is the outline.
    Deployment deployment;
    deployment.tileUrl = u"http://127.0.0.1:1/{z}/{x}/{y}.png"_s;
    deployment.swisscom = {u"speed-zh.example"_s, 80};
    deployment.sunrise = {u"speed-be.example"_s, 80};
    Deployment::setCurrent(deployment);
    const QTemporaryDir store;
    DatabaseManager::database_path = store.path();
    if (!gDB->openDB() || !fill()) {
        return 1;
    }
    for (const auto &key : {u"CostWarning"_s, u"TestServer.Hostname"_s}) {
        Utils::setSettingsValue(key, QString());
    }
    application.setStyleSheet(Utils::readFile(u":/velometerres/velometer.qss"_s));

    const auto platform = Platform::system();
    bool failed = false;
    {
        MainWindow window(*platform);
        Shell shell(*kind, window);
        shell.show();
        QTest::qWait(settleMs);
        Camera camera(window, arguments.at(1), u"-%1-%2"_s.arg(arguments.at(2), arguments.at(3)));
        takeAll(window, camera);
        failed = camera.failed;
    }
    delete std::exchange(gDB, nullptr);
    return failed ? 1 : 0;
}
