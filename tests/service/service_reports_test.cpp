#include "reports/placeholders.h"
#include "reports/reportparser.h"
#include "runningservice.h"
#include "socketclient.h"
#include "support/registeredtest.h"
#include "support/rows.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QByteArray report()
{
    QFile file(QStringLiteral(REPORT_FILE));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The report with one text in place of another, which must be there.
QByteArray changed(const QByteArray &from, const QByteArray &to)
{
    QByteArray text = report();
    if (!text.contains(from)) {
        qFatal("the report lacks %s", from.constData());
    }
    return text.replace(from, to);
}

QByteArray post(const QByteArray &body, qsizetype length)
{
    return "POST /velometer/redirect_iphone.php HTTP/1.1\r\nHost: x:80\r\nConnection: Close\r\n"
           "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
           QByteArray::number(length) + "\r\n\r\n" + body;
}

/// The status of the answer to a report; text may be longer than its length says.
int send(const RunningService &service, const QByteArray &body, qsizetype length = 1)
{
    return statusOf(SocketClient::exchange(service.port(), post(body, length)));
}

QString stored(const RunningService &service, const QString &columns)
{
    return sql(service.databaseFile(), {u"SELECT "_s + columns + u" FROM reports"_s}).toString();
}

} // namespace

/// Reports on their way from a client's bytes to a row and to the user's page.
class ServiceReportsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesGoodReportsOnly_data()
    {
        const Rows<QByteArray, int> row("body", "status");
        QByteArray attributes;
        for (int i = 0; i < 300; ++i) {
            attributes += " a" + QByteArray::number(i) + "=''";
        }
        row("as sent", report(), 200);
        row("in many pieces", changed("<OS>", "<OS>" + QByteArray(60'000, 'x')), 200);
        row("cut off", report().chopped(20), 400);
        row("without user", changed("<UserID>1436911191399025</UserID>", ""), 400);
        row("time beyond 64 bits",
            changed("<ClientTime>1700000000123", "<ClientTime>9223372036854775808"), 400);
        row("element inside a number", changed("<TestID>3", "<TestID>3<b/>"), 400);
        row("entities that grow",
            changed("HSI-QRT-Mobile.dtd\">",
                    "x\" [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;\">]>"),
            400);
        row("a tag of many attributes", changed("<UserData>", "<UserData" + attributes + ">"), 400);
        row("angle bracket in an attribute", changed("<UserData>", "<UserData a=\">\" b='>'>"),
            200);
        row("tags in a comment",
            changed("<UserData>", "<UserData><!-- <a <b " + QByteArray(2000, 'x') + "-->"), 200);
        row("too many elements",
            changed("<UserData>", "<UserData>" + QByteArray("<a/>").repeated(45'000)), 400);
        row("too deep",
            changed("<UserData>", "<UserData>" + QByteArray("<a>").repeated(20) +
                                      QByteArray("</a>").repeated(20)),
            400);
        row("known name in another place",
            changed("<UserData>", "<UserData><a><UserID>x</UserID></a>"), 200);
        row("doubled element", changed("</UserID>", "</UserID><UserID>1</UserID>"), 400);
        row("entity of a file", changed("<Location>LocHome", "<Location>&file;"), 400);
        row("no UTF-8", changed("Cafe", "Caf\xe9"), 400);
        row("figure changed", changed("<Avg>25000000", "<Avg>25000001"), 403);
        row("too large", changed("<OS>", "<OS>\xc3\xa9" + QByteArray(300'000, 'x')), 413);
    }
    void takesGoodReportsOnly()
    {
        QFETCH(const QByteArray, body);
        QFETCH(const int, status);
        auto options = RunningService::defaults();
        options.maxReportBytes = 262'144;
        const RunningService service(options);
        QCOMPARE(send(service, body, status == 413 ? 1000 : body.size()), status);
        QCOMPARE(stored(service, u"count(*)"_s).toInt(), status == 200 ? 1 : 0);
        QCOMPARE(service.metric("reports_stored_total"), status == 200 ? 1 : 0);
    }

    void dropsReportsWhenTheServiceEnds()
    {
        const auto parsed = ReportParser::parse(report(), u"8352"_s, true);
        const auto *problem = std::get_if<ReportParser::Problem>(&parsed);
        QVERIFY(problem && *problem == ReportParser::Problem::Stopped);
    }

    void storesTheFigures()
    {
        const RunningService service;
        QCOMPARE(send(service, changed("<Min>35000</Min>", "<Min>-1</Min>")), 200);
        QCOMPARE(stored(service, u"userid||' '||seriesid||' '||testid||' '||client_time"_s),
                 u"1436911191399025 13 3 1700000000123"_s);
        QCOMPARE(stored(service, u"public_ip||' '||test_server||' '||connection_type||' '||"
                                 "location||' '||network||' '||mcc||' '||mnc"_s),
                 u"127.0.0.1 test.example WcdmaMode LocHome Cafe 228 01"_s);
        QCOMPARE(stored(service, u"download_min||' '||download_avg||' '||download_max"_s),
                 u"20000000 25000000 30000000"_s);
        QCOMPARE(stored(service, u"upload_min||' '||upload_avg||' '||upload_max"_s),
                 u"7000000 8000000 9000000"_s);
        QCOMPARE(stored(service, u"upload_client_min||' '||upload_client_avg||' '||"
                                 "upload_client_max"_s),
                 u"7100000 8100000 9100000"_s);
        QCOMPARE(stored(service, u"ifnull(rtt_min, 'none')||' '||rtt_avg||' '||rtt_max"_s),
                 u"none 35900 37000"_s);
        QCOMPARE(stored(service, u"latitude||' '||longitude"_s), u"47.2266 8.8184"_s);
        QVERIFY(stored(service, u"server_time - client_time"_s).toLongLong() > 0);
        const QString document = stored(service, u"document"_s);
        QVERIFY(!document.contains(u"###"_s));
        QVERIFY(document.contains(u"<Domain>127.0.0.1</Domain>"_s));
        QVERIFY(document.contains(u"1: Public IP: 127.0.0.1\r\n"_s));
    }

    void storesTextEncodedTwice_data()
    {
        // network: in UTF-8
        const Rows<QByteArray, bool> row("network", "twice");
        row("encoded twice", "Caf\xc3\xa9 \xe6\xb8\xac\xe8\xa9\xa6", true);
        row("once only, beyond Latin-1", "\xe6\xb8\xac", false);
    }
    void storesTextEncodedTwice()
    {
        QFETCH(const QByteArray, network);
        QFETCH(const bool, twice);
        const RunningService service;
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
        QCOMPARE(stored(service, u"network"_s).toUtf8(), network);
    }

    void fillsPlaceholdersOnce()
    {
        const QHash<QString, QString> values{{u"IP"_s, u"::1"_s},
                                             {u"NEST"_s, u"###SERVER_IP###"_s},
                                             {u"CDATA"_s, u"]]>&\"'\n\x01<<b>"_s},
                                             {u"LONG"_s, QString(1000, QLatin1Char('x'))}};
        QCOMPARE(Placeholders::fill(u"<a>###SERVER_IP###</a> ###SERVER_X### ###SERVER_NEST### "
                                    "<![CDATA[###SERVER_CDATA###]]> ###SERVER_IP"_s,
                                    values),
                 u"<a>::1</a> ###SERVER_X### ___SERVER_IP___ <![CDATA[__________b_]]> "
                 "###SERVER_IP"_s);
        QCOMPARE(Placeholders::fill(u"###SERVER_LONG###"_s, values).size(), 128);
    }

    void storesAReportOnceHoweverOftenItComes()
    {
        const RunningService service;
        QCOMPARE(send(service, report()), 200);
        QCOMPARE(send(service, changed("</ClientTime>",
                                       "</ClientTime><ClientRetryTime>2</ClientRetryTime>")),
                 200);
        QCOMPARE(service.metric("reports_repeated_total"), 1);
        QCOMPARE(stored(service, u"count(*)"_s), u"1"_s);
    }

    void answersBeforeAllIsRead()
    {
        const RunningService service;
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

    void showsReportsEscaped()
    {
        const RunningService service;
        QCOMPARE(send(service, changed("LocHome", "&lt;script&gt;&amp;\"x")), 200);
        const auto page = [&](const QByteArray &parameter, const QByteArray &languages) {
            return SocketClient::exchange(
                service.port(),
                "GET /velometer/Controller?page=UserReport&userid=1436911191399025" + parameter +
                    " HTTP/1.1\r\nAccept-Language: " + languages + "\r\n\r\n");
        };
        QVERIFY(page("&language=de", "en-GB").contains(">25,00 Mbit/s<"));
        QVERIFY(page("", "de-CH,en;q=0.5").contains(">25,00 Mbit/s<"));
        const QByteArray answer = page("&language=fr", "en,de;q=0.5");
        QCOMPARE(statusOf(answer), 200);
        QVERIFY(!answer.contains("<script"));
        for (const char *part :
             {">25.00 Mbit/s<", "&lt;script&gt;&amp;&quot;x", "2023-11-14 22:13:20", "test.example",
              "Cache-Control: no-store\r\n", "default-src 'none'",
              "Referrer-Policy: no-referrer\r\n"}) {
            QVERIFY2(answer.contains(part), part);
        }
    }
};

} // namespace velometer

VELOMETER_TEST(ServiceReportsTest)
#include "service_reports_test.moc"
