#pragma once

#include "reports/report.h"
#include "reports/streamrecord.h"

namespace velometer {

/// What the service's own view makes of a report's rates; the numbers are those in the database.
enum class Verification {
    Contradicting = -1, ///< streams of its test were served here, and tell something else
    Unverified = 0,     ///< nothing is known of its streams, or too little
    Verified = 1,       ///< all of it was served here, and agrees; or it claims nothing
};

/// Holds the rates of @p report against the streams of its test, and against the full intervals in
/// the report itself. Absent records: no such stream was served.
Verification verify(const Report &report, const std::optional<StreamRecord> &download,
                    const std::optional<StreamRecord> &upload);

} // namespace velometer
