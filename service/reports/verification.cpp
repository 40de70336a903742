#include "reports/verification.h"

#include <algorithm>

namespace velometer {

namespace {

/// Fewer full intervals of 100 ms are one burst, not a rate.
constexpr int minIntervals = 5;
constexpr qint64 minLasted = 500; // ms, of so many intervals

/// Both ends start and end their clocks a round trip apart, and the client's kernel takes bytes
/// before they have gone anywhere; more than twice the rate served is another stream's.
constexpr qint64 tolerance = 2;

/// One rate that a report claims.
Verification verifyRate(const std::optional<qint64> &rate, int intervals,
                        const std::optional<StreamRecord> &stream)
{
    if (!rate) {
        return Verification::Verified;
    }
    if (!stream || stream->lasted < minLasted) {
        return Verification::Unverified;
    }
    if (*rate / tolerance > stream->avg) {
        return Verification::Contradicting;
    }
    return intervals >= minIntervals ? Verification::Verified : Verification::Unverified;
}

/// The service's figures are a copy of what it told; a client's own may differ.
Verification verifyTold(const Report::Rate &told, const std::optional<StreamRecord> &upload)
{
    if (!told.avg) {
        return Verification::Verified;
    }
    if (!upload) {
        return Verification::Unverified;
    }
    const bool same = told.avg == upload->avg && told.max.value_or(0) == upload->max &&
                      told.min.value_or(0) == upload->min;
    return same ? Verification::Verified : Verification::Contradicting;
}

} // namespace

Verification verify(const Report &report, const std::optional<StreamRecord> &download,
                    const std::optional<StreamRecord> &upload)
{
    // The least of them is that of the report.
    return std::min({verifyTold(report.upload, upload),
                     verifyRate(report.download.avg, report.downloadIntervals, download),
                     verifyRate(report.bestUpload().avg, report.uploadIntervals, upload)});
}

} // namespace velometer
