#pragma once

#include "net/tls.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/steady_timer.hpp>

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace velometer {

/// Size of the buffer that a request's head must fit into, in bytes.
inline constexpr std::size_t maxHeadBytes = 8192;

/// One accepted connection: its socket, the buffer its request's head is read into, and the one
/// deadline that bounds whatever is waited for. All members but abort() and abortIfIdle() belong on
/// the socket's strand. Held by the coroutine that serves it.
class Connection : public std::enable_shared_from_this<Connection>
{
public:
    using Clock = std::chrono::steady_clock;

    /// What its listener is there for.
    enum class Role {
        Public, ///< everything, in plain text
        Tls,    ///< everything but streams, which measure a line without a cipher
        Admin,  ///< what the operator alone may know
    };

    /// @p context is that of a Tls listener, else nothing.
    explicit Connection(boost::asio::ip::tcp::socket accepted, Role listener = Role::Public,
                        std::shared_ptr<TlsContext> context = {});

    /// For measurement streams, which are never encrypted; all others read and write through this.
    boost::asio::ip::tcp::socket &getSocket() { return socket; }
    boost::asio::any_io_executor executor() { return socket.get_executor(); }
    Role getRole() const { return role; }

    /// Whether the origin is a proxy that is believed; said before anything is read.
    bool isProxy() const { return proxy; }
    void setProxy() { proxy = true; }

    /// Addresses at the time of accepting; an IPv4 address mapped into IPv6 is given as IPv4. The
    /// peer is the client that a trusted proxy speaks for, from the moment that is known; the
    /// origin is always whoever connected.
    const boost::asio::ip::address &getPeer() const { return peer; }
    const boost::asio::ip::address &getOrigin() const { return origin; }
    const boost::asio::ip::address &getLocal() const { return local; }
    void setPeer(const boost::asio::ip::address &client);

    /// Reads the header of the PROXY protocol where the connection, which must be a trusted
    /// proxy's, begins with one. False when it is damaged, or the peer gone.
    boost::asio::awaitable<bool> readProxyHeader();

    /// Agrees on a cipher where the listener demands one; false when that fails.
    boost::asio::awaitable<bool> handshake();

    /// From @p moment on every operation on the socket, pending or started later, ends with an
    /// error that isExpired() explains. Replaces the deadline before.
    void expireAt(Clock::time_point moment);
    bool isExpired() const { return expired; }

    enum class Head { Complete, TooLarge, Malformed, Gone };

    /// Reads until the head is complete; head() and rest() are valid afterwards.
    boost::asio::awaitable<Head> readHead();
    std::string_view head() const { return {buffer.data(), headSize}; }

    /// What arrived together with the head: the beginning of the body.
    std::string_view rest() const { return {buffer.data() + headSize, filled - headSize}; }

    /// The head's buffer, free for other use once the head has been parsed and the rest taken.
    std::span<char> scratch() { return buffer; }

    struct Read
    {
        boost::system::error_code error;
        std::size_t count = 0;
    };
    /// What comes next, as much as there is and @p into takes.
    boost::asio::awaitable<Read> readSome(boost::asio::mutable_buffer into);

    /// Writes all of @p bytes; false when the peer is gone, the deadline in force has passed, or
    /// the peer took nothing for as long as @p patience. Without @p patience the deadline alone
    /// bounds it, with it no deadline is left in force.
    boost::asio::awaitable<bool> write(std::string_view bytes,
                                       std::optional<std::chrono::milliseconds> patience = {});

    /// Ends sending, waits until the peer has what was sent, for as long as it goes on taking it
    /// within @p patience, swallows meanwhile what still comes (bounded), closes. Unread bytes
    /// would turn the last answer into a reset.
    boost::asio::awaitable<void> finish(std::chrono::milliseconds patience);

    /// From any thread: whether a request has come.
    bool hasHead() const { return headDone; }

    /// From any thread: drops the connection, the second one only if no request has come yet.
    void abort();
    void abortIfIdle();

private:
    int unconfirmedBytes();
    void drop();

    boost::asio::ip::tcp::socket socket;
    const Role role;
    bool proxy = false;
    std::shared_ptr<TlsContext> tlsContext; ///< outlives the cipher
    std::unique_ptr<boost::asio::ssl::stream<boost::asio::ip::tcp::socket &>> cipher;
    boost::asio::steady_timer timer;
    boost::asio::ip::address peer;
    boost::asio::ip::address origin;
    boost::asio::ip::address local;
    std::array<char, maxHeadBytes> buffer;
    std::size_t filled = 0;
    std::size_t headSize = 0;
    std::uint64_t deadline = 0; ///< number of the deadline in force
    bool expired = false;
    std::atomic<bool> headDone{false};
};

} // namespace velometer
