#include "runningservice.h"
#include "socketclient.h"

#include <QTest>

#include <condition_variable>
#include <mutex>

using namespace std::chrono_literals;

/// Control requests against the real service.
class ServiceRequestsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersWithStatus_data();
    void answersWithStatus();
    void closesAHeadThatDoesNotEnd();
    void answersTwoHundredConnectionsAtOnce();
    void tellsAnAddressWithTooManyConnections();
    void initialiseDescribesTheConnection_data();
    void initialiseDescribesTheConnection();
    void aStuckResolverHoldsNobody();
    void writesIPv4AddressesAsSuchOnADualSocket();
};

void ServiceRequestsTest::answersWithStatus_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("part");
    const auto row = [](const char *name, const QByteArray &request, int status,
                        const QByteArray &part = {}) {
        QTest::newRow(name) << request + " HTTP/1.1\r\nHost: x\r\n\r\n" << status << part;
    };
    const QByteArray v = "/velometer/";
    const QByteArray ids = "&testuserid=1&seriesid=2&testid=3";
    row("alive", "GET /healthz", 200, "ok\n");
    row("unknown path", "GET /velometer/", 404);
    row("path with a query is found", "GET /healthz?a=b", 200);
    row("wrong method names the right one", "DELETE /velometer/redirect_iphone.php", 405,
        "Allow: POST\r\n");
    row("HEAD", "HEAD /healthz", 405);
    row("user id", "GET " + v + "getIDwithUUID.jsp?UUID=123456-Ab", 200, ";0");
    row("no UUID", "GET " + v + "getIDwithUUID.jsp", 400);
    row("empty UUID", "GET " + v + "getIDwithUUID.jsp?UUID=", 400);
    row("UUID with a quote", "GET " + v + "getIDwithUUID.jsp?UUID=a'b", 400);
    row("UUID of 65", "GET " + v + "getIDwithUUID.jsp?UUID=" + QByteArray(65, 'a'), 400);
    row("download without time", "GET " + v + "downloadtest.php?mss=1460" + ids, 400);
    row("download with a fraction", "GET " + v + "downloadtest.php?logtraffic=0.1", 400);
    row("download with a sign", "GET " + v + "downloadtest.php?logtraffic=-1", 400);
    row("download beyond 64 bits", "GET " + v + "downloadtest.php?logtraffic=99999999999999999999",
        400);
    row("upload without ids", "POST " + v + "uploadtest.php?logtraffic=1", 400);
    row("upload with half a number", "POST " + v + "uploadtest.php?logtraffic=1&testuserid=1x",
        400);
    row("first of two counts", "GET " + v + "getuploadresult.php?testuserid=x" + ids, 400);
    row("no such upload", "GET " + v + "getuploadresult.php?a=b" + ids, 404);
    row("unknown page", "GET " + v + "Controller?page=Admin&userid=1", 404);
    row("user without digits", "GET " + v + "Controller?page=UserReport&userid=%31", 404, "<html");
    row("unknown user", "GET " + v + "Controller?page=UserReport&userid=1&language=de", 404,
        "lang=\"de\"");
    row("no HTTP", "hello there friend of mine", 400);
    row("NUL in the path", QByteArray("GET /health\0z", 13), 400);
    row("head of 9000 bytes", "GET /healthz?" + QByteArray(9000, 'x'), 431);
    row("two lengths",
        "POST /velometer/redirect_iphone.php HTTP/1.1\r\nContent-Length: 1\r\n"
        "Content-Length: 2\r\nX: ",
        400);
    row("length beyond the limit",
        "POST /velometer/redirect_iphone.php HTTP/1.1\r\nContent-Length: 99999999\r\nX: ", 413);
}

void ServiceRequestsTest::answersWithStatus()
{
    QFETCH(const QByteArray, request);
    QFETCH(const int, status);
    QFETCH(const QByteArray, part);
    static const RunningService service;
    const QByteArray answer = SocketClient::exchange(service.port(), request);
    QCOMPARE(statusOf(answer), status);
    QVERIFY2(answer.contains(part), answer.constData());
    QVERIFY(answer.contains("\r\nContent-Length: " + QByteArray::number(bodyOf(answer).size()) +
                            "\r\n"));
}

void ServiceRequestsTest::closesAHeadThatDoesNotEnd()
{
    auto options = RunningService::defaults();
    options.headTimeout = 200ms;
    RunningService service(options);
    SocketClient silent(service.port());
    SocketClient slow(service.port());
    QVERIFY(slow.send("GET /healthz HTTP/1.1\r\nHost: "));
    QCOMPARE(slow.receiveAll(), QByteArray());
    QCOMPARE(silent.receiveAll(), QByteArray());
    // That of the request itself is the one that is left.
    QVERIFY(service.waitForMetric("connections", 1));
}

