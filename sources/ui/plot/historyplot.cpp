#include "ui/plot/historyplot.h"

#include "ui/plot/throughputplot.h"
#include "ui/theme/connectionsign.h"
#include "ui/theme/theme.h"
#include "utils/translations.h"

#include <QDateTime>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qint64 hourMs = 3'600'000;
constexpr int hoursADay = 24;
constexpr int historyTextPixels = 13;
constexpr int titlePixels = 15;
constexpr double historyMargin = 12; // px
constexpr double tickRoom = 72;
constexpr double markRadius = 3.5;
constexpr double plotRadius = 14;
constexpr double givenPlotRadius = 8;
constexpr double signGap = 8;
constexpr int axisLines = 4;

/// A shape for each kind, so that curves differ without their colours.
QPainterPath shapeOf(ConnectionKind kind, QPointF at)
{
    QPainterPath path;
    const double r = markRadius;
    switch (kind) {
    case ConnectionKind::Lte: path.addEllipse(at, r, r); break;
    case ConnectionKind::Umts: path.addRect(QRectF(at.x() - r, at.y() - r, 2 * r, 2 * r)); break;
    case ConnectionKind::Nr:
        path.addPolygon(QPolygonF{{at + QPointF(0, -r - 1), at + QPointF(r + 1, 0),
                                   at + QPointF(0, r + 1), at + QPointF(-r - 1, 0)}});
        path.closeSubpath();
        break;
    case ConnectionKind::Wlan:
        path.addPolygon(
            QPolygonF{{at + QPointF(0, -r - 1), at + QPointF(r + 1, r), at + QPointF(-r - 1, r)}});
        path.closeSubpath();
        break;
    case ConnectionKind::Gsm:
        path.addPolygon(
            QPolygonF{{at + QPointF(0, r + 1), at + QPointF(r + 1, -r), at + QPointF(-r - 1, -r)}});
        path.closeSubpath();
        break;
    case ConnectionKind::Other: path.addRect(QRectF(at.x() - r, at.y() - r / 2, 2 * r, r)); break;
    }
    return path;
}

} // namespace

HistoryPlot::HistoryPlot(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize HistoryPlot::sizeHint() const
{
    return {320, 200};
}

void HistoryPlot::setCurves(History::Figure shown, const QString &text, History::Range time,
                            const QList<Curve> &all)
{
    figure = shown;
    title = text;
    range = time;
    curves = all;
    describe();
    update();
}

// Who does not see the curves hears between what they lie.
void HistoryPlot::describe()
{
    const QLocale locale(Translations::language());
    QStringList said{title};
    for (const Curve &curve : std::as_const(curves)) {
        double least = std::numeric_limits<double>::max();
        double greatest = 0;
        for (const History::Mark &mark : curve.marks) {
            least = std::min(least, mark.minimum);
            greatest = std::max(greatest, mark.maximum);
        }
        const bool isRtt = figure == History::Figure::Rtt;
        const ThroughputPlot::Axis axis = ThroughputPlot::axisFor(greatest);
        const auto number = [&](double value) {
            return locale.toString(isRtt ? value : value / axis.scale, 'g', 3);
        };
        const QString name = curve.kind == ConnectionKind::Wlan ? u"WLAN"_s
                             : curve.kind == ConnectionKind::Other
                                 ? tr("other connections")
                                 : ConnectionKinds::sign(curve.kind);
        said.append(tr("%1 from %2 to %3 %4")
                        .arg(name, number(least), number(greatest), isRtt ? u"ms"_s : axis.unit));
    }
    setAccessibleName(said.join(u", "_s));
}

double HistoryPlot::roundStep(double highest)
{
    const double least = std::max(highest, 1.0) / axisLines;
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least) {
            return factor * power;
        }
    }
    return 10 * power;
}

QList<HistoryPlot::Tick> HistoryPlot::ticks(History::Range range, int most)
{
    const QLocale locale(Translations::language());
    const qint64 length = range.to - range.from;
    const QDateTime start = QDateTime::fromMSecsSinceEpoch(range.from);
    QList<Tick> found;
    const auto add = [&](const QDateTime &moment, const QString &format) {
        const qint64 time = moment.toMSecsSinceEpoch();
        if (time >= range.from && time < range.to) {
            found.append({time, locale.toString(moment, format)});
        }
        return time < range.to;
    };
    for (const qint64 hours : {1, 2, 3, 6, 12}) {
        if (length / (hours * hourMs) <= most) {
            QDateTime moment(start.date(),
                             QTime(static_cast<int>(start.time().hour() / hours * hours), 0));
            while (add(moment, u"hh:mm"_s)) {
                moment = moment.addSecs(hours * 3600);
            }
            return found;
        }
    }
    const QString dayFormat = Translations::language() == "de"_L1 ? u"d. MMM"_s : u"d MMM"_s;
    for (const qint64 days : {1, 2, 4, 7, 14}) {
        if (length / (days * hoursADay * hourMs) <= most) {
            QDateTime moment(start.date(), QTime(0, 0));
            while (add(moment, dayFormat)) {
                moment = moment.addDays(days);
            }
            return found;
        }
    }
    constexpr int daysAMonth = 30;
    for (int months = 1;; months *= 2) {
        if (length / (static_cast<qint64>(months) * daysAMonth * hoursADay * hourMs) <= most) {
            QDateTime moment(QDate(start.date().year(), start.date().month(), 1), QTime(0, 0));
            while (add(moment, u"MMM yy"_s)) {
                moment = moment.addMonths(months);
            }
            return found;
        }
    }
}

