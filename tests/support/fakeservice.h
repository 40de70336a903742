#pragma once

#include <QHostAddress>
#include <QList>
#include <QMap>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

namespace velometer {

/// A measurement service on a loopback port that records every byte it gets and answers as told.
/// With nothing told it serves a whole test, with streams that end at once instead of after
/// seconds.
class FakeService : public QObject
{
public:
    /// How a request is answered, once its head is complete (and its body, where one is awaited).
    struct Answer
    {
        QByteArray bytes;
        bool close = true;           ///< else the connection stays open and silent
        QByteArray awaitedTail = {}; ///< answer only when the request ends with this
        qint64 awaitedBytes = 0;     ///< answer only when the request is this long
        int secondHalfMs = 0;        ///< comes so much later, and nothing is read any more
    };

    FakeService()
    {
        connect(&server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = server.nextPendingConnection()) {
                serve(socket);
            }
        });
        if (!server.listen(QHostAddress::LocalHost)) {
            qFatal("no loopback port");
        }
        listenedPort = server.serverPort();

        script("getIDwithUUID", {ok("52077;12")});
        script("initialise",
               {ok("Client-Hostname:client.example;Server-IP:192.0.2.1;Remote-IP:192.0.2.2;"
                   "MSS:1460;WinScaleRcvd:7;MaxRwinRcvd:65535;SACK:1;Timestamp:1;")});
        script("downloadtest", {QByteArray("HTTP/1.0 200 OK\r\n\r\n") + QByteArray(20000, 'x')});
        script("uploadtest", {QByteArray(), true, {}, 5000});
        script("getuploadresult", {ok("100000;200000;300000")});
        script("redirect_iphone", {ok("stored"), true, "</PerformanceIPhone>"});
    }

    int port() const { return listenedPort; }

    /// From now on requests whose first line contains @p path are answered so.
    void script(const QByteArray &path, const Answer &answer) { answers[path] = answer; }

    /// Streams long enough for a rate.
    void serveForAWhile()
    {
        answers["downloadtest"].secondHalfMs = answers["uploadtest"].secondHalfMs = 1000;
    }

    /// From now on connections are refused.
    void refuse() { server.close(); }

    /// The requests whose first line contains @p path, in order of their connections.
    QList<QByteArray> requests(const QByteArray &path) const
    {
        QList<QByteArray> found;
        for (const QByteArray &each : received) {
            if (each.left(each.indexOf('\r')).contains(path)) {
                found.append(each);
            }
        }
        return found;
    }
    /// Connections that neither end has closed.
    qsizetype open() const
    {
        const auto sockets = server.findChildren<QTcpSocket *>();
        return std::count_if(sockets.begin(), sockets.end(), [](const QTcpSocket *each) {
            return each->state() == QAbstractSocket::ConnectedState;
        });
    }
    /// Connections that sent nothing: the connect probes.
    int probes() const { return static_cast<int>(received.count(QByteArray())); }

    static QByteArray ok(const QByteArray &body)
    {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + body;
    }

private:
    void serve(QTcpSocket *socket)
    {
        const qsizetype number = received.size();
        received.append(QByteArray());
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, number] {
            received[number] += socket->readAll();
            if (!socket->property("answered").toBool()) {
                respond(socket, received[number]);
            }
        });
    }

    void respond(QTcpSocket *socket, const QByteArray &request)
    {
        if (!request.contains("\r\n\r\n")) {
            return;
        }
        const QByteArray line = request.left(request.indexOf('\r'));
        for (auto each = answers.begin(); each != answers.end(); ++each) {
            if (!line.contains(each.key())) {
                continue;
            }
            if (request.size() < each->awaitedBytes || !request.endsWith(each->awaitedTail)) {
                return;
            }
            socket->setProperty("answered", true);
            const Answer answer = *each;
            if (answer.secondHalfMs == 0) {
                return answerWith(socket, answer.bytes, answer.close);
            }
            socket->disconnect(this);
            socket->setReadBufferSize(1);
            const qsizetype half = answer.bytes.size() / 2;
            socket->write(answer.bytes.left(half));
            QTimer::singleShot(answer.secondHalfMs, Qt::PreciseTimer, socket,
                               [=] { answerWith(socket, answer.bytes.mid(half), answer.close); });
            return;
        }
    }

    static void answerWith(QTcpSocket *socket, const QByteArray &bytes, bool close)
    {
        socket->write(bytes);
        if (close) {
            socket->disconnectFromHost();
        }
    }

    QTcpServer server;
    quint16 listenedPort = 0;
    QMap<QByteArray, Answer> answers;
    QList<QByteArray> received;
};

} // namespace velometer
