// The map as a finger uses it: mouse events on the view, without a tile server.

#include "ui/map/geomap.h"

#include "ui/map/mapcircleobject.h"
#include "ui/map/mapprovider.h"
#include "ui/map/mapswidget.h"
#include "ui/map/maptextobject.h"

#include "support/rows.h"

#include <QGraphicsView>
#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

#include <set>

using namespace Qt::StringLiterals;

namespace {

/// Has the tiles that the test gives it.
class HandFedProvider : public MapProvider
{
public:
    QPixmap tile(const TileId &id) override { return tiles.value(id); }
    void setVisible(const QList<TileId> &list) override { visible = list; }
    QString attribution() const override { return credits; }

    QHash<TileId, QPixmap> tiles;
    QList<TileId> visible;
    QString credits;
};

Marker *markerAt(double latitude, double longitude)
{
    auto *marker = new Marker(Marker::LocLTE);
    marker->setCoordinate({latitude, longitude});
    marker->setPopupText(u"first line\nsecond line of some length"_s);
    marker->setPrecision(700);
    return marker;
}

const QPoint middle(240, 350);
/// In the drop above the tip.
const QPoint onMarker(240, 320);

} // namespace

class GeoMapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        widget = std::make_unique<MapsWidget>(nullptr);
        widget->resize(480, 700);
        view = new QGraphicsView(widget.get());
        view->setFrameShape(QFrame::NoFrame);
        widget->initialize(&provider, view);
        widget->show();
        map = widget->map();
    }
    void cleanup()
    {
        widget.reset();
        provider.tiles.clear();
        provider.credits.clear();
    }

    void aTapIsNoDragAndADragIsNoTap_data()
    {
        const Rows<QPoint, QPoint, bool> row("press", "release", "opens");
        row("tap on the marker", onMarker, onMarker, true);
        row("finger trembles", onMarker, onMarker + QPoint(2, 3), true);
        row("drag that starts on the marker", onMarker, onMarker + QPoint(60, 40), false);
        row("drag that ends on the marker", QPoint(100, 100), onMarker, false);
        row("tap beside it", onMarker - QPoint(30, 0), onMarker - QPoint(30, 0), false);
        row("tap under the tip", middle + QPoint(0, 5), middle + QPoint(0, 5), false);
    }
    void aTapIsNoDragAndADragIsNoTap()
    {
        QFETCH(QPoint, press);
        QFETCH(QPoint, release);
        QFETCH(bool, opens);
        widget->showResultsOnMap({markerAt(47, 8)});
        drag(press, release);
        QCOMPARE(widget->openLabel() != nullptr, opens);
        const QPoint followed = map->toScreen({47, 8}).toPoint();
        QCOMPARE(followed, middle + release - press);
        if (!opens)
            return;
        QCOMPARE(widget->openLabel()->getText(), u"first line\nsecond line of some length"_s);
        QCOMPARE(widget->openLabel()->getOffset(), QPoint(-150, 20));
        QCOMPARE(widget->openCircle()->getRadius(), 700.0);
        QCOMPARE(widget->openCircle()->coordinate(), QGeoCoordinate(47, 8));
    }

    void theLabelIsReplacedByTheNextAndClosedByATap()
    {
        Marker *other = markerAt(47.03, 8);
        widget->showResultsOnMap({markerAt(47, 8), other});
        tap(onMarker);
        tap(map->toScreen(other->coordinate()).toPoint() - QPoint(0, 30));
        QCOMPARE(widget->openLabel()->coordinate(), other->coordinate());
        QCOMPARE(widget->openCircle()->coordinate(), other->coordinate());
        tap(map->toScreen(other->coordinate()).toPoint() + QPoint(-140, 20));
        QVERIFY(!widget->openLabel());
        QVERIFY(!widget->openCircle());

        tap(onMarker);
        QVERIFY(widget->openLabel());
        widget->showResultsOnMap({markerAt(47, 9)});
        QVERIFY(!widget->openLabel());
        QVERIFY(!widget->openCircle());
    }

    void theLabelStaysInViewAsLongAsItsPlaceDoes_data()
    {
        const Rows<QPoint, bool> row("place", "inside");
        row("top left", QPoint(1, 1), true);
        row("top right", QPoint(479, 1), true);
        row("bottom right", QPoint(479, 699), true);
        row("beside the zoom bar", QPoint(420, 350), true);
        row("under the zoom bar", QPoint(470, 300), true);
        row("out of view", QPoint(-200, 350), false);
    }
    void theLabelStaysInViewAsLongAsItsPlaceDoes()
    {
        QFETCH(QPoint, place);
        QFETCH(bool, inside);
        MapView shown;
        shown.size = {480, 700};
        shown.zoom = 12;
        shown.controls = {430, 233, 48, 233};
        MapTextObject label;
        label.setText(u"ConnectionTyp: Mobile(LTE)\nDownloadSpeed: 38412.0 kBit/s"_s);
        label.setOffset({-150, 20});
        const QPointF world = (shown.origin() + place) / shown.worldSize();
        label.setCoordinate(Mercator::fromWorld(world));
        const QRectF box = label.boundingRect(shown);
        QCOMPARE(shown.rect().contains(box) && !box.intersects(shown.controls), inside);
        QVERIFY(box.width() > 150);
    }

    void theZoomBarsHalvesZoom_data()
    {
        const Rows<QPoint, QPoint, int> row("press", "release", "levels");
        // x from 430.2 to 478, y from 232.67 to 465.33, the middle at 349
        row("upper half", QPoint(450, 240), QPoint(450, 340), 1);
        row("lower half", QPoint(450, 352), QPoint(450, 460), -1);
        row("slides down", QPoint(450, 340), QPoint(450, 360), 0);
        row("slides up", QPoint(450, 360), QPoint(450, 340), 0);
        row("slides off", QPoint(450, 300), QPoint(420, 300), 0);
        row("left of the bar", QPoint(429, 300), QPoint(429, 300), 0);
    }
    void theZoomBarsHalvesZoom()
    {
        QFETCH(QPoint, press);
        QFETCH(QPoint, release);
        QFETCH(int, levels);
        map->setCenter({47, 8});
        map->setZoomLevel(12);
        drag(press, release);
        QCOMPARE(map->zoomLevel(), 12 + levels);
        QVERIFY(map->center().distanceTo({47, 8}) < 1);
    }

    void keysZoomAndPanOnceTheMapIsReached()
    {
        widget->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(widget.get()));
        view->setFocus(Qt::TabFocusReason);
        QVERIFY(map->hasFocus());
        for (int i = 0; i < 25; ++i)
            QTest::keyClick(view, Qt::Key_Plus);
        QCOMPARE(map->zoomLevel(), 19);
        for (int i = 0; i < 25; ++i)
            QTest::keyClick(view, Qt::Key_Minus);
        QCOMPARE(map->zoomLevel(), 1);
        map->setZoomLevel(12);
        map->setCenter({0, 0});
        QTest::keyClick(view, Qt::Key_Right);
        QCOMPARE(map->toScreen({0, 0}).toPoint(), middle - QPoint(64, 0));
    }

    void keysStepThroughTheMarkersNewestFirst()
    {
        view->setFocus();
        QTest::keyClick(view, Qt::Key_N);
        QVERIFY(!widget->openLabel());
        widget->showResultsOnMap({markerAt(47, 8), markerAt(46, 7), markerAt(45, 6)});
        const auto opens = [&](Qt::Key key) {
            QTest::keyClick(view, key);
            if (!widget->openLabel() ||
                widget->openCircle()->coordinate() != widget->openLabel()->coordinate() ||
                map->center().distanceTo(widget->openLabel()->coordinate()) > 1)
                return -1.0;
            return widget->openLabel()->coordinate().latitude();
        };
        QCOMPARE(opens(Qt::Key_P), 47.0);
        QCOMPARE(opens(Qt::Key_N), 46.0);
        QCOMPARE(opens(Qt::Key_PageDown), 45.0);
        QCOMPARE(opens(Qt::Key_N), 45.0);
        QCOMPARE(opens(Qt::Key_PageUp), 46.0);
        QTest::keyClick(view, Qt::Key_Escape);
        QVERIFY(!widget->openLabel());
        QVERIFY(!widget->openCircle());
        QCOMPARE(opens(Qt::Key_P), 47.0);
        widget->clearMarkers();
        QVERIFY(!widget->openLabel());
        QVERIFY(map->mapObjectsAt(middle).empty());

        // From a marker that was tapped the keys go on, and new markers begin anew.
        widget->showResultsOnMap({markerAt(47.03, 8), markerAt(47, 8), markerAt(45, 6)});
        tap(map->toScreen({47, 8}).toPoint() - QPoint(0, 30));
        QCOMPARE(opens(Qt::Key_N), 45.0);
        widget->showResultsOnMap({markerAt(47, 8), markerAt(46, 7)});
        QCOMPARE(opens(Qt::Key_N), 47.0);
    }

    void pansRoundTheWorldButNotBeyondThePoles()
    {
        map->setZoomLevel(4); // 4096 px
        map->setCenter({0, 179});
        map->pan(200, -100'000);
        QVERIFY(std::abs(map->center().longitude() - (179 + 200 * 360 / 4096.0 - 360)) < 0.01);
        QVERIFY(map->toScreen({85.0511, 179}).y() >= -1);
        QVERIFY(map->toScreen({85.0511, 179}).y() <= 1);
    }

    void aClusterOpensWhenTapped()
    {
        // 0.001 degrees are 3 px at zoom 12, 47 px at zoom 16
        widget->showResultsOnMap({markerAt(0, 8), markerAt(0, 8.001), markerAt(0, 8.0005)});
        QCOMPARE(widget->shownMarkers().size(), size_t(3));
        tap(onMarker);
        QVERIFY(!widget->openLabel());
        QCOMPARE(map->zoomLevel(), 16);
        tap(map->toScreen({0, 8.001}).toPoint() - QPoint(0, 30));
        QVERIFY(widget->openLabel());
        QCOMPARE(widget->openLabel()->coordinate(), QGeoCoordinate(0, 8.001));
    }

    void markersOfOnePlaceFanOutSoThatEachCanBeTapped()
    {
        QVector<Marker *> markers;
        for (int i = 0; i < 8; ++i) {
            markers += markerAt(47, 8);
            markers.constLast()->setPopupText(QString::number(i));
        }
        widget->showResultsOnMap(markers);
        std::set<QString> opened;
        for (int page = 0; page < 2; ++page) {
            tap(map->toScreen({47, 8}).toPoint() - QPoint(0, 30));
            for (int x = 4; x < 428; x += 12) {
                for (int y = 180; y < 340; y += 12) {
                    // Not on the disc itself, which shows the next page.
                    if (std::hypot(x - 240, y - 317) < 30)
                        continue;
                    for (MapObject *object : map->mapObjectsAt(QPointF(x, y))) {
                        if (auto *marker = dynamic_cast<Marker *>(object)) {
                            tap({x, y});
                            QCOMPARE(widget->openLabel()->getText(), marker->getPopupText());
                            opened.insert(marker->getPopupText());
                            tap(map->toScreen({47, 8}).toPoint() + QPoint(-145, 20));
                            QVERIFY(!widget->openLabel());
                            break;
                        }
                    }
                }
            }
            QCOMPARE(opened.size(), size_t(page == 0 ? 6 : 8));
        }
        tap({100, 600});
        QCOMPARE(map->mapObjectsAt(QPointF(240, 240)).size(), size_t(0));
    }

    void everyMarkerIsInOneGroupAndGroupsKeepApart()
    {
        QRandomGenerator random(3);
        std::vector<std::unique_ptr<Marker>> owned;
        std::vector<Marker *> markers;
        for (int i = 0; i < 10'000; ++i) {
            owned.emplace_back(markerAt(46 + random.bounded(2.0), 7 + random.bounded(3.0)));
            markers.push_back(owned.back().get());
        }
        const double worldSize = 256 * 256; // zoom 8
        const auto groups = MarkerCluster::grouped(markers, 8);
        std::set<Marker *> seen;
        const auto covers = [&](const Marker *one, const Marker *other) {
            const QPointF away = (one->world() - other->world()) * worldSize;
            return std::abs(away.x()) < 44 && std::abs(away.y()) < 56;
        };
        for (size_t i = 0; i < groups.size(); ++i) {
            for (Marker *marker : groups[i]) {
                QVERIFY(seen.insert(marker).second);
                QVERIFY(covers(marker, groups[i].front()));
            }
            for (size_t k = 0; k < i; ++k)
                QVERIFY(!covers(groups[i].front(), groups[k].front()));
        }
        QCOMPARE(seen.size(), markers.size());
        QCOMPARE(groups.front().front(), markers.front());
    }

    void aMarkerThatGoesWhileTheFingerIsOnItIsNotClicked()
    {
        widget->showResultsOnMap({markerAt(47, 8)});
        QTest::mousePress(view->viewport(), Qt::LeftButton, {}, onMarker);
        widget->showResultsOnMap({markerAt(47, 8)});
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, onMarker);
        QVERIFY(!widget->openLabel());

        map->pan(100, 100);
        const QPoint beside = onMarker - QPoint(100, 100);
        QTest::mousePress(view->viewport(), Qt::LeftButton, {}, beside);
        map->setZoomLevel(14); // moves the marker away from under the finger
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, beside);
        QVERIFY(!widget->openLabel());
    }

    void showsAPartOfTheTileAboveUntilItsOwnIsThere()
    {
        QPixmap above(256, 256);
        above.fill(Qt::red);
        QPixmap own(256, 256);
        own.fill(Qt::green);
        map->setCenter({0.01, 8});
        map->setZoomLevel(12);
        const TileId id = provider.visible.constFirst();
        QCOMPARE(id, (TileId{12, 2139, 2047})); // (8 + 180) / 360 * 4096 = 2139.02
        QVERIFY(colourInTheMiddle() != QColor(Qt::red));
        provider.tiles.insert(id.ancestor(2), above);
        QCOMPARE(colourInTheMiddle(), QColor(Qt::red));
        provider.tiles.insert(id, own);
        QCOMPARE(colourInTheMiddle(), QColor(Qt::green));
        widget->hide();
        QVERIFY(provider.visible.isEmpty());
    }

    void creditsTheTilesAndNotTheOutline()
    {
        const auto corner = [&] { return widget->grab().toImage().copy(0, 670, 200, 30); };
        map->setCenter({0.01, 8});
        map->setZoomLevel(12);
        const QImage plain = corner();
        provider.credits = u"(c) The tile makers"_s;
        QCOMPARE(corner(), plain);
        QPixmap tile(256, 256);
        tile.fill(Qt::red);
        provider.tiles.insert(provider.visible.constFirst(), tile);
        QVERIFY(corner() != plain);
    }

    void theIconHasAPixelForEachOfTheScreen_data()
    {
        const Rows<double, double> row("device", "shell");
        row("dense screen", 2, 1);
        row("scaled by the shell", 1, 2);
    }
    void theIconHasAPixelForEachOfTheScreen()
    {
        QFETCH(double, device);
        QFETCH(double, shell);
        QImage screen(100, 116, QImage::Format_ARGB32_Premultiplied);
        screen.fill(Qt::transparent);
        screen.setDevicePixelRatio(device);
        QPainter painter(&screen);
        painter.scale(shell, shell);
        Marker(Marker::LocNR).paintAt(painter, -Marker::offset);
        painter.end();
        screen.setDevicePixelRatio(1);
        const QImage drawn(u":/velometerres/loc_nr@2x.png"_s);
        QCOMPARE(drawn.size(), QSize(100, 116));
        QImage expected = drawn.convertToFormat(screen.format());
        expected.setDevicePixelRatio(1);
        QCOMPARE(screen, expected);
    }

private:
    void drag(QPoint from, QPoint to)
    {
        QTest::mousePress(view->viewport(), Qt::LeftButton, {}, from);
        if (from != to) {
            QTest::mouseMove(view->viewport(), (from + to) / 2);
            QTest::mouseMove(view->viewport(), to);
        }
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, to);
    }
    void tap(QPoint point) { drag(point, point); }
    QColor colourInTheMiddle() { return widget->grab().toImage().pixelColor(middle); }

    HandFedProvider provider;
    std::unique_ptr<MapsWidget> widget;
    QGraphicsView *view = nullptr;
    GeoMap *map = nullptr;
};

QTEST_MAIN(GeoMapTest)
#include "geomap_test.moc"
