#pragma once

#include <QByteArray>

/// A blocking TCP client on loopback that does exactly what it is told. Waits ten seconds at most,
/// then everything fails.
class SocketClient
{
public:
    explicit SocketClient(quint16 port);
    ~SocketClient();
    SocketClient(SocketClient &&other) noexcept;
    SocketClient(const SocketClient &) = delete;
    SocketClient &operator=(const SocketClient &) = delete;

    bool send(const QByteArray &bytes);

    /// At least @p count bytes, fewer when the peer ended before; @p ended is set then, and tells
    /// whether it ended properly: not by a reset, and not by keeping silent.
    QByteArray receive(qsizetype count, bool *ended = nullptr);
    QByteArray receiveAll(bool *ended = nullptr);

    void close();
    void reset();

    /// Everything the service answers to @p request.
    static QByteArray exchange(quint16 port, const QByteArray &request);
    static QByteArray get(quint16 port, const QByteArray &target);

private:
    int m_socket;
};

int statusOf(const QByteArray &answer); ///< 0 when it is none
QByteArray bodyOf(const QByteArray &answer);
