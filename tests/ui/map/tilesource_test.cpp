#include "ui/map/tilesource.h"

#include "tileserver.h"
#include "utils/deployment.h"

#include "support/fakeclock.h"
#include "support/registeredtest.h"

#include <QNetworkReply>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace velometer {

namespace {

const QByteArray picture = TileServer::png(256, 256);
const QList<TileId> fiveTiles{{5, 1, 1}, {5, 2, 1}, {5, 3, 1}, {5, 1, 2}, {5, 2, 2}};
constexpr TileId oneTile{5, 17, 11};

} // namespace

class TileSourceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        source.reset();
        directory = std::make_unique<QTemporaryDir>();
        server = std::make_unique<TileServer>();
        server->answer = [](const TileServer::Request &) {
            return TileServer::message("200 OK", "Cache-Control: max-age=3600\r\n", picture);
        };
    }
    void asksForTwoAtATimeAndForWhatIsInViewOnly()
    {
        start();
        server->holding = true;
        source->setVisible(fiveTiles);
        QTRY_COMPARE(server->held.size(), 2);
        QCOMPARE(server->requests[0].path, "/5/1/1.png");
        QVERIFY(server->requests[0].head.contains("user-agent: velometer/1.3.0 "
                                                  "(+http://maker.example)\r\n"));
        // The view moves on: both are given up, the new ones come first and the rest never.
        source->setVisible({{5, 9, 9}, {5, 2, 2}});
        QTRY_COMPARE(server->requests.size(), 4);
        server->release();
        QTRY_COMPARE(arrived->size(), 2);
        QVERIFY(!source->tile({5, 9, 9}).isNull());
        QVERIFY(source->tile({5, 1, 1}).isNull());
        QCOMPARE(server->requests.size(), 4);

        server->holding = true;
        source->setVisible(fiveTiles);
        QTRY_COMPARE(server->held.size(), 2);
        source.reset();
        server->release(); // and finds nobody
        QTRY_COMPARE(server->findChildren<QTcpSocket *>().size(), 0);
    }

    void namesAContactThatLeadsSomewhere()
    {
        const QString nobody = u"feedback@velometer.invalid"_s;
        const QString somebody = u"info@maker.example"_s;
        const QString page = u"https://maker.example/map"_s;
        for (const auto &[maker, web, mailbox, contact] :
             {std::tuple{QString(), u"127.0.0.1"_s, nobody, ""},
              {page, u"127.0.0.1"_s, somebody, " (+https://maker.example/map)"},
              {QString(), u"web.example"_s, nobody, " (+http://web.example:8080)"},
              {QString(), u"127.0.0.6"_s, somebody, " (+mailto:info@maker.example)"},
              {u"http://maker.LocalHost"_s, u"web.example"_s, nobody, ""},
              {u"http://maker.\r\nexample"_s, QString(), nobody, " (+http://maker.example)"}}) {
            Deployment deployment;
            deployment.makerUrl = maker;
            deployment.webHost = web;
            deployment.feedbackMailbox = mailbox;
            QCOMPARE(TileSource::userAgentOf(deployment), QByteArray("Velometer/1.3.0") + contact);
        }
    }

    void keepsTilesAsTheServerAllowsAlsoWhenItIsGone_data()
    {
        const Rows<QByteArray, QByteArray, qsizetype, bool> row("headers", "condition", "requests",
                                                                "shownOffline");
        const QByteArray condition = "if-none-match: \"a1\"";
        row("fresh for an hour", "Cache-Control: max-age=3600\r\n", "", 1, true);
        row("long stale", "Expires: Thu, 01 Jan 1970 00:00:00 GMT\r\nETag: \"a1\"\r\n", condition,
            2, true);
        row("never without asking", "Cache-Control: no-cache\r\nETag: \"a1\"\r\n", condition, 2,
            false);
        row("not to be stored", "Cache-Control: no-store\r\n", "", 2, false);
    }
    void keepsTilesAsTheServerAllowsAlsoWhenItIsGone()
    {
        const auto [headers, condition, requests, shownOffline] =
            currentRow<QByteArray, QByteArray, qsizetype, bool>();
        server->answer = [=](const TileServer::Request &request) {
            return request.head.contains("if-none-match")
                       ? TileServer::message("304 Not Modified", headers, {})
                       : TileServer::message("200 OK", headers, picture);
        };
        for (int run = 0; run < 2; ++run) {
            start();
            source->setVisible({oneTile});
            QTRY_COMPARE(arrived->size(), 1);
            QCOMPARE(source->tile(oneTile).size(), QSize(256, 256));
        }
        QCOMPARE(server->requests.size(), requests);
        QVERIFY(server->requests.constLast().head.contains(condition));

        // Others that nobody has come first.
        const QString address = server->address();
        server.reset();
        start(address);
        source->setVisible({{5, 1, 1}, {5, 2, 1}, oneTile});
        QTRY_VERIFY(source->findChildren<QNetworkReply *>().isEmpty());
        QVERIFY(source->tile({5, 1, 1}).isNull());
        QCOMPARE(!source->tile(oneTile).isNull(), shownOffline);
    }

    void aUselessAnswerIsNoTileAndIsNotAskedForAgainAtOnce_data()
    {
        const Rows<QByteArray> row("answer");
        const auto ok = [](const QByteArray &body) {
            return TileServer::message("200 OK", "Content-Type: image/png\r\n", body);
        };
        row("a picture of another size", ok(TileServer::png(128, 256)));
        const QByteArray huge = QByteArray::fromHex("000186a0000186a0"); // px wide and high
        row("a picture that claims to be huge", ok(QByteArray(picture).replace(16, 8, huge)));
        row("a megabyte too much", ok(picture + QByteArray(1'048'577, 'x')));
        row("endless, of unknown length",
            "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + picture + QByteArray(1'200'000, 'x'));
        row("not found, with a picture", TileServer::message("404 Not Found", {}, picture));
        row("to itself for ever", moved("/5/17/11.png"));
    }
    void aUselessAnswerIsNoTileAndIsNotAskedForAgainAtOnce()
    {
        QFETCH(QByteArray, answer);
        bool wellAgain = false;
        server->answer = [&](const TileServer::Request &request) {
            if (request.path != "/5/17/11.png") {
                return TileServer::message("200 OK", {}, TileServer::png(512, 512));
            }
            return wellAgain ? moved("/elsewhere.png") : answer;
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
        QTRY_COMPARE(source->tile(oneTile).size(), QSize(512, 512));
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

    void refusesAnAddressThatMakesNoSense()
    {
        for (const QString &address :
             {u"http://127.0.0.1:%1/{z}/{x}.png"_s, u"http://127.0.0.1:%1/ {z}/{x}/{y}%.png"_s,
              u"file:///{z}/{x}/{y}.png"_s, u"http:///{z}/{x}/{y}.png"_s}) {
            start(address.contains("%1"_L1) ? address.arg(server->serverPort()) : address);
            source->setVisible(fiveTiles);
            QTest::qWait(20);
            QVERIFY2(server->requests.isEmpty(), qPrintable(address));
        }
    }

private:
    static QByteArray moved(const QByteArray &to)
    {
        return TileServer::message("302 Found", "Location: " + to + "\r\n", {});
    }
    void start(const QString &address = {})
    {
        Deployment deployment;
        deployment.tileUrl = address.isNull() && server ? server->address() : address;
        deployment.makerUrl = u"http://maker.example"_s;
        source = std::make_unique<TileSource>(deployment, directory->path());
        arrived = std::make_unique<QSignalSpy>(source.get(), &MapProvider::tileReady);
    }

    FakeClock clock;
    std::unique_ptr<QTemporaryDir> directory;
    std::unique_ptr<TileServer> server;
    std::unique_ptr<TileSource> source;
    std::unique_ptr<QSignalSpy> arrived;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(TileSourceTest)
#include "tilesource_test.moc"
