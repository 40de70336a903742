#include "ui/map/mapground.h"

#include "ui/map/mapprovider.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// A tile of this many levels above is too coarse to be better than the outline.
constexpr int coarsestAncestor = 4;
constexpr int creditsFontSize = 13; // px
/// The zoom bar takes the right tenth.
constexpr double creditsWidth = 0.88;

} // namespace

MapGround::MapGround(MapProvider &tiles)
    : provider(tiles)
{}

void MapGround::setVisible(const MapView &view)
{
    QList<TileId> tiles;
    if (!view.size.isEmpty()) {
        std::vector<Square> visible = squares(view);
        const QPointF middle = view.rect().center();
        const auto distance = [&](const Square &square) {
            return (square.place.center() - middle).manhattanLength();
        };
        std::stable_sort(visible.begin(), visible.end(), [&](const Square &a, const Square &b) {
            return distance(a) < distance(b);
        });
        for (const Square &square : visible) {
            if (!tiles.contains(square.tile)) {
                tiles += square.tile;
            }
        }
    }
    provider.setVisible(tiles);
    outline.setVisible(tiles);
}

std::vector<MapGround::Square> MapGround::squares(const MapView &view)
{
    std::vector<Square> result;
    const QPointF origin = view.origin();
    const int count = 1 << view.zoom;
    const double side = Mercator::tileSize * view.scale;
    const auto index = [side](double pixel) { return static_cast<int>(std::floor(pixel / side)); };
    // Whole pixels, so that tiles meet without a seam.
    const auto corner = [&](int column, int row) {
        return QPointF(std::round(column * side), std::round(row * side)) - origin;
    };
    const int lastColumn = index(origin.x() + view.size.width() - 1);
    const int firstRow = std::max(0, index(origin.y()));
    const int lastRow = std::min(count - 1, index(origin.y() + view.size.height() - 1));
    for (int row = firstRow; row <= lastRow; ++row) {
        for (int column = index(origin.x()); column <= lastColumn; ++column) {
            result.push_back({{view.zoom, ((column % count) + count) % count, row},
                              {corner(column, row), corner(column + 1, row + 1)}});
        }
    }
    return result;
}

bool MapGround::paint(QPainter &painter, const MapView &view)
{
    outline.setDevicePixelRatio(painter.device()->devicePixelRatio());
    bool pictured = false;
    for (const Square &square : squares(view)) {
        pictured |= paintSquare(painter, square);
    }
    return pictured;
}

bool MapGround::paintSquare(QPainter &painter, const Square &square)
{
    const auto draw = [&](const QPixmap &picture, const QRectF &part) {
        painter.drawPixmap(square.place, picture, part);
        return true;
    };
    const QPixmap own = provider.tile(square.tile);
    if (!own.isNull()) {
        return draw(own, own.rect());
    }
    const QPixmap plain = outline.tile(square.tile);
    draw(plain, plain.rect());
    for (int levels = 1; levels <= std::min(coarsestAncestor, square.tile.zoom); ++levels) {
        const TileId ancestor = square.tile.ancestor(levels);
        const QPixmap coarse = provider.tile(ancestor);
        if (coarse.isNull()) {
            continue;
        }
        const int parts = 1 << levels;
        const QSizeF part = QSizeF(coarse.size()) / parts;
        const QPointF corner((square.tile.x % parts) * part.width(),
                             (square.tile.y % parts) * part.height());
        return draw(coarse, {corner, part});
    }
    return false;
}

QString MapGround::note(bool pictured) const
{
    if (!pictured) {
        // The bare outline is nobody's work but ours.
        return provider.isOffline() ? tr("Offline: outline only") : QString();
    }
    // The words are the deployment's; those of the built-in one have translations.
    static constexpr const char *builtIn = QT_TR_NOOP("(c) OpenStreetMap contributors");
    const QString text = provider.attribution();
    return text == QLatin1StringView(builtIn) ? tr(builtIn) : text;
}

void MapGround::paintNote(QPainter &painter, const MapView &view, bool pictured) const
{
    QString text = note(pictured);
    if (text.isEmpty()) {
        return;
    }
    text.replace("(c)"_L1, u"\u00a9"_s, Qt::CaseInsensitive);
    QFont font = painter.font();
    font.setBold(false);
    font.setPixelSize(creditsFontSize);
    const QFontMetricsF metrics(font);
    text = metrics.elidedText(text, Qt::ElideRight, view.size.width() * creditsWidth - 12);
    const double width = metrics.horizontalAdvance(text) + 12;
    const QRectF band(0, view.size.height() - metrics.height() - 6, width, metrics.height() + 6);
    painter.fillRect(band, QColor(255, 255, 255, 215));
    painter.setFont(font);
    painter.setPen(QColor(0x22, 0x26, 0x2a));
    painter.drawText(band, Qt::AlignCenter, text);
}

} // namespace velometer
