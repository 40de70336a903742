#pragma once

#include "ui/map/mapfingers.h"
#include "ui/map/mapglide.h"
#include "ui/map/mapground.h"
#include "ui/map/maptextobject.h"
#include "ui/map/markerfan.h"
#include "ui/map/projection.h"

#include <QGraphicsWidget>

#include <memory>
#include <vector>

namespace velometer {

class MapProvider;

/// The map itself: draws the provider's tiles over the built-in outline, the objects on it and the
/// credit for the tiles, where there are any. A finger pans it and a flick lets it coast, a wheel
/// or two quick taps zoom to where they are, two fingers hold what lies between them: while they
/// do, the scale lies between those of two levels. While it has the focus, plus, minus and the
/// arrow keys do the same, and the keys of stepRequested() work. Zooming keeps the centre.
///
/// From bottom to top lie discs, markers and labels; what is added later lies lower among markers,
/// so that the newest test is on top. Markers that cover each other are drawn as one cluster: a tap
/// zooms in until it opens or, where no zoom can open it, fans its markers out, six at a time.
class GeoMap : public QGraphicsWidget, private MapTaps, private MapHandling
{
    Q_OBJECT

public:
    /// Borrows @p provider, which outlives the map.
    explicit GeoMap(MapProvider &provider);
    ~GeoMap() override;

    QGeoCoordinate center() const;
    void setCenter(const QGeoCoordinate &coordinate);
    int zoomLevel() const { return view.zoom; }
    /// Held within Mercator::minimumZoom and maximumZoom.
    void setZoomLevel(int level);
    /// Zooms by @p levels and keeps what lies under @p point (px of this item) where it is.
    void zoomAt(QPointF point, int levels);
    /// Moves the view over the ground, px: positive to the east and south.
    void pan(int dx, int dy);

    /// Borrows @p object until it is removed.
    void addMapObject(MapObject *object);
    void removeMapObject(MapObject *object);
    /// What lies under the point (px of this item), topmost first. A marker that is shown by its
    /// cluster only does not count.
    std::vector<MapObject *> mapObjectsAt(QPointF point) const;
    /// Point of this item that shows the place, px.
    QPointF toScreen(const QGeoCoordinate &place) const;

    /// Where controls lie over the map, px of this item: what opens on the map keeps clear of it.
    void setControls(const QRectF &area);

    /// Tiles are asked for while the map is shown and not before or after.
    void setShown(bool on);

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

Q_SIGNALS:
    void clicked(Marker *marker);
    void clickedPopup(MapTextObject *label);
    void zoomLevelChanged(int level);
    /// 1 for the marker added after the present one (N, Page Down), -1 for the one before (P, Page
    /// Up).
    void stepRequested(int step);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;
    bool sceneEvent(QEvent *event) override;
    void wheelEvent(QGraphicsSceneWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void resizeEvent(QGraphicsSceneResizeEvent *event) override;

private:
    void pressed(QPointF at) override;
    void dragged(QPointF from, QPointF to) override;
    void released(QPointF at) override;
    void pressedTwice(QPointF at) override;
    void pinched(QPointF from, QPointF to, double factor) override;
    void letGo() override;
    void tapped(Marker &marker) override { Q_EMIT clicked(&marker); }
    void tapped(MapTextObject &label) override { Q_EMIT clickedPopup(&label); }
    void tapped(MarkerCluster &cluster) override { openCluster(&cluster); }
    void forgetPress(const MapObject *object);
    void centreOn(QPointF world);
    void showAt(QPointF from, QPointF to, int level, double scale);
    void viewChanged();
    void tileArrived(const TileId &tile);

    void groupMarkers() const;
    void forgetGroups();
    void openCluster(MarkerCluster *cluster);
    void bringFanIntoView();

    MapGround ground;
    MapView view;
    MapGlide *glide;
    MapFingers fingers;
    bool shown = false;
    bool panActive = false;
    bool onObject = false;
    MapObject *pressedObject = nullptr; ///< under the finger at press time; valid while onObject
    QPointF pressedAt;                  ///< px
    QPointF pinchedAt;                  ///< px, the middle of the fingers
    bool keyboardFocus = false;
    int wheelAngle = 0; ///< eighths of a degree not yet acted on

    MapLayers layers;
    // Made of the markers when they are needed and forgotten when zoom or markers change.
    mutable bool markersGrouped = false;
    mutable std::vector<Marker *> singles;
    mutable std::vector<std::unique_ptr<MarkerCluster>> clusters;
    MarkerFan fan;
};

} // namespace velometer
