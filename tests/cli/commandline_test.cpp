#include "cli/commandline.h"

#include "support/registeredtest.h"

namespace velometer {

using Command = CommandLine::Command;
using Format = CommandLine::Format;
using Check = bool (*)(const CommandLine &);

class CommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void understands_data()
    {
        const Rows<Check> row("check");
        row(" ", [](const CommandLine &l) {
            return l.command == Command::Test && l.format == Format::Text && l.count == 1 &&
                   l.interval == 0 && l.limit == 0 && l.location == u"Unknown"_s &&
                   !l.allowRoaming && !l.budget && l.protocol == QAbstractSocket::AnyIPProtocol;
        });
        row("--count 12 test --interval=300 --csv -4", [](const CommandLine &l) {
            return l.count == 12 && l.interval == 300 && l.format == Format::Csv &&
                   l.protocol == QAbstractSocket::IPv4Protocol;
        });
        row("--location tRaIn -6 --allow-roaming --server [::1]:80 --json-stream "
            "--wait-position 600",
            [](const CommandLine &l) {
                return l.location == u"Train"_s && l.allowRoaming && l.waitPosition == 600s &&
                       l.protocol == QAbstractSocket::IPv6Protocol && l.server == u"[::1]:80"_s &&
                       l.format == Format::JsonStream;
            });
        row("--max-bytes 100k", [](const CommandLine &l) { return l.budget->bytes() == 100'000; });
        row("--max-bytes 9223372036G",
            [](const CommandLine &l) { return l.budget->bytes() == 9'223'372'036'000'000'000; });
        row("--max-bytes 0", [](const CommandLine &l) { return l.budget && !l.budget->bytes(); });
        row("show 17", [](const CommandLine &l) { return l.storedTest.row == 17; });
        row("show 3/12", [](const CommandLine &l) {
            return l.storedTest.row == 0 && l.storedTest.series == 3 && l.storedTest.test == 12;
        });
        row("--platform scripted:a:b", [](const CommandLine &l) {
            return l.platform.device == PlatformChoice::Device::Scripted &&
                   l.platform.script == u"a:b"_s;
        });
        row("context --watch --position gpsd --platform none", [](const CommandLine &l) {
            return l.watch && l.platform.device == PlatformChoice::Device::None &&
                   l.platform.position.source == PositionChoice::Source::Gpsd;
        });
        row("results --help", [](const CommandLine &l) {
            return l.answer.startsWith("velometer-cli results [options]\n"_L1) &&
                   l.answer.contains("--limit N"_L1) && !l.answer.contains("--count"_L1);
        });
        row("--completions", [](const CommandLine &l) {
            return l.answer.contains("\noption\t-4\t\tonly IPv4\ttest,track,resend\n"_L1);
        });
        row("clear --data-dir=/a=b --yes",
            [](const CommandLine &l) { return l.yes && l.dataDir == u"/a=b"_s; });
    }
    void understands()
    {
        QFETCH(Check, check);
        QString error;
        const auto line = CommandLine::parse(arguments(), &error);
        QVERIFY2(line, qPrintable(error));
        QVERIFY(check(*line));
    }

    void refusesWithASentence_data()
    {
        const Rows<QString> row("mentions");
        row("measure", "new-series"); // an unknown command is answered with those there are
        row("--count --json", "--count");
        row("--count", "--count");
        row("--count -4", "needs");
        row("--data-dir= results", "--data-dir"); // an unset variable must not eat the command
        row("--json=1", "--json");
        row("show", "results");
        row("results results", "results");
        row("--format gpx", "csv");
        row("export", "geojson");
        row("--count 100001", "100000");
        row("--count 2 --interval 604801", "604800");
        row("--interval 60", "--count");
        row("results --count 3", "--count");
        row("--max-bytes 99999", "100000");
        row("--max-bytes 1.5M", "10M");
        row("--max-bytes 18446744074G", "100000"); // 290 MB, if it wrapped round
        row("--wait-position 601", "600");
        row("--json --csv", "contradict");
        row("--position nmea:x --position gpsd", "contradict");
        row("--position gps", "gpsd://HOST:PORT");
        row("--watch", "--watch");
        row("--location moon", "Indoor");
        row("show 1/2/3", "1/2/3");
        row("--bogus --help", "--bogus");
        row("--resume --count 2", "--resume");
    }
    void refusesWithASentence()
    {
        QFETCH(QString, mentions);
        QString error;
        QVERIFY(!CommandLine::parse(arguments(), &error));
        QVERIFY2(error.contains(mentions), qPrintable(error));
        QVERIFY(error.endsWith(u'.') && !error.contains(u'\n'));
    }

private:
    static QStringList arguments()
    {
        return QString::fromUtf8(QTest::currentDataTag()).split(u' ', Qt::SkipEmptyParts);
    }
};

} // namespace velometer

VELOMETER_TEST(CommandLineTest)
#include "commandline_test.moc"
