#include "runningservice.h"
#include "support/registeredtest.h"
#include "support/rows.h"

#include <QProcess>
#include <QSslConfiguration>
#include <QSslSocket>

using namespace Qt::StringLiterals;

namespace velometer {

/// Who is served where, and whom the service takes its clients for.
class ServiceListenersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { makeCertificate(u"first"_s); }

    void takesFromAProxyWhomItSpeaksFor_data()
    {
        const QByteArray v2("\r\n\r\n\0\r\nQUIT\n", 12);
        const QByteArray v4 = v2 + QByteArray("\x21\x11\0\x0c\xc0\0\2\7\x7f\0\0\1\0\1\0\2", 16);
        const QByteArray v6 = v2 + QByteArray("\x21\x21\0\x24\x20\1\x0d\xb8", 8) +
                              QByteArray(11, '\0') + '\x05' + QByteArray(20, '\0');
        const Rows<QByteArray, QByteArray, QString> row("header", "forwarded", "client");
        row("nobody tells", {}, {}, "127.0.0.1");
        row("PROXY over IPv4", v4, {}, "192.0.2.7");
        row("PROXY over IPv6", v6, {}, "2001:db8::5");
        row("PROXY that looks after us", v2 + QByteArray("\x20\0\0\0", 4), {}, "127.0.0.1");
        row("PROXY of a later version", v2 + QByteArray("\x31\x11\0\x0c", 4) + QByteArray(12, 'x'),
            {}, {});
        row("PROXY too short for its addresses", v2 + QByteArray("\x21\x11\0\4abcd", 8), {}, {});
        row("PROXY longer than anything", v2 + QByteArray("\x21\x11\xff\xff", 4), {}, {});
        row("PROXY without an end", v2, {}, {});
        row("one", {}, "198.51.100.3", "198.51.100.3");
        row("an invention before the truth", {}, "203.0.113.9, 198.51.100.3", "198.51.100.3");
        row("a proxy behind a proxy", {}, "198.51.100.4,127.9.9.9", "198.51.100.4");
        row("no address", {}, "unknown", "127.0.0.1");
        row("both", v4, "198.51.100.3", "192.0.2.7");
    }
    void takesFromAProxyWhomItSpeaksFor()
    {
        const auto [header, forwarded, client] = currentRow<QByteArray, QByteArray, QString>();
        for (const bool trusted : {true, false}) {
            const RunningService service([&](ServerOptions &options) {
                if (trusted) {
                    options.proxies = {*AddressRange::parse("127.0.0.0/8"),
                                       *AddressRange::parse("::1")};
                }
            });
            QByteArray request = "GET /velometer/initialise.php HTTP/1.1\r\nHost: x\r\n";
            request += forwarded.isEmpty() ? "" : "X-Forwarded-For: " + forwarded + "\r\n";
            // In pieces, as it may come.
            SocketClient socket(service.port());
            socket.send(header.left(7));
            socket.send(header.mid(7));
            socket.send(request + "\r\n");
            const QByteArray answer = socket.receiveAll();
            if (trusted && client.isEmpty()) {
                QCOMPARE(answer, QByteArray());
            } else if (trusted || header.isEmpty()) {
                const QByteArray expected = trusted ? client.toLatin1() : "127.0.0.1";
                QVERIFY2(answer.contains(";Remote-IP:" + expected + ';'), answer);
            } else {
                QCOMPARE(statusOf(answer), 400);
            }
        }
    }

    void countsAProxysClientsEachForHimself()
    {
        const RunningService service([](ServerOptions &options) {
            options.proxies = {*AddressRange::parse("127.0.0.1/32")};
            options.maxStreamsPerAddress = 1;
            options.maxConnectionsPerAddress = 1;
        });
        const auto reserve = [&](const QByteArray &client, int test) {
            return statusOf(service.exchange(
                "GET /velometer/initialise.php?testuserid=1&seriesid=1&testid=100000" +
                QByteArray::number(test) + " HTTP/1.1\r\nHost: x\r\nX-Forwarded-For: " + client +
                "\r\n\r\n"));
        };
        const SocketClient idle(service.port());
        const SocketClient other(service.port());
        QCOMPARE(reserve("192.0.2.1", 1), 200);
        QCOMPARE(reserve("192.0.2.1", 2), 503);
        QCOMPARE(reserve("192.0.2.2", 3), 200);
    }

