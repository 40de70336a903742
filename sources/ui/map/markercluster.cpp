#include "ui/map/markercluster.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr double diameter = 46; // px, not less than a finger needs
constexpr double tipLength = 10;
constexpr QColor discColour(0x17, 0x1b, 0x1f);
constexpr QColor rimColour(0x27, 0xd3, 0xbf);

struct Cell
{
    qint64 x = 0;
    qint64 y = 0;
    bool operator==(const Cell &) const = default;
};

size_t qHash(const Cell &cell, size_t seed) noexcept
{
    return qHashMulti(seed, cell.x, cell.y);
}

bool withinReach(QPointF distance)
{
    return std::abs(distance.x()) < MarkerCluster::reach.width() &&
           std::abs(distance.y()) < MarkerCluster::reach.height();
}

QRectF discAt(QPointF tip)
{
    return {tip.x() - diameter / 2, tip.y() - tipLength - diameter, diameter, diameter};
}

/// Made once for each density of the screen: a view shows a hundred of them.
QPixmap picture(qreal ratio)
{
    const QString key = u"cluster@%1"_s.arg(ratio);
    QPixmap disc;
    if (QPixmapCache::find(key, &disc)) {
        return disc;
    }
    constexpr double halfTip = 9;
    constexpr double intoDisc = 3;
    const QSizeF size(diameter, diameter + tipLength);
    disc = QPixmap((size * ratio).toSize());
    disc.setDevicePixelRatio(ratio);
    disc.fill(Qt::transparent);
    QPainterPath round;
    round.addEllipse(QRectF(1, 1, diameter - 2, diameter - 2));
    QPainterPath tip(QPointF(size.width() / 2, size.height()));
    tip.lineTo(size.width() / 2 - halfTip, diameter - intoDisc);
    tip.lineTo(size.width() / 2 + halfTip, diameter - intoDisc);
    tip.closeSubpath();
    QPainter painter(&disc);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(rimColour, 2));
    painter.setBrush(discColour);
    painter.drawPath(round.united(tip));
    painter.end();
    QPixmapCache::insert(key, disc);
    return disc;
}

} // namespace

MarkerCluster::MarkerCluster(std::vector<Marker *> members)
    : markers(std::move(members))
{
    setCoordinate(markers.front()->coordinate());
}

std::vector<std::vector<Marker *>> MarkerCluster::grouped(const std::vector<Marker *> &markers,
                                                          int zoom)
{
    const double worldSize = Mercator::worldSize(zoom);
    std::vector<std::vector<Marker *>> groups;
    std::vector<QPointF> places;
    // Two places in one cell would be within reach of each other: a cell has one group at most.
    QHash<Cell, size_t> cells;
    const auto groupNear = [&](QPointF place, const Cell &cell) -> std::optional<size_t> {
        for (qint64 y = cell.y - 1; y <= cell.y + 1; ++y) {
            for (qint64 x = cell.x - 1; x <= cell.x + 1; ++x) {
                const auto found = cells.constFind({x, y});
                if (found != cells.cend() && withinReach(places[*found] - place)) {
                    return *found;
                }
            }
        }
        return std::nullopt;
    };
    for (Marker *marker : markers) {
        const QPointF place = marker->world() * worldSize;
        const Cell cell{static_cast<qint64>(place.x() / reach.width()),
                        static_cast<qint64>(place.y() / reach.height())};
        if (const auto group = groupNear(place, cell)) {
            groups[*group].push_back(marker);
            continue;
        }
        cells.insert(cell, groups.size());
        groups.push_back({marker});
        places.push_back(place);
    }
    return groups;
}

std::optional<int> MarkerCluster::opensAt(int zoom) const
{
    for (int level = zoom + 1; level <= Mercator::maximumZoom; ++level) {
        const double worldSize = Mercator::worldSize(level);
        for (const Marker *marker : markers) {
            if (!withinReach((marker->world() - world()) * worldSize)) {
                return level;
            }
        }
    }
    return std::nullopt;
}

QPointF MarkerCluster::middle() const
{
    QPointF low = world();
    QPointF high = world();
    for (const Marker *marker : markers) {
        const QPointF place = marker->world();
        low = {std::min(low.x(), place.x()), std::min(low.y(), place.y())};
        high = {std::max(high.x(), place.x()), std::max(high.y(), place.y())};
    }
    return (low + high) / 2;
}

QRectF MarkerCluster::boundingRect(const MapView &view) const
{
    return discAt(view.toScreen(world())).adjusted(0, 0, 0, tipLength);
}

void MarkerCluster::paint(QPainter &painter, const MapView &view) const
{
    const QPointF tip = view.toScreen(world());
    painter.drawPixmap(discAt(tip).topLeft(), picture(painter.device()->devicePixelRatio()));

    QString text = caption;
    if (text.isEmpty()) {
        text = QString::number(markers.size());
    }
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(text.size() <= 3 ? 17 : 13);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(discAt(tip), Qt::AlignCenter, text);
}

} // namespace velometer
