// The map as a finger uses it: mouse events on the view, without a tile server.

#include "ui/map/geomap.h"

#include "ui/map/mapcircleobject.h"
#include "ui/map/mapprovider.h"
#include "ui/map/mapswidget.h"
#include "ui/map/maptextobject.h"

#include "support/fakeclock.h"
#include "support/registeredtest.h"

#include <QGraphicsView>
#include <QRandomGenerator>

#include <set>

using namespace std::chrono_literals;

namespace velometer {

namespace {

/// Has the tiles that the test gives it.
class HandFedProvider : public MapProvider
{
public:
    QPixmap tile(const TileId &id) override { return tiles.value(id); }
    void setVisible(const QList<TileId> &list) override { visible = list; }
    QString attribution() const override { return credits; }
    bool isOffline() const override { return offline; }

    QHash<TileId, QPixmap> tiles;
    QList<TileId> visible;
    QString credits;
    bool offline = false;
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
        widget.reset();
        touching = false;
        provider.tiles.clear();
        provider.credits.clear();
        provider.offline = false;
        widget = std::make_unique<MapsWidget>(nullptr);
        widget->resize(480, 700);
        view = new QGraphicsView(widget.get());
        view->setFrameShape(QFrame::NoFrame);
        widget->initialize(&provider, view);
        widget->show();
        map = widget->map();
    }
    void aTapIsNoDragAndADragIsNoTap()
    {
        for (const auto &[hazard, press, release, opens, byTouch] :
             {std::tuple{"tap on the marker", onMarker, onMarker, true, false},
              {"the same by touch", onMarker, onMarker, true, true},
              {"drag that starts on the marker", onMarker, onMarker + QPoint(60, 40), false, false},
              {"the same by touch", onMarker, onMarker + QPoint(60, 40), false, true},
              {"drag that ends on the marker", QPoint(100, 100), onMarker, false, true},
              {"tap under the tip", middle + QPoint(0, 5), middle + QPoint(0, 5), false, true}}) {
            init();
            touching = byTouch;
            widget->showResultsOnMap({markerAt(47, 8)});
            drag(press, release);
            QVERIFY2((widget->openLabel() != nullptr) == opens, hazard);
            const QPoint followed = map->toScreen({47, 8}).toPoint();
            QCOMPARE(followed, middle + release - press);
            if (!opens) {
                continue;
            }
            QCOMPARE(widget->openLabel()->getText(), u"first line\nsecond line of some length"_s);
            QCOMPARE(widget->openLabel()->getOffset(), QPoint(-150, 20));
            QCOMPARE(widget->openCircle()->getRadius(), 700.0);
            QCOMPARE(widget->openCircle()->coordinate(), QGeoCoordinate(47, 8));
        }
    }

    void theLabelIsReplacedByTheNextAndClosedByATap()
    {
        Marker *other = markerAt(47.03, 8);
        widget->showResultsOnMap({markerAt(47, 8), other});
        tap(onMarker);
        tap(above(other->coordinate()));
        QCOMPARE(widget->openLabel()->coordinate(), other->coordinate());
        QCOMPARE(widget->openCircle()->coordinate(), other->coordinate());
        // It lies beside its marker, not over it.
        QCOMPARE(map->mapObjectsAt(above(other->coordinate())).front(), other);
        tap(map->toScreen(other->coordinate()).toPoint() + QPoint(0, 25));
        QVERIFY(nothingIsOpen());

        tap(onMarker);
        QVERIFY(widget->openLabel());
        widget->showResultsOnMap({markerAt(47, 9)});
        QVERIFY(nothingIsOpen());
    }

