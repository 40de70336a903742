#include "platform/position/socketnmeainput.h"

#include <QNetworkProxy>

#include <utility>

namespace velometer {

namespace {

/// A receiver sends some 10 KiB/s at most.
constexpr qint64 maxUnread = 16'384;

} // namespace

SocketNmeaInput::SocketNmeaInput(Endpoint endpoint, Peer peer)
    : address(std::move(endpoint))
{
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.setReadBufferSize(maxUnread);
    QObject::connect(&socket, &QTcpSocket::connected, &socket, [this, peer] {
        // Notices a peer that went away without a word, as after a night of sleep.
        socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
        if (peer == Peer::Gpsd) {
            socket.write("?WATCH={\"enable\":true,\"nmea\":true};\n");
        }
    });
}

SocketNmeaInput::~SocketNmeaInput()
{
    socket.disconnect();
}

void SocketNmeaInput::open()
{
    socket.abort();
    wanted = true;
    socket.connectToHost(address.host, static_cast<quint16>(address.port));
}

void SocketNmeaInput::close()
{
    wanted = false;
    socket.abort();
}

NmeaInput::State SocketNmeaInput::state() const
{
    if (!wanted) {
        return State::Closed;
    }
    switch (socket.state()) {
    case QAbstractSocket::HostLookupState:
    case QAbstractSocket::ConnectingState: return State::Opening;
    case QAbstractSocket::ConnectedState: return State::Open;
    case QAbstractSocket::UnconnectedState:
    case QAbstractSocket::BoundState:
    case QAbstractSocket::ListeningState:
    case QAbstractSocket::ClosingState: break;
    }
    return socket.bytesAvailable() > 0 ? State::Open : State::Lost;
}

QByteArray SocketNmeaInput::read(qint64 most)
{
    return socket.read(most);
}

} // namespace velometer
