#include "reports/placeholders.h"
#include "reports/reportparser.h"
#include "runningservice.h"
#include "socketclient.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// Reports on their way from a client's bytes to a row and to the user's page.
class ServiceReportsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesGoodReportsOnly_data();
    void takesGoodReportsOnly();
    void storesTheFigures();
    void storesTextEncodedTwice_data();
    void storesTextEncodedTwice();
    void fillsPlaceholdersOnce_data();
    void fillsPlaceholdersOnce();
    void storesAReportOnceHoweverOftenItComes();
    void answersBeforeAllIsRead();
    void showsReportsEscaped_data();
    void showsReportsEscaped();

private:
    static QByteArray report();
    static QByteArray changed(const QByteArray &from, const QByteArray &to);
    static QByteArray post(const QByteArray &body, qsizetype length);
    static QVariantMap onlyRow(const RunningService &service);
};

QByteArray ServiceReportsTest::report()
{
    QFile file(QStringLiteral(REPORT_FILE));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The report with one text in place of another, which must be there.
QByteArray ServiceReportsTest::changed(const QByteArray &from, const QByteArray &to)
{
    QByteArray text = report();
    if (!text.contains(from)) {
        qFatal("the report lacks %s", from.constData());
    }
    return text.replace(from, to);
}

QByteArray ServiceReportsTest::post(const QByteArray &body, qsizetype length)
{
    return "POST /velometer/redirect_iphone.php HTTP/1.1\r\nHost: x:80\r\nConnection: Close\r\n"
           "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
           QByteArray::number(length) + "\r\n\r\n" + body;
}

/// The one row of the reports; empty when there is none, or more than one.
QVariantMap ServiceReportsTest::onlyRow(const RunningService &service)
{
    QVariantMap row;
    {
        auto database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"look"_s);
        database.setDatabaseName(service.databaseFile());
        if (database.open()) {
            QSqlQuery query(u"SELECT * FROM reports"_s, database);
            if (query.next()) {
                for (int i = 0; i < query.record().count(); ++i) {
                    row[query.record().fieldName(i)] = query.value(i);
                }
            }
            if (query.next()) {
                row.clear();
            }
        }
    }
    QSqlDatabase::removeDatabase(u"look"_s);
    return row;
}

