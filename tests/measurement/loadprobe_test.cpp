#include "measurement/loadprobe.h"

#include "support/fakeclock.h"
#include "support/registeredtest.h"
#include "support/silentpeer.h"

#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

class LoadProbeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesAPartOfTheStreamAtMost_data()
    {
        // kept: bytes that the stream moves in each of 20 periods of 200 ms
        const Rows<qint64, qint64, int> row("kept", "most", "probes");
        row("fast", 1'000'000, 10'000, 20);
        row("no bytes left", 1'000'000, 1000, 4);
        row("1 Mbit/s: four in a thousand", 25'000, 10'000, 9);
        row("200 kbit/s: one in a hundred", 5'000, 10'000, 4);
        row("nothing comes", 0, 10'000, 0);
    }
    void movesAPartOfTheStreamAtMost()
    {
        QFETCH(qint64, kept);
        QFETCH(qint64, most);
        LoadProbe probe(nullptr);
        probe.start(stream, most);
        for (int i = 1; i <= 20; ++i) {
            probe.streamHasMoved(kept * i);
            pass(200ms, probe);
        }
        QTEST(int(probe.delays().samples->size()), "probes");
        QCOMPARE(probe.delays().samples->count(std::nullopt), 0);
        QTRY_COMPARE(gone, probe.delays().samples->size());
    }

    void whatIsRefusedIsLost()
    {
        LoadProbe probe(nullptr);
        QVERIFY(!probe.delays().samples);
        probe.start(stream, 1'000'000);
        probe.streamHasMoved(100'000'000);
        pass(200ms, probe);
        server.close();
        pass(200ms, probe);
        const LoadDelays delays = probe.delays();
        QCOMPARE(*delays.times, (QList<qint64>{200'000'000, 400'000'000}));
        QVERIFY(delays.samples->first().has_value());
        QVERIFY(!delays.samples->last());
    }

    void threeAreUnderWayAndEachHasThreeSeconds()
    {
        const SilentPeer silent;
        LoadProbe probe(nullptr);
        probe.start(silent.connected(), 1'000'000);
        probe.streamHasMoved(100'000'000);
        for (int i = 1; i <= 15; ++i) {
            clock.advance(200ms);
        }
        QCOMPARE(probe.bytes(), 3 * bytesEach);
        QVERIFY(probe.delays().samples->isEmpty());
        clock.advance(200ms);
        QCOMPARE(*probe.delays().samples, Delays{std::nullopt});
        QCOMPARE(probe.bytes(), 4 * bytesEach);
        probe.stop(); // what is under way is not lost
        clock.advance(10s);
        QCOMPARE(*probe.delays().times, QList<qint64>{200'000'000});
        QCOMPARE(probe.bytes(), 4 * bytesEach);
    }

    void init()
    {
        QVERIFY(server.listen(QHostAddress::LocalHost));
        stream.connectToHost(u"127.0.0.1"_s, server.serverPort());
        QVERIFY(stream.waitForConnected());
        QTRY_VERIFY(server.hasPendingConnections());
        accepted.reset(server.nextPendingConnection());
        accepted->setParent(nullptr);
        gone = 0;
        connect(&server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *peer = server.nextPendingConnection()) {
                // Reset, and not left to wait.
                connect(peer, &QTcpSocket::errorOccurred, this, [this] { ++gone; });
            }
        });
    }
    void cleanup()
    {
        server.disconnect(this);
        server.close();
        stream.abort();
    }

private:
    /// SYN, SYN-ACK, ACK and reset over IPv4 with their usual options.
    static constexpr qint64 bytesEach = 60 + 60 + 52 + 40;

    /// Time passes, and everything that was opened comes back.
    void pass(std::chrono::milliseconds time, const LoadProbe &probe)
    {
        clock.advance(time);
        QTRY_COMPARE(probe.delays().samples->size(), probe.bytes() / bytesEach);
    }

    FakeClock clock;
    QTcpServer server;
    QTcpSocket stream;
    std::unique_ptr<QTcpSocket> accepted;
    qsizetype gone = 0;
};

} // namespace velometer

VELOMETER_TEST(LoadProbeTest)
#include "loadprobe_test.moc"
