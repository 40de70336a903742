#include "ui/theme/connectionsign.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int darkerOnLight = 190; // percent
constexpr int midLightness = 128;
constexpr double signRadius = 0.25;
constexpr double signText = 0.36;
const QColor signInk(0x04, 0x21, 0x1d);

} // namespace

QColor ConnectionSign::colour(ConnectionKind kind)
{
    switch (kind) {
    case ConnectionKind::Gsm: return {0xff, 0xb4, 0x54};
    case ConnectionKind::Umts: return {0xb7, 0xa5, 0xff};
    case ConnectionKind::Lte: return {0x56, 0xb8, 0xff};
    case ConnectionKind::Nr: return {0x2f, 0xd3, 0xbd};
    case ConnectionKind::Wlan: return {0x9c, 0xcc, 0x65};
    case ConnectionKind::Other: break;
    }
    return {0xb8, 0xc2, 0xc8};
}

QColor ConnectionSign::lineColour(ConnectionKind kind, const QColor &ground)
{
    return ground.lightness() < midLightness ? colour(kind) : colour(kind).darker(darkerOnLight);
}

QIcon ConnectionSign::icon(ConnectionKind kind, int pixels)
{
    const QString sign = ConnectionKinds::sign(kind);
    const QString key = u"sign-%1-%2"_s.arg(sign).arg(pixels);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        // Twice as fine as most screens need; the others scale it down.
        constexpr int density = 2;
        picture = QPixmap(density * pixels, density * pixels);
        picture.setDevicePixelRatio(density);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour(kind));
        const QRectF area(0, 0, pixels, pixels);
        painter.drawRoundedRect(area, signRadius * pixels, signRadius * pixels);
        QFont font = QGuiApplication::font();
        font.setPixelSize(qRound(signText * pixels));
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(signInk);
        painter.drawText(area, Qt::AlignCenter, sign);
        QPixmapCache::insert(key, picture);
    }
    return picture;
}

} // namespace velometer
