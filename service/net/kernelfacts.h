#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velometer {

/// What the kernel knows of one measurement stream at one moment. What it does not tell is nothing.
struct KernelSample
{
    using Number = std::optional<std::int64_t>;

    /// What kept the stream from sending more since the sample before.
    enum class Limit { Unknown, Window, Receiver, Buffer, Application };

    std::int64_t time = 0; ///< ms since the stream's begin
    Number rtt;            ///< us, smoothed; of a stream that we receive the receiver's estimate
    Number minRtt;         ///< us, the least so far; of a stream that we send
    Number rate;           ///< bit/s: delivered, or received since the sample before
    Number retransmitted;  ///< bytes so far; of a stream that we send
    Limit limit = Limit::Unknown; ///< of a stream that we send

    bool operator==(const KernelSample &) const = default;
};

/// The kernel's view of a whole stream.
struct KernelFacts
{
    /// More than the longest stream has.
    static constexpr std::size_t mostSamples = 1000;

    std::string congestion; ///< the congestion control of our end, "bbr"
    std::vector<KernelSample> samples;

    /// One line of printable ASCII that XML does not mind, for reports and the store:
    /// "congestion control bbr; ms rtt_us min_rtt_us bit/s retransmitted limit: 100 45021 44800
    /// 12000000 0 window; ...", "-" for what is unknown.
    std::string toText() const;
    /// Of such a text; nothing of any other.
    static std::optional<KernelFacts> parse(std::string_view text);

    KernelSample::Number leastRtt() const; ///< us
    /// The smoothed round-trip time that @p share of the samples, 0 to 1, do not exceed, us.
    KernelSample::Number rttOf(double share) const;
    KernelSample::Number retransmitted() const; ///< bytes
};

} // namespace velometer
