#include "measurement/httpgetrequester.h"

#include "support/fakecontext.h"
#include "support/fakeservice.h"

#include <QTest>

using namespace Qt::StringLiterals;

class HttpGetRequesterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splitsTheAnswerAtItsFirstEmptyLine_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("header");
        QTest::addColumn<QString>("body");

        const QByteArray head = "HTTP/1.1 200 OK\r\nA: b";
        const QString headText = QString::fromLatin1(head);
        const auto row = [&](const char *name, const QByteArray &answer, bool ok,
                             const QString &header, const QString &body) {
            QTest::newRow(name) << answer << ok << header << body;
        };
        row("empty line inside the body", head + "\r\n\r\nx\r\n\r\ny", true, headText, u"x\r\ny"_s);
        row("white space around", "\r\n\r\n" + head + "\r\n\r\nx;y;\r\n", true, headText,
            u"x;y;"_s);
        row("no empty line", head + "\r\nhalf a hea", false, {}, {});
        row("nothing at all", "", false, {}, {});
        row("zero byte in the body", head + QByteArray("\r\n\r\nab\0cd", 9), true, headText,
            u"ab"_s);
        row("zero byte first", QByteArray("\0HTTP/1.1 200 OK\r\n\r\nx", 21), false, {}, {});
        row("bytes above 127 are single characters", head + "\r\n\r\n\xC3\xBC", true, headText,
            u"\u00C3\u00BC"_s);
    }
    void splitsTheAnswerAtItsFirstEmptyLine()
    {
        QFETCH(QByteArray, answer);
        service.script("probe", {answer});
        ask(10000);
        QTRY_COMPARE(context.answers.size(), 1);
        QTEST(context.answers.first().ok, "ok");
        QTEST(context.answers.first().header, "header");
        QTEST(context.answers.first().body, "body");
    }

    void everyEndingGivesExactlyOneAnswer_data()
    {
        QTest::addColumn<int>("ending");
        QTest::newRow("connection refused") << 0;
        QTest::newRow("silence until the limit") << 1;
        QTest::newRow("answer beyond a mebibyte") << 2;
    }
    void everyEndingGivesExactlyOneAnswer()
    {
        QFETCH(int, ending);
        FakeService own;
        context.server->setPort(own.port());
        if (ending == 0)
            own.refuse();
        own.script("probe",
                   ending == 2
                       ? FakeService::Answer{FakeService::ok(QByteArray(4 << 20, 'z')), false}
                       : FakeService::Answer{{}, false});
        ask(ending == 1 ? 50 : 10000);
        QTRY_COMPARE(context.answers.size(), 1);
        QCOMPARE(context.answers.first().ok, ending == 2);
        QVERIFY(context.answers.first().body.size() <= 1024 * 1024);
        QTest::qWait(100);
        QCOMPARE(context.answers.size(), 1);
    }

    void aNewRequestDropsTheRunningOne()
    {
        service.script("first", {{}, false});
        service.script("second", {FakeService::ok("2")});
        requester->doRequest(u"127.0.0.1"_s, service.port(), u"GET /first\r\n\r\n"_s, 10000);
        QTRY_COMPARE(service.requests("first").size(), 1);
        requester->doRequest(u"127.0.0.1"_s, service.port(), u"GET /second\r\n\r\n"_s, 10000);
        QTRY_COMPARE(context.answers.size(), 1);
        QCOMPARE(context.answers.first().body, u"2"_s);
        QCOMPARE(requester->getLocalIP(), u"127.0.0.1"_s);
    }

    void init()
    {
        context.answers.clear();
        context.server->setPort(service.port());
        requester = std::make_unique<HttpGetRequester>(&context, nullptr);
    }

private:
    void ask(int timeout)
    {
        requester->doRequest(u"127.0.0.1"_s, context.server->getPort(), u"GET /probe\r\n\r\n"_s,
                             timeout);
    }

    FakeService service;
    FakeContext context;
    std::unique_ptr<HttpGetRequester> requester;
};

QTEST_GUILESS_MAIN(HttpGetRequesterTest)
#include "httpgetrequester_test.moc"
