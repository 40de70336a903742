// Pictures of every page for the documents: the real window in a real shell, with a store of
// made-up tests. Run by scripts/screenshots on an X server of its own.
//     velometer_screenshots FOLDER SHELL LANGUAGE LOOK [WIDTHxHEIGHT]

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
#include "ui/theme/appearance.h"
#include "utils/deployment.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

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

constexpr qint64 userId = 5'726'307'720'775'219;

/// Bytes per 100 ms that wander round a rate.
QList<qint64> wander(double bitsPerSecond)
{
    QList<qint64> bytes;
    for (int i = 0; i < 70; ++i) {
        const double ramp = std::min(1.0, (i + 1) / 8.0);
        const double wave = 1.0 + 0.12 * std::sin(i / 3.1) + 0.07 * std::sin(i * 1.7);
        bytes.append(static_cast<qint64>(bitsPerSecond / 80 * ramp * wave));
    }
    return bytes;
}

/// Nothing of a rate that was not measured.
FinishedTest::Throughput phase(double bitsPerSecond, double maximum)
{
    FinishedTest::Throughput phase;
    phase.valid = bitsPerSecond > 0;
    if (*phase.valid) {
        phase.averageRate = std::llround(bitsPerSecond);
        phase.maximumRate = std::llround(bitsPerSecond * maximum);
        phase.bytes = std::llround(bitsPerSecond * 7 / 8);
        phase.intervalBytes = wander(bitsPerSecond);
    }
    return phase;
}

/// Of a queue that grows and is emptied again.
LoadDelays delays(int idleMs, int addedMs, const QString &congestion)
{
    LoadDelays load{Delays(), QList<qint64>(), congestion};
    for (int i = 0; i < 33; ++i) {
        const double fill = 1.0 - std::exp(-i / 3.0) + 0.2 * std::sin(i / 1.3);
        load.samples->append(std::llround((idleMs + fill * addedMs) * 1e6));
        load.times->append((i + 1) * 200'000'000LL);
    }
    return load;
}

bool fill()
{
    Utils::setSettingsCommonValue(u"UserId"_s, QString::number(userId));
    bool stored = true;
    // The newest test stands first, and has the highest id.
    for (auto example = std::rbegin(examples); example != std::rend(examples); ++example) {
        const Example &each = *example;
        FinishedTest test;
        test.timestamp = each.time * 1000;
        test.userId = userId;
        test.seriesId = each.series;
        test.testId = each.test;
        test.location = QString::fromLatin1(each.location);
        test.server = {u"Swisscom"_s,
                       QString::fromLatin1(each.server),
                       u"Zürich"_s,
                       u"Zürich"_s,
                       u"CH"_s,
                       u"192.0.2.10"_s,
                       80};
        test.download = phase(each.download, 1.09);
        test.upload = phase(each.upload, 1.06);
        if (each.rtt > 0) {
            test.rtt.average = each.rtt * 1'000'000;
            test.rtt.minimum = each.rtt * 900'000;
            test.idleDelays = Delays{each.rtt * 1'000'000};
            test.downloadLoad = delays(each.rtt, 12, u"bbr"_s);
            test.uploadLoad = delays(each.rtt, 240, u"cubic"_s);
        }
        test.tcp.publicIp = u"10.62.1.7"_s;
        test.tcp.deviceIp = u"198.51.100.23"_s;
        test.network.type = QString::fromLatin1(each.type);
        test.network.cell = 28'394'241;
        test.network.cellularSignal = 71;
        test.position = {each.latitude, each.longitude, 412, 120, 900};
        test.movement = {5, 120, -1, 120, 900};
        stored = stored && gDB->storeTest(test) != 0;
    }
    return stored;
}

