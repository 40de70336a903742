#pragma once

#include <QString>

namespace velometer {

/// What a chart over time needs of one stored test.
struct HistoryPoint
{
    double timestamp = 0;   ///< ms
    double download = 0;    ///< bit/s; 0 and below: not measured
    double upload = 0;      ///< bit/s, the server's figure where there is one
    double rtt = 0;         ///< ms
    QString connectionType; ///< untranslated
};

} // namespace velometer
