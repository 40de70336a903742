#include "ui/map/geomap.h"

#include "ui/map/mapprovider.h"

#include <QGraphicsSceneMouseEvent>
#include <QGraphicsSceneWheelEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleHints>
#include <QTouchEvent>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr QColor beyondTheWorld(0xb9, 0xd9, 0xeb);
constexpr QColor focusColour(0x0a, 0x74, 0x68);
constexpr int keyboardStep = 64;   // px
constexpr double besideFan = 0.35; // opacity of the other markers

} // namespace

GeoMap::GeoMap(MapProvider &tiles)
    : ground(tiles)
    , glide(new MapGlide(this))
    , fingers(*this)
{
    connect(glide, &MapGlide::moved, this, &GeoMap::pan);
    setFlag(ItemUsesExtendedStyleOption);
    setFlag(ItemClipsToShape);
    setFlag(ItemIsFocusable);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptTouchEvents(true);
    connect(&tiles, &MapProvider::tileReady, this, &GeoMap::tileArrived);
    connect(&tiles, &MapProvider::offlineChanged, this, [this] { update(); });
}

GeoMap::~GeoMap() = default;

QGeoCoordinate GeoMap::center() const
{
    return Mercator::fromWorld(view.centre);
}

void GeoMap::setCenter(const QGeoCoordinate &coordinate)
{
    view.centre = Mercator::toWorld(coordinate);
    viewChanged();
}

void GeoMap::setZoomLevel(int level)
{
    const int bounded = std::clamp(level, Mercator::minimumZoom, Mercator::maximumZoom);
    if (bounded == view.zoom) {
        return;
    }
    view.zoom = bounded;
    forgetGroups();
    viewChanged();
    Q_EMIT zoomLevelChanged(bounded);
}

void GeoMap::zoomAt(QPointF point, int levels)
{
    showAt(point, point,
           std::clamp(view.zoom + levels, Mercator::minimumZoom, Mercator::maximumZoom),
           view.scale);
}

void GeoMap::pan(int dx, int dy)
{
    centreOn(view.centre + QPointF(dx, dy) / view.worldSize());
}

void GeoMap::centreOn(QPointF world)
{
    // The top and the bottom of the world stop at the edge of the view, where it is large enough.
    const double half = std::min(0.5, size().height() / 2 / view.worldSize());
    const double y =
        std::clamp(world.y(), std::min(half, view.centre.y()), std::max(1 - half, view.centre.y()));
    view.centre = {world.x() - std::floor(world.x()), y};
    viewChanged();
}

void GeoMap::addMapObject(MapObject *object)
{
    const size_t before = layers.markers.size();
    object->enter(layers);
    if (layers.markers.size() != before) {
        forgetGroups();
    }
    update();
}

void GeoMap::removeMapObject(MapObject *object)
{
    const size_t before = layers.markers.size();
    object->leave(layers);
    if (layers.markers.size() != before) {
        forgetGroups();
    }
    forgetPress(object);
    update();
}

void GeoMap::forgetPress(const MapObject *object)
{
    if (pressedObject == object) {
        pressedObject = nullptr;
        onObject = false;
    }
}

std::vector<MapObject *> GeoMap::mapObjectsAt(QPointF point) const
{
    groupMarkers();
    std::vector<MapObject *> found;
    const auto consider = [&](MapObject *object) {
        if (object->contains(view, point)) {
            found.push_back(object);
        }
    };
    std::for_each(layers.labels.begin(), layers.labels.end(), consider);
    for (const auto &[marker, tip] : fan.markers(view)) {
        if (Marker::rectAt(tip).contains(point)) {
            found.push_back(marker);
        }
    }
    if (fan.cluster()) {
        consider(fan.cluster());
    }
    std::for_each(singles.begin(), singles.end(), consider);
    for (const auto &cluster : clusters) {
        if (cluster.get() != fan.cluster()) {
            consider(cluster.get());
        }
    }
    std::for_each(layers.ground.begin(), layers.ground.end(), consider);
    return found;
}