    void aFlickCoastsARestedFingerDoesNotAndTwoTapsZoomWhereTheyAre()
    {
        FakeClock clock;
        map->setCenter({47, 8});
        map->setZoomLevel(12);
        for (const int restMs : {0, 200}) {
            QTest::mousePress(view->viewport(), Qt::LeftButton, {}, middle);
            for (int moved = 20; moved <= 100; moved += 20) {
                clock.advance(16ms);
                QTest::mouseMove(view->viewport(), middle + QPoint(moved, 0));
            }
            clock.advance(std::chrono::milliseconds(restMs));
            const double west = map->center().longitude();
            QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, middle + QPoint(100, 0));
            for (int tick = 0; tick < 100; ++tick) {
                clock.advance(16ms);
            }
            QCOMPARE(map->center().longitude() < west, restMs == 0);
        }
        const QPoint place(100, 200);
        const QGeoCoordinate there = placeAt(place);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(map->zoomLevel(), 13);
        QVERIFY((map->toScreen(there) - place).manhattanLength() < 4);
    }

    void theLabelStaysInViewAsLongAsItsPlaceDoes()
    {
        MapView shown;
        shown.size = {480, 700};
        shown.zoom = 12;
        shown.controls = {430, 233, 48, 233};
        MapTextObject label;
        label.setText(u"ConnectionTyp: Mobile(LTE)\nDownloadSpeed: 38412.0 kBit/s"_s);
        label.setOffset({-150, 20});
        const auto isClear = [&](const QPoint &place) {
            const QPointF world = (shown.origin() + place) / shown.worldSize();
            label.setCoordinate(Mercator::fromWorld(world));
            const QRectF box = label.boundingRect(shown);
            return box.width() > 150 && shown.rect().contains(box) &&
                   !box.intersects(shown.controls);
        };
        QVERIFY(isClear({1, 1}) && isClear({479, 699}));
        QVERIFY2(isClear({470, 300}), "under the zoom bar");
        QVERIFY(!isClear({-200, 350}));
    }

    void theZoomBarsHalvesZoom()
    {
        map->setCenter({47, 8});
        map->setZoomLevel(12);
        // x from 430.2 to 478, y from 232.67 to 465.33, the middle at 349
        drag({450, 240}, {450, 340});
        QCOMPARE(map->zoomLevel(), 13);
        drag({450, 340}, {450, 360}); // off the half
        drag({450, 300}, {420, 300}); // off the bar
        QCOMPARE(map->zoomLevel(), 13);
        drag({450, 352}, {450, 460});
        QCOMPARE(map->zoomLevel(), 12);
        QVERIFY(map->center().distanceTo({47, 8}) < 1);
    }

