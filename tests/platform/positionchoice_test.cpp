#include "platform/position/positionchoice.h"

#include "support/registeredtest.h"

namespace velometer {

class PositionChoiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void understands_data()
    {
        const Rows<PositionChoice::Source, QString> row("source", "name");
        using enum PositionChoice::Source;
        row("nmea:/dev/a:b", NmeaFile, "nmea /dev/a:b");
        row("nmea:gpsd", NmeaFile, "nmea gpsd");
        row("nmea:socket://host:10110", NmeaSocket, "nmea host:10110");
        row("socket://[::1]:1", NmeaSocket, "nmea [::1]:1");
        row("gpsd", Gpsd, "gpsd localhost:2947");
        row("gpsd://[fe80::1%eth0]:3000", Gpsd, "gpsd [fe80::1%eth0]:3000");
    }
    void understands()
    {
        QString error;
        const auto choice =
            PositionChoice::parse(QString::fromUtf8(QTest::currentDataTag()), &error);
        QVERIFY2(choice, qPrintable(error));
        QTEST(choice->source, "source");
        QTEST(choice->name(), "name");
    }

    void refuses()
    {
        for (const QString &text :
             {u""_s, u"GPSD"_s, u"nmea:"_s, u"nmea:http://host:1"_s, u"nmea:gpsd://host"_s,
              u"socket://host"_s, u"socket://host:0"_s, u"socket://host:65536"_s,
              u"socket://user@host:1"_s, u"gpsd://host:"_s, u"/dev/ttyACM0"_s, u"nmea:\nx://y"_s}) {
            QString error;
            QVERIFY2(!PositionChoice::parse(text, &error), qPrintable(text));
            QVERIFY2(error.contains(u'"' + text.simplified() + u'"'), qPrintable(error));
            QVERIFY2(error.endsWith(u'.') && !error.contains(u'\n'), qPrintable(error));
        }
    }
};

} // namespace velometer

VELOMETER_TEST(PositionChoiceTest)
#include "positionchoice_test.moc"
