#include "ui/map/marker.h"

#include "app/connectionkind.h"

#include <QPainter>
#include <QPixmapCache>

#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString iconOf(Marker::MarkerType type)
{
    switch (type) {
    case Marker::LocGSM: break;
    case Marker::LocUMTS: return u":/velometerres/loc_umts.png"_s;
    case Marker::LocWLAN: return u":/velometerres/loc_wlan.png"_s;
    case Marker::LocOther: return u":/velometerres/loc_other.png"_s;
    case Marker::LocLTE: return u":/velometerres/loc_lte.png"_s;
    case Marker::LocNR: return u":/velometerres/loc_nr.png"_s;
    }
    return u":/velometerres/loc_gsm.png"_s;
}

/// Thousands of markers share one picture a type and density.
QPixmap scaledIcon(const QString &file)
{
    QPixmap icon;
    if (QPixmapCache::find(file, &icon)) {
        return icon;
    }
    icon = QPixmap(file);
    if (icon.isNull()) {
        return icon;
    }
    icon = icon.scaledToWidth(qRound(Marker::width * icon.devicePixelRatio()),
                              Qt::SmoothTransformation);
    QPixmapCache::insert(file, icon);
    return icon;
}

} // namespace

Marker::MarkerType Marker::typeOf(const QString &connectionType)
{
    switch (ConnectionKinds::of(connectionType)) {
    case ConnectionKind::Gsm: return LocGSM;
    case ConnectionKind::Umts: return LocUMTS;
    case ConnectionKind::Wlan: return LocWLAN;
    case ConnectionKind::Lte: return LocLTE;
    case ConnectionKind::Nr: return LocNR;
    case ConnectionKind::Other: break;
    }
    return LocOther;
}

QPixmap Marker::pixmap(double density) const
{
    QString file = iconOf(type);
    if (density > 1) {
        file.replace(".png"_L1, "@2x.png"_L1);
    }
    return scaledIcon(file);
}

QRectF Marker::boundingRect(const MapView &view) const
{
    return rectAt(view.toScreen(world()));
}

void Marker::paint(QPainter &painter, const MapView &view) const
{
    paintAt(painter, view.toScreen(world()));
}

void Marker::paintAt(QPainter &painter, QPointF tip) const
{
    // The shell may have scaled what the screen's own pixels are too dense for already.
    const double density = std::sqrt(std::abs(painter.deviceTransform().determinant()));
    painter.drawPixmap(tip + offset, pixmap(density));
}

} // namespace velometer
