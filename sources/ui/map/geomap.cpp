#include "ui/map/geomap.h"

#include "ui/map/mapprovider.h"

#include <QGraphicsSceneMouseEvent>
#include <QGraphicsSceneWheelEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleHints>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr QColor beyondTheWorld(0xb9, 0xd9, 0xeb);
constexpr QColor focusColour(0x0a, 0x74, 0x68);
constexpr int keyboardStep = 64;   // px
constexpr double fanRadius = 108;  // px
constexpr double fanStep = 34;     // degrees, a marker's width; upwards: the label opens below
constexpr double fanLift = 14;     // px
constexpr double besideFan = 0.35; // opacity of the other markers

} // namespace

GeoMap::GeoMap(MapProvider &tiles)
    : ground(tiles)
    , glide(new MapGlide(this))
{
    connect(glide, &MapGlide::moved, this, &GeoMap::pan);
    setFlag(ItemUsesExtendedStyleOption);
    setFlag(ItemClipsToShape);
    setFlag(ItemIsFocusable);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptedMouseButtons(Qt::LeftButton);
    connect(&tiles, &MapProvider::tileReady, this, &GeoMap::tileArrived);
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
    const QPointF fromMiddle = point - view.rect().center();
    const double before = view.worldSize();
    setZoomLevel(view.zoom + levels);
    const QPointF way = fromMiddle * (view.worldSize() / before - 1);
    pan(qRound(way.x()), qRound(way.y()));
}

void GeoMap::pan(int dx, int dy)
{
    const double worldSize = view.worldSize();
    const double x = view.centre.x() + dx / worldSize;
    // The top and the bottom of the world stop at the edge of the view, where it is large enough.
    const double half = std::min(0.5, size().height() / 2 / worldSize);
    const double y = std::clamp(view.centre.y() + dy / worldSize, std::min(half, view.centre.y()),
                                std::max(1 - half, view.centre.y()));
    view.centre = {x - std::floor(x), y};
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
    if (pressed == object) {
        pressed = nullptr;
        markerPressed = false;
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
    for (const auto &[marker, tip] : fannedOut()) {
        if (Marker::rectAt(tip).contains(point)) {
            found.push_back(marker);
        }
    }
    if (fan.cluster) {
        consider(fan.cluster);
    }
    std::for_each(singles.begin(), singles.end(), consider);
    for (const auto &cluster : clusters) {
        if (cluster.get() != fan.cluster) {
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
    painter->setOpacity(fan.cluster ? besideFan : 1);
    std::for_each(clusters.rbegin(), clusters.rend(),
                  [&](const auto &cluster) { paintIfVisible(*cluster); });
    std::for_each(singles.rbegin(), singles.rend(),
                  [&](const Marker *marker) { paintIfVisible(*marker); });
    painter->setOpacity(1);
    paintFan(*painter);
    // The bare outline is nobody's work but ours.
    if (pictured) {
        ground.paintCredits(*painter, view);
    }
    for (const MapObject *label : layers.labels) {
        paintIfVisible(*label);
    }
    if (keyboardFocus) {
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(focusColour, 3));
        painter->drawRect(visible.adjusted(1.5, 1.5, -1.5, -1.5));
    }
}

void GeoMap::paintFan(QPainter &painter) const
{
    if (!fan.cluster) {
        return;
    }
    const QPointF disc = fan.cluster->boundingRect(view).center();
    const auto fanned = fannedOut();
    painter.setPen(QPen(QColor(0x17, 0x1b, 0x1f), 2));
    for (const auto &[marker, tip] : fanned) {
        painter.drawLine(disc, tip);
    }
    for (const auto &[marker, tip] : fanned) {
        marker->paintAt(painter, tip);
    }
    fan.cluster->paint(painter, view);
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
    fan = {};
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
    const size_t count = cluster->members().size();
    const size_t first = fan.cluster == cluster ? fan.first + markersInFan : 0;
    closeFan();
    if (first >= count) {
        return;
    }
    fan = {cluster, first};
    if (count > markersInFan) {
        cluster->setCaption(
            u"%1\u2013%2"_s.arg(first + 1).arg(std::min(count, first + markersInFan)));
    }
    bringFanIntoView();
    update();
}

void GeoMap::bringFanIntoView()
{
    QRectF area = fan.cluster->boundingRect(view);
    for (const auto &[marker, tip] : fannedOut()) {
        area |= Marker::rectAt(tip);
    }
    const double right = view.controls.isEmpty()
                             ? view.size.width()
                             : std::min(view.size.width(), view.controls.left());
    const auto way = [](double start, double end, double limit) {
        return start < 0 ? std::floor(start) : std::ceil(std::max(0.0, end - limit));
    };
    pan(static_cast<int>(way(area.left(), area.right(), right)),
        static_cast<int>(way(area.top(), area.bottom(), view.size.height())));
}

void GeoMap::closeFan()
{
    if (fan.cluster) {
        fan.cluster->setCaption({});
    }
    fan = {};
    update();
}

std::vector<std::pair<Marker *, QPointF>> GeoMap::fannedOut() const
{
    std::vector<std::pair<Marker *, QPointF>> result;
    if (!fan.cluster) {
        return result;
    }
    const auto &members = fan.cluster->members();
    const size_t last = std::min(members.size(), fan.first + markersInFan);
    const double steps = static_cast<double>(last - fan.first) - 1;
    const QPointF tip = view.toScreen(fan.cluster->world()) - QPointF(0, fanLift);
    for (size_t i = fan.first; i < last; ++i) {
        const double step = steps / 2 - static_cast<double>(i - fan.first);
        const double angle = Mercator::radians(90 + fanStep * step);
        result.emplace_back(members[i],
                            tip + fanRadius * QPointF(std::cos(angle), -std::sin(angle)));
    }
    return result;
}

void GeoMap::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    panActive = true;
    markerPressed = false;
    glide->stop();
    pressedAt = event->screenPos();
    const auto under = mapObjectsAt(event->pos());
    if (!under.empty()) {
        pressed = under.front();
        markerPressed = true;
    }
    event->accept();
}

void GeoMap::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    if (!panActive) {
        return;
    }
    const QPointF moved = event->lastPos() - event->pos();
    pan(static_cast<int>(moved.x()), static_cast<int>(moved.y()));
    glide->dragged(moved);
}

// The first tap was one of its own; on the bare map it did nothing.
void GeoMap::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    mousePressEvent(event);
    if (!markerPressed) {
        zoomAt(event->pos(), 1);
    }
}

void GeoMap::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    panActive = false;
    event->accept();
    // The map follows the finger and the marker with it: a drag shows in the way of the finger.
    const int way = (event->screenPos() - pressedAt).manhattanLength();
    const bool tapped = way < QGuiApplication::styleHints()->startDragDistance();
    const bool onObject = std::exchange(markerPressed, false);
    if (!tapped) {
        return glide->release();
    }
    if (!onObject) {
        return closeFan();
    }
    const auto under = mapObjectsAt(event->pos());
    if (std::find(under.begin(), under.end(), pressed) == under.end()) {
        return;
    }
    pressed->tap(*this);
}

void GeoMap::tapped(Marker &marker)
{
    Q_EMIT clicked(&marker);
}

void GeoMap::tapped(MapTextObject &label)
{
    Q_EMIT clickedPopup(&label);
}

void GeoMap::tapped(MarkerCluster &cluster)
{
    openCluster(&cluster);
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
