#include "measure/uploadstream.h"

#include "measure/kernelwatch.h"
#include "measure/tcpfacts.h"
#include "net/oneshot.h"

#include <boost/asio/post.hpp>

#include <algorithm>
#include <cerrno>
#include <limits>

#include <sys/socket.h>

namespace velometer {

namespace asio = boost::asio;

namespace {

/// What one stream may take from the kernel before the others get their turn.
constexpr std::size_t readTurnBytes = std::size_t{1} << 20;

/// How many bytes must have come before it is worth waking up: on a fast link what comes in a
/// millisecond, which saves most of the work and moves no byte by more than that; on all others
/// one.
int wakeUpBytes(std::int64_t bytesPerInterval, std::int64_t missing)
{
    constexpr std::int64_t most = 262'144;
    constexpr std::int64_t fast = 16'384;
    const auto perMs = std::min(bytesPerInterval / UploadMeter::interval.count(), most);
    // The answer must not wait for bytes that nobody sends.
    return static_cast<int>(perMs < fast || missing < perMs ? 1 : perMs);
}

} // namespace

asio::awaitable<UploadTotals>
receiveStream(Connection &connection, std::optional<std::uint64_t> announced,
              std::string_view answer, std::chrono::milliseconds duration, StreamCounters bytes)
{
    using Clock = Connection::Clock;
    auto &socket = connection.getSocket();
    chooseCongestionControl(socket.native_handle(), {});
    const auto begun = Clock::now();
    const auto deadline = begun + duration;
    KernelWatch watch(socket.native_handle(), Direction::Upload, begun);
    // Looks every interval, for the bytes that were not enough to wake up for.
    connection.expireAt(begun + UploadMeter::interval);

    UploadMeter meter;
    if (const auto rest = static_cast<std::int64_t>(connection.rest().size()); rest > 0) {
        meter.add(Clock::now(), rest);
        bytes.add(rest);
    }
    boost::system::error_code ignored;
    socket.native_non_blocking(true, ignored);
    bool open = true;
    bool answered = false;
    int wakeUp = 1;
    const auto isDue = [&] {
        return !answered && announced && static_cast<std::uint64_t>(meter.getTotal()) >= *announced;
    };
    while (open) {
        if (connection.isExpired()) {
            const auto now = Clock::now();
            if (now >= deadline) {
                break;
            }
            connection.expireAt(std::min(deadline, now + UploadMeter::interval));
            watch.look(now);
        }
        if (isDue()) {
            answered = true;
            open = co_await connection.write(answer);
            continue;
        }
        // The kernel drops the bytes where they lie; nothing is copied.
        const auto count =
            ::recv(socket.native_handle(), nullptr, readTurnBytes, MSG_TRUNC | MSG_DONTWAIT);
        if (count > 0) {
            meter.add(Clock::now(), count);
            bytes.add(count);
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            meter.end(Clock::now());
            break;
        }
        if (count == static_cast<ssize_t>(readTurnBytes)) {
            co_await asio::post(connection.executor(), asio::use_awaitable);
        } else if (!isDue()) {
            const auto missing = announced && !answered
                                     ? static_cast<std::int64_t>(*announced) - meter.getTotal()
                                     : std::numeric_limits<std::int64_t>::max();
            const int wanted = wakeUpBytes(meter.previousInterval(), missing);
            if (wanted != wakeUp) {
                wakeUp = wanted;
                socket.set_option(asio::socket_base::receive_low_watermark(wakeUp), ignored);
            }
            const auto [error] = co_await socket.async_wait(asio::socket_base::wait_read, quietly);
            open = !error || connection.isExpired();
        }
    }
    co_return UploadTotals{std::move(meter), watch.getFacts().toText()};
}

} // namespace velometer
