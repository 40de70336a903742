// The whole way of a person through the application, by touch alone and by keys alone: from the
// first start to the deletion of everything, in the shells that are held and sat at.

#include "app/resultexport.h"
#include "ui/map/mapswidget.h"
#include "ui/pages/tracktab.h"
#include "ui/shell.h"
#include "utils/deployment.h"
#include "utils/translations.h"

#include "support/application.h"
#include "support/fakeservice.h"
#include "support/person.h"
#include "support/registeredtest.h"

#include <QClipboard>
#include <QDir>

namespace velometer {

namespace {

constexpr int limitMs = 30'000;
constexpr int recordMs = 1'200;  // a point a second
constexpr int storedBefore = 14; // more than fit on a page

} // namespace

using Hand = Person::Hand;

class WalkTest : public QObject, protected Application
{
    Q_OBJECT

private Q_SLOTS:
    void theWholeWay_data()
    {
        const Rows<Hand, ShellKind, QSize> row("hand", "shell", "size");
        row("touch on a phone", Hand::Touch, ShellKind::Phone, {360, 640});
        row("touch on a handset", Hand::Touch, ShellKind::Handset, {854, 480});
        row("touch on a desktop", Hand::Touch, ShellKind::Desktop, {1200, 760});
        row("keys on a handset", Hand::Keys, ShellKind::Handset, {854, 480});
        row("keys on a desktop", Hand::Keys, ShellKind::Desktop, {1200, 760});
    }
    void theWholeWay()
    {
        for (const auto step : {&WalkTest::start, &WalkTest::testAndSeries, &WalkTest::details,
                                &WalkTest::mapAndHistory, &WalkTest::tracks,
                                &WalkTest::filterAndExport, &WalkTest::deletion}) {
            (this->*step)();
            if (QTest::currentTestFailed()) {
                return;
            }
        }
    }

    void cleanup()
    {
        person.reset();
        shell.reset();
        window.reset();
        store.reset();
        service.reset();
    }

private:
    void start()
    {
        service = std::make_unique<FakeService>();
        Deployment deployment;
        deployment.webPort = service->port();
        deployment.swisscom = {u"127.0.0.1"_s, service->port()};
        deployment.tileUrl = u"http://127.0.0.1:%1/{z}/{x}/{y}"_s.arg(service->port());
        Deployment::setCurrent(deployment);
        for (const auto &key : {u"CostWarning"_s, u"AdvMode"_s, u"WindowSize"_s}) {
            Utils::setSettingsValue(key, QString());
        }
        const auto [hand, kind, size] = currentRow<Hand, ShellKind, QSize>();
        Translations::install(u"en"_s);
        Theme::wear(kind == ShellKind::Handset ? Theme::Look::Given : Theme::Look::Dark);
        store = std::make_unique<StoredTests>();
        for (int id = 1; id <= storedBefore; ++id) {
            store->add(
                {.id = id, .series = 7, .test = id, .type = id % 2 ? u"WLAN"_s : u"Mobile(LTE)"_s});
            store->addDetail(id, u"deviceLatitude"_s, 47.2);
            store->addDetail(id, u"deviceLongitude"_s, 8.8 + id);
        }
        QDir folder(ResultExport::folder());
        for (const QString &file : folder.entryList(QDir::Files)) {
            folder.remove(file);
        }
        window = std::make_unique<MainWindow>(platform);
        shell = std::make_unique<Shell>(kind, *window);
        shell->topLevel().resize(size);
        shell->topLevel().show();
        QTRY_VERIFY(window->getController());
        person = std::make_unique<Person>(*window, shell->topLevel(), hand);
    }

    void testAndSeries()
    {
        service->serveForAWhile();
        press(u"Start Test"_s);
        press(u"Yes, start test"_s); // the costs
        press(u"Train"_s);
        press(u"Stop"_s);
        QTRY_VERIFY(!window->isTestRunning());
        QVERIFY(person->sees(u"Stopped."_s));

        press(u"Start Test"_s);
        QVERIFY(window->isTestRunning());
        QTRY_VERIFY_WITH_TIMEOUT(!window->isTestRunning(), limitMs);
        const int stored = gDB->countResults();
        QVERIFY(stored > storedBefore);

        press(u"Settings page"_s);
        press(u"Advanced mode"_s);
        press(u"Test page"_s);
        press(u"Start Test"_s);
        press(u"Start series"_s);
        QVERIFY(person->sees(u"Abort Test"_s));
        press(u"Results page"_s); // it follows the store
        QTRY_VERIFY_WITH_TIMEOUT(person->sees(u"%1 tests"_s.arg(stored + 1)), limitMs);
        press(u"Test page"_s);
        press(u"Abort Test"_s);
        QVERIFY(!window->isTestRunning());
    }

