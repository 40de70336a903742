#pragma once

#include <QAbstractSocket>
#include <QString>
#include <QStringList>

class QObject;
class QTcpSocket;

/// What the measuring sockets ask of the kernel, in one place. Options are set on a best-effort
/// basis: a kernel that lacks one is no failure of the test, it only measures with what it has.
namespace velometer::Sockets {

/// Restricts every later connectToHost to IPv4 or IPv6; AnyIPProtocol lifts the restriction.
void setProtocol(QAbstractSocket::NetworkLayerProtocol protocol);

/// Connects for reading and writing, directly and with the protocol chosen by setProtocol; names
/// resolve asynchronously. A port outside 1 to 65535 ends in the socket's error signal like a dead
/// port.
void connectToHost(QTcpSocket &socket, const QString &host, int port);

/// Drops @p socket at once: it signals @p receiver no more, and may itself be the sender of the
/// signal being handled. Sets the pointer to null; does nothing when it is.
void release(QTcpSocket *&socket, const QObject *receiver);

/// Asks for the congestion control @p name, where it is not empty and the kernel has it, else for
/// BBR: a mobile link loses packets without being congested, and a congestion control that takes
/// loss for congestion would measure itself instead of the link.
void chooseCongestionControl(const QTcpSocket &socket, const QString &name);

/// Those that the kernel has ready, "bbr", "cubic"; empty when it does not say.
QStringList congestionControls();

/// Name of the congestion control that the kernel runs on @p socket; empty when it does not say.
QString congestionControl(const QTcpSocket &socket);

struct ConnectTime
{
    qint64 ns = 0;
    bool resent = false; ///< the first SYN or its answer was lost; the wait for it is in the time
};
/// How long @p socket, which has just connected and moved no data, took for it: the kernel's time,
/// taken when the answer reached it, where it has one that is no more than @p byClock (ns). A
/// program learns of the answer turns of an event loop later.
ConnectTime connectTime(const QTcpSocket &socket, qint64 byClock);

/// Lets the next close or abort drop what the kernel still holds instead of sending it on: the rest
/// of an ended upload would otherwise fill the link while the next phase measures.
void dropUnsentOnClose(const QTcpSocket &socket);

/// Bounds what the kernel takes beyond what is under way on the link, so that "bytes written"
/// follows the network rather than the growth of a buffer.
void limitUnsent(const QTcpSocket &socket, int bytes);

/// Invites the other end to send at most @p bytes more than what has come. What it was invited to
/// before stays valid.
void limitWindow(const QTcpSocket &socket, qint64 bytes);

/// Bytes that the kernel has taken and the other end has not confirmed; 0 when it does not say.
qint64 unconfirmedBytes(const QTcpSocket &socket);

/// Bytes that the kernel has taken and the other end does not have: what has come behind a lost
/// segment, which it has told of (SACK), is not among them, as it is among the unconfirmed ones.
qint64 missingBytes(const QTcpSocket &socket);

} // namespace velometer::Sockets
