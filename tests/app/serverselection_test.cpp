#include "app/serverselection.h"

#include "utils/utils.h"

#include "support/fakeclock.h"
#include "support/fakeplatform.h"
#include "support/registeredtest.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

class ServerSelectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { save({}, {}); }

    void choosesTheServer_data()
    {
        const Rows<QString, QString, QString, QString, QString, bool> row(
            "savedHost", "savedPort", "mcc", "mnc", "chosen", "remembered");
        const QString none;
        row("operator 1", none, none, "228", "01", "127.0.0.1:8080", true);
        row("operator 2, blanks", none, none, " 228 ", " 2", "127.0.0.2:8080", true);
        row("another operator", none, none, "228", "3", "127.0.0.1:8080", true);
        row("no codes", none, none, none, none, "127.0.0.1:8080", false);
        row("half of the codes", none, none, "228", none, "127.0.0.1:8080", false);
        row("saved", "127.0.0.3", "8080", "228", "2", "127.0.0.3:8080", true);
        row("saved, not in the table", "127.0.0.3", "81", "228", "2", "127.0.0.3:81", true);
        row("saved port that would wrap", "127.0.0.3", "73616", none, none, "127.0.0.3:0", true);
        row("saved port missing", "127.0.0.3", none, "228", "2", "127.0.0.2:8080", true);
        row("saved literal", "::1", "8080", none, none, "[::1]:8080", true);
        row("saved host that would write a header", "a\r\nX: y", "8080", "228", "2",
            "127.0.0.2:8080", true);
    }
    void choosesTheServer()
    {
        QFETCH(QString, savedHost);
        QFETCH(QString, savedPort);
        QFETCH(QString, mcc);
        QFETCH(QString, mnc);
        QFETCH(bool, remembered);
        save(savedHost, savedPort);
        FakePlatform platform;
        platform.network.mcc = mcc;
        platform.network.mnc = mnc;
        const ServerSelection selection(platform, nullptr);
        QTEST(selection.current()->getHostHeader(), "chosen");
        QCOMPARE(Utils::getSettingsValue(u"TestServer.Hostname"_s),
                 remembered ? selection.current()->getHostname() : QString());
    }

    void waitsForAModemThatIsThere_data()
    {
        // codes: after so many ms, -1 never; user: he chooses meanwhile; readyAt: the last look
        // before
        const Rows<int, bool, int, QString, QString> row("codes", "user", "readyAt", "chosen",
                                                         "saved");
        row("codes 50 ms late", 50, false, 50, "127.0.0.2:8080", "127.0.0.2");
        row("no codes at all", -1, false, 1950, "127.0.0.1:8080", "");
        row("the user is quicker", 500, true, 100, "127.0.0.5:8080", "127.0.0.5");
    }
    void waitsForAModemThatIsThere()
    {
        QFETCH(int, codes);
        QFETCH(bool, user);
        QFETCH(int, readyAt);
        FakeClock clock;
        FakePlatform platform;
        platform.network.codesPending = true;
        ServerSelection selection(platform, nullptr);
        int readyCalls = 0;
        selection.whenSettled([&] { ++readyCalls; });
        for (int ms = 0; ms < 2100; ms += 50) {
            QCOMPARE(readyCalls, ms > readyAt ? 1 : 0);
            if (ms == codes) {
                platform.network.mcc = u"228"_s;
                platform.network.mnc = u"02"_s;
                platform.network.tell();
            }
            if (user && ms == 100) {
                selection.choose(selection.servers().servers().at(4));
            }
            clock.advance(50ms);
        }
        QTEST(selection.current()->getHostHeader(), "chosen");
        QTEST(Utils::getSettingsValue(u"TestServer.Hostname"_s), "saved");
    }

    void understandsWhatTheUserWrites_data()
    {
        // name: of a refused text, what the error mentions
        const Rows<QString, QString, int> row("name", "host", "port");
        row("ip-plus italy", "IP-Plus Italy", "127.0.0.5", 8080);
        row("127.0.0.3:8080", "HSR", "127.0.0.3", 8080);
        row("127.0.0.3", {}, "127.0.0.3", 80); // a host of the table on another port
        row("test.example.org:81", {}, "test.example.org", 81);
        row("[::1]:9", {}, "::1", 9);
        row("sunrice", "Swisscom", {}, 0); // a name misspelt is no host
        row("host.example:65536", "65535", {}, 0);
        row("a.b HTTP/1.1\r\nX: y", "HOST[:PORT]", {}, 0);
    }
    void understandsWhatTheUserWrites()
    {
        QFETCH(QString, name);
        QFETCH(QString, host);
        QFETCH(int, port);
        FakePlatform platform;
        ServerSelection selection(platform, nullptr);
        QString error;
        QVERIFY(selection.chooseForNow(u"Sunrise"_s, &error));
        QCOMPARE(selection.current()->getHostname(), u"127.0.0.2"_s);
        QCOMPARE(Utils::getSettingsValue(u"TestServer.Hostname"_s), QString());
        QCOMPARE(selection.choose(QString::fromUtf8(QTest::currentDataTag()), &error),
                 !host.isEmpty());
        QCOMPARE(Utils::getSettingsValue(u"TestServer.Hostname"_s), host);
        QCOMPARE(Utils::getSettingsValue(u"TestServer.Port"_s).toInt(), port);
        if (host.isEmpty()) {
            QVERIFY2(error.contains(name) && !error.contains(u'\n'), qPrintable(error));
            return;
        }
        QCOMPARE(selection.current()->getName(), name);
        QCOMPARE(selection.current()->getHostname(), host);
        QCOMPARE(selection.current()->getPort(), port);
    }

private:
    static void save(const QString &host, const QString &port)
    {
        Utils::setSettingsValue(u"TestServer.Hostname"_s, host);
        Utils::setSettingsValue(u"TestServer.Port"_s, port);
    }
};

} // namespace velometer

VELOMETER_TEST(ServerSelectionTest)
#include "serverselection_test.moc"
