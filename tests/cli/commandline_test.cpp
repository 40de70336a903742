#include "cli/commandline.h"

#include "cli/serverchoice.h"
#include "data/testservertable.h"
#include "utils/deployment.h"

#include <QTest>

using namespace Qt::StringLiterals;

using Command = CommandLine::Command;
using Format = CommandLine::Format;
using Check = bool (*)(const CommandLine &);

class CommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void understands_data();
    void understands();
    void refusesWithASentence_data();
    void refusesWithASentence();
    void choosesTheServer_data();
    void choosesTheServer();
};

void CommandLineTest::understands_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<Check>("check");

    const auto row = [](const char *arguments, Check check) {
        QTest::newRow(*arguments ? arguments : "nothing")
            << QString::fromLatin1(arguments) << check;
    };
    row("", [](const CommandLine &l) {
        return l.command == Command::Test && !l.commandGiven && l.format == Format::Text &&
               l.count == 1 && l.interval == 0 && l.limit == 0 && l.location == u"Unknown"_s &&
               !l.allowRoaming && l.protocol == QAbstractSocket::AnyIPProtocol;
    });
    row("--count 12 test --interval=300 --csv", [](const CommandLine &l) {
        return l.commandGiven && l.count == 12 && l.interval == 300 && l.format == Format::Csv;
    });
    row("--limit 5 results --json", [](const CommandLine &l) {
        return l.command == Command::Results && l.limit == 5 && l.format == Format::Json;
    });
    row("--count 100000 --interval 604800",
        [](const CommandLine &l) { return l.count == 100'000 && l.interval == 604'800; });
    row("--location tRaIn", [](const CommandLine &l) { return l.location == u"Train"_s; });
    row("--json --format json", [](const CommandLine &l) { return l.format == Format::Json; });
    row("-6 --allow-roaming", [](const CommandLine &l) {
        return l.protocol == QAbstractSocket::IPv6Protocol && l.allowRoaming;
    });
    row("--server [::1]:80 --json-stream", [](const CommandLine &l) {
        return l.server == u"[::1]:80"_s && l.format == Format::JsonStream;
    });
    row("show 17", [](const CommandLine &l) { return l.storedTest.row == 17; });
    row("show 3/12", [](const CommandLine &l) {
        return l.storedTest.row == 0 && l.storedTest.series == 3 && l.storedTest.test == 12;
    });
    row("export --format gpx", [](const CommandLine &l) { return l.format == Format::Gpx; });
    row("export --help", [](const CommandLine &l) { return l.help; });
    row("show --version", [](const CommandLine &l) { return l.version; });
    row("clear --data-dir=/a=b --yes",
        [](const CommandLine &l) { return l.yes && l.dataDir == u"/a=b"_s; });
}

void CommandLineTest::understands()
{
    QFETCH(QString, arguments);
    QFETCH(Check, check);
    QString error;
    const auto line = CommandLine::parse(arguments.split(u' ', Qt::SkipEmptyParts), &error);
    QVERIFY2(line, qPrintable(error));
    QVERIFY(check(*line));
}

void CommandLineTest::refusesWithASentence_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("mentions");

    const auto row = [](const char *arguments, const char *mentions) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(mentions);
    };
    row("measure", "new-series"); // an unknown command is answered with those there are
    row("test again", "again");
    row("results 3", "3");
    row("--speed", "--speed");
    row("-5", "-5");
    row("--count", "--count");
    row("--count --json", "--count");
    row("--count 0", "100000");
    row("--count -1", "100000");
    row("--count 100001", "100000");
    row("--count 99999999999999999999", "100000");
    row("--count 1e3", "100000");
    row("--count 2 --interval 604801", "604800");
    row("--count 2 --interval -1", "604800");
    row("--interval 60", "--count");
    row("results --limit 0", "--limit");
    row("results --limit=", "--limit");
    row("--limit 3", "--limit");
    row("results --count 3", "--count");
    row("results --json-stream", "--json-stream");
    row("--format gpx", "gpx");
    row("--format JSON", "JSON");
    row("export", "geojson");
    row("export --format text", "text");
    row("--json --csv", "contradict");
    row("--json-stream --json", "contradict");
    row("-4 -6", "contradict");
    row("--json=yes", "--json");
    row("--server=", "--server");
    row("--location moon", "Indoor");
    row("--progress maybe", "maybe");
    row("show", "show");
    row("show x", "x");
    row("show 0", "0");
    row("show 1/2/3", "1/2/3");
    row("show 1 2", "2");
    row("clear now", "now");
    row("resend --format json", "--format");
    row("--bogus --help", "--bogus");
}

void CommandLineTest::refusesWithASentence()
{
    QFETCH(QString, arguments);
    QFETCH(QString, mentions);
    QString error;
    QVERIFY(!CommandLine::parse(arguments.split(u' '), &error));
    QVERIFY2(error.contains(mentions), qPrintable(error));
    QVERIFY(error.endsWith(u'.') && !error.contains(u'\n'));
}

void CommandLineTest::choosesTheServer_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("port");

    QTest::newRow("a name in any case") << u"sunrise"_s << u"Sunrise"_s << u"127.0.0.2"_s << 8080;
    QTest::newRow("a name with a blank")
        << u"ip-plus italy"_s << u"IP-Plus Italy"_s << u"127.0.0.5"_s << 8080;
    QTest::newRow("an endpoint of the table")
        << u"127.0.0.3:8080"_s << u"HSR"_s << u"127.0.0.3"_s << 8080;
    QTest::newRow("its host on another port") << u"127.0.0.3"_s << u""_s << u"127.0.0.3"_s << 80;
    QTest::newRow("a host") << u"test.example.org:81"_s << u""_s << u"test.example.org"_s << 81;
    QTest::newRow("localhost") << u"localhost"_s << u""_s << u"localhost"_s << 80;
    QTest::newRow("an IPv6 literal") << u"[::1]:9"_s << u""_s << u"::1"_s << 9;
    QTest::newRow("a misspelt name") << u"sunrice"_s << u""_s << u""_s << 0;
    QTest::newRow("a port out of range") << u"host.example:65536"_s << u""_s << u""_s << 0;
    QTest::newRow("a request in disguise") << u"a.b HTTP/1.1\r\nX: y"_s << u""_s << u""_s << 0;
}

void CommandLineTest::choosesTheServer()
{
    QFETCH(QString, text);
    QFETCH(QString, name);
    QFETCH(QString, host);
    QFETCH(int, port);
    const TestServerTable table(Deployment(), nullptr);
    const ServerChoice choice(text, table);
    if (host.isEmpty()) {
        QVERIFY(!choice.server());
        QVERIFY2(choice.error().contains(u"Swisscom"_s), qPrintable(choice.error()));
        QVERIFY(!choice.error().contains(u'\n'));
        return;
    }
    QVERIFY2(choice.server(), qPrintable(choice.error()));
    QCOMPARE(choice.server()->getName(), name);
    QCOMPARE(choice.server()->getHostname(), host);
    QCOMPARE(choice.server()->getPort(), port);
}

QTEST_APPLESS_MAIN(CommandLineTest)
#include "commandline_test.moc"
