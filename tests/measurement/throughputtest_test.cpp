#include "measurement/downloadtest.h"
#include "measurement/uploadtest.h"

#include "support/fakeclock.h"
#include "support/fakecontext.h"
#include "support/fakeservice.h"
#include "support/registeredtest.h"
#include "utils/utils.h"

#include <sys/socket.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// One arrival of data: after this time, this many bytes.
struct Arrival
{
    std::chrono::milliseconds after;
    int bytes;
};
using Arrivals = QList<Arrival>;
using Counts = QMap<int, qint64>;

} // namespace

class ThroughputTestTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void creditsBytesToTheIntervalBeforeTheRead_data()
    {
        const Rows<Arrivals, Counts, qint64, qlonglong> row("arrivals", "bytes", "total",
                                                            "longestPause");

        row("nothing for 300 ms", {{0ms, 100}, {50ms, 1000}, {300ms, 2000}}, {{2, 3100}}, 3100,
            300'000'000);
        row("read on the boundary", {{0ms, 10}, {100ms, 20}}, {{0, 30}}, 30, 0);
        row("beyond the last interval", {{0ms, 1}, {950ms, 2}, {60ms, 4}, {120ms, 8}},
            {{8, 3}, {9, 4}}, 15, 120'000'000);
    }
    void creditsBytesToTheIntervalBeforeTheRead()
    {
        QFETCH(Counts, bytes);
        QFETCH(Arrivals, arrivals);
        serve(arrivals);
        const Result *result = context.results.first();
        QTEST(result->getAllBytesTransfered(), "total");
        QTEST(result->getMaxPause(), "longestPause");
        QCOMPARE(result->getIntervallValuesByte().size(), 10);
        for (int i = 0; i < 10; ++i) {
            QCOMPARE(result->getIntervallValuesByte().value(i), bytes.value(i));
            QCOMPARE(result->getIntervallValuesRate().value(i), bytes.value(i) * 80);
            QCOMPARE(context.observer.throughput.value({Result::Download, i}), bytes.value(i));
        }
        QCOMPARE(result->getConnectTime(), 0);
        QCOMPARE(result->getGetTime(), static_cast<qlonglong>(arrivals[0].after.count()));
    }

    void aDownloadEndsAtItsLimit_data()
    {
        // samples: the measured intervals
        const Rows<Arrivals, qint64, qint64, bool, int> row("arrivals", "limit", "total", "cut",
                                                            "samples");
        row("in the middle of a read", {{0ms, 100}, {250ms, 5000}}, 3000, 3000, true, 2);
        row("with the last byte", {{0ms, 1000}, {400ms, 1000}}, 2000, 2000, true, 4);
        row("one byte before it", {{0ms, 1000}, {400ms, 999}}, 2000, 1999, false, 10);
    }
    void aDownloadEndsAtItsLimit()
    {
        QFETCH(qint64, limit);
        QFETCH(Arrivals, arrivals);
        QFETCH(bool, cut);
        serve(arrivals, cut ? Ends::ByItself : Ends::ByPeer, limit);
        const Result *result = context.results.first();
        QTEST(result->getBytesTransferd(), "total");
        QCOMPARE(result->isCutByBudget(), cut);
        QTEST(int(result->getIntervallValuesRate().size()), "samples");
        QCOMPARE(result->getIntervallValuesByte().size(), result->getIntervallValuesRate().size());
    }

    void onlyAServedStreamOfFiveIntervalsHasARate_data()
    {
        const Rows<QByteArray, Arrivals, qint64> row("beginning", "arrivals", "rate");
        const QByteArray served = "HTTP/1.1 200 OK\r\n";
        row("five intervals", served, {{0ms, 5}, {300ms, 800}, {200ms, 195}}, 16'000);
        row("its time is over", served, {{0ms, 5}, {300ms, 800}, {200ms, 296}}, 8'007);
        row("a millisecond less", served, {{0ms, 5}, {300ms, 800}, {199ms, 195}}, -1);
        row("no answer of HTTP", "xHTTP/1.1 200 OK\r\n", {{0ms, 11}, {600ms, 99}}, -1);
        row("another code", "HTTP/1.1 503 Busy\r\n\r\nsorry", {{0ms, 11}, {600ms, 99}}, -1);
        row("not even a code", "HTTP/1.1 20", {{0ms, 3}, {600ms, 8}}, -1);
    }
    void onlyAServedStreamOfFiveIntervalsHasARate()
    {
        QFETCH(Arrivals, arrivals);
        QFETCH(QByteArray, beginning);
        answer = beginning;
        const bool timed = QByteArray(QTest::currentDataTag()) == "its time is over";
        serve(arrivals, timed ? Ends::AfterItsTime : Ends::ByPeer);
        const Result *result = context.results.first();
        QTEST(result->getRateAvg(), "rate");
        QCOMPARE(result->isValid(), result->getRateAvg() > 0);
    }

    void anAnswerOtherThan200EndsAnUpload()
    {
        service.script("uploadtest", {"HTTP/1.0 503 Busy\r\n\r\n", false, {}, 5000});
        run<UploadTest>();
        QVERIFY(!context.results.first()->isAccepted());
        QVERIFY(context.results.first()->getRealDuration() < 1'000'000'000);
        QVERIFY(Utils::getLogEntries().contains("UploadTest refused: HTTP/1.0 503"_L1));
    }

    void asksForStreamsWithExactlyTheseBytes()
    {
        const QByteArray ids = "&testuserid=52077&seriesid=13&testid=";
        const QByteArray host =
            " HTTP/1.0\r\nHost: 127.0.0.1:" + QByteArray::number(service.port()) + "\r\n";
        run<DownloadTest>();
        QCOMPARE(service.requests("downloadtest"),
                 {"GET /velometer/downloadtest.php?mss=1460&logtraffic=1" + ids + "2000003" + host +
                  "Connection: Close\r\n\r\n"});
        QCOMPARE(context.results.takeFirst()->getBytesTransferd(), 20019);

        // The upload goes on in blocks of one segment.
        run<UploadTest>();
        const QByteArray sent = service.requests("uploadtest").value(0);
        const QByteArray head = "POST /velometer/uploadtest.php?logtraffic=1" + ids + "3000003" +
                                host +
                                "Content-Type: application/x-www-form-urlencoded\r\n"
                                "Content-Length: 163840000\r\n\r\n";
        QVERIFY2(sent.startsWith(head), sent.left(400).constData());
        const QByteArray block = sent.mid(head.size(), 1460);
        QVERIFY(
            std::all_of(block.begin(), block.end(), [](char c) { return c >= '0' && c <= '9'; }));
        QCOMPARE(sent.mid(head.size() + 1460, 1460), block);
        const Result *result = context.results.first();
        QVERIFY(result->getBytesTransferd() >= 5000);
        QVERIFY(!result->getCongestionControl().isEmpty());
    }

    void anUploadNeverPassesItsLimit()
    {
        service.script("uploadtest", {{}, false});
        // Blocks of which the last would not fit, and such as go out in parts.
        for (const auto &[limit, mss] : {std::pair{50'000, 1460}, {9'000'000, 1'048'576}}) {
            context.results.clear();
            context.mss = mss;
            const auto before = service.requests("uploadtest").size();
            auto *test = new UploadTest(&context, &record);
            test->setByteLimit(limit);
            test->doMeasurement(7);
            QTRY_COMPARE(context.results.size(), 1);
            const Result *result = context.results.first();
            QVERIFY(result->isCutByBudget());
            QCOMPARE(result->getBytesTransferd(), limit);
            QCOMPARE(result->getRateAvg(), -1); // a burst
            QVERIFY(result->getRealDuration() < 7'000'000'000);
            // All that was counted has arrived, and nothing else.
            QTRY_COMPARE(service.requests("uploadtest").value(before).size(), limit);
        }
    }

    void aLimitedUploadEndsWhenItIsDeliveredOrItsTimeIsOver()
    {
        // All of it fits into our kernel's buffer, but not into the one of this reader.
        QTcpServer deaf;
        QVERIFY(deaf.listen(QHostAddress::LocalHost));
        const int window = 4096;
        QCOMPARE(::setsockopt(static_cast<int>(deaf.socketDescriptor()), SOL_SOCKET, SO_RCVBUF,
                              &window, sizeof window),
                 0);
        deaf.pauseAccepting();
        context.server->setPort(deaf.serverPort());
        auto *test = new UploadTest(&context, &record);
        test->setByteLimit(50'000);
        test->doMeasurement(1);
        QTRY_COMPARE(context.results.size(), 1);
        const Result *result = context.results.first();
        QCOMPARE(result->getBytesTransferd(), 50'000);
        QVERIFY(result->isCutByBudget());
        QVERIFY(result->getRealDuration() >= 1'000'000'000);
    }

    void anAbsurdSegmentSizeNeitherFillsMemoryNorHangs()
    {
        for (const int mss : {-5, 0, 2'000'000'000}) {
            context.mss = mss;
            context.results.clear();
            run<UploadTest>();
        }
        QVERIFY(Utils::getLogEntries().contains(u"Random size: 1048576\r\n"_s));
    }

    void aStreamThatNeverBeginsHasNoTimes()
    {
        FakeService nobody;
        nobody.script("downloadtest", {{}, false});
        context.server->setPort(nobody.port());
        for (const bool refused : {false, true}) {
            context.results.clear();
            if (refused) {
                nobody.refuse();
            }
            run<DownloadTest>();
            const Result *result = context.results.first();
            QCOMPARE(result->getConnectTime() < 0, refused);
            QCOMPARE(result->getRealDuration() < 1'000'000'000, refused);
            QCOMPARE(result->getGetTime(), -1);
            QCOMPARE(result->getBytesTransferd(), 0);
            QCOMPARE(result->getRateAvg(), -1);
        }
    }

    void init()
    {
        answer = "HTTP/1.0 200 OK\r\n\r\n";
        peer.reset();
        context.results.clear();
        context.mss = 1460;
        service.script("uploadtest", {{}, true, {}, 5000});
        context.server->setHostname(u"127.0.0.1"_s);
        context.server->setPort(service.port());
    }

private:
    enum class Ends { ByPeer, ByItself, AfterItsTime };

    /// Runs a download against a server whose end is then our peer, until it has its result.
    void serve(const Arrivals &arrivals, Ends ends = Ends::ByPeer, std::optional<qint64> limit = {})
    {
        FakeClock clock;
        DownloadTest test(&context, &record);
        test.setByteLimit(limit);
        clock.advance(1s);
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        context.server->setPort(server.serverPort());
        context.observer.progress.clear();
        context.observer.throughput.clear();
        test.doMeasurement(1);
        QTRY_VERIFY(server.hasPendingConnections());
        peer.reset(server.nextPendingConnection());
        peer->setParent(nullptr); // outlives the server
        QTRY_VERIFY(peer->bytesAvailable() > 0);
        QByteArray stream = answer;
        for (const Arrival &arrival : arrivals) {
            clock.lag(arrival.after);
            const auto before = context.observer.progress.size();
            peer->write(stream.leftJustified(arrival.bytes, 'x', true));
            stream.remove(0, arrival.bytes);
            QTRY_VERIFY(context.observer.progress.size() > before);
        }
        if (ends == Ends::ByPeer) {
            peer->close();
        } else if (ends == Ends::AfterItsTime) {
            clock.advance(599ms);
            QVERIFY(context.results.isEmpty());
            clock.advance(1ms);
        }
        QTRY_COMPARE(context.results.size(), 1);
        // The socket is gone: nothing is fetched any more.
        QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
    }
    template <typename Test>
    void run()
    {
        auto *test = new Test(&context, &record);
        test->doMeasurement(1);
        QTRY_COMPARE(context.results.size(), 1);
    }

    FakeService service;
    FakeContext context;
    QObject record;
    std::unique_ptr<QTcpSocket> peer;
    QByteArray answer; ///< what a stream begins with
};

} // namespace velometer

VELOMETER_TEST(ThroughputTestTest)
#include "throughputtest_test.moc"