QPointF GeoMap::toScreen(const QGeoCoordinate &place) const
{
    return view.toScreen(Mercator::toWorld(place));
}

void GeoMap::setControls(const QRectF &area)
{
    view.controls = area;
    update();
}

void GeoMap::setShown(bool on)
{
    shown = on;
    if (!on) {
        fingers.forget();
    }
    viewChanged();
}

void GeoMap::viewChanged()
{
    view.size = size();
    ground.setVisible(shown ? view : MapView());
    update();
}

void GeoMap::tileArrived(const TileId &tile)
{
    if (tile.zoom == view.zoom) {
        update();
    }
}

void GeoMap::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    Q_UNUSED(option)
    Q_UNUSED(widget)
    groupMarkers();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform |
                            QPainter::TextAntialiasing);
    painter->fillRect(view.rect(), beyondTheWorld);
    const bool pictured = ground.paint(*painter, view);

    // Each object leaves pen, brush and font as it needs them.
    const QRectF visible = view.rect();
    const auto paintIfVisible = [&](const MapObject &object) {
        if (object.boundingRect(view).intersects(visible)) {
            object.paint(*painter, view);
        }
    };
    for (const MapObject *object : layers.ground) {
        paintIfVisible(*object);
    }
    painter->setOpacity(fan.cluster() ? besideFan : 1);
    std::for_each(clusters.rbegin(), clusters.rend(),
                  [&](const auto &cluster) { paintIfVisible(*cluster); });
    std::for_each(singles.rbegin(), singles.rend(),
                  [&](const Marker *marker) { paintIfVisible(*marker); });
    painter->setOpacity(1);
    fan.paint(*painter, view);
    ground.paintNote(*painter, view, pictured);
    for (const MapObject *label : layers.labels) {
        paintIfVisible(*label);
    }
    if (keyboardFocus) {
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(focusColour, 3));
        painter->drawRect(visible.adjusted(1.5, 1.5, -1.5, -1.5));
    }
}

void GeoMap::groupMarkers() const
{
    if (markersGrouped) {
        return;
    }
    markersGrouped = true;
    for (auto &group : MarkerCluster::grouped(layers.markers, view.zoom)) {
        if (group.size() == 1) {
            singles.push_back(group.front());
        } else {
            clusters.push_back(std::make_unique<MarkerCluster>(std::move(group)));
        }
    }
}

void GeoMap::forgetGroups()
{
    for (const auto &cluster : clusters) {
        forgetPress(cluster.get());
    }
    fan.forget();
    markersGrouped = false;
    singles.clear();
    clusters.clear();
}

void GeoMap::openCluster(MarkerCluster *cluster)
{
    if (const auto level = cluster->opensAt(view.zoom)) {
        view.centre = cluster->middle();
        setZoomLevel(*level);
        return;
    }
    fan.open(cluster);
    if (fan.cluster()) {
        bringFanIntoView();
    }
    update();
}

void GeoMap::bringFanIntoView()
{
    const QRectF area = fan.boundingRect(view);
    const double right = view.controls.isEmpty()
                             ? view.size.width()
                             : std::min(view.size.width(), view.controls.left());
    const auto way = [](double start, double end, double limit) {
        return start < 0 ? std::floor(start) : std::ceil(std::max(0.0, end - limit));
    };
    pan(static_cast<int>(way(area.left(), area.right(), right)),
        static_cast<int>(way(area.top(), area.bottom(), view.size.height())));
}

void GeoMap::pressed(QPointF at)
{
    onObject = false;
    glide->stop();
    pressedAt = at;
    const auto under = mapObjectsAt(at);
    if (!under.empty()) {
        pressedObject = under.front();
        onObject = true;
    }
}

void GeoMap::dragged(QPointF from, QPointF to)
{
    const QPointF way = from - to;
    pan(static_cast<int>(way.x()), static_cast<int>(way.y()));
    glide->dragged(way);
}

// The first tap was one of its own; on the bare map it did nothing.
void GeoMap::pressedTwice(QPointF at)
{
    pressed(at);
    if (!onObject) {
        zoomAt(at, 1);
    }
}

