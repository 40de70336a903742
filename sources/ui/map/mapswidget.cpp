#include "ui/map/mapswidget.h"

#include "ui/map/geomap.h"
#include "ui/map/mapcircleobject.h"
#include "ui/map/maptextobject.h"
#include "ui/map/zoombuttonitem.h"
#include "ui/theme/theme.h"
#include "utils/utils.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QKeyEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int resultsZoom = 12;
constexpr QPoint labelOffset{-150, 20}; // px
constexpr double barWidth = 48;         // px
constexpr double barHeight = 112;       // px
constexpr double barMargin = 10;        // px

} // namespace

struct MapsWidget::Private
{
    GeoMap *map = nullptr; ///< the scene's
    QGraphicsView *view = nullptr;
    ZoomButtonItem *zoomButton = nullptr; ///< the map's
    std::unique_ptr<QGraphicsScene> scene;
};

MapsWidget::MapsWidget(QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<Private>())
{}

MapsWidget::~MapsWidget()
{
    // The map goes before the objects on it, and the view must not look at a scene that has gone.
    if (d->view) {
        d->view->setScene(nullptr);
    }
    d->scene.reset();
}

GeoMap *MapsWidget::map() const
{
    return d->map;
}

void MapsWidget::initialize(MapProvider *provider, QGraphicsView *view)
{
    d->map = new GeoMap(*provider);
    connect(d->map, &GeoMap::clicked, this, &MapsWidget::markerClicked);
    connect(d->map, &GeoMap::clickedPopup, this, &MapsWidget::markerClickedPopup);
    connect(d->map, &GeoMap::stepRequested, this, &MapsWidget::step);

    d->scene = std::make_unique<QGraphicsScene>();
    // The map is the only large item: an index of items costs more than it finds.
    d->scene->setItemIndexMethod(QGraphicsScene::NoIndex);
    d->scene->addItem(d->map);
    d->map->resize(view->size());
    Utils::addLogEntry(u"Size: %1 %2"_s.arg(view->width()).arg(view->height()));

    d->view = view;
    view->setParent(this);
    view->setScene(d->scene.get());
    view->setInteractive(true);
    view->viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
    view->setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
    view->show();
    d->zoomButton = new ZoomButtonItem(d->map);
    connect(d->map, &GeoMap::zoomLevelChanged, d->map,
            [button = d->zoomButton] { button->update(); });
    // Until there are markers the whole world is on view.
    d->map->setCenter({25, 10});
    // Whenever the view has the focus, the map is what takes the keys.
    d->map->setFocus();
    setFocusProxy(view);
    layOut();
    d->map->setShown(isVisible());
}

void MapsWidget::showResultsOnMap(QVector<Marker *> markers)
{
    clearMarkers();
    for (Marker *marker : std::as_const(markers)) {
        marks.emplace_back(marker);
        d->map->addMapObject(marker);
    }
    if (!marks.empty()) {
        d->map->setCenter(marks.front()->coordinate());
    }
    d->map->setZoomLevel(resultsZoom);
}

void MapsWidget::markerClicked(Marker *marker)
{
    Utils::addLogEntry(u"Marker clicked"_s);
    open(marker);
}

void MapsWidget::step(int by)
{
    if (marks.empty()) {
        return;
    }
    const auto last = static_cast<qsizetype>(marks.size()) - 1;
    Marker *marker = marks[static_cast<size_t>(std::clamp<qsizetype>(current + by, 0, last))].get();
    d->map->setCenter(marker->coordinate());
    open(marker);
}

void MapsWidget::open(Marker *marker)
{
    removeLabel();
    const auto found = std::find_if(marks.cbegin(), marks.cend(),
                                    [marker](const auto &mark) { return mark.get() == marker; });
    current = found == marks.cend() ? -1 : found - marks.cbegin();

    popupmark = std::make_unique<MapTextObject>();
    popupmark->setText(marker->getPopupText());
    popupmark->setCoordinate(marker->coordinate());
    popupmark->setOffset(labelOffset);
    popupmark->setBeside(Marker::rectAt({}));
    d->map->addMapObject(popupmark.get());

    circlemark = std::make_unique<MapCircleObject>();
    circlemark->setRadius(marker->getPrecision());
    circlemark->setCoordinate(marker->coordinate());
    d->map->addMapObject(circlemark.get());
    Q_EMIT labelChanged();
}

void MapsWidget::markerClickedPopup(MapTextObject *label)
{
    if (label == popupmark.get()) {
        closeLabel();
    }
}

void MapsWidget::closeLabel()
{
    if (!popupmark) {
        return;
    }
    removeLabel();
    Q_EMIT labelChanged();
}

void MapsWidget::removeLabel()
{
    if (popupmark) {
        d->map->removeMapObject(popupmark.get());
    }
    popupmark.reset();
    if (circlemark) {
        d->map->removeMapObject(circlemark.get());
    }
    circlemark.reset();
}

void MapsWidget::clearMarkers()
{
    closeLabel();
    current = -1;
    // From the back, where the map looks first.
    while (!marks.empty()) {
        d->map->removeMapObject(marks.back().get());
        marks.pop_back();
    }
}

// What the map has no use for, its view hands on to here.
void MapsWidget::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && popupmark) {
        closeLabel();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void MapsWidget::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (d->map) {
        layOut();
    }
}

void MapsWidget::layOut()
{
    d->view->setGeometry(rect());
    d->map->resize(size());
    d->scene->setSceneRect(d->map->boundingRect());
    d->view->centerOn(d->map);
    const double width = size().width() - 2;
    const double height = size().height() - 2;
    if (Theme::isGiven()) {
        d->zoomButton->setRect(0.9 * width, height / 2 - height / 6, width / 10, height / 3);
    } else {
        d->zoomButton->setRect(width - barWidth - barMargin, (height - barHeight) / 2, barWidth,
                               barHeight);
    }
    d->map->setControls(d->zoomButton->boundingRect());
}

void MapsWidget::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange && d->map) {
        layOut();
    }
}

void MapsWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (d->map) {
        d->map->setShown(true);
    }
}

void MapsWidget::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (d->map) {
        d->map->setShown(false);
    }
}

} // namespace velometer
