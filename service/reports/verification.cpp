#include "reports/verification.h"

namespace velometer {

namespace {

/// Fewer full intervals of 100 ms are one burst, not a rate.
constexpr int minIntervals = 5;
constexpr qint64 minLasted = 500; // ms, of so many intervals

/// Both ends start and end their clocks a round trip apart, and the client's kernel takes bytes
/// before they have gone anywhere; more than twice the rate served is another stream's.
constexpr qint64 tolerance = 2;

bool isBacked(const std::optional<qint64> &rate, int intervals,
              const std::optional<StreamRecord> &stream)
{
    return !rate || (intervals >= minIntervals && stream && stream->lasted >= minLasted &&
                     *rate / tolerance <= stream->avg);
}

} // namespace

bool isVerified(const Report &report, const std::optional<StreamRecord> &download,
                const std::optional<StreamRecord> &upload)
{
    // The service's figures are a copy of what it told; a client's own may differ.
    const auto &told = report.upload;
    const bool same =
        !told.avg || (upload && told.avg == upload->avg && told.max.value_or(0) == upload->max &&
                      told.min.value_or(0) == upload->min);
    return same && isBacked(report.download.avg, report.downloadIntervals, download) &&
           isBacked(report.bestUpload().avg, report.uploadIntervals, upload);
}

} // namespace velometer
