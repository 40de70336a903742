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
    ConnectionClass type = ConnectionClass::Other;
    QString operatorCode;           ///< "228-01", empty when unknown
    std::optional<qint64> download; ///< bit/s
    std::optional<qint64> upload;   ///< bit/s, the better founded of both
    std::optional<qint64> rtt;      ///< ns
    std::optional<double> accuracy; ///< m
    qint64 bytes = 0;               ///< moved by both streams

    static ShownFigures of(const Report &report);

    /// Whether a client's clock can have said so: within this century.
    static bool isTime(qint64 ms);
};

} // namespace velometer
