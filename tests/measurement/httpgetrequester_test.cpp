#include "measurement/httpgetrequester.h"

#include "support/fakecontext.h"
#include "support/fakeservice.h"
#include "support/registeredtest.h"

using namespace Qt::StringLiterals;

namespace velometer {

class HttpGetRequesterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splitsTheAnswerAtItsFirstEmptyLine_data()
    {
        const Rows<QByteArray, QString, QString> row("answer", "header", "body");

        const QByteArray head = "HTTP/1.1 200 OK\r\nA: b";
        const QString headText = QString::fromLatin1(head);
        row("empty line inside the body", head + "\r\n\r\nx\r\n\r\ny", headText, "x\r\ny");
        row("white space around", "\r\n\r\n" + head + "\r\n\r\nx;y;\r\n", headText, "x;y;");
        row("zero byte in the body", head + QByteArray("\r\n\r\nab\0cd", 9), headText, "ab");
        row("bytes above 127 are single characters", head + "\r\n\r\n\xC3\xBC", headText,
            "\u00C3\u00BC");
    }
    void splitsTheAnswerAtItsFirstEmptyLine()
    {
        QFETCH(QByteArray, answer);
        service.script("probe", {answer});
        ask("probe");
        QTRY_COMPARE(context.answers.size(), 1);
        QVERIFY(context.answers.first().ok);
        QTEST(context.answers.first().header, "header");
        QTEST(context.answers.first().body, "body");
    }

    void everyEndingGivesExactlyOneAnswer_data()
    {
        const Rows<bool, int, QByteArray> row("refused", "timeout", "answer");
        row("connection refused", true, 10000, "");
        row("silence until the limit", false, 50, "");
        row("answer beyond a mebibyte", false, 10000, FakeService::ok(QByteArray(4 << 20, 'z')));
    }
    void everyEndingGivesExactlyOneAnswer()
    {
        QFETCH(bool, refused);
        QFETCH(int, timeout);
        QFETCH(QByteArray, answer);
        FakeService own;
        own.script("probe", {answer, false});
        context.server->setPort(own.port());
        if (refused) {
            own.refuse();
        }
        ask("probe", timeout);
        QTRY_COMPARE(context.answers.size(), 1);
        QCOMPARE(context.answers.first().ok, !answer.isEmpty());
        QVERIFY(context.answers.first().body.size() <= 1024 * 1024);
        QTest::qWait(100);
        QCOMPARE(context.answers.size(), 1);
    }

    void aNewRequestDropsTheRunningOne()
    {
        service.script("first", {{}, false});
        service.script("second", {FakeService::ok("2")});
        ask("first");
        QTRY_COMPARE(service.requests("first").size(), 1);
        ask("second");
        QTRY_COMPARE(context.answers.size(), 1);
        QCOMPARE(context.answers.first().body, u"2"_s);
    }

    void init()
    {
        context.answers.clear();
        context.server->setPort(service.port());
        requester = std::make_unique<HttpGetRequester>(&context, nullptr);
    }

private:
    void ask(const char *path, int timeout = 10000)
    {
        requester->doRequest(u"127.0.0.1"_s, context.server->getPort(),
                             u"GET /%1\r\n\r\n"_s.arg(QLatin1StringView(path)), timeout);
    }

    FakeService service;
    FakeContext context;
    std::unique_ptr<HttpGetRequester> requester;
};

} // namespace velometer

VELOMETER_TEST(HttpGetRequesterTest)
#include "httpgetrequester_test.moc"
