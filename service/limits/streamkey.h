#pragma once

#include <compare>
#include <cstdint>

namespace velometer {

/// Names one test by the numbers of its requests. The test id is the test's own: requests send it
/// with an offset that names the phase.
struct StreamKey
{
    std::int64_t user = 0;
    std::int64_t series = 0;
    std::int64_t test = 0;
    auto operator<=>(const StreamKey &) const = default;
};

/// What a request's test id is greater than the test's, by the phase it belongs to.
namespace TestIdOffset {

inline constexpr std::int64_t initialise = 1'000'000;
inline constexpr std::int64_t download = 2'000'000;
inline constexpr std::int64_t upload = 3'000'000;

} // namespace TestIdOffset

/// The two measurement streams of a test; the numbers are those in the database.
enum class Direction { Download = 1, Upload = 2 };

} // namespace velometer