void GeoMap::released(QPointF at)
{
    // The map follows the finger and the marker with it: a drag shows in the way of the finger.
    const double way = (at - pressedAt).manhattanLength();
    if (way >= QGuiApplication::styleHints()->startDragDistance()) {
        return glide->release();
    }
    if (!std::exchange(onObject, false)) {
        fan.close();
        return update();
    }
    const auto under = mapObjectsAt(at);
    if (std::find(under.begin(), under.end(), pressedObject) != under.end()) {
        pressedObject->tap(*this);
    }
}

void GeoMap::pinched(QPointF from, QPointF to, double factor)
{
    const double wanted = std::clamp(view.zoom + std::log2(view.scale * factor),
                                     static_cast<double>(Mercator::minimumZoom),
                                     static_cast<double>(Mercator::maximumZoom));
    const int level = static_cast<int>(std::lround(wanted));
    showAt(from, to, level, std::exp2(wanted - level));
    pinchedAt = to;
}

void GeoMap::letGo()
{
    onObject = false;
    glide->stop();
    if (view.scale != 1) {
        showAt(pinchedAt, pinchedAt, view.zoom, 1);
    }
}

/// What lies at @p from comes to lie at @p to, at another scale.
void GeoMap::showAt(QPointF from, QPointF to, int level, double scale)
{
    const QPointF middle = view.rect().center();
    const QPointF held = view.centre + (from - middle) / view.worldSize();
    view.scale = scale;
    setZoomLevel(level);
    centreOn(held - (to - middle) / view.worldSize());
}

void GeoMap::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    panActive = true;
    pressed(event->pos());
    event->accept();
}

void GeoMap::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    panActive = true;
    pressedTwice(event->pos());
    event->accept();
}

void GeoMap::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    if (panActive) {
        dragged(event->lastPos(), event->pos());
    }
}

void GeoMap::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    panActive = false;
    event->accept();
    released(event->pos());
}

bool GeoMap::sceneEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
        // What lies on the map takes its taps as those of a mouse.
        if (const auto &points = static_cast<QTouchEvent *>(event)->points();
            !points.isEmpty() && view.controls.contains(points.front().position())) {
            return false;
        }
        setFocus(Qt::MouseFocusReason);
        [[fallthrough]];
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        fingers.take(*static_cast<QTouchEvent *>(event));
        event->accept();
        return true;
    default: return QGraphicsWidget::sceneEvent(event);
    }
}

void GeoMap::wheelEvent(QGraphicsSceneWheelEvent *event)
{
    constexpr int notch = 120;
    wheelAngle += event->delta();
    if (const int levels = wheelAngle / notch) {
        zoomAt(event->pos(), levels);
    }
    wheelAngle %= notch;
    event->accept();
}

void GeoMap::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: return setZoomLevel(view.zoom + 1);
    case Qt::Key_Minus: return setZoomLevel(view.zoom - 1);
    case Qt::Key_Left: return pan(-keyboardStep, 0);
    case Qt::Key_Right: return pan(keyboardStep, 0);
    case Qt::Key_Up: return pan(0, -keyboardStep);
    case Qt::Key_Down: return pan(0, keyboardStep);
    case Qt::Key_N:
    case Qt::Key_PageDown: return Q_EMIT stepRequested(1);
    case Qt::Key_P:
    case Qt::Key_PageUp: return Q_EMIT stepRequested(-1);
    default: event->ignore();
    }
}

void GeoMap::focusInEvent(QFocusEvent *event)
{
    QGraphicsWidget::focusInEvent(event);
    keyboardFocus =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    update();
}

void GeoMap::focusOutEvent(QFocusEvent *event)
{
    QGraphicsWidget::focusOutEvent(event);
    keyboardFocus = false;
    update();
}

void GeoMap::resizeEvent(QGraphicsSceneResizeEvent *event)
{
    QGraphicsWidget::resizeEvent(event);
    viewChanged();
}

} // namespace velometer
