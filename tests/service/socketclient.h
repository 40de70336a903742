#pragma once

#include <QByteArray>

#include <array>
#include <limits>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace velometer {

/// A blocking TCP client on loopback that does exactly what it is told. Waits ten seconds at most,
/// then everything fails.
class SocketClient
{
public:
    /// @p receiveBuffer: what its kernel takes while nobody reads, in bytes; 0: as usual.
    explicit SocketClient(quint16 port, int receiveBuffer = 0)
        : socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const timeval patience{.tv_sec = 10, .tv_usec = 0};
        setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
        if (receiveBuffer > 0) {
            setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
        }
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
            close();
        }
    }
    ~SocketClient() { close(); }
    SocketClient(SocketClient &&other) noexcept
        : socket(std::exchange(other.socket, -1))
    {}
    SocketClient(const SocketClient &) = delete;
    SocketClient &operator=(const SocketClient &) = delete;

    bool send(const QByteArray &bytes)
    {
        qsizetype sent = 0;
        while (sent < bytes.size()) {
            const auto count = ::send(socket, bytes.constData() + sent,
                                      static_cast<size_t>(bytes.size() - sent), MSG_NOSIGNAL);
            if (count <= 0) {
                return false;
            }
            sent += count;
        }
        return true;
    }

    /// At least @p count bytes, fewer when the peer ended before; @p ended is set then, and tells
    /// whether it ended properly: not by a reset, and not by keeping silent.
    QByteArray receive(qsizetype count, bool *ended = nullptr)
    {
        QByteArray all;
        std::array<char, 65536> buffer{};
        while (all.size() < count) {
            const auto got = ::recv(socket, buffer.data(), buffer.size(), 0);
            if (got <= 0) {
                if (ended) {
                    *ended = got == 0;
                }
                break;
            }
            all.append(buffer.data(), got);
        }
        return all;
    }
    QByteArray receiveAll(bool *ended = nullptr)
    {
        return receive(std::numeric_limits<qsizetype>::max(), ended);
    }

    void close()
    {
        if (socket >= 0) {
            ::close(std::exchange(socket, -1));
        }
    }
    void reset()
    {
        const linger hard{.l_onoff = 1, .l_linger = 0};
        setsockopt(socket, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
        close();
    }

private:
    int socket;
};

/// 0 when it is none.
inline int statusOf(const QByteArray &answer)
{
    return answer.startsWith("HTTP/1.") ? answer.mid(9, 3).toInt() : 0;
}

inline QByteArray bodyOf(const QByteArray &answer)
{
    const auto end = answer.indexOf("\r\n\r\n");
    return end < 0 ? QByteArray() : answer.mid(end + 4);
}

} // namespace velometer
