#include "net/connection.h"

#include "net/oneshot.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>

namespace velometer {

namespace asio = boost::asio;
using namespace std::chrono_literals;

namespace {

/// How long, and how much, a peer may go on sending after its answer.
constexpr auto drainTime = 2s;
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

asio::awaitable<bool> Connection::write(std::string_view bytes)
{
    if (expired) {
        co_return false;
    }
    const auto [error, count] = co_await asio::async_write(socket, asio::buffer(bytes), quietly);
    co_return !error;
}

asio::awaitable<void> Connection::finish()
{
    boost::system::error_code ignored;
    socket.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    expireAt(Clock::now() + drainTime);
    std::size_t drained = 0;
    bool closedByPeer = false;
    while (!expired && !closedByPeer && drained < drainBytes) {
        const auto [error, count] = co_await socket.async_read_some(asio::buffer(buffer), quietly);
        drained += count;
        closedByPeer = static_cast<bool>(error) && error != asio::error::operation_aborted;
    }
    if (closedByPeer) {
        // A peer that merely ended its sending still gets what is on its way.
        socket.close(ignored);
    }
    drop();
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