/// A way past the tests, with a pause.
bool recordTrack()
{
    constexpr int count = 240;
    constexpr double turns = 40;
    auto track = gDB->tracks().begin(examples[0].time * 1000 - 3'600'000);
    QList<TrackPoint> points;
    double metres = 0;
    for (int i = 0; i < count; ++i) {
        TrackPoint point;
        point.time = track->started + i * 1000LL;
        point.segment = i < 150 ? 0 : 1;
        point.latitude = 47.2007 + i * 0.00025 + (i < 150 ? 0 : 0.004);
        point.longitude = 8.78 + i * 0.0004 + 0.008 * std::sin(i / turns);
        point.mode = i < 60 ? u"WcdmaMode"_s : i < 170 ? u"LteMode"_s : u"NrMode"_s;
        point.operatorName = u"Example"_s;
        point.rsrp = -98 + 14 * std::sin(i / 17.0);
        point.test = i == 100 ? u"12/3"_s : QString();
        metres += points.isEmpty() ? 0 : Tracks::metresBetween(points.constLast(), point);
        points.append(point);
    }
    return gDB->tracks().append(*track, points, metres) &&
           gDB->tracks().setEnded(*track, points.constLast().time);
}

class Camera
{
public:
    Camera(MainWindow &mainWindow, QWidget &topLevel, QString folderForPictures,
           QString pictureSuffix)
        : window(mainWindow)
        , top(topLevel)
        , folder(std::move(folderForPictures))
        , suffix(std::move(pictureSuffix))
    {}

    void take(const QString &name)
    {
        QTest::qWait(settleMs);
        const QString file = QDir(folder).filePath(name + suffix + ".png"_L1);
        const QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(
            0, top.x(), top.y(), top.width(), top.height());
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
    QWidget &top;
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
    window.setStatus(TestController::tr("testphase_upload"));
    const QList<qint64> download = wander(38'412'000);
    const QList<qint64> upload = wander(14'980'000);
    for (int i = 0; i < 70; ++i) {
        window.setThroughput(1, i, download.value(i));
    }
    for (int i = 0; i < 44; ++i) {
        window.setThroughput(2, i, upload.value(i));
    }
    const LoadDelays inDownload = delays(31, 12, {});
    const LoadDelays inUpload = delays(31, 240, {});
    for (int i = 0; i < 33; ++i) {
        window.setDelayUnderLoad(1, inDownload.times->value(i),
                                 inDownload.samples->value(i).value_or(0));
    }
    for (int i = 0; i < 20; ++i) {
        window.setDelayUnderLoad(2, inUpload.times->value(i),
                                 inUpload.samples->value(i).value_or(0));
    }
    // It goes on while the picture settles.
    QTimer::singleShot(settleMs / 2, &window, [&window, upload] {
        for (int i = 44; i < 48; ++i) {
            window.setThroughput(2, i, upload.value(i));
        }
    });
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
    window.showResultsTab();
    camera.press(u"buttonHistory"_s);
    camera.take(u"history"_s);
    window.showGeomapTab();
    MapsWidget *map = window.findChild<GeoMapTab *>()->map();
    map->markerClicked(map->shownMarkers().front().get());
    camera.take(u"map"_s);
    map->map()->setZoomLevel(worldZoom);
    camera.take(u"world"_s);
    window.showTracks();
    camera.take(u"tracks"_s);
    camera.press(u"buttonRecord"_s);
    camera.take(u"recording"_s);
    camera.press(u"buttonEnd"_s);
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
    const auto look = Appearance::fromName(arguments.value(4));
    if (arguments.size() < 5 || !kind || !look) {
        std::fprintf(stderr,
                     "usage: velometer_screenshots FOLDER SHELL LANGUAGE LOOK [WIDTHxHEIGHT]\n");
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
    if (!gDB->openDB() || !fill() || !recordTrack()) {
        return 1;
    }
    for (const auto &key : {u"CostWarning"_s, u"TestServer.Hostname"_s}) {
        Utils::setSettingsValue(key, QString());
    }
    Utils::setSettingsValue(u"WindowSize"_s, arguments.value(5));
    const Appearance appearance(false, look);

    const auto platform = Platform::system();
    bool failed = false;
    {
        MainWindow window(*platform);
        Shell shell(*kind, window);
        shell.show();
        QTest::qWait(settleMs);
        Camera camera(window, shell.topLevel(), arguments.at(1),
                      u"-%1-%2-%3"_s.arg(arguments.at(2), arguments.at(3), arguments.at(4)));
        takeAll(window, camera);
        failed = camera.failed;
    }
    delete std::exchange(gDB, nullptr);
    return failed ? 1 : 0;
}