    void tellsTheOperatorAlone()
    {
        const RunningService service([](ServerOptions &options) {
            options.listenAdmin = {{QStringLiteral("127.0.0.1"), 0}};
        });
        QCOMPARE(statusOf(service.get("/metrics")), 404);
        QCOMPARE(statusOf(service.get("/healthz")), 200);
        const auto admin = [&](const QByteArray &path) {
            SocketClient client(service.port(1));
            client.send("GET " + path + " HTTP/1.1\r\nHost: x\r\n\r\n");
            return client.receiveAll();
        };
        QVERIFY(admin("/metrics").contains("\nvelometer_connections 1\n"));
        QCOMPARE(statusOf(admin("/healthz")), 200);
        QCOMPARE(statusOf(admin("/velometer/initialise.php")), 404);
        const HeldFile held(service.databaseFile());
        QVERIFY(!bodyOf(service.get("/healthz")).contains(':'));
        QVERIFY(bodyOf(admin("/healthz")).contains(": it does not answer"));
    }

    void servesPagesBehindACipher()
    {
        RunningService service([&](ServerOptions &options) {
            options.listenTls = {{QStringLiteral("127.0.0.1"), 0}};
            options.tlsCertificate = directory.filePath(u"certificate"_s);
            options.tlsKey = directory.filePath(u"key"_s);
        });
        const quint16 port = service.port(1);
        QString name;
        const auto get = [&](const QByteArray &path) {
            QSslSocket socket;
            socket.setPeerVerifyMode(QSslSocket::VerifyNone);
            socket.connectToHostEncrypted(u"127.0.0.1"_s, port);
            if (!socket.waitForEncrypted()) {
                return QByteArray();
            }
            name = socket.peerCertificate().subjectInfo(QSslCertificate::CommonName).value(0);
            socket.write("GET " + path + " HTTP/1.1\r\nHost: x\r\n\r\n");
            QByteArray answer;
            while (bodyOf(answer).size() < lengthOf(answer) && socket.waitForReadyRead()) {
                answer += socket.readAll();
            }
            return answer;
        };
        QCOMPARE(statusOf(get("/")), 200);
        QCOMPARE(name, u"first"_s);
        QVERIFY(get("/velometer/api/v1/openapi.json").endsWith("}\n")); // long, and whole
        QCOMPARE(statusOf(get("/velometer/downloadtest.php?logtraffic=1")), 404);
        // Who speaks plainly, or says nothing, is in nobody's way.
        SocketClient plain(port);
        plain.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
        QVERIFY(!plain.receiveAll().contains("HTTP"));
        const SocketClient silent(port);

        makeCertificate(u"second"_s);
        QString error;
        QVERIFY2(service.get().reload({}, &error), qUtf8Printable(error));
        QCOMPARE(statusOf(get("/")), 200);
        QCOMPARE(name, u"second"_s);
        QVERIFY(QFile::resize(directory.filePath(u"key"_s), 20));
        QVERIFY(!service.get().reload({}, &error));
        QVERIFY(error.startsWith(u"The certificate's key "_s));
        QCOMPARE(statusOf(get("/")), 200);
        QCOMPARE(name, u"second"_s);
    }

private:
    /// Of a body, as its head tells; one more than any before the head is there.
    static qsizetype lengthOf(const QByteArray &answer)
    {
        const QByteArray key = "\r\nContent-Length: ";
        const auto at = answer.indexOf(key);
        return at < 0 ? std::numeric_limits<qsizetype>::max()
                      : answer.mid(at + key.size()).split('\r').constFirst().toLongLong();
    }
    void makeCertificate(const QString &name)
    {
        QProcess program;
        program.start(u"openssl"_s,
                      {u"req"_s, u"-x509"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
                       u"ec_paramgen_curve:P-256"_s, u"-nodes"_s, u"-days"_s, u"2"_s, u"-subj"_s,
                       u"/CN="_s + name, u"-keyout"_s, directory.filePath(u"key"_s), u"-out"_s,
                       directory.filePath(u"certificate"_s)});
        QVERIFY2(program.waitForFinished() && program.exitCode() == 0,
                 program.readAllStandardError());
    }

    QTemporaryDir directory;
};

} // namespace velometer

VELOMETER_TEST(ServiceListenersTest)
#include "service_listeners_test.moc"
