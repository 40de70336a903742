#include "ui/details/wraplabel.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace velometer {

namespace {

constexpr int mostHeight = 100000; // px, more than any text that is shown

} // namespace

WrapLabel::WrapLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

int WrapLabel::textFlags(int width) const
{
    const QFontMetrics metrics = fontMetrics();
    const QStringList words = text().split(u' ');
    const bool wordsFit = std::all_of(words.begin(), words.end(), [&](const QString &word) {
        return metrics.horizontalAdvance(word) <= width;
    });
    return static_cast<int>(alignment()) | (wordsFit ? Qt::TextWordWrap : Qt::TextWrapAnywhere);
}

QSize WrapLabel::sizeHint() const
{
    ensurePolished();
    const QFontMetrics metrics = fontMetrics();
    // A pixel more than the text, or rounding may wrap its last letter.
    return {metrics.horizontalAdvance(text()) + 1, metrics.height()};
}

QSize WrapLabel::minimumSizeHint() const
{
    ensurePolished();
    return {0, fontMetrics().height()};
}

int WrapLabel::heightForWidth(int width) const
{
    ensurePolished();
    const QFontMetrics metrics = fontMetrics();
    return qMax(metrics.height(),
                metrics
                    .boundingRect(0, 0, width, mostHeight,
                                  textFlags(width) & ~Qt::AlignVertical_Mask, text())
                    .height());
}

void WrapLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), textFlags(contentsRect().width()), palette(),
                          isEnabled(), text(), foregroundRole());
}

} // namespace velometer
