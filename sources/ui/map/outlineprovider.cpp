#include "ui/map/outlineprovider.h"

#include "ui/map/outline.h"

#include <QPainter>

namespace velometer {

namespace {

/// A view of 480 x 854 shows up to 15 at once; the rest spares painting on the way back. 16 MB.
constexpr int keptTiles = 64;

} // namespace

OutlineProvider::OutlineProvider()
    : painted(keptTiles)
{}

QPixmap OutlineProvider::tile(const TileId &tile)
{
    if (!tile.isValid()) {
        return {};
    }
    if (const QPixmap *known = painted.object(tile)) {
        return *known;
    }
    const QSize size(Mercator::tileSize, Mercator::tileSize);
    auto picture = std::make_unique<QPixmap>(size * devicePixelRatio);
    picture->setDevicePixelRatio(devicePixelRatio);
    QPainter painter(picture.get());
    const QPointF corner(static_cast<double>(tile.x) * Mercator::tileSize,
                         static_cast<double>(tile.y) * Mercator::tileSize);
    Outline::world().paint(painter, {corner, QSizeF(size)}, Mercator::worldSize(tile.zoom));
    painter.end();
    QPixmap result = *picture;
    painted.insert(tile, picture.release());
    return result;
}

void OutlineProvider::setVisible(const QList<TileId> &tiles)
{
    // A very large window: what is shown must not push itself out.
    painted.setMaxCost(std::max(keptTiles, static_cast<int>(tiles.size())));
}

void OutlineProvider::setDevicePixelRatio(qreal ratio)
{
    const qreal bounded = std::clamp(std::ceil(ratio), 1.0, 4.0);
    if (bounded == devicePixelRatio) {
        return;
    }
    devicePixelRatio = bounded;
    painted.clear();
}

} // namespace velometer
