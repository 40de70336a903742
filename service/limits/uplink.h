#pragma once

#include "limits/streamkey.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace velometer {

/// The service's own line: how much of it the streams use, and what each of them may where they
/// would use it up. A stream that was held to a share has measured the service, and is told so.
/// Safe from every thread.
class Uplink
{
public:
    using Clock = std::chrono::steady_clock;

    /// Longer than a burst, shorter than what a rate is told over.
    static constexpr std::chrono::milliseconds period{200};

    /// @p most bit/s in each direction; 0: as much as comes.
    explicit Uplink(std::int64_t most)
        : bound(most)
    {}

    class Stream
    {
    public:
        explicit Stream(Direction which)
            : direction(which)
        {}
        /// Bytes moved; by the stream alone.
        void add(std::int64_t count) { bytes += count; }
        /// bit/s that it may send; 0: as many as it can.
        std::int64_t pace() const { return paced; }
        bool wasHeldUp() const { return heldUp; }

    private:
        friend class Uplink;
        const Direction direction;
        std::atomic<std::int64_t> bytes{0};
        std::atomic<std::int64_t> paced{0};
        std::atomic<bool> heldUp{false};
        std::int64_t before = 0; ///< bytes at the last look
        std::int64_t rate = 0;   ///< bit/s since
    };
    /// A stream that counts for as long as somebody holds it.
    std::shared_ptr<Stream> join(Direction direction);

    /// Looks at all streams and shares out what there is. Each period.
    void look(Clock::time_point now);

    /// Whether one more test would be held up, as far as the last look tells.
    bool isFull() const { return full; }

private:
    void shareOut(std::vector<Stream *> streams, std::int64_t total);

    const std::int64_t bound;
    std::mutex mutex;
    std::vector<std::weak_ptr<Stream>> joined;
    Clock::time_point last;
    std::atomic<bool> full{false};
};

} // namespace velometer
