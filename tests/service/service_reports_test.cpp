#include "reports/placeholders.h"
#include "reports/reportparser.h"
#include "runningservice.h"
#include "support/registeredtest.h"
#include "web/testlist.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

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
    return statusOf(service.exchange(post(body, length)));
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
        row("a few are enough",
            changed("<OS>", "<OS" + attributes.left(attributes.indexOf(" a8=")) + ">"), 200);
        row("one too many",
            changed("<OS>", "<OS" + attributes.left(attributes.indexOf(" a9=")) + ">"), 400);
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
        row("without a hash", changed("Hash=", "Hush="), 403);
        row("figure changed", changed("<Avg>25000000", "<Avg>25000001"), 403);
        row("too large", changed("<OS>", "<OS>\xc3\xa9" + QByteArray(300'000, 'x')), 413);
    }
    void takesGoodReportsOnly()
    {
        QFETCH(const QByteArray, body);
        QFETCH(const int, status);
        const RunningService service([](ServerOptions &o) { o.maxReportBytes = 262'144; });
        QCOMPARE(send(service, body, status == 413 ? 1000 : body.size()), status);
        QCOMPARE(stored(service, u"count(*)"_s).toInt(), status == 200 ? 1 : 0);
        QCOMPARE(service.metric("reports_stored_total"), status == 200 ? 1 : 0);
    }

    void dropsReportsWhenTheServiceEnds()
    {
        const auto parsed = ReportParser::parse(report(), {u"8352"_s}, true);
        const auto *problem = std::get_if<ReportParser::Problem>(&parsed);
        QVERIFY(problem && *problem == ReportParser::Problem::Stopped);
    }

    void storesTheFigures()
    {
        const RunningService service;
        QCOMPARE(send(service, changed("<Min>31200000</Min>", "<Min>-1</Min>")), 200);
        QString columns =
            u"userid, seriesid, testid, client_time, public_ip, test_server, connection_type, "
            "location, network, mcc, mnc, platform, model, manufacturer, applet_version, "
            "download_min, download_avg, download_max, upload_min, upload_avg, upload_max, "
            "upload_client_min, upload_client_avg, upload_client_max, ifnull(rtt_min,'none'), "
            "rtt_avg, rtt_max, latitude, longitude, verified, service_late"_s;
        QCOMPARE(stored(service, columns.replace(u", "_s, u"||' '||"_s)),
                 u"1436911191399025 13 3 1700000000123 127.0.0.1 test.example WcdmaMode LocHome "
                 "Cafe 228 01 Phone P1 Maker V1.3.0 20500000 25000000 30000000 7000000 8000000 "
                 "9000000 7100000 8100000 9100000 none 35900000 47100000 47.2266 8.8184 0 0"_s);
        QVERIFY(stored(service, u"server_time - client_time"_s).toLongLong() > 0);
        const QString document = stored(service, u"document"_s);
        QVERIFY(!document.contains(u"###"_s));
        QCOMPARE(document.count(u"no stream recorded"_s), 2);
        QVERIFY(document.contains(u"<Domain>127.0.0.1</Domain>"_s));
        QVERIFY(document.contains(u"1: Public IP: 127.0.0.1\r\n"_s));
        // However often it comes, it is stored once.
        QCOMPARE(send(service, changed("</ClientTime>",
                                       "</ClientTime><ClientRetryTime>2</ClientRetryTime>")),
                 200);
        QCOMPARE(service.metric("reports_repeated_total"), 1);
        QCOMPARE(stored(service, u"count(*)"_s), u"1"_s);
    }

    void verifiesATestItServed()
    {
        const RunningService service;
        const auto target = [](const QByteArray &path, int offset) {
            return "/velometer/" + path +
                   "?logtraffic=5&testuserid=1436911191399025&seriesid=13&testid=" +
                   QByteArray::number(offset + 3) + " HTTP/1.0\r\nContent-Length: 99999999\r\n\r\n";
        };
        for (const bool up : {false, true}) {
            SocketClient client(service.port());
            QVERIFY(client.send(up ? "POST " + target("uploadtest.php", 3'000'000)
                                   : "GET " + target("downloadtest.php", 2'000'000)));
            // Long enough for a rate: six intervals.
            for (int i = 0; i < 7; ++i) {
                QVERIFY(up ? client.send(QByteArray(10'000, '7'))
                           : client.receive(9'000'000).size() > 0);
                QTest::qWait(90);
            }
            client.close();
            QVERIFY(service.waitForMetric(
                up ? "streams{direction=\"upload\"}" : "streams{direction=\"download\"}", 0));
        }
        const auto told =
            bodyOf(service.exchange("GET " + target("getuploadresult.php", 3'000'000))).split(';');
        QCOMPARE(told.size(), 3);
        for (const bool honest : {true, false}) {
            const QByteArray time = honest ? "1700000000124" : "1700000000125";
            const QByteArray average = honest ? told.at(1) : told.at(1) + "0";
            const QByteArray hash =
                QCryptographicHash::hash("8352|1436911191399025|test.example|3|13|25000000|" +
                                             average + "|35900|" + time + "|8352",
                                         QCryptographicHash::Md5);
            QByteArray body = changed("1700000000123", time);
            body.replace(QByteArray("LRCiTIsjZNqds1dTg1Byow=="), hash.toBase64());
            body.replace("<Min>7000000<", "<Min>" + told.at(0) + '<');
            body.replace("<Avg>8000000<", "<Avg>" + average + '<');
            body.replace("<Max>9000000<", "<Max>" + told.at(2) + '<');
            QCOMPARE(send(service, body), 200);
        }
        QCOMPARE(sql(service.databaseFile(),
                     {u"SELECT group_concat(verified) FROM reports ORDER BY id"_s}),
                 u"1,-1"_s);
        const QByteArray sent =
            QByteArray::number(service.metric("stream_bytes_total{direction=\"download\"}"));
        const QByteArray document = stored(service, u"document"_s).toUtf8();
        QVERIFY2(document.contains("\nsent " + sent + " bytes in "), document.constData());
        QVERIFY(document.contains("\nreceived min " + told.at(0) + ", avg " + told.at(1) +
                                  ", max " + told.at(2) + " bit/s; congestion control "));
        // What the kernel told meanwhile, in the report as in the interface.
        for (const QByteArray &way : {"download"_ba, "upload"_ba}) {
            const auto answer = service.get("/velometer/api/v1/tests/1?userid=1436911191399025");
            const QJsonValue seen = QJsonDocument::fromJson(
                bodyOf(answer))["service"_L1][QLatin1StringView(way)]["kernel"_L1];
            const QJsonValue samples = seen["samples"_L1];
            QVERIFY2(samples["time_ms"_L1].toArray().size() >= 4, document.constData());
            QVERIFY(document.contains(
                "limit: " + QByteArray::number(samples["time_ms"_L1][0].toInteger()) + ' '));
            QVERIFY(document.contains("congestion control " +
                                      seen["congestion"_L1].toString().toLatin1() + ';'));
            QVERIFY(way == "upload" || seen["rtt_min_ns"_L1].toInteger() > 0);
            QVERIFY(way == "upload" ||
                    seen["rtt_p95_ns"_L1].toInteger() >= seen["rtt_median_ns"_L1].toInteger());
        }
        const QByteArray page =
            service.get("/velometer/Controller?page=UserReport&userid=1436911191399025");
        QCOMPARE(page.count("down\">25.0 Mbit/s<"), 1);
        QCOMPARE(page.count(">contradicts the service<"), 1);
        // A device leads to a test by its own numbers.
        const QByteArray test =
            "/velometer/Controller?page=Test&userid=1436911191399025&seriesid=13";
        QVERIFY(bodyOf(service.get(test + "&testid=3")).contains("25.0"));
        QCOMPARE(statusOf(service.get(test + "&testid=4")), 404);
    }

    void storesTextEncodedTwice()
    {
        // In UTF-8; what is encoded once only is beyond Latin-1.
        for (const auto &[network, twice] :
             {std::pair<QByteArray, bool>{"Caf\xc3\xa9 \xe6\xb8\xac\xe8\xa9\xa6", true},
              {"\xe6\xb8\xac", false}}) {
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
    }

    void fillsPlaceholdersOnce()
    {
        const QHash<QString, QString> values{{u"IP"_s, u"::1"_s},
                                             {u"NEST"_s, u"###SERVER_IP###"_s},
                                             {u"CDATA"_s, u"]]>&\"'\n\x01<<b>"_s},
                                             {u"LONG"_s, QString(200'000, QLatin1Char('x'))}};
        QCOMPARE(Placeholders::fill(u"<a>###SERVER_IP###</a> ###SERVER_X### ###SERVER_NEST### "
                                    "<![CDATA[###SERVER_CDATA###]]> ###SERVER_IP"_s,
                                    values),
                 u"<a>::1</a> ###SERVER_X### ___SERVER_IP___ <![CDATA[__________b_]]> "
                 "###SERVER_IP"_s);
        const QString places = u"###SERVER_LONG###"_s.repeated(64);
        QCOMPARE(Placeholders::fill(places.first(17), values).size(), 128 * 1024);
        QCOMPARE(Placeholders::fill(places, values).size(), 256 * 1024);
    }

    void answersBeforeAllIsRead()
    {
        const RunningService service([](ServerOptions &o) { o.reportTimeout = 600ms; });
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

        // Never silent for long, and never done.
        SocketClient trickling(service.port());
        QVERIFY(trickling.send(post(report().left(500), 5000)));
        QVERIFY(QTest::qWaitFor(
            [&] {
                trickling.send("x");
                return service.metric("reports_rejected_total{reason=\"timeout\"}") == 2;
            },
            4'000));
        QCOMPARE(statusOf(trickling.receiveAll()), 408);
    }

    void knowsWhatAnotherServiceHasMeasured()
    {
        const RunningService service;
        sql(service.databaseFile(),
            {u"INSERT INTO streams(userid, seriesid, testid, direction, ended, bytes, lasted_ms, "
             u"min, "
             "avg, max, late) VALUES(1436911191399025, 13, 3, 1, 4102444800000, 5, 600, 0, 9, 0, "
             "0), "
             "(1436911191399025, 13, 3, 2, 4102444800000, 6, 700, 11, 12, 13, 0)"_s});
        const QByteArray ask = "/velometer/getuploadresult.php?testuserid=1436911191399025&"
                               "seriesid=13&testid=";
        QCOMPARE(bodyOf(service.get(ask + "3000003")), "11;12;13");
        QCOMPARE(statusOf(service.get(ask + "3000004")), 404);
        const QByteArray body = report();
        QCOMPARE(send(service, body, body.size()), 200);
        const QString document = stored(service, u"document"_s);
        QVERIFY(document.contains(u"\nsent 5 bytes in 600 ms; "_s) &&
                document.contains(u"\nreceived min 11, avg 12, max 13 bit/s; "_s));
    }

    void showsWhatIsTrue()
    {
        TestRow row;
        row.id = 9;
        row.testId = 3;
        row.seriesId = 13;
        row.time = 1'700'000'000'123;
        row.server = u"a\u202eb\u0007c\u200f"_s;
        row.type = ConnectionClass::Umts;
        row.location = u"<script>&\"x'"_s;
        row.network = u"Cafe"_s;
        row.download = 12'340'000'000;
        row.upload = 8'100'000;
        row.rtt = 35'900'000;
        row.verified = row.serviceLate = true;
        row.note = u"</td><i>"_s;
        TestRow bare;
        bare.id = 10;
        bare.testId = 4;
        bare.seriesId = 13;
        bare.time = 4'133'980'800'000;
        const TestPage page{.rows = {row, bare}, .count = 1234, .next = u"n&1"_s};
        const auto shown = [&](const Viewer &viewer) {
            Html html(viewer.language);
            TestList::write(html, viewer, {}, {}, page, 101);
            QString text = QString::fromStdString(html.take());
            static const QRegularExpression head(u"^.*</thead>"_s,
                                                 QRegularExpression::DotMatchesEverythingOption);
            static const QRegularExpression tag(u"</?(?!a )[a-z]+[^>]*>"_s);
            text.replace(u"</td>"_s, u"|"_s).remove(head).remove(tag);
            return text.simplified();
        };
        const QString english =
            u"<a href=\"/velometer/Controller?page=Test&amp;userid=7&amp;language=en&amp;test=9\">"
            "2023-11-14 22:13|13 / 3|3GMobile (UMTS) · &lt;script&gt;&amp;&quot;x&#39; · "
            "Cafe&lt;/td&gt;&lt;i&gt;|abc|12.3 Gbit/s|8.10 Mbit/s|35.9 ms|✓ both ends *| "
            "<a href=\"/velometer/Controller?page=Test&amp;userid=7&amp;language=en&amp;test=10\">"
            "–|13 / 4|?Other||–|–|–|device only| "
            "<a class=\"pill\" rel=\"next\" href=\"/velometer/Controller?page=UserReport&amp;"
            "userid=7&amp;language=en&amp;sort=time&amp;order=desc&amp;after=n%261&amp;start=103"
            "#tests\">Next page"_s;
        QCOMPARE(shown({.language = Language::English, .userId = 7, .share = {}}), english);
        const QString shared = shown({.language = Language::German, .userId = 0, .share = u"K"_s});
        QVERIFY2(shared.contains(u"Cafe|abc|"_s) && shared.contains(u"Nächste Seite"_s),
                 qUtf8Printable(shared));
    }

    void servesPagesSmallAndToSlowReaders()
    {
        const RunningService service;
        QCOMPARE(send(service, report()), 200);
        const auto ask = [&](const QByteArray &query, const QByteArray &headers) {
            return service.exchange(
                "GET /velometer/Controller?page=UserReport&userid=1436911191399025" + query +
                " HTTP/1.1\r\nHost: x\r\n" + headers + "\r\n\r\n");
        };
        const QByteArray plain =
            ask("", "Accept-Encoding: deflate, gzip;q=0\r\nAccept-Language: de-CH,en;q=0.5");
        for (const char *part : {"lang=\"de\"", "Cache-Control: no-store\r\n", "default-src 'none'",
                                 "Referrer-Policy: no-referrer\r\n"}) {
            QVERIFY2(plain.contains(part), part);
        }
        // A slow reader's page waits in our kernel for longer than an unread answer may.
        SocketClient slow(service.port(), 2048);
        QVERIFY(slow.send("GET /velometer/Controller?page=UserReport&userid=1436911191399025&"
                          "language=de HTTP/1.0\r\n\r\n"));
        QTest::qWait(2'600);
        QCOMPARE(bodyOf(slow.receiveAll()), bodyOf(plain));

        const QByteArray packed = ask("&language=de", "Accept-Encoding: br, gzip");
        QVERIFY(packed.contains("\r\nContent-Encoding: gzip\r\n"));
        QVERIFY(packed.size() < plain.size() / 3);
        QProcess gzip;
        gzip.start(u"gzip"_s, {u"-dc"_s});
        gzip.write(bodyOf(packed));
        gzip.closeWriteChannel();
        QVERIFY(gzip.waitForFinished());
        QCOMPARE(gzip.readAllStandardOutput(), bodyOf(plain));
    }
};

} // namespace velometer

VELOMETER_TEST(ServiceReportsTest)
#include "service_reports_test.moc"
