#include "ui/pages/resultgroupheader.h"

#include "ui/frame/spokenrole.h"
#include "ui/theme/theme.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include <QDateTime>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int headingHeight = 46; // px: a finger's, with the space between two cards
constexpr int closedCardHeight = 56;
constexpr int headingPixels = 14;
constexpr int chevronPixels = 16;
constexpr int unitGap = 8;
constexpr double closedRadius = 14;
constexpr double givenClosedRadius = 10;

int scaled(int designed)
{
    return std::max(designed, Theme::pixels(designed));
}

} // namespace

ResultGroupHeader::ResultGroupHeader(QWidget *parent)
    : ListEntry(parent)
{
    SpokenRole::give(this, QAccessible::ListItem);
}

int ResultGroupHeader::heightOf(bool open)
{
    return scaled(headingHeight) + (open ? 0 : scaled(closedCardHeight));
}

QString ResultGroupHeader::dayText(const QDate &day, const QDate &today)
{
    if (!day.isValid()) {
        return tr("Unknown day");
    }
    if (day == today) {
        return tr("Today");
    }
    if (day == today.addDays(-1)) {
        return tr("Yesterday");
    }
    const QLocale locale(Translations::language());
    return u"%1 %2"_s.arg(locale.toString(day, u"ddd"_s), day.toString(Qt::ISODate));
}

void ResultGroupHeader::setGroup(const ResultListing::Group &group,
                                 const ResultListing::Medians &figures, ResultListing::Order order)
{
    count = std::ssize(group.rows);
    open = group.open;
    closable = group.closable;
    medians = figures;
    switch (order) {
    case ResultListing::Order::Newest:
        title = tr("%1 · Series %2")
                    .arg(dayText(group.day,
                                 QDateTime::fromMSecsSinceEpoch(Utils::getTimeInMs()).date()))
                    .arg(group.series);
        break;
    case ResultListing::Order::Download: title = tr("Fastest download first"); break;
    case ResultListing::Order::Upload: title = tr("Fastest upload first"); break;
    case ResultListing::Order::Rtt: title = tr("Shortest RTT first"); break;
    }
    setAccessibleName(u"%1, %2"_s.arg(title, tr("%n test(s)", nullptr, static_cast<int>(count))));
    setAccessibleDescription(!closable ? QString() : open ? tr("open") : tr("closed"));
    SpokenRole::setState(
        this, {.selected = {}, .expanded = closable ? std::optional(open) : std::nullopt});
    update();
}

void ResultGroupHeader::paintEvent(QPaintEvent * /*event*/)
{
    const Theme::Colours &colours = Theme::colours();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect heading(0, 0, width(), scaled(headingHeight));
    if (isPressed() && closable) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colours.raised);
        painter.drawRoundedRect(heading, ResultFigures::margin, ResultFigures::margin);
    }
    QFont textFont = font();
    textFont.setPixelSize(Theme::pixels(headingPixels));
    painter.setFont(textFont);
    const QFontMetrics metrics(textFont);
    QRect text = heading.adjusted(2, 0, -2, 0);
    painter.setPen(colours.quiet);
    if (closable) {
        const QRect chevron(text.right() - chevronPixels, text.center().y() - chevronPixels / 2,
                            chevronPixels, chevronPixels);
        Theme::icon(open ? u"combo_arrow"_s : u"next"_s, colours.quiet).paint(&painter, chevron);
        text.setRight(chevron.left() - unitGap);
    }
    const QString unit = u"kBit/s"_s;
    painter.drawText(text, Qt::AlignRight | Qt::AlignVCenter, unit);
    text.setRight(text.right() - metrics.horizontalAdvance(unit) - unitGap);
    const QString number = tr("%n test(s)", nullptr, static_cast<int>(count));
    painter.setPen(colours.text);
    const QString shown = count > 1 ? u"%1 · %2"_s.arg(title, number) : title;
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                     metrics.elidedText(shown, Qt::ElideRight, text.width()));
    if (!open) {
        paintFigures(painter, QRect(0, heading.height(), width(), height() - heading.height()));
    }
    if (hasFocus() && property("keys").toBool()) {
        painter.setPen(QPen(colours.accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), ResultFigures::margin,
                                ResultFigures::margin);
    }
}

void ResultGroupHeader::paintFigures(QPainter &painter, const QRect &card) const
{
    const Theme::Colours &colours = Theme::paper();
    const double radius = Theme::isGiven() ? givenClosedRadius : closedRadius;
    painter.setPen(colours.line);
    painter.setBrush(isPressed() ? colours.raised : colours.surface);
    painter.drawRoundedRect(QRectF(card).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    QFont textFont = font();
    textFont.setPixelSize(Theme::pixels(headingPixels));
    painter.setFont(textFont);
    painter.setPen(colours.quiet);
    const QRect line = card.adjusted(0, 8, 0, -8);
    painter.drawText(line.adjusted(columns.left, 0, -ResultFigures::margin, 0),
                     Qt::AlignLeft | Qt::AlignTop, tr("Median"));
    textFont.setPixelSize(columns.pixels);
    textFont.setBold(true);
    painter.setFont(textFont);
    const struct
    {
        QString icon;
        QColor colour;
        QString text;
    } figures[] = {
        {u"download"_s, colours.download, ResultFigures::rate(medians.download)},
        {u"upload"_s, colours.upload, ResultFigures::rate(medians.upload)},
        {u"rtt"_s, colours.rtt, ResultFigures::roundTrip(medians.rtt)},
    };
    const int high = QFontMetrics(textFont).height();
    int x = columns.left;
    for (size_t column = 0; column < std::size(figures); ++column) {
        const auto &each = figures[column];
        const QRect icon(x, line.bottom() - (high + ResultFigures::iconPixels) / 2,
                         ResultFigures::iconPixels, ResultFigures::iconPixels);
        Theme::icon(each.icon, each.colour).paint(&painter, icon);
        painter.setPen(each.colour);
        const int wide = columns.widths.at(column);
        painter.drawText(
            QRect(icon.right() + 1 + ResultFigures::iconGap, line.bottom() - high, wide, high),
            Qt::AlignLeft | Qt::AlignVCenter, each.text);
        x += wide;
    }
}

} // namespace velometer
