#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <sys/socket.h>

namespace velometer {

/// A port that neither takes a connection nor refuses it: its queue of waiting ones is full.
class SilentPeer
{
public:
    SilentPeer()
    {
        if (!server.listen(QHostAddress::LocalHost) ||
            ::listen(static_cast<int>(server.socketDescriptor()), 0) != 0) {
            qFatal("no loopback port");
        }
        server.pauseAccepting();
        waiting.connectToHost(server.serverAddress(), server.serverPort());
        waiting.waitForConnected();
    }

    int port() const { return server.serverPort(); }
    /// The connection that fills the queue.
    const QTcpSocket &connected() const { return waiting; }

private:
    QTcpServer server;
    QTcpSocket waiting;
};

} // namespace velometer