void ServiceRequestsTest::answersTwoHundredConnectionsAtOnce()
{
    RunningService service;
    std::vector<SocketClient> clients;
    for (int i = 0; i < 200; ++i) {
        clients.emplace_back(service.port());
    }
    for (std::size_t i = 0; i < clients.size(); ++i) {
        QVERIFY(clients[i].send("GET /velometer/getIDwithUUID.jsp?UUID=u" + QByteArray::number(i) +
                                " HTTP/1.1\r\n\r\n"));
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

void ServiceRequestsTest::tellsAnAddressWithTooManyConnections()
{
    auto options = RunningService::defaults();
    options.maxConnectionsPerAddress = 2;
    RunningService service(options);
    const SocketClient first(service.port());
    {
        SocketClient second(service.port());
        QCOMPARE(statusOf(SocketClient::get(service.port(), "/healthz")), 503);
    }
    // The place of a connection that ended is free again.
    QVERIFY(QTest::qWaitFor(
        [&] { return statusOf(SocketClient::get(service.port(), "/healthz")) == 200; }, 10'000));
}

void ServiceRequestsTest::initialiseDescribesTheConnection_data()
{
    QTest::addColumn<QByteArray>("resolved");
    QTest::addColumn<QByteArray>("hostname");
    QTest::newRow("a name") << QByteArray("host-1.example") << QByteArray("host-1.example");
    QTest::newRow("none") << QByteArray() << QByteArray("127.0.0.1");
    QTest::newRow("one that adds a field") << QByteArray("a;MSS:1;") << QByteArray("127.0.0.1");
    QTest::newRow("one for a browser") << QByteArray("<b>") << QByteArray("127.0.0.1");
}

void ServiceRequestsTest::initialiseDescribesTheConnection()
{
    QFETCH(const QByteArray, resolved);
    QFETCH(const QByteArray, hostname);
    auto options = RunningService::defaults();
    options.resolver = [name = resolved.toStdString()](const std::string &) { return name; };
    RunningService service(options);
    const QByteArray body = bodyOf(SocketClient::get(
        service.port(),
        "/velometer/initialise.php?logtraffic=0.1&testuserid=1&seriesid=1&testid=1"));
    QMap<QByteArray, QByteArray> values;
    for (const QByteArray &item : body.split(';')) {
        const auto colon = item.indexOf(':');
        values[item.left(colon)] = item.mid(colon + 1);
    }
    QCOMPARE(values.value("Client-Hostname"), hostname);
    QCOMPARE(values.value("Server-IP"), QByteArray("127.0.0.1"));
    QCOMPARE(values.value("Remote-IP"), QByteArray("127.0.0.1"));
    const int mss = values.value("MSS").toInt();
    QVERIFY2(mss >= 500 && mss <= 65495, body.constData());
    QVERIFY(values.value("WinScaleRcvd", "x").toInt() <= 14);
    QVERIFY(values.value("MaxRwinRcvd").toInt() > mss);
    for (const char *flag : {"SACK", "Timestamp"}) {
        QVERIFY2(values.value(flag) == "0" || values.value(flag) == "1", body.constData());
    }
    QVERIFY(body.endsWith(';'));
}

void ServiceRequestsTest::aStuckResolverHoldsNobody()
{
    struct Gate
    {
        std::mutex mutex;
        std::condition_variable opened;
        bool open = false;
    };
    // Look-ups still hang when the service is gone.
    const auto gate = std::make_shared<Gate>();
    auto options = RunningService::defaults();
    options.nameTimeout = 100ms;
    options.resolver = [gate](const std::string &) {
        std::unique_lock lock(gate->mutex);
        gate->opened.wait(lock, [&] { return gate->open; });
        return std::string("late.example");
    };
    {
        RunningService service(options);
        std::vector<SocketClient> clients;
        for (int i = 0; i < 100; ++i) {
            clients.emplace_back(service.port());
            QVERIFY(clients.back().send("GET /velometer/initialise.php HTTP/1.1\r\n\r\n"));
        }
        for (auto &client : clients) {
            QVERIFY(bodyOf(client.receiveAll()).startsWith("Client-Hostname:127.0.0.1;"));
        }
    }
    const std::lock_guard lock(gate->mutex);
    gate->open = true;
    gate->opened.notify_all();
}

void ServiceRequestsTest::writesIPv4AddressesAsSuchOnADualSocket()
{
    auto options = RunningService::defaults();
    options.listen = {{.address = "::", .port = 0}};
    RunningService service(options);
    if (service.port() == 0) {
        QSKIP("no IPv6 on this machine");
    }
    const QByteArray body = SocketClient::get(service.port(), "/velometer/initialise.php");
    QVERIFY2(body.contains("Server-IP:127.0.0.1;Remote-IP:127.0.0.1;"), body.constData());
}

QTEST_GUILESS_MAIN(ServiceRequestsTest)
#include "service_requests_test.moc"
