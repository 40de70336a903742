#include "ui/map/geomaptab.h"

#include "ui/map/geomap.h"
#include "ui/map/maplegend.h"
#include "ui/map/mapswidget.h"
#include "ui/map/signalclass.h"
#include "ui/theme/connectionsign.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "support/registeredtest.h"
#include "support/storedtests.h"
#include "tileserver.h"

#include <QGraphicsView>
#include <QLabel>
#include <QPushButton>

namespace velometer {

class GeoMapTabTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        page.reset();
        store.reset();
        server = std::make_unique<TileServer>();
        server->answer = [](const TileServer::Request &) {
            return TileServer::message("200 OK", "Cache-Control: no-store\r\n",
                                       TileServer::png(256, 256));
        };
        Deployment deployment;
        deployment.tileUrl = server->address();
        Deployment::setCurrent(deployment);
        store = std::make_unique<StoredTests>();
        page = std::make_unique<GeoMapTab>(nullptr);
        page->resize(480, 854);
        page->show();
        view = page->findChild<QGraphicsView *>(u"graphicsView"_s);
    }
    void aTestsMarkerShowsHowItWasConnected()
    {
        int id = 0;
        for (const auto &[connection, icon] : {std::pair{u"Mobile(GSM)"_s, "gsm"},
                                               {u"Mobile(UMTS)"_s, "umts"},
                                               {u"Mobile(LTE)"_s, "lte"},
                                               {u"Mobile(5G)"_s, "nr"},
                                               {u"WLAN"_s, "wlan"},
                                               {u"Mixed(WLAN,Mobile)"_s, "other"},
                                               {QString(5000, u'x'), "other"}}) {
            add(++id, 47.25, 8.75, connection);
            page->showResultsOnMap();
            const Marker &marker = *page->map()->shownMarkers().at(0);
            // The label is no longer than it can be.
            QCOMPARE(marker.getPopupText(), "ConnectionTyp:"_L1 + connection.left(120) +
                                                "\nDownloadSpeed:38412.1 kBit/s"
                                                "\nUploadSpeed:na"_L1);
            QCOMPARE(marker.coordinate(), QGeoCoordinate(47.25, 8.75));
            QCOMPARE(marker.getPrecision(), 12);
            const QPixmap drawn(u":/velometerres/loc_%1.png"_s.arg(QLatin1StringView(icon)));
            QCOMPARE(marker.pixmap().toImage(),
                     drawn.scaledToWidth(50, Qt::SmoothTransformation).toImage());
        }
        store->addDetail(id, u"deviceAccuracyVert"_s, qInf());
        page->showResultsOnMap();
        QCOMPARE(page->map()->shownMarkers().at(0)->getPrecision(), 0);
    }

    void threeTestsAreThreeMarkersAroundTheNewest()
    {
        add(1, 47, 8);
        add(3, -33.5, 151.25);
        add(2, 46, 7);
        add(4, 0, 0);    // no position
        add(5, 200, 10); // nowhere on earth
        page->showResultsOnMap();
        QCOMPARE(page->map()->shownMarkers().size(), size_t(3));
        QCOMPARE(page->map()->map()->zoomLevel(), 12);
        QVERIFY(page->map()->map()->center().distanceTo({-33.5, 151.25}) < 1);
        QVERIFY(view->accessibleDescription().startsWith(u'3'));
        QVERIFY(!view->accessibleName().isEmpty());
        QVERIFY(view->width() == 480 && view->height() > 500);
    }

    void theLegendSaysWhatTheColoursOfTheMarkersMean()
    {
        auto *legend = page->findChild<MapLegend *>();
        const auto *colouring = legend->findChild<QPushButton *>(u"buttonColouring"_s);
        const auto entries = [&] {
            QStringList names;
            for (const auto *child : legend->findChildren<QWidget *>()) {
                names += child->accessibleName();
            }
            return names.join(QString());
        };
        page->showResultsOnMap();
        QVERIFY(!colouring->isVisible());
        add(1, 47, 8, u"Mobile(5G)"_s);
        add(2, 46, 7, u"WLAN"_s);
        page->showResultsOnMap();
        QVERIFY(colouring->isVisible());
        QCOMPARE(entries(), u"5G NR, W WLAN"_s);
        const QImage before = page->map()->shownMarkers().at(0)->pixmap(2).toImage();
        QTest::mouseClick(legend->findChild<QPushButton *>(u"buttonColouring"_s), Qt::LeftButton);
        QCOMPARE(entries(), u"20 to 100"_s); // both had 38 Mbit/s
        add(3, 45, 6, u"WLAN"_s);
        page->showResultsOnMap();
        QVERIFY(page->map()->shownMarkers().at(0)->pixmap(2).toImage() != before);
        page->clearMarkers();
        QVERIFY(!colouring->isVisible());
    }

    void tracksLieUnderTheMarkersInTheColoursThatTheLegendNames()
    {
        auto track = gDB->tracks().begin(1);
        QList<TrackPoint> points;
        for (int i = 0; i < 10'000; ++i) {
            TrackPoint point;
            point.time = 1 + i;
            point.segment = i < 5'000 ? 0 : 1;
            point.latitude = 47 + i * 1e-5;
            point.longitude = 8;
            point.mode = i < 2'500 ? u"LteMode"_s : u"NrMode"_s;
            point.rsrp = i < 2'500 ? -120 : -70;
            if (i >= 4'000 && i < 6'000) {
                point.latitude.reset(); // a tunnel
                point.longitude.reset();
            }
            points.append(point);
        }
        QVERIFY(gDB->tracks().append(*track, points, 0));
        const QSignalSpy asked(page.get(), &GeoMapTab::tracksClicked);
        page->showTrack(track->row);
        QVERIFY(!page->findChild<QLabel *>(u"labelEmpty"_s)->isVisible());
        GeoMap &map = *page->map()->map();
        QVERIFY(map.center().distanceTo({47.05, 8}) < 200);
        auto *colouring = page->findChild<QPushButton *>(u"buttonColouring"_s);
        const auto at = [&](double latitude) {
            return page->map()->grab().toImage().pixelColor(map.toScreen({latitude, 8}).toPoint());
        };
        const QColor weak = SignalClasses::colour(SignalClass::Weak);
        const QColor strong = SignalClasses::colour(SignalClass::Strong);
        const QColor lte = ConnectionSign::colour(ConnectionKind::Lte);
        const QColor nr = ConnectionSign::colour(ConnectionKind::Nr);
        QCOMPARE(at(47.01), lte);
        QCOMPARE(at(47.03), nr);
        QVERIFY(at(47.05) != nr && at(47.05) != lte); // no line through the tunnel
        QCOMPARE(at(47.08), nr);
        QTest::mouseClick(colouring, Qt::LeftButton);
        QTest::mouseClick(colouring, Qt::LeftButton);
        QCOMPARE(at(47.01), weak);
        QCOMPARE(at(47.09), strong);
        QVERIFY(gDB->tracks().remove(track->row));
        page->showResultsOnMap();
        QVERIFY(at(47.01) != weak);
        QTest::mouseClick(page->findChild<QPushButton *>(u"buttonTracks"_s), Qt::LeftButton);
        QCOMPARE(asked.size(), 1);
    }

    void isSetUpOnceAndKeepsWhatItShowedWhenNothingIsStored()
    {
        const auto *message = page->findChild<QLabel *>(u"labelEmpty"_s);
        const qsizetype before = Utils::getLogEntries().count("Provider 1: outline"_L1);
        page->showResultsOnMap();
        QVERIFY(message->isVisible());
        QCOMPARE(page->map()->map()->zoomLevel(), 1);
        add(1, 47, 8);
        page->showResultsOnMap();
        QVERIFY(!message->isVisible());
        gDB->resetDB();
        page->showResultsOnMap();
        // "No test" beside a marker would be a contradiction.
        QVERIFY(!message->isVisible());
        QCOMPARE(page->map()->shownMarkers().size(), size_t(1));
        page->clearMarkers();
        QVERIFY(message->isVisible());
        QVERIFY(page->map()->shownMarkers().empty());
        QCOMPARE(Utils::getLogEntries().count("Provider 1: outline"_L1), before + 1);
    }

    void tellsAScreenReaderWhatIsOpenAndLetsTabLeave()
    {
        add(1, 47, 8);
        add(2, 46, 7, u"Mobile(LTE)"_s);
        page->showResultsOnMap();
        const QString closed = view->accessibleDescription();
        for (const auto name : {"Plus"_L1, "minus"_L1, "N or Page Down"_L1, "P or Page Up"_L1}) {
            QVERIFY2(closed.contains(name), name.data());
        }

        page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        view->setFocus(Qt::TabFocusReason);
        QTest::keyClick(view, Qt::Key_N);
        QVERIFY(view->accessibleDescription().startsWith("ConnectionTyp:Mobile(LTE)\n"_L1));
        QTest::keyClick(view, Qt::Key_N);
        QVERIFY(view->accessibleDescription().startsWith("ConnectionTyp:WLAN\n"_L1));
        QTest::keyClick(view, Qt::Key_Escape);
        QCOMPARE(view->accessibleDescription(), closed);

        for (const Qt::Key away : {Qt::Key_Tab, Qt::Key_Backtab}) {
            view->setFocus(Qt::TabFocusReason);
            QTest::keyClick(view, away);
            QVERIFY(page->focusWidget() != view);
        }
    }

    void loadsWhatIsInViewOnceTheTestHasEnded()
    {
        add(1, 0.01, 8);
        page->pauseDownloads(true);
        page->showResultsOnMap();
        QTest::qWait(50);
        page->map()->map()->pan(300, 0);
        QTest::qWait(50);
        QVERIFY(server->requests.isEmpty());
        page->pauseDownloads(false);
        QTRY_COMPARE(page->map()->grab().toImage().pixelColor(3, 3), QColor(Qt::red));
    }

private:
    void add(qlonglong id, double latitude, double longitude, const QString &connection = u"WLAN"_s)
    {
        store->add({.id = id, .download = 38'412'050, .upload = -1, .type = connection});
        store->addDetail(id, u"deviceLatitude"_s, latitude);
        store->addDetail(id, u"deviceLongitude"_s, longitude);
        store->addDetail(id, u"deviceAccuracyVert"_s, 12.9);
    }

    std::unique_ptr<TileServer> server;
    std::unique_ptr<StoredTests> store;
    QGraphicsView *view = nullptr;
    std::unique_ptr<GeoMapTab> page;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(GeoMapTabTest)
#include "geomaptab_test.moc"
