#include "reports/shownfigures.h"

#include <algorithm>

namespace velometer {

namespace {

/// Beyond what any network gives, a figure is a mistake or a joke.
constexpr qint64 maxRate = 1'000'000'000'000;      // bit/s
constexpr qint64 maxResponse = 60'000'000'000;     // ns
constexpr double maxAccuracy = 100'000;            // m
constexpr qint64 firstTime = 946'684'800'000;      // ms: 2000-01-01
constexpr qint64 lastTime = 4'133'980'800'000 - 1; // ms: before 2101-01-01

template <typename Value>
std::optional<Value> upTo(Value most, const std::optional<Value> &value)
{
    return value && *value <= most ? value : std::nullopt;
}

bool isCode(const QString &text, qsizetype least)
{
    return text.size() >= least && text.size() <= 3 &&
           std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; });
}

} // namespace

ShownFigures ShownFigures::of(const Report &report)
{
    ShownFigures figures;
    figures.type = ConnectionClasses::ofReport(report.connectionType);
    if (isCode(report.mcc, 3) && isCode(report.mnc, 2)) {
        figures.operatorCode = report.mcc + u'-' + report.mnc;
    }
    if (report.verified) {
        figures.download = upTo(maxRate, report.download.avg);
        figures.upload = upTo(maxRate, report.bestUpload().avg);
    }
    figures.rtt = upTo(maxResponse, report.rttAvg);
    figures.accuracy = upTo(maxAccuracy, report.accuracy);
    figures.bytes = report.bytes;
    return figures;
}

bool ShownFigures::isTime(qint64 ms)
{
    return ms >= firstTime && ms <= lastTime;
}

} // namespace velometer