    void keysZoomAndPanRoundTheWorldButNotBeyondThePoles()
    {
        widget->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(widget.get()));
        view->setFocus(Qt::TabFocusReason);
        QVERIFY(map->hasFocus());
        QTest::keyClicks(view, QString(25, u'+'));
        QCOMPARE(map->zoomLevel(), 19);
        QTest::keyClicks(view, QString(25, u'-'));
        QCOMPARE(map->zoomLevel(), 1);
        map->setZoomLevel(4); // 4096 px
        map->setCenter({0, 179});
        QTest::keyClick(view, Qt::Key_Right); // 64 px, 5.625 degrees
        QVERIFY(map->center().distanceTo({0, -175.375}) < 1);
        map->pan(0, -100'000);
        QVERIFY(std::abs(map->toScreen({85.0511, 179}).y()) <= 1);
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
                map->center().distanceTo(widget->openLabel()->coordinate()) > 1) {
                return -1.0;
            }
            return widget->openLabel()->coordinate().latitude();
        };
        QCOMPARE(opens(Qt::Key_P), 47.0);
        QCOMPARE(opens(Qt::Key_N), 46.0);
        QCOMPARE(opens(Qt::Key_PageDown), 45.0);
        QCOMPARE(opens(Qt::Key_N), 45.0);
        QCOMPARE(opens(Qt::Key_PageUp), 46.0);
        QTest::keyClick(view, Qt::Key_Escape);
        QVERIFY(nothingIsOpen());
        QCOMPARE(opens(Qt::Key_P), 47.0);
        widget->clearMarkers();
        QVERIFY(map->mapObjectsAt(middle).empty());

        // From a marker that was tapped the keys go on, and new markers begin anew.
        widget->showResultsOnMap({markerAt(47.03, 8), markerAt(47, 8), markerAt(45, 6)});
        tap(above({47, 8}));
        QCOMPARE(opens(Qt::Key_N), 45.0);
        widget->showResultsOnMap({markerAt(47, 8), markerAt(46, 7)});
        QCOMPARE(opens(Qt::Key_N), 47.0);
    }

    void aClusterOpensWhenTapped()
    {
        // 0.001 degrees are 3 px at zoom 12, 47 px at zoom 16
        widget->showResultsOnMap({markerAt(0, 8), markerAt(0, 8.001), markerAt(0, 8.0005)});
        tap(onMarker);
        QVERIFY(!widget->openLabel());
        QCOMPARE(map->zoomLevel(), 16);
        tap(above({0, 8.001}));
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
        for (const size_t afterPage : {6, 8}) {
            tap(above({47, 8}));
            for (int i = 0; i < 36 * 14; ++i) {
                const QPoint point(4 + i / 14 * 12, 180 + i % 14 * 12);
                const auto under = map->mapObjectsAt(point);
                // Not on the disc itself, which shows the next page.
                auto *marker = under.empty() ? nullptr : dynamic_cast<Marker *>(under.front());
                if (!marker) {
                    continue;
                }
                tap(point);
                QCOMPARE(widget->openLabel()->getText(), marker->getPopupText());
                opened.insert(marker->getPopupText());
                QTest::keyClick(view, Qt::Key_Escape);
            }
            QCOMPARE(opened.size(), afterPage);
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
        const auto groups = MarkerCluster::grouped(markers, 8);
        std::set<Marker *> seen;
        const auto covers = [](const Marker *one, const Marker *other) {
            const QPointF away = (one->world() - other->world()) * 256 * 256; // px at zoom 8
            return std::abs(away.x()) < 44 && std::abs(away.y()) < 56;
        };
        for (size_t i = 0; i < groups.size(); ++i) {
            for (Marker *marker : groups[i]) {
                QVERIFY(seen.insert(marker).second && covers(marker, groups[i].front()));
            }
            for (size_t k = 0; k < i; ++k) {
                QVERIFY(!covers(groups[i].front(), groups[k].front()));
            }
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
    }

    void twoFingersHoldWhatLiesBetweenThemAndTheZoomBarTakesTouches()
    {
        map->setCenter({47, 8});
        map->setZoomLevel(12);
        const QPoint at(300, 200);
        const QGeoCoordinate held = placeAt(at);
        auto fingers = QTest::touchEvent(view->viewport(), screen, false);
        const auto bothAt = [&](int apart, QPoint place, bool first = false) {
            for (const auto &[id, side] : {std::pair{0, -1}, {1, 1}}) {
                const QPoint point = place + QPoint(side * apart / 2, 0);
                if (first) {
                    fingers.press(id, point, view->viewport());
                } else {
                    fingers.move(id, point, view->viewport());
                }
            }
            fingers.commit();
        };
        bothAt(100, at, true);
        bothAt(130, at); // 12.38
        QCOMPARE(map->zoomLevel(), 12);
        QVERIFY(distance(map->toScreen(held), at) < 2);
        bothAt(300, at + QPoint(0, 40)); // 13.58
        QCOMPARE(map->zoomLevel(), 14);
        QVERIFY(distance(map->toScreen(held), at + QPoint(0, 40)) < 2);
        bothAt(1, at + QPoint(0, 40)); // as 20 px: fingers tremble
        QCOMPARE(map->zoomLevel(), 10);
        bothAt(120, at);
        fingers.stationary(0).release(1, at + QPoint(60, 0), view->viewport()).commit();
        QCOMPARE(map->zoomLevel(), 12);
        QVERIFY(distance(map->toScreen(held), at) < 2);
        fingers.move(0, QPoint(10, 600), view->viewport()).commit(); // the finger that is left
        fingers.release(0, QPoint(10, 600), view->viewport()).commit();
        QVERIFY(distance(map->toScreen(held), at) < 2);
        QCOMPARE(map->center().distanceTo(placeAt(middle)) < 1, true);

        touching = true;
        for (const auto &[place, level] : {std::pair{QPoint(460, 300), 13},
                                           {{460, 400}, 12},
                                           {at, 12},
                                           {at, 13}}) { // twice: two taps
            tap(place);
            QCOMPARE(map->zoomLevel(), level);
        }
        QVERIFY(nothingIsOpen());
    }

    void showsAndCreditsAPartOfTheTileAboveUntilItsOwnIsThere()
    {
        QPixmap tile(256, 256);
        const QRect corner(0, 670, 200, 30); // of tiles that nobody has
        map->setCenter({0.01, 8});
        map->setZoomLevel(12);
        const TileId id = provider.visible.constFirst();
        QCOMPARE(id, (TileId{12, 2139, 2047})); // (8 + 180) / 360 * 4096 = 2139.02
        const QImage bare = widget->grab().toImage();
        QVERIFY(bare.pixelColor(middle) != QColor(Qt::red));
        provider.credits = u"(c) The tile makers"_s;
        QCOMPARE(widget->grab().toImage(), bare);
        provider.offline = true; // which the bare outline says where the credits would be
        QVERIFY(widget->grab().toImage().copy(corner) != bare.copy(corner));
        tile.fill(Qt::red);
        provider.tiles.insert(id.ancestor(2), tile);
        const QImage coarse = widget->grab().toImage();
        QCOMPARE(coarse.pixelColor(middle), QColor(Qt::red));
        QVERIFY(coarse.copy(corner) != bare.copy(corner));
        tile.fill(Qt::green);
        provider.tiles.insert(id, tile);
        QCOMPARE(widget->grab().toImage().pixelColor(middle), QColor(Qt::green));
        widget->hide();
        QVERIFY(provider.visible.isEmpty());
    }

private:
    void drag(QPoint from, QPoint to)
    {
        if (touching) {
            const auto touch = [&] { return QTest::touchEvent(view->viewport(), screen); };
            touch().press(0, from, view->viewport());
            if (from != to) {
                touch().move(0, (from + to) / 2, view->viewport());
                touch().move(0, to, view->viewport());
            }
            touch().release(0, to, view->viewport());
            return;
        }
        QTest::mousePress(view->viewport(), Qt::LeftButton, {}, from);
        if (from != to) {
            QTest::mouseMove(view->viewport(), (from + to) / 2);
            QTest::mouseMove(view->viewport(), to);
        }
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, to);
    }
    void tap(QPoint point) { drag(point, point); }
    /// In the drop of a marker at @p place.
    QPoint above(const QGeoCoordinate &place) const
    {
        return map->toScreen(place).toPoint() - QPoint(0, 30);
    }
    QGeoCoordinate placeAt(QPoint point) const
    {
        const QPointF centre = Mercator::toWorld(map->center());
        return Mercator::fromWorld(centre +
                                   QPointF(point - middle) / Mercator::worldSize(map->zoomLevel()));
    }
    static double distance(QPointF one, QPointF other) { return (one - other).manhattanLength(); }
    bool nothingIsOpen() const { return !widget->openLabel() && !widget->openCircle(); }

    QPointingDevice *screen = QTest::createTouchDevice();
    bool touching = false;
    HandFedProvider provider;
    std::unique_ptr<MapsWidget> widget;
    QGraphicsView *view = nullptr;
    GeoMap *map = nullptr;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(GeoMapTest)
#include "geomap_test.moc"
