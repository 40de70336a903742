#ifndef Q_MOC_RUN // which knows no concepts
#include "limits/streams.h"
#include "limits/uplink.h"
#include "measure/recentresults.h"
#endif
#include "measure/uploadmeter.h"
#include "runningservice.h"
#include "support/registeredtest.h"

#include <QProcess>

using namespace std::chrono_literals;

namespace velometer {

namespace {

const QByteArray ids = "&testuserid=1&seriesid=2&testid=3000003";

QByteArray uploadHead(int seconds, qint64 length)
{
    return "POST /velometer/uploadtest.php?logtraffic=" + QByteArray::number(seconds) + ids +
           " HTTP/1.0\r\nHost: x\r\nContent-Type: application/x-www-form-urlencoded\r\n"
           "Content-Length: " +
           QByteArray::number(length) + "\r\n\r\n";
}

} // namespace

/// The two measurement streams, and the figures of the upload.
class ServiceStreamsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsIntervals_data()
    {
        // bytes: of each interval; the last one is not full
        const Rows<QList<qint64>, QByteArray> row("bytes", "figures");
        row("only the ramp-up", {1000, 3000, 7}, "160000;160000;160000");
        row("ramp-up and last left out", {9999, 9999, 1000, 2000, 9999}, "120000;120000;120000");
        row("pause counts as nothing sent", {500, 500, 1000, 0, 2000, 9999}, "80000;80000;80000");
        row("eleven have no window", {5, 5, 10, 10, 10, 10, 10, 10, 10, 10, 100, 1},
            "1600;1600;1600");
        row("thirteen are two windows", {5, 5, 21, 10, 10, 10, 10, 10, 10, 10, 10, 10, 120, 1},
            "888;1680;1680");
    }
    void countsIntervals()
    {
        QFETCH(const QList<qint64>, bytes);
        QFETCH(const QByteArray, figures);
        UploadMeter meter;
        auto time = UploadMeter::TimePoint() + 5s;
        for (const qint64 count : bytes) {
            if (count > 0) {
                meter.add(time, count);
            }
            time += 100ms;
        }
        meter.end(time - 1ms);
        QCOMPARE(QByteArray::fromStdString(meter.figures().value().toText()), figures);
    }

    void countsBytesInTheIntervalOfTheirArrival()
    {
        UploadMeter meter;
        const auto start = UploadMeter::TimePoint() + 5s;
        meter.add(start, 1);
        meter.add(start + 200ms - 1ns, 1); // still interval 1
        meter.add(start + 200ms, 100);     // interval 2 begins
        meter.add(start + 299ms, 100);
        meter.end(start + 310ms);
        QCOMPARE(meter.figures()->avg, 16000);
    }

    void downloadIsIncompressibleAndEndsWithTheClient()
    {
        RunningService service;
        SocketClient client(service.port());
        QVERIFY(client.send("GET /velometer/downloadtest.php?mss=1460&logtraffic=30" + ids +
                            " HTTP/1.0\r\nHost: x\r\nConnection: Close\r\n\r\n"));
        const QByteArray answer = client.receive(6'000'000);
        const QByteArray head = answer.left(answer.indexOf("\r\n\r\n"));
        QVERIFY2(head.startsWith("HTTP/1.0 200 OK\r\n"), head.constData());
        QVERIFY(!head.contains("Content-Length"));
        const QByteArray body = bodyOf(answer).left(3'000'000);
        QVERIFY(qCompress(body).size() > body.size() * 99 / 100);
        QCOMPARE(service.metric("streams{direction=\"download\"}"), 1);
        client.close();
        QVERIFY(service.waitForMetric("streams{direction=\"download\"}", 0));
    }

    void theClientChoosesTheCongestionControlThatTheKernelHas()
    {
        RunningService service;
        for (const auto &[wanted, runs] :
             {std::pair{"&cc=reno"_ba, "reno"_ba}, {"&cc=", {}}, {"&cc=nosuchmodule", {}}}) {
            SocketClient client(service.port());
            QVERIFY(client.send("GET /velometer/downloadtest.php?logtraffic=30" + ids + wanted +
                                " HTTP/1.0\r\n\r\n"));
            const QByteArray head = client.receive(500);
            QVERIFY2(head.contains("\r\nVelometer-Congestion: " + runs), head.constData());
            QCOMPARE(head.contains("Congestion: reno\r\n"), !runs.isEmpty());
        }
    }

    void uploadGivesFiguresAlsoAfterAReset()
    {
        RunningService service;
        SocketClient client(service.port());
        QVERIFY(client.send(uploadHead(10, 163'840'000) + QByteArray(2'000'000, '7')));
        QVERIFY(service.waitForMetric("stream_bytes_total{direction=\"upload\"}", 2'000'000));
        client.reset();
        const QByteArray answer = service.get("/velometer/getuploadresult.php?x=1" + ids);
        QCOMPARE(statusOf(answer), 200);
        const auto figures = bodyOf(answer).split(';');
        QCOMPARE(figures.size(), 3);
        for (const QByteArray &figure : figures) {
            QVERIFY2(figure.toLongLong() > 0, answer.constData());
        }
        // Asked for again it is still there.
        QCOMPARE(service.get("/velometer/getuploadresult.php?x=1" + ids), answer);
    }

