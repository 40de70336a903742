#include "ui/map/tilesource.h"

#include "tileserver.h"
#include "utils/deployment.h"

#include "support/fakeclock.h"
#include "support/rows.h"

#include <QBuffer>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QByteArray png(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return bytes;
}

/// A real picture whose head claims to be 100,000 px wide and high.
QByteArray pngThatClaimsTooMuch()
{
    QByteArray bytes = png(256, 256);
    bytes.replace(16, 8, QByteArray::fromHex("000186a0000186a0"));
    return bytes;
}

const QList<TileId> fiveTiles{{5, 1, 1}, {5, 2, 1}, {5, 3, 1}, {5, 1, 2}, {5, 2, 2}};
constexpr TileId oneTile{5, 17, 11};
const QByteArray longStale = "Expires: Thu, 01 Jan 1970 00:00:00 GMT\r\nETag: \"a1\"\r\n";

} // namespace

class TileSourceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        directory = std::make_unique<QTemporaryDir>();
        server = std::make_unique<TileServer>();
        answerWith(TileServer::message("200 OK", "Cache-Control: max-age=3600\r\n", png(256, 256)));
    }
    void cleanup()
    {
        source.reset();
        server.reset();
    }

    void asksForTwoAtATimeAndForWhatIsInViewOnly()
    {
        start();
        server->holding = true;
        source->setVisible(fiveTiles);
        QTRY_COMPARE(server->held.size(), 2);
        QCOMPARE(server->requests[0].path, "/5/1/1.png");
        QVERIFY(server->requests[0].head.contains("User-Agent: Velometer/1.3.0 "
                                                  "(+http://maker.example)\r\n"));
        // The view moves on: both are given up, the new ones come first and the rest never.
        source->setVisible({{5, 9, 9}, {5, 2, 2}});
        QTRY_COMPARE(server->requests.size(), 4);
        server->release();
        QTRY_COMPARE(arrived->size(), 2);
        QVERIFY(!source->tile({5, 9, 9}).isNull());
        QVERIFY(source->tile({5, 1, 1}).isNull());
        QCOMPARE(server->requests.size(), 4);

        source->setVisible(fiveTiles);
        QTRY_COMPARE(arrived->size(), 6); // {5, 2, 2} was there already
        QVERIFY(server->mostHeld <= 2);
    }

    void namesAContactThatLeadsSomewhere_data()
    {
        const Rows<QString, QString, QString, QByteArray> row("maker", "web", "mailbox",
                                                              "expected");
        const QString nobody = u"feedback@velometer.invalid"_s;
        const QString somebody = u"info@maker.example"_s;
        const QByteArray plain = "Velometer/1.3.0";
        row("built-in defaults", "", "127.0.0.1", nobody, plain);
        row("maker", "https://maker.example/map", "127.0.0.1", somebody,
            "Velometer/1.3.0 (+https://maker.example/map)");
        row("web host alone", "", "web.example", nobody,
            "Velometer/1.3.0 (+http://web.example:8080)");
        row("mailbox alone", "", "127.0.0.6", somebody,
            "Velometer/1.3.0 (+mailto:info@maker.example)");
        row("own name", "http://localhost:8080/", "web.example", nobody, plain);
        row("own name, longer", "http://maker.LocalHost", "web.example", nobody, plain);
        row("own address, version 6", "http://[::1]/", "web.example", nobody, plain);
        row("maker without a host", "maker", "web.example", nobody, plain);
        row("no mailbox", "", "127.0.0.1", "", plain);
        row("mailbox nowhere, in capitals", "", "127.0.0.1", "a@b.INVALID", plain);
        row("two lines", "http://maker.\r\nexample", "127.0.0.1", nobody,
            "Velometer/1.3.0 (+http://maker.example)");
    }
    void namesAContactThatLeadsSomewhere()
    {
        QFETCH(QString, maker);
        QFETCH(QString, web);
        QFETCH(QString, mailbox);
        Deployment deployment;
        deployment.makerUrl = maker;
        deployment.webHost = web;
        deployment.feedbackMailbox = mailbox;
        QTEST(TileSource::userAgentOf(deployment), "expected");
    }

    void keepsTilesAsTheServerAllows_data()
    {
        const Rows<QByteArray, QByteArray, qsizetype> row("headers", "condition", "requests");
        row("fresh for an hour", "Cache-Control: max-age=3600\r\n", "", 1);
        row("long stale, with a tag", longStale, "If-None-Match: \"a1\"", 2);
        row("to be asked about", "Cache-Control: no-cache\r\nETag: \"a1\"\r\n",
            "If-None-Match: \"a1\"", 2);
        row("not to be stored", "Cache-Control: no-store\r\n", "", 2);
    }
    void keepsTilesAsTheServerAllows()
    {
        QFETCH(QByteArray, headers);
        QFETCH(QByteArray, condition);
        QFETCH(qsizetype, requests);
        server->answer = [=](const TileServer::Request &request) {
            return request.head.contains("If-None-Match")
                       ? TileServer::message("304 Not Modified", headers, {})
                       : TileServer::message("200 OK", headers, png(256, 256));
        };
        for (int run = 0; run < 2; ++run) {
            start();
            source->setVisible({oneTile});
            QTRY_COMPARE(arrived->size(), 1);
            QCOMPARE(source->tile(oneTile).size(), QSize(256, 256));
        }
        QCOMPARE(server->requests.size(), requests);
        QVERIFY(server->requests.constLast().head.contains(condition));
    }

    void aUselessAnswerIsNoTileAndIsNotAskedForAgainAtOnce_data()
    {
        const Rows<QByteArray> row("answer");
        const auto ok = [](const QByteArray &body) {
            return TileServer::message("200 OK", "Content-Type: image/png\r\n", body);
        };
        row("a page", ok("<html>Please log in</html>"));
        row("nothing", ok({}));
        row("half a picture head", ok(png(256, 256).left(20)));
        row("a picture of another size", ok(png(128, 256)));
        row("a picture that claims to be huge", ok(pngThatClaimsTooMuch()));
        row("a megabyte too much", ok(png(256, 256) + QByteArray(1'048'577, 'x')));
        row("endless, of unknown length", "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" +
                                              png(256, 256) + QByteArray(1'200'000, 'x'));
        row("not found, with a picture", TileServer::message("404 Not Found", {}, png(256, 256)));
        row("to another scheme",
            TileServer::message("302 Found", "Location: ftp://127.0.0.1/a\r\n", {}));
        row("to a file", TileServer::message("302 Found", "Location: file:///a.png\r\n", {}));
        row("to itself for ever",
            TileServer::message("302 Found", "Location: /5/17/11.png\r\n", {}));
    }
    void aUselessAnswerIsNoTileAndIsNotAskedForAgainAtOnce()
    {
        QFETCH(QByteArray, answer);
        bool wellAgain = false;
        server->answer = [&](const TileServer::Request &request) {
            return request.path == "/5/17/11.png" && !wellAgain
                       ? answer
                       : TileServer::message("200 OK", {}, png(256, 256));
        };
        start();
        source->setVisible({oneTile});
        QTRY_VERIFY(!server->requests.isEmpty());
        QTRY_VERIFY(source->findChildren<QNetworkReply *>().isEmpty());
        QVERIFY(source->tile(oneTile).isNull());
        const qsizetype before = server->requests.size();

        wellAgain = true;
        clock.advance(29s);
        source->setVisible({oneTile, {5, 2, 2}});
        QTRY_VERIFY(!source->tile({5, 2, 2}).isNull());
        QCOMPARE(server->requests.size(), before + 1);
        clock.advance(2s);
        source->setVisible({oneTile});
        QTRY_VERIFY(!source->tile(oneTile).isNull());
    }

    void followsARedirectToAnotherPlaceOfTheServer()
    {
        server->answer = [](const TileServer::Request &request) {
            return request.path == "/moved"
                       ? TileServer::message("200 OK", {}, png(512, 512))
                       : TileServer::message("302 Found", "Location: /moved\r\n", {});
        };
        start();
        source->setVisible({oneTile});
        QTRY_COMPARE(source->tile(oneTile).size(), QSize(512, 512));
    }

    void withoutANetworkShowsWhatItHasEvenWhenStale()
    {
        answerWith(TileServer::message("200 OK", longStale, png(256, 256)));
        start();
        source->setVisible({oneTile});
        QTRY_COMPARE(arrived->size(), 1);
        const QString address = server->address();
        server.reset();
        start(address);
        source->setVisible({{5, 1, 1}, {5, 2, 1}, oneTile});
        QTRY_VERIFY(!source->tile(oneTile).isNull());
        QVERIFY(source->tile({5, 1, 1}).isNull());
    }

    void causesNoTrafficWhilePaused()
    {
        start();
        server->holding = true;
        source->setVisible({oneTile});
        QTRY_COMPARE(server->held.size(), 1);
        source->setPaused(true);
        QTRY_COMPARE(server->held.size(), 0);
        source->setVisible(fiveTiles);
        QTest::qWait(50);
        QCOMPARE(server->requests.size(), 1);
        server->release();
        source->setPaused(false);
        QTRY_COMPARE(arrived->size(), 5);
    }

    void anAnswerForASourceThatIsGoneFindsNobody()
    {
        start();
        server->holding = true;
        source->setVisible(fiveTiles);
        QTRY_COMPARE(server->held.size(), 2);
        source.reset();
        server->release();
        QTRY_COMPARE(server->findChildren<QTcpSocket *>().size(), 0);
        QCOMPARE(arrived->size(), 0);
    }

    void refusesAnAddressThatMakesNoSense_data()
    {
        const Rows<QString> row("address");
        const QString good = u"http://127.0.0.1:%1"_s;
        row("row missing", good + u"/{z}/{x}.png"_s);
        row("empty", "");
        row("a file", u"file:///{z}/{x}/{y}.png"_s);
        row("no host", u"http:///{z}/{x}/{y}.png"_s);
        row("no address", good + u"/ {z}/{x}/{y}%.png"_s);
    }
    void refusesAnAddressThatMakesNoSense()
    {
        QFETCH(QString, address);
        start(address.contains("%1"_L1) ? address.arg(server->serverPort()) : address);
        source->setVisible(fiveTiles);
        QTest::qWait(20);
        QVERIFY(server->requests.isEmpty());
    }

private:
    void start(const QString &address = {})
    {
        Deployment deployment;
        deployment.tileUrl = address.isNull() && server ? server->address() : address;
        deployment.makerUrl = u"http://maker.example"_s;
        source = std::make_unique<TileSource>(deployment, directory->path());
        arrived = std::make_unique<QSignalSpy>(source.get(), &MapProvider::tileReady);
    }
    void answerWith(const QByteArray &bytes)
    {
        server->answer = [bytes](const TileServer::Request &) { return bytes; };
    }

    FakeClock clock;
    std::unique_ptr<QTemporaryDir> directory;
    std::unique_ptr<TileServer> server;
    std::unique_ptr<TileSource> source;
    std::unique_ptr<QSignalSpy> arrived;
};

QTEST_MAIN(TileSourceTest)
#include "tilesource_test.moc"