void ServiceReportsTest::takesGoodReportsOnly_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    const auto row = [](const char *name, const QByteArray &body, int status) {
        QTest::newRow(name) << body << status;
    };
    QByteArray attributes;
    for (int i = 0; i < 300; ++i) {
        attributes += " a" + QByteArray::number(i) + "=''";
    }
    row("as sent", report(), 200);
    row("retried",
        changed("</ClientTime>", "</ClientTime><ClientRetryTime>2</ClientRetryTime>"
                                 "<ClientRetryTime>1</ClientRetryTime>"),
        200);
    row("nothing measured", changed("<Min>35000</Min>", "<Min>-1</Min>"), 200);
    row("greatest test id",
        changed("DCXd2nnbGLcgU6w1QVIVZw==", "5AYqZqvtzt3PhPJ3pIqRtw==")
            .replace("<TestID>3", "<TestID>9223372036854775807"),
        200);
    row("in many pieces", changed("<OS>", "<OS>" + QByteArray(60'000, 'x')), 200);
    row("empty", QByteArray(), 400);
    row("no XML", "garbage", 400);
    row("cut off", report().chopped(20), 400);
    row("not well-formed", changed("<UserData>", "<UserData><b>"), 400);
    row("another root", changed("<PerformanceIPhone Hash", "<Performance Hash"), 400);
    row("nothing but the end", "</PerformanceIPhone>", 400);
    row("without user", changed("<UserID>1436911191399025</UserID>", ""), 400);
    row("user twice", changed("</UserID>", "</UserID><UserID>2</UserID>"), 400);
    row("user 0", changed("<UserID>1436911191399025", "<UserID>0"), 400);
    row("test with a blank", changed("<TestID>3", "<TestID> 3"), 400);
    row("test as a fraction", changed("<TestID>3", "<TestID>3.0"), 400);
    row("time beyond 64 bits",
        changed("<ClientTime>1700000000123", "<ClientTime>9223372036854775808"), 400);
    row("element inside a number", changed("<TestID>3", "<TestID>3<b/>"), 400);
    row("entities that grow",
        changed("HSI-QRT-Mobile.dtd\">", "x\" [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;\">]>"),
        400);
    row("entities without end",
        changed("HSI-QRT-Mobile.dtd\">", "x\" [" + QByteArray(2000, ' ') + "]>"), 400);
    row("a tag of many attributes", changed("<UserData>", "<UserData" + attributes + ">"), 400);
    row("angle bracket in an attribute", changed("<UserData>", "<UserData a=\">\" b='>'>"), 200);
    row("tags in a comment",
        changed("<UserData>", "<UserData><!-- <a <b " + QByteArray(2000, 'x') + "-->"), 200);
    row("entity of a file", changed("<Location>LocHome", "<Location>&file;"), 400);
    row("no UTF-8", changed("Cafe", "Caf\xe9"), 400);
    row("figure changed", changed("<Avg>25000000", "<Avg>25000001"), 403);
    row("no hash", changed(" Hash=\"DCXd2nnbGLcgU6w1QVIVZw==\"", ""), 403);
    row("too large", changed("<OS>", "<OS>\xc3\xa9" + QByteArray(70'000, 'x')), 413);
}

void ServiceReportsTest::takesGoodReportsOnly()
{
    QFETCH(const QByteArray, body);
    QFETCH(const int, status);
    auto options = RunningService::defaults();
    options.maxReportBytes = 65536;
    RunningService service(options);
    // Text with an accent may be longer than it says: then what is read decides.
    const auto length = status == 413 ? 1000 : body.size();
    const QByteArray answer = SocketClient::exchange(service.port(), post(body, length));
    QCOMPARE(statusOf(answer), status);
    QCOMPARE(!onlyRow(service).isEmpty(), status == 200);
    QCOMPARE(service.metric("reports_stored_total"), status == 200 ? 1 : 0);
}

void ServiceReportsTest::storesTheFigures()
{
    RunningService service;
    QCOMPARE(statusOf(SocketClient::exchange(
                 service.port(), post(changed("<Min>35000</Min>", "<Min>-1</Min>"), 10))),
             200);
    QVariantMap row = onlyRow(service);
    QVERIFY(row.value(u"server_time"_s).toLongLong() > row.value(u"client_time"_s).toLongLong());
    const QString document = row.value(u"document"_s).toString();
    QVERIFY(!document.contains(u"###"_s));
    QVERIFY(document.contains(u"<Domain>127.0.0.1</Domain>"_s));
    QVERIFY(document.contains(u"1: Public IP: 127.0.0.1\r\n"_s));
    const QMap<const char *, QVariant> expected{{"userid", 1436911191399025LL},
                                                {"seriesid", 13},
                                                {"testid", 3},
                                                {"client_time", 1700000000123LL},
                                                {"public_ip", u"127.0.0.1"_s},
                                                {"test_server", u"test.example"_s},
                                                {"connection_type", u"WcdmaMode"_s},
                                                {"location", u"LocHome"_s},
                                                {"network", u"Cafe"_s},
                                                {"mcc", u"228"_s},
                                                {"mnc", u"01"_s},
                                                {"download_min", 20000000},
                                                {"download_avg", 25000000},
                                                {"download_max", 30000000},
                                                {"upload_min", 7000000},
                                                {"upload_avg", 8000000},
                                                {"upload_max", 9000000},
                                                {"upload_client_min", 7100000},
                                                {"upload_client_avg", 8100000},
                                                {"upload_client_max", 9100000},
                                                {"rtt_min", QVariant(QString())},
                                                {"rtt_avg", 35900},
                                                {"rtt_max", 37000},
                                                {"latitude", 47.2266},
                                                {"longitude", 8.8184}};
    for (auto column = expected.cbegin(); column != expected.cend(); ++column) {
        QVERIFY2(row.contains(QString::fromLatin1(column.key())), column.key());
        QCOMPARE(row.value(QString::fromLatin1(column.key())).toString(),
                 column.value().toString());
    }
    QVERIFY(row.value(u"rtt_min"_s).isNull());
}

void ServiceReportsTest::storesTextEncodedTwice_data()
{
    QTest::addColumn<QByteArray>("network"); // in UTF-8
    QTest::addColumn<bool>("twice");
    QTest::newRow("umlaut") << QByteArray("Caf\xc3\xa9 \xc3\x9c") << true;
    QTest::newRow("beyond Latin-1") << QByteArray("\xe6\xb8\xac\xe8\xa9\xa6") << true;
    QTest::newRow("outside the first plane") << QByteArray("\xf0\x9f\x93\xb6") << true;
    QTest::newRow("once only") << QByteArray("Caf\xc3\xa9") << false;
    QTest::newRow("once only, beyond Latin-1") << QByteArray("\xe6\xb8\xac") << false;
}

void ServiceReportsTest::storesTextEncodedTwice()
{
    QFETCH(const QByteArray, network);
    QFETCH(const bool, twice);
    RunningService service;
    const QByteArray once = changed("Cafe", network);
    const QByteArray body = twice ? QString::fromLatin1(once).toUtf8() : once;
    SocketClient client(service.port());
    // Up to its announced length first: what is too much comes later.
    const QByteArray request = post(body, once.size());
    const auto first = request.size() - body.size() + once.size();
    QVERIFY(client.send(request.left(first)));
    QTest::qWait(20);
    QVERIFY(client.send(request.mid(first)));
    bool ended = false;
    QCOMPARE(statusOf(client.receiveAll(&ended)), 200);
    QVERIFY(ended);
    QCOMPARE(onlyRow(service).value(u"network"_s).toString().toUtf8(), network);
}

void ServiceReportsTest::fillsPlaceholdersOnce_data()
{
    QTest::addColumn<QString>("document");
    QTest::addColumn<QString>("filled");
    const auto row = [](const char *name, const char *document, const QString &filled) {
        QTest::newRow(name) << QString::fromLatin1(document) << filled;
    };
    row("plain", "<a>###SERVER_IP###</a>###SERVER_IP###", u"<a>::1</a>::1"_s);
    row("unknown ones stay", "###SERVER_X### ###SERVER_IP", u"###SERVER_X### ###SERVER_IP"_s);
    row("a value that is one", "###SERVER_NEST###", u"___SERVER_IP___"_s);
    row("a value that ends CDATA", "<![CDATA[###SERVER_CDATA###]]>", u"<![CDATA[__________b_]]>"_s);
    row("a value that is long", "###SERVER_LONG###", QString(128, QLatin1Char('x')));
}

void ServiceReportsTest::fillsPlaceholdersOnce()
{
    QFETCH(const QString, document);
    QFETCH(const QString, filled);
    const QHash<QString, QString> values{{u"IP"_s, u"::1"_s},
                                         {u"NEST"_s, u"###SERVER_IP###"_s},
                                         {u"CDATA"_s, u"]]>&\"'\n\x01<<b>"_s},
                                         {u"LONG"_s, QString(1000, QLatin1Char('x'))}};
    QCOMPARE(Placeholders::fill(document, values), filled);
}

void ServiceReportsTest::storesAReportOnceHoweverOftenItComes()
{
    RunningService service;
    const QByteArray again =
        changed("</ClientTime>", "</ClientTime><ClientRetryTime>2</ClientRetryTime>");
    QCOMPARE(statusOf(SocketClient::exchange(service.port(), post(report(), 1))), 200);
    QCOMPARE(statusOf(SocketClient::exchange(service.port(), post(again, 1))), 200);
    QCOMPARE(service.metric("reports_stored_total"), 1);
    QCOMPARE(service.metric("reports_repeated_total"), 1);
    QVERIFY(!onlyRow(service).isEmpty());
}

void ServiceReportsTest::answersBeforeAllIsRead()
{
    RunningService service;
    SocketClient refused(service.port());
    QVERIFY(refused.send(post(QByteArray(1'000'000, 'x'), 99'999'999)));
    bool ended = false;
    QCOMPARE(statusOf(refused.receiveAll(&ended)), 413);
    QVERIFY(ended);
    // What it still sends is taken, not answered by a reset.
    for (int i = 0; i < 3; ++i) {
        QVERIFY(refused.send(QByteArray(10'000, 'x')));
        QTest::qWait(20);
    }

    SocketClient stalled(service.port());
    QVERIFY(stalled.send(post(report().left(500), 5000)));
    QCOMPARE(statusOf(stalled.receiveAll()), 408);
}

void ServiceReportsTest::showsReportsEscaped_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<QByteArray>("parameter");
    QTest::addColumn<QByteArray>("download");
    QTest::newRow("asked for German")
        << QByteArray("en-GB") << QByteArray("&language=de") << QByteArray(">25,00 Mbit/s<");
    QTest::newRow("browser's German")
        << QByteArray("de-CH,en;q=0.5") << QByteArray() << QByteArray(">25,00 Mbit/s<");
    QTest::newRow("browser's English")
        << QByteArray("en,de;q=0.5") << QByteArray("&language=fr") << QByteArray(">25.00 Mbit/s<");
    QTest::newRow("neither") << QByteArray("fr") << QByteArray() << QByteArray(">25.00 Mbit/s<");
}

void ServiceReportsTest::showsReportsEscaped()
{
    QFETCH(const QByteArray, language);
    QFETCH(const QByteArray, parameter);
    QFETCH(const QByteArray, download);
    RunningService service;
    QCOMPARE(statusOf(SocketClient::exchange(
                 service.port(), post(changed("LocHome", "&lt;script&gt;&amp;\"x"), 1))),
             200);
    const QByteArray answer = SocketClient::exchange(
        service.port(), "GET /velometer/Controller?page=UserReport&userid=1436911191399025" +
                            parameter + " HTTP/1.1\r\nAccept-Language: " + language + "\r\n\r\n");
    QCOMPARE(statusOf(answer), 200);
    QVERIFY(!answer.contains("<script"));
    QVERIFY(answer.contains("&lt;script&gt;&amp;&quot;x"));
    for (const QByteArray &part :
         {download, QByteArray("2023-11-14 22:13:20"), QByteArray("test.example"),
          QByteArray("13 / 3"), QByteArray("Cache-Control: no-store\r\n"),
          QByteArray("default-src 'none'"), QByteArray("Referrer-Policy: no-referrer\r\n")}) {
        QVERIFY2(answer.contains(part), (part + " is missing in " + answer).constData());
    }
}

QTEST_GUILESS_MAIN(ServiceReportsTest)
#include "service_reports_test.moc"
