#include "ui/map/geomaptab.h"

#include "ui/map/geomap.h"
#include "ui/map/mapswidget.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "support/rows.h"
#include "tileserver.h"

#include <QBuffer>
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
        // "No test" beside a marker would be a contradiction.
        QVERIFY(!message->isVisible());
        QCOMPARE(page->map(), map);
        QCOMPARE(map->shownMarkers().size(), size_t(1));
        page->clearMarkers();
        QVERIFY(message->isVisible());
        QVERIFY(map->shownMarkers().empty());
        QVERIFY(Utils::getLogEntries().contains("Provider 0: tiles"_L1));
        QVERIFY(Utils::getLogEntries().contains("Provider 1: outline"_L1));
        QCOMPARE(Utils::getLogEntries().count("Provider "_L1), before + 2);
    }

    void aConnectionTypeFromOutsideIsCutForTheLabel()
    {
        store(1, QString(5000, u'x'), 47, 8, 5);
        page->showResultsOnMap();
        const QString text = page->map()->shownMarkers().at(0)->getPopupText();
        QCOMPARE(text.section(u'\n', 0, 0).size(), 134); // "ConnectionTyp:" and 120
    }

    void tellsAScreenReaderWhatIsOpenAndLetsTabLeave()
    {
        store(1, u"WLAN"_s, 47, 8, 5);
        store(2, u"Mobile(LTE)"_s, 46, 7, 5);
        page->showResultsOnMap();
        auto *view = page->findChild<QGraphicsView *>(u"graphicsView"_s);
        const QString closed = view->accessibleDescription();
        for (const auto name : {"Plus"_L1, "minus"_L1, "N or Page Down"_L1, "P or Page Up"_L1})
            QVERIFY2(closed.contains(name), name.data());

        page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        view->setFocus(Qt::TabFocusReason);
        QTest::keyClick(view, Qt::Key_N);
        QVERIFY(view->accessibleDescription().startsWith("ConnectionTyp:Mobile(LTE)\n"_L1));
        QTest::keyClick(view, Qt::Key_N);
        QVERIFY(view->accessibleDescription().startsWith("ConnectionTyp:WLAN\n"_L1));
        QTest::keyClick(view, Qt::Key_Escape);
        QCOMPARE(view->accessibleDescription(), closed);

        QTest::keyClick(view, Qt::Key_Tab);
        QVERIFY(page->focusWidget() != view);
        view->setFocus(Qt::TabFocusReason);
        QTest::keyClick(view, Qt::Key_Backtab);
        QVERIFY(page->focusWidget() != view);
    }

    void loadsWhatIsInViewOnceTheTestHasEnded()
    {
        QImage picture(256, 256, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QBuffer png;
        picture.save(&png, "png");
        TileServer server;
        server.answer = [&](const TileServer::Request &) {
            return TileServer::message("200 OK", "Cache-Control: no-store\r\n", png.data());
        };
        const Deployment before = Deployment::current();
        Deployment deployment = before;
        deployment.tileUrl = server.address();
        Deployment::setCurrent(deployment);
        const auto restore = qScopeGuard([&] { Deployment::setCurrent(before); });
        store(1, u"WLAN"_s, 0.01, 8, 5);
        page->pauseDownloads(true);
        page->showResultsOnMap();
        QTest::qWait(50);
        page->map()->map()->pan(300, 0);
        QTest::qWait(50);
        QVERIFY(server.requests.isEmpty());
        page->pauseDownloads(false);
        QTRY_COMPARE(page->map()->grab().toImage().pixelColor(3, 3), QColor(Qt::red));
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
