#pragma once

#include <QString>

namespace velometer {

class TestContext;

/// Offsets on the test id that tell the service which request of a test it sees.
namespace TestIdOffset {
inline constexpr qlonglong initialise = 1000000;
inline constexpr qlonglong download = 2000000;
/// Of the upload and of the request for its result.
inline constexpr qlonglong upload = 3000000;
/// Of load that is made for its delays. To the service it belongs to a test that sends no report:
/// so it cannot be taken for the test's own streams.
inline constexpr qlonglong extraDownload = 4000000;
inline constexpr qlonglong extraUpload = 5000000;
} // namespace TestIdOffset

/// "testuserid=...&seriesid=...&testid=..." of the running test, as every request carries it.
QString testParameters(const TestContext &context, qlonglong testIdOffset);

} // namespace velometer
