#include "main/singleinstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr int connectTimeout = 1000;
constexpr qint64 maxToken = 256;
constexpr auto readTimeout = 2s;

QString socketPath(const QString &key)
{
    const QByteArray hash =
        QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256).toHex().left(16);
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty()) {
        folder = QDir::tempPath();
    }
    return QDir(folder).filePath("velometer-"_L1 + QString::fromLatin1(hash));
}

} // namespace

SingleInstance::SingleInstance(const QString &key)
    : name(socketPath(key))
    , lock(name + ".lock"_L1)
{
    // Two that start at the same moment must not both become the first.
    lock.setStaleLockTime(0);
    connect(&server, &QLocalServer::newConnection, this, &SingleInstance::serve);
}

bool SingleInstance::otherRaised()
{
    if (!lock.tryLock(0) && lock.error() == QLockFile::LockFailedError && askOther()) {
        return true;
    }
    listen();
    return false;
}

bool SingleInstance::askOther() const
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(connectTimeout)) {
        return false;
    }
    socket.write(qgetenv("XDG_ACTIVATION_TOKEN").left(maxToken) + '\n');
    return socket.waitForBytesWritten(connectTimeout);
}

void SingleInstance::listen()
{
    QLocalServer::removeServer(name);
    server.setSocketOptions(QLocalServer::UserAccessOption);
    server.listen(name);
}

void SingleInstance::serve()
{
    while (QLocalSocket *socket = server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        QTimer::singleShot(readTimeout, socket, &QLocalSocket::abort);
        const auto read = [this, socket] {
            if (!socket->canReadLine()) {
                return;
            }
            const QByteArray token = socket->readLine(maxToken + 1).trimmed();
            socket->disconnectFromServer();
            Q_EMIT raiseRequested(token);
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        read();
    }
}

} // namespace velometer