    void details()
    {
        press(u"Results page"_s);
        press(u"Wed 2023-11-15 · Series 7"_s); // opens
        press(u"7 / 3,"_s);
        QTRY_VERIFY(person->sees(u"Test 7 / 3"_s));
        press(u"Test below in the list"_s);
        QTRY_VERIFY(person->sees(u"Test 7 / 2"_s));
        press(u"Test above in the list"_s);
        QTRY_VERIFY(person->sees(u"Test 7 / 3"_s));
        share(u"Copy text"_s);
        QVERIFY(QGuiApplication::clipboard()->text().contains(u"7 / 3"_s));
        share(u"Save picture"_s);
        QCOMPARE(filesOf(u"png"_s), 1);
        share(u"Save JSON"_s);
        QCOMPARE(filesOf(u"json"_s), 1);
        back();
        QTRY_VERIFY(person->sees(u"7 / 3,"_s));
    }

    void mapAndHistory()
    {
        press(u"Show locations on map"_s);
        auto *map = window->findChild<MapsWidget *>();
        const QWidget *view = person->reach(u"Map of the tests"_s);
        QVERIFY(view);
        if (person->isTouching()) {
            person->tap(person->middleOf(view) - QPoint(0, Marker::height / 2));
        } else {
            person->key(Qt::Key_N);
        }
        QVERIFY(map->openLabel());
        if (person->isTouching()) {
            press(u"Results page"_s);
        } else {
            person->key(Qt::Key_Escape); // closes the label
            QVERIFY(!map->openLabel());
            back();
        }
        press(u"History"_s);
        QVERIFY(person->sees(u"Medians of"_s));
        press(u"7 days"_s);
        press(u"Back to the results"_s);
    }

    void tracks()
    {
        press(u"Show locations on map"_s);
        press(u"Tracks"_s);
        press(u"Record a track"_s);
        for (const double latitude : {47.2, 47.201}) {
            platform.position.emitPosition(latitude, 8.8);
            QTest::qWait(recordMs);
        }
        press(u"Pause"_s);
        QTRY_VERIFY(person->sees(u"paused"_s));
        QVERIFY(!button(u"track1"_s)); // what is not ended is in no list
        press(u"Go on"_s);
        press(u"End the track"_s);
        QTRY_VERIFY(person->sees(u"Nothing is being recorded."_s));
        const QList<Track> all = gDB->tracks().all();
        QVERIFY(all.size() == 1 && all[0].ended && all[0].points >= 2);
        const QString row = TrackTab::summary(all[0]).section(u" · "_s, 0, 1);
        press(row);
        press(u"Save GPX"_s);
        QTRY_VERIFY(person->sees(u"The track is in:"_s));
        press(u"OK"_s);
        QCOMPARE(filesOf(u"gpx"_s), 1);
        press(row);
        press(u"Show on the map"_s);
        QVERIFY(person->reach(u"Map of the tests"_s));
        press(u"Tracks"_s);
        press(row);
        press(u"Delete …"_s);
        press(u"Delete: "_s);
        QTRY_VERIFY(gDB->tracks().all().isEmpty());
        press(u"Results page"_s);
    }

    void filterAndExport()
    {
        press(u"Place"_s);
        press(u"Indoor"_s);
        QVERIFY(person->sees(u"%1 of "_s.arg(storedBefore)));
        press(u"Clear filter"_s);
        press(u"Select"_s);
        press(u"All"_s);
        press(u"Export"_s);
        press(u"CSV"_s);
        QTRY_VERIFY(person->sees(u"written to:"_s));
        press(u"OK"_s);
        QCOMPARE(filesOf(u"csv"_s), 1);
    }

    void deletion()
    {
        const int before = gDB->countResults();
        press(u"Select"_s);
        press(u"7 / 3,"_s);
        press(u"Delete"_s);
        press(u"Delete"_s); // the answer
        QTRY_VERIFY(person->sees(u"1 test deleted"_s));
        press(u"OK"_s);
        QCOMPARE(gDB->countResults(), before - 1);
        press(u"Settings page"_s);
        press(u"Clear Local Database"_s);
        press(u"Delete"_s);
        QTRY_COMPARE(gDB->countResults(), 0);
        press(u"OK"_s);
        press(u"Results page"_s);
        QTRY_VERIFY(person->sees(u"No tests yet."_s));
    }

    void share(const QString &as)
    {
        press(u"Share"_s);
        press(as);
        press(u"OK"_s);
    }
    void back()
    {
        person->isTouching() ? press(u"Back to the results"_s) : person->key(Qt::Key_Escape);
    }
    void press(const QString &name) { person->press(name); }

    static int filesOf(const QString &suffix)
    {
        return static_cast<int>(QDir(ResultExport::folder()).entryList({u"*."_s + suffix}).size());
    }

    std::unique_ptr<FakeService> service;
    std::unique_ptr<Shell> shell;
    std::unique_ptr<Person> person;
};

} // namespace velometer

Q_DECLARE_METATYPE(velometer::Person::Hand)
Q_DECLARE_METATYPE(velometer::ShellKind)

VELOMETER_WIDGET_TEST(WalkTest)
#include "walk_test.moc"
