#pragma once

#include "ui/map/mapobject.h"

#include <QFont>
#include <QString>

namespace velometer {

/// A label of one or more lines in a white box: next to what it belongs to where there is room,
/// else at its offset from the coordinate. It is moved rather than cut off: as long as the
/// coordinate is in view, no part of the label leaves the view or slips under the controls on it.
class MapTextObject : public MapObject
{
public:
    MapTextObject();

    void setText(const QString &lines) { text = lines; }
    QString getText() const { return text; }

    /// Of the middle of the text's left edge from the coordinate, px.
    void setOffset(QPoint distance) { offset = distance; }
    QPoint getOffset() const { return offset; }

    /// What the label belongs to and must not cover, px from the coordinate.
    void setBeside(const QRectF &mark) { beside = mark; }

    QRectF boundingRect(const MapView &view) const override;
    void paint(QPainter &painter, const MapView &view) const override;
    void enter(MapLayers &layers) override { layers.labels.push_back(this); }
    void leave(MapLayers &layers) override { MapLayers::remove(layers.labels, this); }
    void tap(MapTaps &taps) override { taps.tapped(*this); }

private:
    /// Empty where there is no room.
    static QRectF next(const QRectF &mark, const QSizeF &size, const QRectF &free,
                       const QRectF &controls);

    QString text;
    QPoint offset;
    QRectF beside;
    QFont font;
};

} // namespace velometer
