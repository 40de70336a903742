#include "ui/plot/throughputplot.h"

#include "ui/theme/theme.h"
#include "utils/translations.h"

#include <QEvent>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr double bitsPerSecondFactor = 80.0; ///< bytes in 100 ms to bit/s
constexpr int smoothing = 10;                ///< intervals
constexpr int intervalsPerSecond = 10;
constexpr qsizetype maxIntervals = 10'000;
/// A measurement's planned length: the axis does not move while it runs.
constexpr qsizetype plannedIntervals = 70;
constexpr int maxLines = 4;
constexpr double margin = 10;
constexpr double gap = 8; ///< between the two halves
constexpr int textPixels = 13;
constexpr double givenRadius = 8;
constexpr double cardRadius = 14;

} // namespace

ThroughputPlot::ThroughputPlot(QWidget *parent)
    : QWidget(parent)
{
    describe();
}

void ThroughputPlot::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        describe();
    }
}

// Who does not see the curves hears what they come to.
void ThroughputPlot::describe()
{
    QStringList parts{tr("Throughput over time")};
    for (const auto &[values, name] :
         {std::pair(&download, tr("Download")), std::pair(&upload, tr("Upload"))}) {
        if (values->isEmpty()) {
            continue;
        }
        const QList<double> rates = smoothed(*values);
        const double highest = *std::max_element(rates.begin(), rates.end());
        const double bytes = std::accumulate(values->begin(), values->end(), 0.0);
        const double mean = bytes / static_cast<double>(values->size()) * bitsPerSecondFactor;
        const Axis axis = axisFor(highest);
        const auto number = [scale = axis.scale](double rate) {
            return QLocale(Translations::language()).toString(rate / scale, 'g', 3);
        };
        parts.append(tr("%1 on average %2, at most %3 %4")
                         .arg(name, number(mean), number(highest), axis.unit));
    }
    if (const QString known = delays.description(); !known.isEmpty()) {
        parts.append(known);
    }
    setAccessibleName(parts.join(u", "_s));
}

QSize ThroughputPlot::sizeHint() const
{
    return {320, 130};
}

QList<qint64> *ThroughputPlot::valuesOf(int resulttype)
{
    if (resulttype == Result::Download) {
        return &download;
    }
    return resulttype == Result::Upload ? &upload : nullptr;
}

void ThroughputPlot::clear()
{
    download.clear();
    upload.clear();
    delays.clear();
    describe();
    update();
}

void ThroughputPlot::addValue(int resulttype, int interval, qint64 bytes)
{
    keep(resulttype, interval, bytes);
    describe();
    update();
}

void ThroughputPlot::keep(int resulttype, int interval, qint64 bytes)
{
    QList<qint64> *values = valuesOf(resulttype);
    if (!values || interval < 0 || interval >= maxIntervals) {
        return;
    }
    if (values->size() <= interval) {
        values->resize(interval + 1);
    }
    (*values)[interval] = std::max<qint64>(0, bytes);
}

void ThroughputPlot::setValues(int resulttype, const IntervalTable &bytes)
{
    if (QList<qint64> *values = valuesOf(resulttype)) {
        values->clear();
    }
    for (auto each = bytes.begin(); each != bytes.end(); ++each) {
        keep(resulttype, each.key(), each.value());
    }
    describe();
    update();
}

void ThroughputPlot::addDelay(int resulttype, qint64 at, qint64 delay)
{
    delays.add(resulttype, at, delay);
    describe();
    update();
}

void ThroughputPlot::setDelays(int resulttype, const LoadDelays &all)
{
    delays.set(resulttype, all);
    describe();
    update();
}

QList<double> ThroughputPlot::smoothed(const QList<qint64> &bytes)
{
    QList<double> rates;
    rates.reserve(bytes.size());
    double sum = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        sum += static_cast<double>(bytes[i]);
        if (i >= smoothing) {
            sum -= static_cast<double>(bytes[i - smoothing]);
        }
        const auto count = static_cast<double>(std::min<qsizetype>(i + 1, smoothing));
        rates.append(sum / count * bitsPerSecondFactor);
    }
    return rates;
}

