#include "ui/map/maptextobject.h"

#include <QFontMetricsF>
#include <QPainter>

namespace velometer {

namespace {

constexpr int fontSize = 16; // px
constexpr double padding = 8;
constexpr double radius = 8;
constexpr double distanceToEdge = 4;
constexpr double distanceToMark = 4;
/// Longer lines are broken, so that the box fits into a narrow view too.
constexpr double widest = 400;
constexpr int textFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWrapAnywhere;

double moved(double start, double length, double from, double to)
{
    return std::max(from, std::min(start, to - length));
}

} // namespace

MapTextObject::MapTextObject()
{
    font.setPixelSize(fontSize);
}

QRectF MapTextObject::boundingRect(const MapView &view) const
{
    const QPointF at = view.toScreen(world());
    QRectF free =
        view.rect().adjusted(distanceToEdge, distanceToEdge, -distanceToEdge, -distanceToEdge);
    const double room = std::clamp(free.width() - 2 * padding, 1.0, widest);
    const QSizeF lines =
        QFontMetricsF(font).boundingRect(QRectF(0, 0, room, 10'000), textFlags, text).size();
    const QSizeF size = QSizeF(std::ceil(lines.width()), std::ceil(lines.height())) +
                        QSizeF(2 * padding, 2 * padding);
    const QRectF nextTo = next(beside.translated(at), size, free, view.controls);
    if (!nextTo.isEmpty()) {
        return nextTo;
    }
    QRectF box({at.x() + offset.x() - padding, at.y() + offset.y() - size.height() / 2}, size);
    // What leaves the view takes its label along.
    free.translate(at.x() - std::clamp(at.x(), 0.0, view.size.width()),
                   at.y() - std::clamp(at.y(), 0.0, view.size.height()));
    box.moveLeft(moved(box.left(), box.width(), free.left(), free.right()));
    box.moveTop(moved(box.top(), box.height(), free.top(), free.bottom()));
    if (box.intersects(view.controls)) {
        const double end = view.controls.left() - distanceToEdge;
        box.moveLeft(moved(box.left(), box.width(), free.left(), end));
    }
    return box;
}

QRectF MapTextObject::next(const QRectF &mark, const QSizeF &size, const QRectF &free,
                           const QRectF &controls)
{
    const double middle = mark.center().x() - size.width() / 2;
    const double height = mark.center().y() - size.height() / 2;
    for (const QPointF corner : {QPointF(mark.right() + distanceToMark, height),
                                 QPointF(mark.left() - distanceToMark - size.width(), height),
                                 QPointF(middle, mark.bottom() + distanceToMark),
                                 QPointF(middle, mark.top() - distanceToMark - size.height())}) {
        const QRectF box(corner, size);
        if (!mark.isEmpty() && free.contains(box) && !box.intersects(controls)) {
            return box;
        }
    }
    return {};
}

void MapTextObject::paint(QPainter &painter, const MapView &view) const
{
    const QRectF box = boundingRect(view);
    painter.setPen(QPen(QColor(0, 0, 0, 90), 1));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(box, radius, radius);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(box.adjusted(padding, padding, -padding, -padding), textFlags, text);
}

} // namespace velometer
