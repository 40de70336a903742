#include "reports/shownfigures.h"

#include <algorithm>

namespace velometer {

namespace {

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
    figures.downloadRtt = upTo(maxResponse, report.downloadRtt);
    figures.uploadRtt = upTo(maxResponse, report.uploadRtt);
    figures.accuracy = upTo(maxAccuracy, report.accuracy);
    figures.bytes = report.bytes;
    return figures;
}

} // namespace velometer
