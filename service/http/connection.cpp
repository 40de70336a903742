#include "http/connection.h"

#include "http/oneshot.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>

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

Connection::Connection(asio::ip::tcp::socket socket)
    : m_socket(std::move(socket))
    , m_timer(m_socket.get_executor())
{
    // A peer that is gone already leaves the unspecified address; reading will tell.
    boost::system::error_code error;
    m_peer = unmapped(m_socket.remote_endpoint(error).address());
    m_local = unmapped(m_socket.local_endpoint(error).address());
    m_socket.set_option(asio::ip::tcp::no_delay(true), error);
}

void Connection::expireAt(Clock::time_point moment)
{
    m_expired = false;
    ++m_deadline;
    m_timer.expires_at(moment);
    m_timer.async_wait([weak = weak_from_this(), deadline = m_deadline](const auto &error) {
        // An expiry that was queued already when its deadline was replaced carries an old number.
        const auto self = weak.lock();
        if (error || !self || self->m_deadline != deadline) {
            return;
        }
        self->m_expired = true;
        boost::system::error_code ignored;
        self->m_socket.cancel(ignored);
    });
}

asio::awaitable<Connection::Head> Connection::readHead()
{
    constexpr std::string_view end = "\r\n\r\n";
    while (!m_expired) {
        const auto [error, count] = co_await m_socket.async_read_some(
            asio::buffer(m_buffer.data() + m_filled, m_buffer.size() - m_filled), quietly);
        if (error) {
            break;
        }
        const std::string_view text(m_buffer.data(), m_filled + count);
        const auto found = text.find(end, m_filled < end.size() ? 0 : m_filled - end.size());
        m_filled = text.size();
        const auto head = text.substr(0, found);
        if (std::ranges::any_of(head, [](char c) {
                return static_cast<unsigned char>(c) < 0x20 && c != '\r' && c != '\n' && c != '\t';
            })) {
            co_return Head::Malformed;
        }
        if (found != std::string_view::npos) {
            m_headSize = found + end.size();
            m_headDone = true;
            co_return Head::Complete;
        }
        if (m_filled == m_buffer.size()) {
            co_return Head::TooLarge;
        }
    }
    co_return Head::Gone;
}

asio::awaitable<bool> Connection::write(std::string_view bytes)
{
    if (m_expired) {
        co_return false;
    }
    const auto [error, count] = co_await asio::async_write(m_socket, asio::buffer(bytes), quietly);
    co_return !error;
}

asio::awaitable<void> Connection::finish()
{
    boost::system::error_code ignored;
    m_socket.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    expireAt(Clock::now() + drainTime);
    std::size_t drained = 0;
    bool closedByPeer = false;
    while (!m_expired && !closedByPeer && drained < drainBytes) {
        const auto [error, count] =
            co_await m_socket.async_read_some(asio::buffer(m_buffer), quietly);
        drained += count;
        closedByPeer = static_cast<bool>(error) && error != asio::error::operation_aborted;
    }
    if (closedByPeer) {
        // A peer that merely ended its sending still gets what is on its way.
        m_socket.close(ignored);
    }
    drop();
}

void Connection::drop()
{
    // Without the reset, data that nobody fetches would stay in the kernel for minutes.
    boost::system::error_code ignored;
    if (m_socket.is_open()) {
        m_socket.set_option(asio::socket_base::linger(true, 0), ignored);
        m_socket.close(ignored);
    }
    m_timer.cancel();
    m_expired = true;
    ++m_deadline;
}

void Connection::abort()
{
    asio::post(m_socket.get_executor(), [self = shared_from_this()] { self->drop(); });
}

void Connection::abortIfIdle()
{
    asio::post(m_socket.get_executor(), [self = shared_from_this()] {
        if (!self->m_headDone) {
            self->drop();
        }
    });
}
