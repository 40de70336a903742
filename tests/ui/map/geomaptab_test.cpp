#include "ui/map/geomaptab.h"

#include "ui/map/geomap.h"
#include "ui/map/mapswidget.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "support/rows.h"

#include <QGraphicsView>
#include <QLabel>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class GeoMapTabTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        delete std::exchange(gDB, nullptr);
        DatabaseManager::database_path = directory.path();
        Deployment deployment;
        deployment.tileUrl = u"http://127.0.0.1:9/{z}/{x}/{y}.png"_s; // nobody is there
        Deployment::setCurrent(deployment);
    }
    void init()
    {
        gDB = new DatabaseManager(nullptr);
        QVERIFY(gDB->openDB());
        gDB->resetDB();
        page = std::make_unique<GeoMapTab>(nullptr);
        page->resize(480, 854);
        page->show();
    }
    void cleanup()
    {
        page.reset();
        delete std::exchange(gDB, nullptr);
    }

    void aTestsMarkerShowsHowItWasConnected_data()
    {
        const Rows<QString, int> row("connection", "type");
        row("GSM", "Mobile(GSM)", Marker::LocGSM);
        row("UMTS", "Mobile(UMTS)", Marker::LocUMTS);
        row("WLAN", "WLAN", Marker::LocWLAN);
        row("LTE", "Mobile(LTE)", Marker::LocLTE);
        row("5G", "Mobile(5G)", Marker::LocNR);
        row("several", "Mixed(WLAN,Mobile)", Marker::LocOther);
        row("another case", "wlan", Marker::LocOther);
        row("unknown", "", Marker::LocOther);
    }
    void aTestsMarkerShowsHowItWasConnected()
    {
        QFETCH(QString, connection);
        QFETCH(int, type);
        store(1, connection, 47.25, 8.75, 12.9);
        page->showResultsOnMap();
        const Marker &marker = *page->map()->shownMarkers().at(0);
        QCOMPARE(int(marker.markerType()), type);
        QCOMPARE(marker.getPopupText(), "ConnectionTyp:"_L1 + connection +
                                            "\nDownloadSpeed:38412.1 kBit/s"
                                            "\nUploadSpeed:0.0 kBit/s"_L1);
        QCOMPARE(marker.coordinate(), QGeoCoordinate(47.25, 8.75));
        QCOMPARE(marker.getPrecision(), 12);
        QCOMPARE(marker.pixmap().width() / marker.pixmap().devicePixelRatio(), 50.0);
    }

    void threeTestsAreThreeMarkersAroundTheNewest()
    {
        store(1, u"WLAN"_s, 47, 8, 5);
        store(3, u"WLAN"_s, -33.5, 151.25, 5);
        store(2, u"WLAN"_s, 46, 7, 5);
        store(4, u"WLAN"_s, 0, 0, 5);    // no position
        store(5, u"WLAN"_s, 200, 10, 5); // nowhere on earth
        page->showResultsOnMap();
        QCOMPARE(page->map()->shownMarkers().size(), size_t(3));
        QCOMPARE(page->map()->map()->zoomLevel(), 12);
        QVERIFY(page->map()->map()->center().distanceTo({-33.5, 151.25}) < 1);
        const auto *view = page->findChild<QGraphicsView *>(u"graphicsView"_s);
        QVERIFY(view->accessibleDescription().startsWith(u'3'));
        QVERIFY(!view->accessibleName().isEmpty());
        QVERIFY(view->width() == 480 && view->height() > 500);
    }

    void isSetUpOnceAndKeepsWhatItShowedWhenNothingIsStored()
    {
        const auto *message = page->findChild<QLabel *>(u"labelEmpty"_s);
        const qsizetype before = Utils::getLogEntries().count("Provider "_L1);
        page->showResultsOnMap();
        QVERIFY(message->isVisible());
        QCOMPARE(page->map()->map()->zoomLevel(), 1);
        store(1, u"WLAN"_s, 47, 8, 5);
        const MapsWidget *map = page->map();
        page->showResultsOnMap();
        QVERIFY(!message->isVisible());
        gDB->resetDB();
        page->showResultsOnMap();
        QVERIFY(message->isVisible());
        QCOMPARE(page->map(), map);
        QCOMPARE(map->shownMarkers().size(), size_t(1));
        QVERIFY(Utils::getLogEntries().contains("Provider 0: tiles"_L1));
        QVERIFY(Utils::getLogEntries().contains("Provider 1: outline"_L1));
        QCOMPARE(Utils::getLogEntries().count("Provider "_L1), before + 2);
    }

private:
    static void store(qlonglong id, const QString &connection, double latitude, double longitude,
                      double accuracy)
    {
        QSqlQuery query;
        QVERIFY(query.exec(u"INSERT INTO testresults(id,downloadSpeed,uploadSpeed,connectionType) "
                           "VALUES(%1,38412050,49,'%2')"_s.arg(id)
                               .arg(connection)));
        const auto detail = [&](const QString &key, double value) {
            QVERIFY(query.exec(
                u"INSERT INTO testdetails(id,key,type,double) VALUES(%1,'%2','d',%3)"_s.arg(id)
                    .arg(key)
                    .arg(value)));
        };
        detail(u"deviceLatitude"_s, latitude);
        detail(u"deviceLongitude"_s, longitude);
        detail(u"deviceAccuracyVert"_s, accuracy);
    }

    QTemporaryDir directory;
    std::unique_ptr<GeoMapTab> page;
};

QTEST_MAIN(GeoMapTabTest)
#include "geomaptab_test.moc"
