#include "ui/map/marker.h"

#include "app/connectionkind.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
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

ConnectionKind kindOf(Marker::MarkerType type)
{
    switch (type) {
    case Marker::LocGSM: return ConnectionKind::Gsm;
    case Marker::LocUMTS: return ConnectionKind::Umts;
    case Marker::LocWLAN: return ConnectionKind::Wlan;
    case Marker::LocLTE: return ConnectionKind::Lte;
    case Marker::LocNR: return ConnectionKind::Nr;
    case Marker::LocOther: break;
    }
    return ConnectionKind::Other;
}

constexpr double headRadius = 20; // px
constexpr int signSize = 17;      // px

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
    if (tint.isValid()) {
        return tinted(density > 1 ? 2 : 1);
    }
    QString file = iconOf(type);
    if (density > 1) {
        file.replace(".png"_L1, "@2x.png"_L1);
    }
    return scaledIcon(file);
}

QPixmap Marker::tinted(double density) const
{
    const QString key = u"marker-%1-%2-%3"_s.arg(tint.name()).arg(type).arg(density);
    QPixmap picture;
    if (QPixmapCache::find(key, &picture)) {
        return picture;
    }
    picture = QPixmap(QSize(width, height) * density);
    picture.setDevicePixelRatio(density);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    // The icons' drop: a head with a tip at the coordinate.
    const QPointF head(width / 2.0, width / 2.0 - 1);
    const QPointF tip = -QPointF(offset);
    QPainterPath drop;
    drop.addEllipse(head, headRadius, headRadius);
    QPainterPath point;
    point.addPolygon(QPolygonF({head + QPointF(-headRadius * 0.82, headRadius * 0.57), tip,
                                head + QPointF(headRadius * 0.82, headRadius * 0.57)}));
    drop = drop.united(point);
    painter.setPen(QPen(Qt::white, 2));
    painter.setBrush(tint);
    painter.drawPath(drop);
    QFont font = QGuiApplication::font();
    font.setBold(true);
    font.setPixelSize(signSize);
    painter.setFont(font);
    painter.setPen(tint.lightnessF() < 0.45 ? Qt::white : Qt::black);
    painter.drawText(QRectF(head - QPointF(width, width) / 2, QSizeF(width, width)),
                     Qt::AlignCenter, ConnectionKinds::sign(kindOf(type)));
    painter.end();
    QPixmapCache::insert(key, picture);
    return picture;
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