ThroughputPlot::Axis ThroughputPlot::axisFor(double highest)
{
    Axis axis{};
    if (highest < 1e6) {
        axis.scale = 1e3;
        axis.unit = u"kbit/s"_s;
    } else if (highest < 1e9) {
        axis.scale = 1e6;
        axis.unit = u"Mbit/s"_s;
    } else {
        axis.scale = 1e9;
        axis.unit = u"Gbit/s"_s;
    }
    // Steps of 1, 2 or 5 times a power of ten.
    const double least = std::max(highest / axis.scale, 1.0) / maxLines;
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    const std::array<double, 4> candidates{power, 2 * power, 5 * power, 10 * power};
    const auto *step = std::find_if(candidates.begin(), candidates.end() - 1,
                                    [least](double candidate) { return candidate >= least; });
    axis.step = *step * axis.scale;
    axis.steps = std::max(1, static_cast<int>(std::ceil(highest / axis.step)));
    return axis;
}

void ThroughputPlot::drawCurve(QPainter &painter, const QRectF &area, const QList<double> &rates,
                               double top, const QColor &colour) const
{
    if (rates.isEmpty()) {
        return;
    }
    const auto planned = static_cast<double>(std::max(plannedIntervals, rates.size()));
    QPainterPath path(area.bottomLeft());
    for (qsizetype i = 0; i < rates.size(); ++i) {
        path.lineTo(area.left() + static_cast<double>(i + 1) / planned * area.width(),
                    area.bottom() - rates[i] / top * area.height());
    }
    painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    QColor under = colour;
    under.setAlphaF(0.15F);
    path.lineTo(path.currentPosition().x(), area.bottom());
    painter.fillPath(path, under);
}

void ThroughputPlot::paintEvent(QPaintEvent *)
{
    if (isEmpty()) {
        return;
    }
    const Theme::Colours &colours = onPaper ? Theme::paper() : Theme::colours();

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = painter.font();
    font.setPixelSize(Theme::pixels(textPixels));
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    painter.setPen(colours.line);
    painter.setBrush(colours.surface);
    const double radius = Theme::isGiven() ? givenRadius : cardRadius;
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);

    const QList<double> downloadRates = smoothed(download);
    const QList<double> uploadRates = smoothed(upload);
    double highest = 0;
    for (const auto *rates : {&downloadRates, &uploadRates}) {
        for (const double rate : *rates) {
            highest = std::max(highest, rate);
        }
    }
    const Axis axis = axisFor(highest);
    const double top = axis.step * axis.steps;

    const double left = margin + metrics.horizontalAdvance(u"0000"_s) + 4;
    const double head = 1.6 * metrics.height(); // the unit stands above the highest line's number
    const QRectF area(left, margin + head, width() - left - margin,
                      height() - 2 * margin - head - metrics.height());
    if (area.height() < metrics.height()) {
        return;
    }
    painter.setPen(colours.quiet);
    painter.drawText(QPointF(margin, margin + metrics.ascent() - 2), axis.unit);
    if (!delays.isEmpty()) {
        painter.setPen(colours.rtt);
        painter.drawText(QRectF(left, margin - 2, area.width(), metrics.height()), Qt::AlignRight,
                         delays.scaleText());
    }
    for (int line = 0; line <= axis.steps; ++line) {
        const double y = area.bottom() - area.height() * line / axis.steps;
        painter.setPen(colours.line);
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
        painter.setPen(colours.quiet);
        painter.drawText(
            QRectF(0, y - metrics.height() / 2, left - 6, metrics.height()),
            Qt::AlignRight | Qt::AlignVCenter,
            QLocale(Translations::language()).toString(axis.step * line / axis.scale, 'g', 4));
    }

    const double half = (area.width() - gap) / 2;
    const struct
    {
        const QList<double> &rates;
        QColor colour;
        QString name;
        double left;
        Result::Type type;
    } phases[] = {
        {downloadRates, colours.download, tr("Download"), area.left(), Result::Download},
        {uploadRates, colours.upload, tr("Upload"), area.left() + half + gap, Result::Upload}};
    for (const auto &phase : phases) {
        const QRectF part(phase.left, area.top(), half, area.height());
        drawCurve(painter, part, phase.rates, top, phase.colour);
        const auto seconds = std::max(plannedIntervals, phase.rates.size()) / intervalsPerSecond;
        delays.draw(painter, phase.type, part, static_cast<double>(seconds), colours.rtt);
        painter.setPen(phase.colour);
        painter.drawText(QRectF(part.left(), part.bottom() + 2, half, metrics.height() + 2),
                         Qt::AlignCenter, tr("%1, %2 s").arg(phase.name).arg(seconds));
    }
}

} // namespace velometer
