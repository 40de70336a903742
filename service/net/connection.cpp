#include "net/connection.h"

#include "net/oneshot.h"
#include "net/proxyheader.h"

#include <boost/asio/post.hpp>
#include <boost/asio/read.hpp>

#include <algorithm>

#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace velometer {

namespace asio = boost::asio;
using namespace std::chrono_literals;

namespace {

/// How long, and how much, a peer may go on sending after it has its answer.
constexpr auto drainTime = 2s;
/// How often it is looked how far the answer has come.
constexpr auto drainLook = 250ms;
constexpr std::size_t drainBytes = std::size_t{8} << 20;
/// Between two looks at a header that comes in pieces.
constexpr auto piecePause = 5ms;

asio::ip::address unmapped(const asio::ip::address &address)
{
    if (address.is_v6() && address.to_v6().is_v4_mapped()) {
        return asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6());
    }
    return address;
}

} // namespace

Connection::Connection(asio::ip::tcp::socket accepted, Role listener,
                       std::shared_ptr<TlsContext> context)
    : socket(std::move(accepted))
    , role(listener)
    , tlsContext(std::move(context))
    , timer(socket.get_executor())
{
    // A peer that is gone already leaves the unspecified address; reading will tell.
    boost::system::error_code error;
    peer = unmapped(socket.remote_endpoint(error).address());
    origin = peer;
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

void Connection::setPeer(const asio::ip::address &client)
{
    peer = unmapped(client);
}

asio::awaitable<bool> Connection::readProxyHeader()
{
    // Looked at before it is taken: what is no such header belongs to whoever reads next.
    std::array<char, ProxyHeader::fixedBytes> fixed{};
    std::size_t seen = 0;
    while (seen < fixed.size()) {
        const auto [error] = co_await socket.async_wait(asio::socket_base::wait_read, quietly);
        const auto count = error ? ssize_t{-1}
                                 : ::recv(socket.native_handle(), fixed.data(), fixed.size(),
                                          MSG_PEEK | MSG_DONTWAIT);
        if (count <= 0) {
            co_return false;
        }
        const auto size = static_cast<std::size_t>(count);
        const auto compared = std::min(size, ProxyHeader::signature.size());
        if (std::string_view(fixed.data(), compared) !=
            ProxyHeader::signature.substr(0, compared)) {
            co_return true;
        }
        if (size == seen) {
            // The socket stays readable while the rest is on its way.
            asio::steady_timer pause(executor(), piecePause);
            co_await pause.async_wait(quietly);
        }
        seen = size;
        if (expired) {
            co_return false;
        }
    }
    const auto rest = ProxyHeader::restLength({fixed.data(), fixed.size()});
    if (!rest) {
        co_return false;
    }
    const auto whole = asio::buffer(buffer.data(), ProxyHeader::fixedBytes + *rest);
    const auto [error, count] = co_await asio::async_read(socket, whole, quietly);
    const auto told = error ? std::nullopt : ProxyHeader::parse({buffer.data(), count});
    if (told && told->client) {
        setPeer(*told->client);
    }
    co_return told.has_value();
}

asio::awaitable<bool> Connection::handshake()
{
    if (!tlsContext) {
        co_return true;
    }
    cipher =
        std::make_unique<asio::ssl::stream<asio::ip::tcp::socket &>>(socket, tlsContext->context);
    const auto [error] = co_await cipher->async_handshake(asio::ssl::stream_base::server, quietly);
    co_return !error;
}

asio::awaitable<Connection::Read> Connection::readSome(asio::mutable_buffer into)
{
    if (cipher) {
        const auto [error, count] = co_await cipher->async_read_some(into, quietly);
        co_return Read{error, count};
    }
    const auto [error, count] = co_await socket.async_read_some(into, quietly);
    co_return Read{error, count};
}

asio::awaitable<Connection::Head> Connection::readHead()
{
    constexpr std::string_view end = "\r\n\r\n";
    while (!expired) {
        const auto [error, count] =
            co_await readSome(asio::buffer(buffer.data() + filled, buffer.size() - filled));
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
        boost::system::error_code failure;
        std::size_t count = 0;
        if (cipher) {
            const auto [error, written] =
                co_await cipher->async_write_some(asio::buffer(bytes), quietly);
            failure = error;
            count = written;
        } else {
            const auto [error, written] =
                co_await socket.async_write_some(asio::buffer(bytes), quietly);
            failure = error;
            count = written;
        }
        if (failure) {
            co_return false;
        }
        bytes.remove_prefix(count);
    }
    co_return true;
}

asio::awaitable<void> Connection::finish(std::chrono::milliseconds patience)
{
    boost::system::error_code ignored;
    if (cipher && socket.is_open()) {
        // Without it the peer cannot tell the answer's end from a line that was cut.
        expireAt(Clock::now() + drainTime);
        co_await cipher->async_shutdown(quietly);
    }
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
