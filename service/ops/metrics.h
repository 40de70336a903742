#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace velometer {

/// What the service counts about itself. Safe from every thread.
class Metrics
{
public:
    static constexpr std::array<std::string_view, 6> rejections{"damaged", "hash", "too_large",
                                                                "timeout", "busy", "deleted"};
    using Counter = std::atomic<std::int64_t>;

    Counter connections{0}; ///< open now
    Counter connectionsTotal{0};
    Counter downloads{0}; ///< streams running now
    Counter downloadsTotal{0};
    Counter uploads{0};
    Counter uploadsTotal{0};
    Counter bytesDown{0};
    Counter bytesUp{0};
    Counter loopLate{0};
    Counter streamsLate{0}; ///< during which the loop was
    Counter reportsStored{0};
    Counter reportsRepeated{0};
    std::array<Counter, rejections.size()> reportsRejected{}; ///< as rejections
    Counter storeErrors{0};
    Counter certificateExpires{0}; ///< s since 1970; 0 without one

    /// Counts one request that was refused, for one of a few reasons.
    void countRefusal(std::string_view reason);

    /// Counts one answer of the endpoint of that name, which is one of a few.
    void countRequest(std::string_view endpoint, int status);

    /// Prometheus' text format.
    std::string toText() const;

private:
    mutable std::mutex mutex;
    std::map<std::pair<std::string, int>, std::int64_t> requests; ///< by name and status / 100
    std::map<std::string, std::int64_t, std::less<>> refusals;    ///< by reason
};

} // namespace velometer
