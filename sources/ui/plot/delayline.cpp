#include "ui/plot/delayline.h"

#include "data/result.h"
#include "utils/translations.h"

#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr double nsPerMs = 1e6;
constexpr double nsPerSecond = 1e9;
/// Far more than a phase has; the file may come from anywhere.
constexpr qsizetype mostSamples = 1'000;
constexpr qint64 latestNs = 1'000'000'000'000;
constexpr qint64 longestNs = 10'000'000'000;
constexpr double width = 1.2;
constexpr double pointRadius = 1.6;

QString number(double ms)
{
    return QLocale(Translations::language()).toString(ms, 'f', 0);
}

} // namespace

void DelayLine::clear()
{
    download.clear();
    upload.clear();
}

QList<DelayLine::Sample> *DelayLine::samplesOf(int resulttype)
{
    if (resulttype == Result::Download) {
        return &download;
    }
    return resulttype == Result::Upload ? &upload : nullptr;
}

void DelayLine::add(int resulttype, qint64 at, std::optional<qint64> delay)
{
    QList<Sample> *samples = samplesOf(resulttype);
    if (!samples || samples->size() >= mostSamples || at < 0 || at > latestNs ||
        (delay && (*delay <= 0 || *delay > longestNs))) {
        return;
    }
    const auto place =
        std::upper_bound(samples->begin(), samples->end(), at,
                         [](qint64 moment, const Sample &each) { return moment < each.at; });
    samples->insert(place, {at, delay});
}

void DelayLine::set(int resulttype, const LoadDelays &delays)
{
    if (QList<Sample> *samples = samplesOf(resulttype)) {
        samples->clear();
    }
    const Delays known = delays.samples.value_or(Delays());
    const auto times = delays.times.value_or(QList<qint64>());
    for (qsizetype i = 0; i < std::min(known.size(), times.size()); ++i) {
        add(resulttype, times[i], known[i]);
    }
}

double DelayLine::top() const
{
    double highest = 0;
    for (const auto *samples : {&download, &upload}) {
        for (const Sample &each : *samples) {
            highest = std::max(highest, static_cast<double>(each.delay.value_or(0)) / nsPerMs);
        }
    }
    if (highest <= 0) {
        return 0;
    }
    // 1, 2 or 5 times a power of ten.
    const double power = std::pow(10.0, std::floor(std::log10(highest)));
    const std::array<double, 4> candidates{power, 2 * power, 5 * power, 10 * power};
    return *std::find_if(candidates.begin(), candidates.end() - 1,
                         [highest](double candidate) { return candidate >= highest; });
}

QString DelayLine::scaleText() const
{
    return tr("RTT 0 to %1 ms").arg(number(top()));
}

QString DelayLine::description() const
{
    QStringList parts;
    for (const auto &[samples, name] :
         {std::pair(&download, tr("Download")), std::pair(&upload, tr("Upload"))}) {
        Delays delays;
        for (const Sample &each : *samples) {
            delays.append(each.delay);
        }
        if (const auto median = DelayFigures::median(delays)) {
            parts.append(tr("%1 %2 ms").arg(name, number(static_cast<double>(*median) / nsPerMs)));
        }
    }
    return parts.isEmpty() ? QString() : tr("RTT under load: %1").arg(parts.join(u", "_s));
}

void DelayLine::draw(QPainter &painter, int resulttype, const QRectF &area, double seconds,
                     const QColor &colour) const
{
    const double scale = top();
    const QList<Sample> &samples = resulttype == Result::Download ? download : upload;
    if (scale <= 0) {
        return;
    }
    QPainterPath line;
    QPainterPath points;
    bool isBroken = true;
    for (const Sample &each : samples) {
        if (!each.delay) {
            isBroken = true;
            continue;
        }
        const double second = static_cast<double>(each.at) / nsPerSecond;
        const double ms = static_cast<double>(*each.delay) / nsPerMs;
        const QPointF point(area.left() + std::min(second / seconds, 1.0) * area.width(),
                            area.bottom() - ms / scale * area.height());
        if (isBroken) {
            line.moveTo(point);
        } else {
            line.lineTo(point);
        }
        isBroken = false;
        points.addEllipse(point, pointRadius, pointRadius);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, width));
    painter.drawPath(line);
    painter.fillPath(points, colour);
}

} // namespace velometer
