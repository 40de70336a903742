#include "utils/units.h"
#include "utils/utils.h"

#include "support/fakeclock.h"
#include "support/registeredtest.h"

namespace velometer {

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
        for (int i = 0; i < 5000; ++i) {
            Utils::addLogEntry(u"the same"_s);
            Utils::addLogEntry(u"number %1"_s.arg(i), u"number"_s);
            Utils::addLogEntry(u"number %1"_s.arg(i), u"number"_s);
        }
        const QString full = Utils::getLogEntries();
        for (int i = 0; i < 2; ++i) {
            Utils::addLogEntry(u"one too many"_s);
        }
        QCOMPARE(Utils::getLogEntries(), full);
        QVERIFY(full.contains(u"\r\n1234: the same\r\n1234: number 7 (2 times)\r\n"_s));
        QCOMPARE(full.count(u"\r\n"_s), 1000);
        QVERIFY(
            full.startsWith(u"1234: a&amp;lt;b &amp; &apos;x&apos; &quot;y&quot;\r\n1234: z"_s));
        // A text of a million characters must not make every later report undeliverable.
        QVERIFY(full.size() < 100'000);
    }

    void writesFiguresInTheirUnit()
    {
        QCOMPARE((QStringList{Units::scaledRate(9'600), Units::scaledRate(999'700),
                              Units::scaledRate(10'919'046'663), Units::kiloBitRate(45'500),
                              Units::wholeMilliseconds(45'999'999),
                              Units::milliseconds(45'960'000, 1), Units::megabytes(1'572'864)}),
                 (QStringList{u"10 kbit/s"_s, u"1.00 Mbit/s"_s, u"10919.0 Mbit/s"_s, u"46 kBit/s"_s,
                              u"45 ms"_s, u"46.0 ms"_s, u"1.50 MB"_s}));
    }

    void translatesCodes()
    {
        QStringList told;
        for (const QString &code : u"WcdmaMode LteMode NrMode WlanMode Ethernet"_s.split(u' ')) {
            told += Utils::connectionTypeKey(code) + u' ' + Utils::trConnectionTypeShort(code);
        }
        for (const QString &code : u"Indoor Outdoor Train Car Other car"_s.split(u' ')) {
            told += Utils::trLocation(code) + u' ' + Utils::trLocationShort(code);
        }
        QCOMPARE(told.join(u','),
                 u"Mobile(UMTS) conntypeMobile,Mobile(LTE) conntypeMobile,"
                 "Mobile(5G) conntypeMobile,WLAN conntypeWLAN, conntypeother,"
                 "LocationIndoor LocationIndoorShort,LocationOutdoor LocationOutdoorShort,"
                 "LocationTrain LocationTrainShort,LocationCar LocationCarShort,"
                 "LocationOther LocationOtherShort, "_s);
    }
};

} // namespace velometer

VELOMETER_TEST(UtilsTest)
#include "utils_test.moc"
