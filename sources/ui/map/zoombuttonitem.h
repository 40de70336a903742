#pragma once

#include <QGraphicsRectItem>

namespace velometer {

class GeoMap;

/// The bar on the map with plus over minus. A tap on one half zooms by one level; a press that
/// slides into the other half does nothing. Drawn quieter where there is no further level.
class ZoomButtonItem : public QGraphicsRectItem
{
public:
    /// A child of @p map, which owns it.
    explicit ZoomButtonItem(GeoMap *map);

    /// px of the map.
    void setRect(double x, double y, double width, double height);

    /// What a finger may touch: the rectangle, or more than it when it is very small.
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override;

private:
    bool isTopHalf(QPointF point) const;
    bool isBottomHalf(QPointF point) const;

    GeoMap *map;
    bool topPressed = false;
    bool bottomPressed = false;
};

} // namespace velometer