void HistoryPlot::paintEvent(QPaintEvent * /*event*/)
{
    const Theme::Colours &colours = Theme::colours();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = Theme::isGiven() ? givenPlotRadius : plotRadius;
    painter.setPen(colours.line);
    painter.setBrush(colours.surface);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);

    double highest = 0;
    for (const Curve &curve : std::as_const(curves)) {
        for (const History::Mark &mark : curve.marks) {
            highest = std::max(highest, mark.maximum);
        }
    }
    double step = 0;
    double scale = 1;
    QString unit = u"ms"_s;
    if (figure == History::Figure::Rtt) {
        step = roundStep(highest);
    } else {
        const ThroughputPlot::Axis axis = ThroughputPlot::axisFor(highest);
        step = axis.step;
        scale = axis.scale;
        unit = axis.unit;
    }
    const int lines = std::max(1, static_cast<int>(std::ceil(highest / step)));

    QFont small = font();
    small.setPixelSize(Theme::pixels(historyTextPixels));
    QFont large = font();
    large.setPixelSize(Theme::pixels(titlePixels));
    large.setBold(true);
    const QFontMetricsF metrics(small);
    const QFontMetricsF titleMetrics(large);
    const double left = historyMargin + metrics.horizontalAdvance(u"0000"_s) + 4;
    const double top = historyMargin + titleMetrics.height() + metrics.height();
    const double signRoom = signGap + metrics.horizontalAdvance(u"5G"_s);
    const QRectF area(left, top, width() - left - historyMargin - signRoom,
                      height() - top - historyMargin - metrics.height() - 4);
    if (area.height() < metrics.height() || area.width() < tickRoom) {
        return;
    }
    painter.setFont(large);
    painter.setPen(colours.text);
    painter.drawText(QPointF(historyMargin, historyMargin + titleMetrics.ascent()), title);
    painter.setFont(small);
    painter.setPen(colours.quiet);
    painter.drawText(QRectF(0, historyMargin, width() - historyMargin, titleMetrics.height()),
                     Qt::AlignRight | Qt::AlignVCenter, unit);
    const QLocale locale(Translations::language());
    for (int line = 0; line <= lines; ++line) {
        const double y = area.bottom() - area.height() * line / lines;
        painter.setPen(colours.line);
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
        painter.setPen(colours.quiet);
        painter.drawText(QRectF(0, y - metrics.height() / 2, left - 6, metrics.height()),
                         Qt::AlignRight | Qt::AlignVCenter,
                         locale.toString(step * line / scale, 'g', 4));
    }
    const auto xOf = [&](qint64 time) {
        return area.left() + area.width() * static_cast<double>(time - range.from) /
                                 static_cast<double>(range.to - range.from);
    };
    for (const Tick &tick : ticks(range, static_cast<int>(area.width() / tickRoom))) {
        const double x = xOf(tick.time);
        painter.setPen(colours.line);
        painter.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + 4));
        painter.setPen(colours.quiet);
        painter.drawText(QRectF(x - tickRoom / 2, area.bottom() + 4, tickRoom, metrics.height()),
                         Qt::AlignCenter, tick.label);
    }

    QList<std::pair<double, ConnectionKind>> signs;
    for (const Curve &curve : std::as_const(curves)) {
        const QColor colour = ConnectionSign::lineColour(curve.kind, colours.surface);
        const auto yOf = [&](double value) {
            return area.bottom() - area.height() * value / (step * lines);
        };
        QColor spread = colour;
        spread.setAlphaF(0.35F);
        const History::Mark *before = nullptr;
        for (const History::Mark &mark : curve.marks) {
            const QPointF at(xOf(mark.time), yOf(mark.median));
            painter.setPen(QPen(spread, 3, Qt::SolidLine, Qt::FlatCap));
            painter.drawLine(QPointF(at.x(), yOf(mark.minimum)),
                             QPointF(at.x(), yOf(mark.maximum)));
            if (before && mark.slot == before->slot + 1) {
                painter.setPen(QPen(colour, 2));
                painter.drawLine(QPointF(xOf(before->time), yOf(before->median)), at);
            }
            before = &mark;
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        for (const History::Mark &mark : curve.marks) {
            painter.drawPath(shapeOf(curve.kind, {xOf(mark.time), yOf(mark.median)}));
        }
        if (!curve.marks.empty()) {
            signs.append({yOf(curve.marks.back().median), curve.kind});
        }
    }
    // In a column at the end of the curves, none over another.
    std::sort(signs.begin(), signs.end(),
              [](const auto &a, const auto &b) { return a.first > b.first; });
    double free = area.bottom() + metrics.height() / 2;
    for (const auto &[y, kind] : std::as_const(signs)) {
        const double bottom = std::min(y + metrics.height() / 2, free);
        painter.setPen(ConnectionSign::lineColour(kind, colours.surface));
        painter.drawText(
            QRectF(area.right() + signGap, bottom - metrics.height(), signRoom, metrics.height()),
            Qt::AlignLeft | Qt::AlignVCenter, ConnectionKinds::sign(kind));
        free = bottom - metrics.height();
    }
}

} // namespace velometer
