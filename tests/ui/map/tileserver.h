#pragma once

#include <QBuffer>
#include <QImage>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

namespace velometer {

/// A tile server of a few lines on loopback that records what it is asked and answers, or holds its
/// answers back, as the test says. One request a connection.
class TileServer : public QTcpServer
{
public:
    struct Request
    {
        QByteArray path;
        QByteArray head;
        QTcpSocket *socket = nullptr;
    };

    TileServer()
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                serve(socket);
            }
        });
        listen(QHostAddress::LocalHost);
    }

    QString address() const
    {
        return QStringLiteral("http://127.0.0.1:%1/{z}/{x}/{y}.png").arg(serverPort());
    }

    /// Answers what is held and from now on everything at once.
    void release()
    {
        holding = false;
        for (const Request &request : std::exchange(held, {})) {
            reply(request);
        }
    }

    static QByteArray message(const QByteArray &status, const QByteArray &headers,
                              const QByteArray &body)
    {
        return "HTTP/1.1 " + status +
               "\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\n" + headers + "\r\n" + body;
    }

    static QByteArray png(int width, int height)
    {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::red);
        QBuffer buffer;
        image.save(&buffer, "png");
        return buffer.data();
    }

    QList<Request> requests;
    std::function<QByteArray(const Request &)> answer;
    bool holding = false;
    QList<Request> held; ///< open requests without an answer

private:
    void serve(QTcpSocket *socket)
    {
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            held.removeIf([socket](const Request &request) { return request.socket == socket; });
            socket->deleteLater();
        });
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            if (!socket->peek(socket->bytesAvailable()).contains("\r\n\r\n")) {
                return;
            }
            const QByteArray head = socket->readAll().toLower(); // names of lines are of any case
            const Request request{head.split(' ').value(1), head, socket};
            requests += request;
            if (!holding) {
                return reply(request);
            }
            held += request;
        });
    }

    void reply(const Request &request)
    {
        request.socket->write(answer(request));
        request.socket->disconnectFromHost();
    }
};

} // namespace velometer
