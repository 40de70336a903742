#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

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
    Counter loopLateMs{0};  ///< by how much in all
    Counter streamsLate{0}; ///< during which the loop was
    Counter reportsStored{0};
    Counter reportsRepeated{0};
    std::array<Counter, rejections.size()> reportsRejected{}; ///< as rejections
    Counter storeErrors{0};
    Counter certificateExpires{0}; ///< s since 1970; 0 without one

    /// Counts one request that was refused, for one of a few reasons.
    void countRefusal(std::string_view reason);

    /// Counts one answer of the endpoint of that name, which is one of a few, that came after so
    /// long.
    void countRequest(std::string_view endpoint, int status, std::chrono::microseconds took);

    /// What is asked for at the moment, instead of being counted.
    struct Gauge
    {
        std::string_view name;
        std::string_view help;
        std::int64_t value = 0;
    };

    /// Prometheus' text format.
    std::string toText(const std::vector<Gauge> &gauges) const;

private:
    mutable std::mutex mutex;
    std::map<std::pair<std::string, int>, std::int64_t> requests; ///< by name and status / 100
    std::map<std::string, std::int64_t, std::less<>> refusals;    ///< by reason

    /// Upper bounds in ms: from a look into memory to what a client gives up on.
    static constexpr std::array<int, 11> latencyBounds{1,    3,    10,     30,     100,   300,
                                                       1000, 3000, 10'000, 30'000, 60'000};
    struct Latencies
    {
        std::array<std::int64_t, latencyBounds.size() + 1> counts{};
        std::int64_t micros = 0;
    };
    std::map<std::string, Latencies, std::less<>> latencies; ///< by name
};

} // namespace velometer
