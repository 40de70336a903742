#include "ui/frame/figurecards.h"

#include "ui/theme/theme.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

// px
constexpr int cardGap = 8;
constexpr int cardPadding = 10;
constexpr int captionPixels = 13;
constexpr int smallestCaption = 10; // where texts are larger, about 13 again
constexpr int largestFigure = 28;
constexpr int smallestFigure = 14;
constexpr double figureCardRadius = 14;
constexpr double givenFigureCardRadius = 8;

QColor colourOfFigure(FigureCards::Kind kind)
{
    const Theme::Colours &colours = Theme::colours();
    switch (kind) {
    case FigureCards::Kind::Download: return colours.download;
    case FigureCards::Kind::Upload: return colours.upload;
    case FigureCards::Kind::Rtt: break;
    }
    return colours.rtt;
}

} // namespace

FigureCards::FigureCards(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QString FigureCards::caption(Kind kind)
{
    switch (kind) {
    case Kind::Download: return tr("Download");
    case Kind::Upload: return tr("Upload");
    case Kind::Rtt: break;
    }
    return tr("RTT");
}

void FigureCards::setFigures(const QList<Figure> &figures)
{
    shown = figures;
    describe();
    updateGeometry();
    update();
}

void FigureCards::describe()
{
    QStringList texts;
    for (const Figure &each : std::as_const(shown)) {
        texts.append(
            u"%1 %2 %3 %4"_s.arg(caption(each.kind), each.value, each.unit, each.note).trimmed());
    }
    setAccessibleName(texts.join(u", "_s));
}

void FigureCards::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        describe();
    } else if (event->type() == QEvent::StyleChange) {
        updateGeometry();
    }
}

QFont FigureCards::textFont(int designed, bool bold) const
{
    QFont result = font();
    result.setPixelSize(Theme::pixels(designed));
    result.setBold(bold);
    return result;
}

QSize FigureCards::sizeHint() const
{
    const bool noted = std::any_of(shown.begin(), shown.end(),
                                   [](const Figure &each) { return !each.note.isEmpty(); });
    const int small = QFontMetrics(textFont(captionPixels, false)).height();
    const int large = QFontMetrics(textFont(largestFigure, true)).height();
    return {320, 2 * cardPadding + (noted ? 3 : 2) * small + large};
}

/// The size in which each number fits into @p room.
int FigureCards::figurePixels(int room) const
{
    int pixels = largestFigure;
    const auto isTooWide = [&](const Figure &each) {
        return QFontMetrics(textFont(pixels, true)).horizontalAdvance(each.value) > room;
    };
    while (pixels > smallestFigure && std::any_of(shown.begin(), shown.end(), isTooWide)) {
        --pixels;
    }
    return pixels;
}

/// The same for what stands around the number.
int FigureCards::smallPixels(int room) const
{
    int pixels = captionPixels;
    const auto isTooWide = [&](const Figure &each) {
        const QFontMetrics metrics(textFont(pixels, false));
        return metrics.horizontalAdvance(caption(each.kind)) > room ||
               metrics.horizontalAdvance(each.note) > room;
    };
    while (pixels > smallestCaption && std::any_of(shown.begin(), shown.end(), isTooWide)) {
        --pixels;
    }
    return pixels;
}

void FigureCards::paintEvent(QPaintEvent * /*event*/)
{
    if (shown.isEmpty()) {
        return;
    }
    const Theme::Colours &colours = Theme::colours();
    const auto count = static_cast<int>(shown.size());
    const int wide = (width() - (count - 1) * cardGap) / count;
    const int room = wide - 2 * cardPadding;
    const QFont small = textFont(smallPixels(room), false);
    const QFontMetrics metrics(small);
    const QFont large = textFont(figurePixels(room), true);
    const double radius = Theme::isGiven() ? givenFigureCardRadius : figureCardRadius;
    const int top = cardPadding + metrics.height();
    const int figureHeight = QFontMetrics(textFont(largestFigure, true)).height();

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    int x = 0;
    for (const Figure &each : std::as_const(shown)) {
        painter.setPen(colours.line);
        painter.setBrush(colours.surface);
        painter.drawRoundedRect(QRectF(x, 0, wide, height()).adjusted(0.5, 0.5, -0.5, -0.5), radius,
                                radius);
        const int left = x + cardPadding;
        const auto line = [&](int y, const QString &text) {
            painter.drawText(QRect(left, y, room, metrics.height()),
                             Qt::AlignLeft | Qt::AlignVCenter,
                             metrics.elidedText(text, Qt::ElideRight, room));
        };
        painter.setFont(small);
        painter.setPen(colours.quiet);
        line(cardPadding, caption(each.kind));
        line(top + figureHeight, each.unit);
        line(top + figureHeight + metrics.height(), each.note);
        painter.setFont(large);
        painter.setPen(colourOfFigure(each.kind));
        painter.drawText(QRect(left, top, room, figureHeight), Qt::AlignLeft | Qt::AlignVCenter,
                         each.value);
        x += wide + cardGap;
    }
}

} // namespace velometer
