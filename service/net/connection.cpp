#include "net/connection.h"

#include "net/oneshot.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>

#include <algorithm>

#include <linux/sockios.h>
#include <sys/ioctl.h>

namespace velometer {

namespace asio = boost::asio;
using namespace std::chrono_literals;

namespace {

/// How long, and how much, a peer may go on sending after it has its answer.
constexpr auto drainTime = 2s;
/// How often it is looked how far the answer has come.
constexpr auto drainLook = 250ms;
constexpr std::size_t drainBytes = std::size_t{8} << 20;

asio::ip::address unmapped(const asio::ip::address &address)
{
    if (address.is_v6() && address.to_v6().is_v4_mapped()) {
        return asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6());
    }
    return address;
}

} // namespace

Connection::Connection(asio::ip::tcp::socket accepted)
    : socket(std::move(accepted))
    , timer(socket.get_executor())
{
    // A peer that is gone already leaves the unspecified address; reading will tell.
    boost::system::error_code error;
    peer = unmapped(socket.remote_endpoint(error).address());
    local = unmapped(socket.local_endpoint(error).address());
    socket.set_option(asio::ip::tcp::no_delay(true), error);
}

void Connection::expireAt(Clock::time_point moment)
{
    expired = false;
    ++deadline;
    timer.expires_at(moment);
    timer.async_wait([weak = weak_from_this(), expected = deadline](const auto &error) {
        // An expiry that was queued already when its deadline was replaced carries an old number.
        const auto self = weak.lock();
        if (error || !self || self->deadline != expected) {
            return;
        }
        self->expired = true;
        boost::system::error_code ignored;
        self->socket.cancel(ignored);
    });
}

asio::awaitable<Connection::Head> Connection::readHead()
{
    constexpr std::string_view end = "\r\n\r\n";
    while (!expired) {
        const auto [error, count] = co_await socket.async_read_some(
            asio::buffer(buffer.data() + filled, buffer.size() - filled), quietly);
        if (error) {
            break;
        }
        const std::string_view text(buffer.data(), filled + count);
        const auto found = text.find(end, filled < end.size() ? 0 : filled - end.size());
        filled = text.size();
        const auto head = text.substr(0, found);
        if (std::ranges::any_of(head, [](char c) {
                return static_cast<unsigned char>(c) < 0x20 && c != '\r' && c != '\n' && c != '\t';
            })) {
            co_return Head::Malformed;
        }
        if (found != std::string_view::npos) {
            headSize = found + end.size();
            headDone = true;
            co_return Head::Complete;
        }
        if (filled == buffer.size()) {
            co_return Head::TooLarge;
        }
    }
    co_return Head::Gone;
}

asio::awaitable<bool> Connection::write(std::string_view bytes,
                                        std::optional<std::chrono::milliseconds> patience)
{
    while (!bytes.empty()) {
        if (patience) {
            expireAt(Clock::now() + *patience);
        }
        if (expired) {
            co_return false;
        }
        const auto [error, count] = co_await socket.async_write_some(asio::buffer(bytes), quietly);
        if (error) {
            co_return false;
        }
        bytes.remove_prefix(count);
    }
    co_return true;
}

asio::awaitable<void> Connection::finish(std::chrono::milliseconds patience)
{
    boost::system::error_code ignored;
    socket.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    int missing = unconfirmedBytes();
    auto latest = Clock::now() + (missing > 0 ? patience : drainTime);
    std::size_t drained = 0;
    bool closedByPeer = false;
    expireAt(Clock::now() + drainLook);
    while (!closedByPeer && drained < drainBytes && socket.is_open()) {
        const auto [error, count] = co_await socket.async_read_some(asio::buffer(buffer), quietly);
        drained += count;
        closedByPeer = static_cast<bool>(error) && error != asio::error::operation_aborted;
        if (expired && socket.is_open()) {
            const int left = unconfirmedBytes();
            const auto now = Clock::now();
            if (left < missing) {
                latest = now + (left > 0 ? patience : drainTime);
            } else if (now >= latest) {
                break;
            }
            missing = left;
            expireAt(std::min(now + drainLook, latest));
        }
    }
    if (closedByPeer || (socket.is_open() && missing == 0)) {
        // What has arrived, or is on its way to a peer that merely ended its sending, is its own.
        socket.close(ignored);
    }
    drop();
}

/// What the peer's kernel has not confirmed; 0 when the socket is gone.
int Connection::unconfirmedBytes()
{
    int count = 0;
    return ::ioctl(socket.native_handle(), SIOCOUTQ, &count) == 0 ? count : 0;
}

void Connection::drop()
{
    // Without the reset, data that nobody fetches would stay in the kernel for minutes.
    boost::system::error_code ignored;
    if (socket.is_open()) {
        socket.set_option(asio::socket_base::linger(true, 0), ignored);
        socket.close(ignored);
    }
    timer.cancel();
    expired = true;
    ++deadline;
}

void Connection::abort()
{
    asio::post(socket.get_executor(), [self = shared_from_this()] { self->drop(); });
}

void Connection::abortIfIdle()
{
    asio::post(socket.get_executor(), [self = shared_from_this()] {
        if (!self->headDone) {
            self->drop();
        }
    });
}

} // namespace velometer
