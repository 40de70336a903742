#include "utils/utils.h"

#include "support/fakeclock.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class UtilsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDurationIsNotBentByAClockStep()
    {
        FakeClock clock;
        const qlonglong ns = Utils::getTimeInNs();
        const qlonglong ms = Utils::getTimeInMs();
        clock.advance(250ms);
        clock.stepWall(-1h);
        QCOMPARE(Utils::getTimeInNs() - ns, 250'000'000);
        QCOMPARE(Utils::getTimeInMs() - ms, 250 - 3'600'000);
        clock.advance(1us);
        QCOMPARE(Utils::getTimeInNs() % 1000, 0);
    }

    void theLogKeepsItsFirstThousandLinesEscaped()
    {
        FakeClock clock(1234ms);
        Utils::addLogEntry(u"a<b & 'x' \"y\""_s);
        Utils::addLogEntry(QString(1'000'000, u'z'));
        for (int i = 2; i < 1000; ++i)
            Utils::addLogEntry(u"line"_s);
        const QString full = Utils::getLogEntries();
        Utils::addLogEntry(u"one too many"_s);
        QCOMPARE(Utils::getLogEntries(), full);
        QCOMPARE(full.count(u"\r\n"_s), 1000);
        QVERIFY(
            full.startsWith(u"1234: a&amp;lt;b &amp; &apos;x&apos; &quot;y&quot;\r\n1234: z"_s));
        // A text of a million characters must not make every later report undeliverable.
        QVERIFY(full.size() < 100'000);
    }

    void translatesCodes_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("shortText");
        QTest::newRow("unknown has a long text") << "Unknown"
                                                 << "Unknown"
                                                 << "conntypeother";
        QTest::newRow("2G") << "GsmMode"
                            << "Mobile(GSM)"
                            << "conntypeMobile";
        QTest::newRow("3G") << "WcdmaMode"
                            << "Mobile(UMTS)"
                            << "conntypeMobile";
        QTest::newRow("4G") << "LteMode"
                            << "Mobile(LTE)"
                            << "conntypeMobile";
        QTest::newRow("5G") << "NrMode"
                            << "Mobile(5G)"
                            << "conntypeMobile";
        QTest::newRow("WLAN") << "WlanMode"
                              << "WLAN"
                              << "conntypeWLAN";
        QTest::newRow("wired") << "EthernetMode"
                               << "Ethernet"
                               << "conntypeother";
        QTest::newRow("other case") << "wlanmode"
                                    << ""
                                    << "conntypeother";
    }
    void translatesCodes()
    {
        QFETCH(QString, code);
        QTEST(Utils::trConnectionType(code), "key");
        QTEST(Utils::connectionTypeKey(code), "key");
        QTEST(Utils::trConnectionTypeShort(code), "shortText");
    }

    void onlyPurelyMobileTypesAreMobile()
    {
        QVERIFY(Utils::connectionTypeIsMobile(u"Mobile(mixed)"_s));
        QVERIFY(!Utils::connectionTypeIsMobile(u"Mixed(WLAN,Mobile)"_s));
        QVERIFY(!Utils::connectionTypeIsMobile(u"Wlan"_s));
        QCOMPARE(Utils::trLocation(u"Train"_s), u"LocationTrain"_s);
        QCOMPARE(Utils::trLocation(u"train"_s), QString());
    }

    void theTwoSettingsStoresAreSeparate()
    {
        const QString key = u"probe"_s;
        Utils::setSettingsValue(key, u"own"_s);
        Utils::setSettingsCommonValue(key, u"common"_s);
        QCOMPARE(Utils::getSettingsValue(key), u"own"_s);
        QCOMPARE(Utils::getSettingsCommonValue(key), u"common"_s);
        QCOMPARE(Utils::getSettingsValue(u"never written"_s), QString());
        QCOMPARE(Utils::readFile(u"/nowhere/at/all"_s), QString());
    }
};

QTEST_GUILESS_MAIN(UtilsTest)
#include "utils_test.moc"
