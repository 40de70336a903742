#include "limits/uplink.h"

#include <algorithm>
#include <array>

namespace velometer {

namespace {

// Per cent of the bound. Beyond the first, nobody else is let in; beyond the second, all get a
// share; below the third they run free again.
constexpr std::int64_t fullFrom = 85;
constexpr std::int64_t sharedFrom = 95;
constexpr std::int64_t freeBelow = 80;

} // namespace

std::shared_ptr<Uplink::Stream> Uplink::join(Direction direction)
{
    auto stream = std::make_shared<Stream>(direction);
    if (bound > 0) {
        const std::lock_guard lock(mutex);
        joined.emplace_back(stream);
    }
    return stream;
}

void Uplink::look(Clock::time_point now)
{
    const std::lock_guard lock(mutex);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now - last).count();
    if (bound == 0 || ms <= 0) {
        return;
    }
    last = now;
    std::vector<std::shared_ptr<Stream>> held;
    std::erase_if(joined, [&](const auto &each) {
        auto stream = each.lock();
        const bool gone = !stream;
        if (stream) {
            held.push_back(std::move(stream));
        }
        return gone;
    });
    bool isAnyFull = false;
    for (const auto direction : {Direction::Download, Direction::Upload}) {
        std::vector<Stream *> streams;
        std::int64_t total = 0;
        for (const auto &each : held) {
            if (each->direction == direction) {
                const std::int64_t bytes = each->bytes;
                each->rate = (bytes - each->before) * 8000 / ms;
                each->before = bytes;
                total += each->rate;
                streams.push_back(each.get());
            }
        }
        isAnyFull = isAnyFull || total * 100 >= bound * fullFrom;
        shareOut(std::move(streams), total);
    }
    full = isAnyFull;
}

/// Whoever needs less than an equal share keeps what he needs; the others divide the rest equally.
void Uplink::shareOut(std::vector<Stream *> streams, std::int64_t total)
{
    if (total * 100 < bound * freeBelow) {
        for (auto *stream : streams) {
            stream->paced = 0;
        }
        return;
    }
    const bool anyPaced =
        std::ranges::any_of(streams, [](const Stream *each) { return each->paced > 0; });
    if (total * 100 < bound * sharedFrom && !anyPaced) {
        return;
    }
    std::ranges::sort(streams, {}, [](const Stream *each) { return each->rate; });
    std::int64_t left = bound;
    auto count = static_cast<std::int64_t>(streams.size());
    for (auto *stream : streams) {
        const std::int64_t share = left / count;
        // One that runs at its pace would take more.
        const std::int64_t paced = stream->paced;
        const std::int64_t held = paced > 0 ? std::min(paced, share) : share;
        const bool isHeld = stream->rate * 100 >= held * fullFrom;
        stream->paced = isHeld ? share : 0;
        stream->heldUp = stream->heldUp || isHeld;
        left -= isHeld ? share : std::min(stream->rate, share);
        --count;
    }
}

} // namespace velometer
