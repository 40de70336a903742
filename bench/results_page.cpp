// How long the results page takes with few and with many stored tests, how smoothly its list
// scrolls, and what the many cost in memory. Prints a table; needs no display and touches nothing
// but a temporary directory.

#include "db/databasemanager.h"
#include "ui/mainwindow.h"
#include "ui/pages/resultlist.h"
#include "ui/pages/resultstab.h"
#include "ui/theme/theme.h"

#include "support/fakeplatform.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int few = 100;
constexpr int many = 10'000;
constexpr int detailsPerTest = 35;
constexpr int repetitions = 7;
constexpr int coastingPx = 30; // the fastest coasting
constexpr double nsPerMs = 1e6;

/// Replaces what is stored by @p count tests with details.
void fill(int count)
{
    gDB->resetDB();
    QSqlDatabase db = QSqlDatabase::database();
    db.transaction();
    QSqlQuery test(db);
    test.prepare(u"INSERT INTO testresults(id,timestamp,seriesid,testid,downloadSpeed,uploadSpeed,"
                 "uploadSpeedClient,rtt,connectionType,location,server,velocity,distance,"
                 "accuracyvert,accuracyhor,distanceDurationInSeconds) "
                 "VALUES(?,?,?,?,?,?,?,?,?,?,?,3,12,8,10,20)"_s);
    QSqlQuery detail(db);
    detail.prepare(u"INSERT INTO testdetails(id,key,type,string,long,double) "
                   "VALUES(?,?,?,?,?,?)"_s);
    for (int id = 1; id <= count; ++id) {
        const bool mobile = id % 3 != 0;
        const QVariant values[] = {id,
                                   1.7e12 + id * 60000.0,
                                   id / 50 + 1,
                                   id % 50 + 1,
                                   38e6 + id,
                                   14e6 + id,
                                   14e6,
                                   20 + id % 80,
                                   mobile ? u"Mobile(LTE)"_s : u"WLAN"_s,
                                   u"Outdoor"_s,
                                   u"speed-zh.example"_s};
        for (int i = 0; i < std::ssize(values); ++i) {
            test.bindValue(i, values[i]);
        }
        test.exec();
        for (int i = 0; i < detailsPerTest; ++i) {
            detail.bindValue(0, id);
            detail.bindValue(1, i == 0 ? u"totalBytes"_s : u"detail%1"_s.arg(i));
            detail.bindValue(2, i % 3 == 0 ? u"l"_s : i % 3 == 1 ? u"s"_s : u"f"_s);
            detail.bindValue(3, u"a value as long as most"_s);
            detail.bindValue(4, 12'000'000 + id);
            detail.bindValue(5, 47.2266);
            detail.exec();
        }
    }
    db.commit();
}

double residentMiB()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const double pages = file.readAll().split(' ').value(1).toDouble();
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Figures
{
    double opened = 0;  ///< from the request to the list on the screen, ms, median
    double built = 0;   ///< the same without the pause for the first paint, ms, median
    double frame99 = 0; ///< ms
    double frameMax = 0;
    int frames = 0;
    double resident = 0; ///< MiB
};

Figures measure(MainWindow &window, size_t tests)
{
    auto *page = window.findChild<ResultsTab *>();
    auto *list = page->findChild<ResultList *>();
    Figures figures;
    std::vector<double> opened;
    std::vector<double> built;
    QElapsedTimer timer;
    const auto elapsed = [&timer] { return static_cast<double>(timer.nsecsElapsed()) / nsPerMs; };
    for (int i = 0; i < repetitions; ++i) {
        list->change([](ResultListing &listing) { listing.setRows({}); });
        timer.start();
        window.showResultsTab();
        while (!list->isVisible() || list->listing().total() != tests) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QCoreApplication::processEvents();
        opened.push_back(elapsed());
        timer.start();
        page->updateResultsImpl();
        QCoreApplication::processEvents();
        built.push_back(elapsed());
    }
    figures.opened = median(opened);
    figures.built = median(built);
    figures.resident = residentMiB();

    // Every group open, for a list as long as it gets.
    list->change([](ResultListing &listing) {
        for (size_t group = 0; group < listing.groupCount(); ++group) {
            if (!listing.group(group).open) {
                listing.toggle(group);
            }
        }
    });
    // A second of the fastest coasting at a time, then a leap.
    std::vector<double> frames;
    QScrollBar *bar = list->verticalScrollBar();
    const int leap = std::max(bar->maximum() / 60, coastingPx);
    for (int start = 0; start < bar->maximum(); start += leap) {
        for (int i = 0; i < 33; ++i) {
            timer.start();
            bar->setValue(start + i * coastingPx);
            QCoreApplication::processEvents();
            frames.push_back(elapsed());
        }
    }
    std::sort(frames.begin(), frames.end());
    figures.frames = static_cast<int>(frames.size());
    figures.frame99 = frames[frames.size() * 99 / 100];
    figures.frameMax = frames.back();
    return figures;
}

void print(int tests, const Figures &figures)
{
    std::printf("%8d %12.1f %12.1f %12.2f %12.2f %8d %12.1f\n", tests, figures.opened,
                figures.built, figures.frame99, figures.frameMax, figures.frames, figures.resident);
}

} // namespace

} // namespace velometer

using namespace velometer;

int main(int argc, char **argv)
{
    const QTemporaryDir directory;
    for (const char *variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(variable, QFile::encodeName(directory.path()));
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication application(argc, argv);
    Theme::wear(Theme::Look::Dark);
    DatabaseManager::database_path = directory.path();

    FakePlatform platform;
    {
        MainWindow window(platform);
        window.resize(MainWindow::designSize);
        window.show();
        while (!window.findChild<ResultsTab *>()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QCoreApplication::processEvents();

        std::printf("%8s %12s %12s %12s %12s %8s %12s\n", "tests", "opened ms", "built ms",
                    "frame99 ms", "framemax ms", "frames", "resident MiB");
        fill(few);
        const Figures before = measure(window, few);
        print(few, before);
        fill(many);
        const Figures after = measure(window, many);
        print(many, after);
        std::printf("ratio opened %.2f, built %.2f; memory growth %.1f MiB\n",
                    after.opened / before.opened, after.built / before.built,
                    after.resident - before.resident);
    }
    delete std::exchange(gDB, nullptr);
    return 0;
}
