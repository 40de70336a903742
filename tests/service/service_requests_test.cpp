#ifndef Q_MOC_RUN // which knows no concepts
#include "limits/fairpool.h"
#endif
#include "runningservice.h"
#include "support/registeredtest.h"

#include <QDateTime>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <csignal>
#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

/// Control requests against the real service.
class ServiceRequestsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersWithStatus_data()
    {
        const Rows<QByteArray, int, QByteArray> rows("request", "status", "part");
        const auto row = [&](const char *name, const QByteArray &request, int status,
                             const QByteArray &part = {}) {
            const QByteArray version = request.contains(" HTTP/1.1") ? "" : " HTTP/1.1";
            rows(name, request + version + "\r\nHost: x\r\n\r\n", status, part);
        };
        const QByteArray v = "/velometer/";
        const QByteArray ids = "&testuserid=1&seriesid=2&testid=3";
        row("alive", "GET /healthz", 200, "ok\n");
        row("wrong method names the right one", "DELETE /velometer/redirect_iphone.php", 405,
            "Allow: POST\r\n");
        row("user id", "GET " + v + "getIDwithUUID.jsp?UUID=123456-Ab", 200, ";0");
        row("UUID with a quote", "GET " + v + "getIDwithUUID.jsp?UUID=a'b", 400);
        row("download beyond 64 bits",
            "GET " + v + "downloadtest.php?logtraffic=99999999999999999999", 400);
        row("a congestion control that is none",
            "GET " + v + "downloadtest.php?logtraffic=5&cc=../bbr", 400);
        row("upload without ids", "POST " + v + "uploadtest.php?logtraffic=1", 400);
        row("no such upload", "GET " + v + "getuploadresult.php?a=b" + ids, 404);
        row("unknown user", "GET " + v + "Controller?page=UserReport&userid=1&language=de", 404,
            "lang=\"de\"");
        row("no HTTP", "hello there friend of mine", 400);
        row("NUL in the path", QByteArray("GET /health\0z", 13), 400);
        row("no host", "GET /healthz HTTP/1.1\r\nX-Forwarded-Host: x\r\n\r\n", 400, "one Host");
        row("two hosts", "GET /healthz HTTP/1.1\r\nHost: y", 400);
        row("transfer coding",
            "POST /velometer/redirect_iphone.php HTTP/1.1\r\nTransfer-Encoding: chunked", 501);
        row("no transfer coding", "GET /healthz HTTP/1.1\r\nTransfer-Encoding: identity", 200);
        row("head of 9000 bytes", "GET /healthz?" + QByteArray(9000, 'x'), 431);
        row("two lengths",
            "POST /velometer/redirect_iphone.php HTTP/1.1\r\nContent-Length: 1\r\n"
            "Content-Length: 2\r\nX: ",
            400);
        row("length beyond the limit",
            "POST /velometer/redirect_iphone.php HTTP/1.1\r\nContent-Length: 99999999\r\nX: ", 413);
    }
    void answersWithStatus()
    {
        QFETCH(const QByteArray, request);
        QFETCH(const int, status);
        QFETCH(const QByteArray, part);
        static const RunningService service;
        const QByteArray answer = service.exchange(request);
        QCOMPARE(statusOf(answer), status);
        QVERIFY2(answer.contains(part), answer.constData());
        QVERIFY(answer.contains("\r\nContent-Length: " + QByteArray::number(bodyOf(answer).size()) +
                                "\r\n"));
        const auto date = answer.indexOf("\r\nDate: ") + 8;
        const auto told =
            QDateTime::fromString(QString::fromLatin1(answer.mid(date, 29)), Qt::RFC2822Date);
        QVERIFY2(qAbs(told.secsTo(QDateTime::currentDateTimeUtc())) < 60 &&
                     answer.mid(date + 25, 6) == " GMT\r\n",
                 answer.constData());
    }

    void tellsAClientThatWaitsToSend()
    {
        const RunningService service;
        SocketClient client(service.port());
        const QByteArray go = "HTTP/1.1 100 Continue\r\n\r\n";
        QVERIFY(client.send("POST /velometer/redirect_iphone.php HTTP/1.1\r\nHost: x\r\n"
                            "Expect: 100-Continue\r\nContent-Length: 3\r\n\r\n"));
        QCOMPARE(client.receive(go.size()), go);
        QVERIFY(client.send("abc"));
        QCOMPARE(statusOf(client.receiveAll()), 400);
    }

    void makesRoomForWhoeverSaysSomething()
    {
        const RunningService service([](ServerOptions &o) { o.maxConnections = 10; });
        SocketClient busy(service.port());
        QVERIFY(busy.send(
            "POST /velometer/uploadtest.php?logtraffic=9&testuserid=1&seriesid=2&testid=3 "
            "HTTP/1.0\r\n\r\n"));
        QVERIFY(service.waitForMetric("streams{direction=\"upload\"}", 1));
        std::vector<SocketClient> silent;
        for (int i = 0; i < 30; ++i) {
            silent.emplace_back(service.port());
        }
        QCOMPARE(statusOf(service.get("/healthz")), 200);
        // The oldest have gone, the youngest and the stream have not.
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(silent.at(i).receive(1), QByteArray());
        }
        QVERIFY(silent.back().send("GET /healthz HTTP/1.0\r\n\r\n"));
        QCOMPARE(statusOf(silent.back().receiveAll()), 200);
        QCOMPARE(service.metric("streams{direction=\"upload\"}"), 1);

        // Who is being served keeps his place: there is no room beside him.
        const RunningService small([](ServerOptions &o) { o.maxConnections = 1; });
        SocketClient reader(small.port());
        QVERIFY(reader.send("GET /velometer/downloadtest.php?logtraffic=9 HTTP/1.0\r\n\r\n"));
        QVERIFY(!reader.receive(1).isEmpty());
        QCOMPARE(small.get("/healthz"), QByteArray());
    }

    void takesTurnsBySubscriber()
    {
        FairPool pool(1);
        std::promise<void> taken;
        std::promise<void> gate;
        QByteArray order;
        QVERIFY(pool.post({.network = 1}, [&] {
            taken.set_value();
            gate.get_future().wait();
        }));
        taken.get_future().wait();
        for (std::size_t i = 0; i < FairPool::mostWaiting; ++i) {
            QVERIFY(pool.post({.network = 1}, [&] { order += '1'; }));
        }
        QVERIFY(!pool.post({.network = 1}, [&] { order += 'x'; }));
        QVERIFY(pool.post({.network = 2}, [&] { order += '2'; }));
        QVERIFY(pool.post({.network = 2}, [&] { order += '2'; }));
        gate.set_value();
        pool.join();
        QCOMPARE(order.left(6), "121211");
        QCOMPARE(order.size(), qsizetype(FairPool::mostWaiting) + 2);
        QVERIFY(!pool.post({.network = 2}, [] {}));
    }

    void obeysEachSignal()
    {
        const QTemporaryDir directory;
        const QString config = directory.filePath(u"c.conf"_s);
        const auto configure = [&](const QByteArray &text) {
            QFile file(config);
            return file.open(QIODevice::WriteOnly) && file.write(text) > 0;
        };
        QVERIFY(configure("[Service]\nSalt=one\n"));
        QProcess service;
        service.setProcessChannelMode(QProcess::MergedChannels);
        service.start(QStringLiteral(SERVICE_PROGRAM),
                      {u"--listen"_s, u"127.0.0.1:0"_s, u"--config"_s, config, u"--database"_s,
                       u"sqlite:"_s + directory.filePath(u"r.db"_s)});
        QByteArray said;
        const auto hears = [&](const QByteArray &text) {
            return QTest::qWaitFor(
                [&] {
                    service.waitForReadyRead(10);
                    said += service.readAll();
                    return said.contains(text);
                },
                10'000);
        };
        const auto send = [&](int signal, qint64 process) {
            said.clear();
            ::kill(static_cast<pid_t>(process), signal);
        };
        QVERIFY2(hears("listening on "), said);
        const auto port = static_cast<quint16>(
            said.mid(said.indexOf("127.0.0.1:") + 10, 5).split('\n').constFirst().toInt());
        const auto get = [&](const QByteArray &path) {
            SocketClient client(port);
            client.send("GET " + path + " HTTP/1.1\r\nHost: x\r\n\r\n");
            return client.receiveAll();
        };
        // Read anew, and what makes no sense is told and left.
        send(SIGHUP, service.processId());
        QVERIFY2(hears("anew"), said);
        QVERIFY(configure("[Service\nSalt"));
        send(SIGHUP, service.processId());
        QVERIFY2(hears("\"level\":\"error\""), said);
        QCOMPARE(statusOf(get("/")), 200);

        // A program that does not start replaces nobody.
        send(SIGUSR2, service.processId());
        QVERIFY2(hears("this one goes on"), said);
        QCOMPARE(statusOf(get("/")), 200);
        QVERIFY(configure("[Service]\nSalt=two\n"));

        // A stream lasts from one process into the next; others find the next one at once.
        SocketClient stream(port);
        stream.send("GET /velometer/downloadtest.php?logtraffic=1 HTTP/1.1\r\nHost: x\r\n\r\n");
        QCOMPARE(statusOf(stream.receive(100)), 200);
        SocketClient accepted(port);
        send(SIGUSR2, service.processId());
        QVERIFY2(hears("listening on 127.0.0.1:" + QByteArray::number(port)), said);
        // For a moment either may answer.
        QTRY_VERIFY(get("/metrics").contains("\nvelometer_streams{direction=\"download\"} 0\n"));
        QCOMPARE(statusOf(get("/velometer/getIDwithUUID.jsp?UUID=x")), 200);
        QVERIFY(stream.receive(1'000'000).size() >= 1'000'000);
        stream.close();
        const auto line = said.lastIndexOf("\"pid\":");
        const qint64 next = said.mid(line + 6).split(',').constFirst().toLongLong();
        QVERIFY(line > 0 && next > 0 && next != service.processId());
        send(SIGTERM, next);
        QVERIFY2(hears("\"event\":\"end\""), said);
        accepted.close();
        QVERIFY(service.waitForFinished());
        QCOMPARE(service.exitCode(), 0);
    }

    void closesAHeadThatDoesNotEnd()
    {
        const RunningService service([](ServerOptions &o) { o.headTimeout = 200ms; });
        SocketClient silent(service.port());
        SocketClient slow(service.port());
        QVERIFY(slow.send("GET /healthz HTTP/1.1\r\nHost: "));
        QCOMPARE(slow.receiveAll(), QByteArray());
        QCOMPARE(silent.receiveAll(), QByteArray());
        // That of the request itself is the one that is left.
        QVERIFY(service.waitForMetric("connections", 1));
    }

    void answersTwoHundredConnectionsAtOnce()
    {
        RunningService service;
        std::vector<SocketClient> clients;
        for (int i = 0; i < 200; ++i) {
            clients.emplace_back(service.port());
        }
        for (std::size_t i = 0; i < clients.size(); ++i) {
            QVERIFY(clients[i].send("GET /velometer/getIDwithUUID.jsp?UUID=u" +
                                    QByteArray::number(i) + " HTTP/1.0\r\n\r\n"));
        }
        QSet<QByteArray> users;
        for (auto &client : clients) {
            const QByteArray answer = client.receiveAll();
            QCOMPARE(statusOf(answer), 200);
            const QByteArray id = bodyOf(answer).split(';').constFirst();
            QVERIFY(id.toLongLong() > 0 && id.toLongLong() < 1LL << 53);
            users += id;
        }
        QCOMPARE(users.size(), 200);
    }

    void tellsAnAddressWithTooManyConnections()
    {
        const RunningService service([](ServerOptions &o) { o.maxConnectionsPerAddress = 2; });
        const SocketClient first(service.port());
        {
            SocketClient second(service.port());
            QCOMPARE(statusOf(service.get("/healthz")), 503);
        }
        // The place of a connection that ended is free again.
        QVERIFY(QTest::qWaitFor([&] { return statusOf(service.get("/healthz")) == 200; }, 10'000));
    }

    void initialiseDescribesTheConnection()
    {
        const QRegularExpression form(
            u"^Client-Hostname:(.*);Server-IP:127.0.0.1;Remote-IP:127.0.0.1;MSS:([0-9]+);"
            "WinScaleRcvd:([0-9]+);MaxRwinRcvd:([0-9]+);SACK:[01];Timestamp:[01];$"_s);
        // No name, and one that adds a field, give way to the address. On a socket for both
        // families an IPv4 address is written as such.
        for (const auto &[resolved, hostname, listen] :
             {std::tuple{"host-1.example", "host-1.example", "127.0.0.1"},
              {"", "127.0.0.1", "127.0.0.1"},
              {"a;MSS:1;", "127.0.0.1", "::"}}) {
            const RunningService service([&](ServerOptions &o) {
                o.listen = {{QString::fromLatin1(listen), 0}};
                o.resolver = [name = std::string(resolved)](const std::string &) { return name; };
            });
            if (service.port() == 0) {
                QSKIP("no IPv6 on this machine");
            }
            const QByteArray body = bodyOf(service.get(
                "/velometer/initialise.php?logtraffic=0.1&testuserid=1&seriesid=1&testid=1"));
            const auto match = form.match(QString::fromLatin1(body));
            QVERIFY2(match.hasMatch(), body.constData());
            QCOMPARE(match.captured(1), QLatin1StringView(hostname));
            const int mss = match.captured(2).toInt();
            QVERIFY2(mss >= 500 && mss <= 65495, body.constData());
            QVERIFY(match.captured(3).toInt() <= 14);
            QVERIFY(match.captured(4).toInt() > mss);
        }
    }

    void aStuckResolverHoldsNobody()
    {
        std::promise<void> gate;
        {
            const RunningService service([&](ServerOptions &o) {
                o.nameTimeout = 100ms;
                o.resolver = [opened = gate.get_future().share()](const std::string &) {
                    opened.wait();
                    return std::string("late.example");
                };
            });
            std::vector<SocketClient> clients;
            for (int i = 0; i < 100; ++i) {
                clients.emplace_back(service.port());
                QVERIFY(clients.back().send("GET /velometer/initialise.php HTTP/1.0\r\n\r\n"));
            }
            for (auto &client : clients) {
                QVERIFY(bodyOf(client.receiveAll()).startsWith("Client-Hostname:127.0.0.1;"));
            }
        }
        // Look-ups still hang when the service is gone.
        gate.set_value();
    }
};

} // namespace velometer

VELOMETER_TEST(ServiceRequestsTest)
#include "service_requests_test.moc"
