#include "measure/downloadstream.h"

#include "measure/kernelwatch.h"
#include "measure/tcpfacts.h"
#include "net/httpdate.h"
#include "net/oneshot.h"

#include <boost/asio/post.hpp>

#include <cerrno>

#include <sys/sendfile.h>

namespace velometer {

namespace asio = boost::asio;

namespace {

/// What one stream may hand to the kernel before the others get their turn.
constexpr std::size_t turnBytes = std::size_t{1} << 20;

constexpr std::string_view headBegin = "HTTP/1.0 200 OK\r\n"
                                       "Content-Type: application/octet-stream\r\n"
                                       "Cache-Control: no-store\r\n";
constexpr std::string_view headEnd = "Connection: close\r\n\r\n";

} // namespace

asio::awaitable<DownloadTotals> sendStream(Connection &connection, const RandomBlock &block,
                                           std::chrono::milliseconds duration,
                                           std::string_view control, StreamCounters bytes)
{
    auto &socket = connection.getSocket();
    chooseCongestionControl(socket.native_handle(), control);
    const auto begun = Connection::Clock::now();
    const auto deadline = begun + duration;
    connection.expireAt(deadline);
    KernelWatch watch(socket.native_handle(), Direction::Download, begun);

    DownloadTotals totals;
    std::int64_t paced = 0;
    off_t offset = 0;
    const std::string head = std::string(headBegin) +
                             "Velometer-Congestion: " + watch.getFacts().congestion + "\r\n" +
                             httpDate() + std::string(headEnd);
    bool open = co_await connection.write(head);
    boost::system::error_code ignored;
    socket.native_non_blocking(true, ignored);
    // A peer that takes nothing for a while must not keep the kernel from being asked.
    connection.expireAt(std::min(watch.due(), deadline));
    while (open) {
        const auto now = Connection::Clock::now();
        if (now >= deadline) {
            break;
        }
        if (now >= watch.due()) {
            watch.look(now);
            paced = bytes.pace(socket.native_handle(), paced);
            connection.expireAt(std::min(watch.due(), deadline));
        }
        std::size_t turn = 0;
        bool full = false;
        while (open && !full && turn < turnBytes) {
            const auto left = RandomBlock::size - static_cast<std::size_t>(offset);
            const auto sent = ::sendfile(socket.native_handle(), block.getDescriptor(), &offset,
                                         std::min(left, turnBytes - turn));
            if (sent > 0) {
                turn += static_cast<std::size_t>(sent);
                offset %= static_cast<off_t>(RandomBlock::size);
            } else if (sent < 0 && errno == EAGAIN) {
                full = true;
            } else if (sent == 0 || errno != EINTR) {
                open = false;
            }
        }
        totals.bytes += static_cast<std::int64_t>(turn);
        bytes.add(static_cast<std::int64_t>(turn));
        if (open && full) {
            const auto [error] = co_await socket.async_wait(asio::socket_base::wait_write, quietly);
            open = !error || connection.isExpired();
        } else if (open) {
            co_await asio::post(connection.executor(), asio::use_awaitable);
        }
    }
    totals.lasted =
        std::chrono::duration_cast<std::chrono::milliseconds>(Connection::Clock::now() - begun);
    totals.kernel = watch.getFacts().toText();
    co_return totals;
}

} // namespace velometer
