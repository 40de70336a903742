#include "ui/frame/elidedlabel.h"

#include <QPainter>
#include <QStyle>

namespace velometer {

namespace {

constexpr int smallestPixelSize = 13;

} // namespace

ElidedLabel::ElidedLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const QRect room = contentsRect();
    QFont drawn = font();
    int size = drawn.pixelSize();
    while (size > smallestPixelSize &&
           QFontMetrics(drawn).horizontalAdvance(text()) > room.width()) {
        drawn.setPixelSize(--size);
    }
    painter.setFont(drawn);
    const QString line =
        QFontMetrics(drawn).elidedText(text(), Qt::ElideRight, room.width(), Qt::TextSingleLine);
    style()->drawItemText(&painter, room, static_cast<int>(alignment()) | Qt::TextSingleLine,
                          palette(), isEnabled(), line, foregroundRole());
}

} // namespace velometer
