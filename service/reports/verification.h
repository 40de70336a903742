#pragma once

#include "reports/report.h"
#include "reports/streamrecord.h"

namespace velometer {

/// Whether the rates of @p report are backed: by streams of its test that were served here, whose
/// figures agree, and by full intervals in the report itself. A report without rates claims nothing
/// and is verified. Absent records: no such stream was served.
bool isVerified(const Report &report, const std::optional<StreamRecord> &download,
                const std::optional<StreamRecord> &upload);

} // namespace velometer
