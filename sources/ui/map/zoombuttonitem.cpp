#include "ui/map/zoombuttonitem.h"

#include "ui/map/geomap.h"

#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace velometer {

namespace {

constexpr double touchSize = 44; // px
constexpr double barRadius = 8;
constexpr double longestSign = 9; // px, from the middle
constexpr QColor barColour(0x17, 0x1b, 0x1f, 225);
constexpr QColor pressedColour(0x16, 0x6f, 0x66, 235);
constexpr QColor lineColour(0x5a, 0x62, 0x6a);
constexpr QColor quietSign(0x7a, 0x84, 0x8e);

} // namespace

ZoomButtonItem::ZoomButtonItem(GeoMap *owner)
    : QGraphicsRectItem(owner)
    , map(owner)
{
    setAcceptedMouseButtons(Qt::LeftButton);
}

void ZoomButtonItem::setRect(double x, double y, double width, double height)
{
    prepareGeometryChange();
    QGraphicsRectItem::setRect(x, y, width, height);
}

QRectF ZoomButtonItem::boundingRect() const
{
    QRectF area = rect();
    if (area.width() < touchSize) {
        area.setLeft(area.right() - touchSize);
    }
    if (area.height() < 2 * touchSize) {
        const double more = touchSize - area.height() / 2;
        area.adjust(0, -more, 0, more);
    }
    return area;
}

QPainterPath ZoomButtonItem::shape() const
{
    QPainterPath path;
    path.addRect(boundingRect());
    return path;
}

void ZoomButtonItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option,
                           QWidget *widget)
{
    Q_UNUSED(option)
    Q_UNUSED(widget)
    const QRectF bar = rect();
    const double half = bar.height() / 2;
    QPainterPath outline;
    outline.addRoundedRect(bar, barRadius, barRadius);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(outline, barColour);
    if (topPressed || bottomPressed) {
        painter->save();
        painter->setClipPath(outline);
        painter->fillRect(bar.adjusted(0, topPressed ? 0 : half, 0, topPressed ? -half : 0),
                          pressedColour);
        painter->restore();
    }
    painter->setPen(QPen(lineColour, 1));
    painter->drawLine(QPointF(bar.left() + 6, bar.center().y()),
                      QPointF(bar.right() - 6, bar.center().y()));

    const double signLength = std::min(longestSign, half / 4);
    const auto drawSign = [&](QPointF middle, bool plus, bool further) {
        painter->setPen(
            QPen(further ? QColor(Qt::white) : quietSign, 2.5, Qt::SolidLine, Qt::RoundCap));
        painter->drawLine(middle - QPointF(signLength, 0), middle + QPointF(signLength, 0));
        if (plus) {
            painter->drawLine(middle - QPointF(0, signLength), middle + QPointF(0, signLength));
        }
    };
    drawSign({bar.center().x(), bar.top() + half / 2}, true,
             map->zoomLevel() < Mercator::maximumZoom);
    drawSign({bar.center().x(), bar.bottom() - half / 2}, false,
             map->zoomLevel() > Mercator::minimumZoom);
}

void ZoomButtonItem::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    if (!topPressed && !bottomPressed) {
        topPressed = isTopHalf(event->pos());
        bottomPressed = isBottomHalf(event->pos());
    }
    event->accept();
    update();
}

void ZoomButtonItem::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    if (topPressed && isTopHalf(event->pos())) {
        map->setZoomLevel(map->zoomLevel() + 1);
    } else if (bottomPressed && isBottomHalf(event->pos())) {
        map->setZoomLevel(map->zoomLevel() - 1);
    }
    topPressed = false;
    bottomPressed = false;
    map->setFocus(Qt::MouseFocusReason);
    event->accept();
    update();
}

// A finger that slides on the bar must not drag the map under it.
void ZoomButtonItem::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    event->accept();
}

bool ZoomButtonItem::isTopHalf(QPointF point) const
{
    return boundingRect().contains(point) && point.y() < rect().center().y();
}

bool ZoomButtonItem::isBottomHalf(QPointF point) const
{
    return boundingRect().contains(point) && point.y() >= rect().center().y();
}

} // namespace velometer
