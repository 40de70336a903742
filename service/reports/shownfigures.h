#pragma once

#include "reports/connectionclass.h"
#include "reports/report.h"

#include <QString>

#include <optional>

namespace velometer {

/// The figures of a report that may be shown, as the data base keeps them beside the report: rates
/// are those of streams that the service served, nothing is beyond what networks give. Whoever
/// counts leaves out the round-trip time of reports that are not verified.
struct ShownFigures
{
    /// Beyond what any network gives, a figure is a mistake or a joke.
    static constexpr qint64 maxRate = 1'000'000'000'000;      ///< bit/s
    static constexpr qint64 maxResponse = 60'000'000'000;     ///< ns
    static constexpr double maxAccuracy = 100'000;            ///< m
    static constexpr qint64 firstTime = 946'684'800'000;      ///< ms: 2000-01-01
    static constexpr qint64 lastTime = 4'133'980'800'000 - 1; ///< ms: before 2101-01-01

    ConnectionClass type = ConnectionClass::Other;
    QString operatorCode;              ///< "228-01", empty when unknown
    std::optional<qint64> download;    ///< bit/s
    std::optional<qint64> upload;      ///< bit/s, the better founded of both
    std::optional<qint64> rtt;         ///< ns
    std::optional<double> accuracy;    ///< m
    std::optional<qint64> downloadRtt; ///< ns, see Report
    std::optional<qint64> uploadRtt;   ///< ns
    qint64 bytes = 0;                  ///< moved by both streams

    static ShownFigures of(const Report &report);

    /// Whether a client's clock can have said so: within this century.
    static bool isTime(qint64 ms) { return ms >= firstTime && ms <= lastTime; }
};

} // namespace velometer