    void saysWhenTheServiceItselfWasTooSlow()
    {
        const RunningService service;
        SocketClient client(service.port());
        QVERIFY(client.send(uploadHead(10, 163'840'000) + "7"));
        QVERIFY(service.waitForMetric("streams{direction=\"upload\"}", 1));
        QProcess::execute(QStringLiteral("sh"),
                          {QStringLiteral("-c"),
                           QStringLiteral("kill -STOP $PPID; sleep 0.6; kill -CONT $PPID")});
        QVERIFY(client.send("7"));
        client.close();
        QVERIFY(service.waitForMetric("streams{direction=\"upload\"}", 0));
        QCOMPARE(service.metric("streams_late_total"), 1);
        QVERIFY(service.metric("loop_late_total") > 0);
        QTRY_COMPARE(sql(service.databaseFile(), {QStringLiteral("SELECT late FROM streams")}), 1);
    }

    void uploadGoesOnPastItsLength()
    {
        RunningService service;
        SocketClient client(service.port());
        QVERIFY(client.send(uploadHead(10, 300'000) + QByteArray(300'000, '7')));
        QVERIFY(client.receive(15).startsWith("HTTP/1.1 200 OK"));
        // A link that stands still for longer than any buffer lasts has not ended its test.
        QTest::qWait(700);
        QVERIFY(client.send(QByteArray(500'000, '7')));
        QVERIFY(service.waitForMetric("stream_bytes_total{direction=\"upload\"}", 800'000));
        QCOMPARE(service.metric("streams{direction=\"upload\"}"), 1);
        client.close();
        QVERIFY(service.waitForMetric("streams{direction=\"upload\"}", 0));
    }

    void stalledStreamsEnd()
    {
        const RunningService service([](ServerOptions &o) { o.longestStream = 1s; });
        SocketClient reader(service.port());
        SocketClient sender(service.port());
        QVERIFY(reader.send("GET /velometer/downloadtest.php?logtraffic=3600 HTTP/1.0\r\n\r\n"));
        QVERIFY(sender.send(uploadHead(0, 163'840'000)));
        QVERIFY(service.waitForMetric("streams{direction=\"upload\"}", 1));
        QVERIFY(service.waitForMetric("streams{direction=\"download\"}", 0));
        QVERIFY(service.waitForMetric("streams{direction=\"upload\"}", 0));
        const QByteArray none = service.get("/velometer/getuploadresult.php?x=1" + ids);
        QCOMPARE(statusOf(none), 404);
    }

    void aTestRunsWholeOrNotAtAll()
    {
        for (const int all : {1, 2}) {
            const RunningService service([&](ServerOptions &o) {
                o.maxStreams = all;
                o.maxStreamsPerAddress = 3 - all;
            });
            const auto ask = [&](const QByteArray &what, int series) {
                return service.get("/velometer/" + what +
                                   "000003&seriesid=" + QByteArray::number(series));
            };
            const QByteArray initialise = "initialise.php?testuserid=1&testid=1";
            const QByteArray download = "downloadtest.php?logtraffic=9&testuserid=1&testid=2";
            QCOMPARE(statusOf(ask(initialise, 2)), 200);
            // The one place is kept for the first test, whoever comes meanwhile.
            const QByteArray refusal = ask(initialise, 9);
            QCOMPARE(statusOf(refusal), 503);
            QVERIFY(refusal.contains("\r\nRetry-After: 20\r\n"));
            QCOMPARE(bodyOf(refusal),
                     "Too many measurements are running here. Please try again in 20 seconds.\n");
            QCOMPARE(statusOf(ask(download, 9)), 503);
            SocketClient down(service.port());
            QVERIFY(down.send("GET /velometer/" + download + "000003&seriesid=2 HTTP/1.0\r\n\r\n"));
            QCOMPARE(statusOf(down.receive(100)), 200);
            QCOMPARE(statusOf(ask(download, 2)), 503);
            SocketClient up(service.port());
            QVERIFY(up.send(uploadHead(10, 163'840'000)));
            QVERIFY(service.waitForMetric("streams{direction=\"upload\"}", 1));
            QCOMPARE(statusOf(ask(initialise, 9)), 503);
            down.close();
            up.close();
            QVERIFY(QTest::qWaitFor([&] { return statusOf(ask(initialise, 9)) == 200; }, 10'000));
        }
    }

    void keepsResultsFromOthersReach()
    {
        RecentResults<int> results(3, 2, 10min);
        const auto put = [&](qint64 test, std::uint64_t subscriber, std::optional<int> result) {
            results.end({.test = test}, results.begin({.test = test}), {.network = subscriber},
                        result);
        };
        const auto kept = [&] {
            QByteArray all;
            for (int test = 1; test < 9; ++test) {
                all += QByteArray::number(results.find({.test = test}).result.value_or(0)) + ' ';
            }
            return all;
        };
        const auto slow = results.begin({.test = 8});
        put(1, 7, 10);
        put(2, 7, 20);
        put(3, 7, 30); // his own oldest goes
        QCOMPARE(kept(), "0 20 30 0 0 0 0 0 ");
        put(4, 8, 40);
        put(4, 8, {}); // nothing takes no place
        put(5, 9, 50); // the greediest one's oldest goes
        QCOMPARE(kept(), "0 0 30 40 50 0 0 0 ");
        put(4, 6, 41); // the same stream once more
        QCOMPARE(kept(), "0 0 30 41 50 0 0 0 ");
        QVERIFY(results.find({.test = 8}).running);
        put(8, 8, 81);
        results.end({.test = 8}, slow, {.network = 8}, 80); // which began earlier
        QCOMPARE(results.find({.test = 8}).result, 81);
        QVERIFY(!results.find({.test = 8}).running);
    }

    void givesUpAReservationThatNobodyUses()
    {
        using namespace boost::asio::ip;
        Streams streams(2, 1);
        const auto home = make_address("192.0.2.1");
        const auto away = make_address("2001:db8::1");
        const auto start = Streams::Clock::now();
        const StreamKey test{.user = 5, .series = 6, .test = 7};
        QVERIFY(!streams.reserve(home, test, start));
        QVERIFY(!streams.take(home, Direction::Download, {}, start));
        // The subscriber's network may have given it another address meanwhile.
        auto place = streams.take(away, Direction::Download, test, start);
        QVERIFY(place);
        QVERIFY(!streams.hasRoom(home, start + 24h)); // a stream runs in it
        place.reset();
        QVERIFY(!streams.hasRoom(home, start + Streams::patience - 1s));
        QVERIFY(streams.hasRoom(home, Streams::Clock::now() + Streams::patience));
        QVERIFY(streams.take(home, Direction::Upload, test));
        QVERIFY(!streams.reserve(home, test) && !streams.reserve(home, test));
    }

    void letsThoseInFirstWhoCameFirst()
    {
        using namespace boost::asio::ip;
        Streams streams(1, 2);
        auto now = Streams::Clock::now();
        const auto reserve = [&](int number, int host) {
            const auto wait = streams.reserve(make_address_v4(static_cast<std::uint32_t>(host)),
                                              {.user = 1, .series = 1, .test = number}, now);
            return wait ? static_cast<int>(wait->count()) : 0;
        };
        QCOMPARE(reserve(1, 1), 0);
        QCOMPARE(reserve(2, 2), 20);
        QCOMPARE(reserve(3, 3), 40);
        for (int i = 4; i < 9; ++i) {
            reserve(i, 4); // one host has two places to wait
        }
        QCOMPARE(streams.waiting(now), 4U);
        now += Streams::patience;
        // There is room, and it is the second's; he may be late.
        QCOMPARE(reserve(9, 9), 100);
        QCOMPARE(reserve(3, 3), 40);
        QVERIFY(!streams.hasRoom(make_address_v4(9U), now));
        QVERIFY(!streams.take(make_address_v4(9U), Direction::Download, {}, now));
        QCOMPARE(reserve(2, 2), 0);
        now += Streams::patience;
        QCOMPARE(reserve(3, 3), 0);
        // Whoever does not come back has lost his place.
        now += Streams::longestWait + Streams::patience;
        QCOMPARE(reserve(10, 10), 0);
        QCOMPARE(streams.waiting(now), 0U);
    }

    void sharesOutItsOwnLine()
    {
        Uplink line(100'000'000);
        auto now = Uplink::Clock::now();
        line.look(now);
        const auto slow = line.join(Direction::Download);
        const auto fast = line.join(Direction::Download);
        const auto faster = line.join(Direction::Download);
        const auto sent = line.join(Direction::Upload);
        // bit/s of each, for one look.
        const auto run = [&](std::int64_t a, std::int64_t b, std::int64_t c) {
            slow->add(a / 40);
            fast->add(b / 40);
            faster->add(c / 40);
            sent->add(a / 40);
            now += Uplink::period;
            line.look(now);
        };
        run(10'000'000, 20'000'000, 30'000'000);
        QVERIFY(!line.isFull() && fast->pace() == 0 && faster->pace() == 0);
        run(10'000'000, 30'000'000, 60'000'000);
        QVERIFY(line.isFull() && slow->pace() == 0 && fast->pace() == 0);
        QCOMPARE(faster->pace(), 60'000'000); // what is left over by the others
        QVERIFY(faster->wasHeldUp());
        run(10'000'000, 70'000'000, 60'000'000);
        QCOMPARE(fast->pace(), 45'000'000);
        QCOMPARE(faster->pace(), 45'000'000);
        run(10'000'000, 45'000'000, 5'000'000); // one ends
        QCOMPARE(fast->pace(), 0);
        QVERIFY(!line.isFull());
        QVERIFY(fast->wasHeldUp() && !slow->wasHeldUp() && !sent->wasHeldUp());
    }
};

} // namespace velometer

VELOMETER_TEST(ServiceStreamsTest)
#include "service_streams_test.moc"
