#pragma once

#include "ui/map/mapobject.h"

#include <QColor>
#include <QPixmap>
#include <QString>

namespace velometer {

/// The drop that marks where one stored test was made; its tip is at the coordinate.
class Marker : public MapObject
{
public:
    enum MarkerType { LocGSM = 0, LocUMTS = 1, LocWLAN = 2, LocOther = 3, LocLTE = 4, LocNR = 5 };

    static constexpr int width = 50;          ///< px, of the icon
    static constexpr int height = 58;         ///< px
    static constexpr QPoint offset{-25, -56}; ///< px, of the icon's top left from the coordinate

    explicit Marker(MarkerType markerType = LocGSM)
        : type(markerType)
    {}

    /// The type that stands for a stored connection type ("Mobile(GSM)" ...).
    static MarkerType typeOf(const QString &connectionType);

    MarkerType markerType() const { return type; }

    /// What the label says when the marker is tapped.
    void setPopupText(const QString &popupText) { text = popupText; }
    QString getPopupText() const { return text; }

    /// Accuracy of the position in m, 0 when unknown.
    void setPrecision(int metres) { precision = metres; }
    int getPrecision() const { return precision; }

    /// In @p colour with the sign of its connection, in place of the icon; an invalid one: the
    /// icon.
    void setTint(const QColor &colour) { tint = colour; }

    /// The icon, width wide, with two pixels of the picture to a logical one for a screen with more
    /// than one.
    QPixmap pixmap(double density = 1) const;

    QRectF boundingRect(const MapView &view) const override;
    void paint(QPainter &painter, const MapView &view) const override;
    void enter(MapLayers &layers) override { layers.markers.push_back(this); }
    void leave(MapLayers &layers) override { MapLayers::remove(layers.markers, this); }
    void tap(MapTaps &taps) override { taps.tapped(*this); }
    /// The same with the tip elsewhere, for markers that stand apart from their common place.
    static QRectF rectAt(QPointF tip) { return {tip + offset, QSizeF(width, height)}; }
    void paintAt(QPainter &painter, QPointF tip) const;

private:
    MarkerType type = LocGSM;
    QPixmap tinted(double density) const;

    QString text;
    QColor tint;
    int precision = 0;
};

} // namespace velometer
