#include "measure/downloadstream.h"

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
                                           Metrics::Counter &bytes)
{
    auto &socket = connection.getSocket();
    preferBbr(socket.native_handle());
    const auto begun = Connection::Clock::now();
    connection.expireAt(begun + duration);

    DownloadTotals totals;
    off_t offset = 0;
    const std::string head = std::string(headBegin) + httpDate() + std::string(headEnd);
    bool open = co_await connection.write(head);
    boost::system::error_code ignored;
    socket.native_non_blocking(true, ignored);
    while (open && !connection.isExpired()) {
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
        bytes += static_cast<std::int64_t>(turn);
        if (open && full) {
            const auto [error] = co_await socket.async_wait(asio::socket_base::wait_write, quietly);
            open = !error;
        } else if (open) {
            co_await asio::post(connection.executor(), asio::use_awaitable);
        }
    }
    totals.lasted =
        std::chrono::duration_cast<std::chrono::milliseconds>(Connection::Clock::now() - begun);
    co_return totals;
}

} // namespace velometer
