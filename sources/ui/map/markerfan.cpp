#include "ui/map/markerfan.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr double fanRadius = 108; // px
constexpr double fanStep = 34;    // degrees, a marker's width; upwards: the label opens below
constexpr double fanLift = 14;    // px

} // namespace

void MarkerFan::open(MarkerCluster *on)
{
    const size_t count = on->members().size();
    const size_t next = of == on ? first + markersAtOnce : 0;
    close();
    if (next >= count) {
        return;
    }
    of = on;
    first = next;
    if (count > markersAtOnce) {
        of->setCaption(u"%1\u2013%2"_s.arg(first + 1).arg(std::min(count, first + markersAtOnce)));
    }
}

void MarkerFan::close()
{
    if (of) {
        of->setCaption({});
    }
    of = nullptr;
}

std::vector<std::pair<Marker *, QPointF>> MarkerFan::markers(const MapView &view) const
{
    std::vector<std::pair<Marker *, QPointF>> result;
    if (!of) {
        return result;
    }
    const auto &members = of->members();
    const size_t last = std::min(members.size(), first + markersAtOnce);
    const double steps = static_cast<double>(last - first) - 1;
    const QPointF middle = view.toScreen(of->world()) - QPointF(0, fanLift);
    for (size_t i = first; i < last; ++i) {
        const double angle =
            Mercator::radians(90 + fanStep * (steps / 2 - static_cast<double>(i - first)));
        result.emplace_back(members[i],
                            middle + fanRadius * QPointF(std::cos(angle), -std::sin(angle)));
    }
    return result;
}

QRectF MarkerFan::boundingRect(const MapView &view) const
{
    QRectF area = of ? of->boundingRect(view) : QRectF();
    for (const auto &[marker, tip] : markers(view)) {
        area |= Marker::rectAt(tip);
    }
    return area;
}

void MarkerFan::paint(QPainter &painter, const MapView &view) const
{
    if (!of) {
        return;
    }
    const QPointF disc = of->boundingRect(view).center();
    const auto fanned = markers(view);
    painter.setPen(QPen(QColor(0x17, 0x1b, 0x1f), 2));
    for (const auto &[marker, tip] : fanned) {
        painter.drawLine(disc, tip);
    }
    for (const auto &[marker, tip] : fanned) {
        marker->paintAt(painter, tip);
    }
    of->paint(painter, view);
}

} // namespace velometer
