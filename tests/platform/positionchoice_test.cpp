#include "platform/position/positionchoice.h"

#include "support/rows.h"

#include <QTest>

using namespace Qt::StringLiterals;

using Source = PositionChoice::Source;

class PositionChoiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void understands_data()
    {
        const Rows<Source, QString> row("source", "name");
        row("nmea:drive.nmea", Source::NmeaFile, "nmea drive.nmea");
        row("nmea:/dev/a:b", Source::NmeaFile, "nmea /dev/a:b");
        row("nmea:gpsd", Source::NmeaFile, "nmea gpsd");
        row("nmea:socket://host:10110", Source::NmeaSocket, "nmea host:10110");
        row("socket://[::1]:1", Source::NmeaSocket, "nmea [::1]:1");
        row("gpsd", Source::Gpsd, "gpsd localhost:2947");
        row("gpsd://phone", Source::Gpsd, "gpsd phone:2947");
        row("gpsd://[fe80::1%eth0]:3000", Source::Gpsd, "gpsd [fe80::1%eth0]:3000");
    }
    void understands()
    {
        QString error;
        const auto choice =
            PositionChoice::parse(QString::fromUtf8(QTest::currentDataTag()), &error);
        QVERIFY2(choice, qPrintable(error));
        QTEST(choice->source, "source");
        QTEST(choice->name(), "name");
        QVERIFY(error.isEmpty());
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"", "gps", "GPSD", "nmea", "nmea:", "nmea:http://host:1", "nmea:gpsd://host",
              "socket://", "socket://host", "socket://host:0", "socket://host:65536",
              "socket://host:1/", "socket://user@host:1", "gpsd://", "gpsd://host:", "gpsd:host",
              "gpsd://a b", "/dev/ttyACM0", "nmea:\nx://y"})
            QTest::addRow("%s", text) << QString::fromUtf8(text);
    }
    void refuses()
    {
        QFETCH(QString, text);
        QString error;
        QVERIFY(!PositionChoice::parse(text, &error));
        QVERIFY2(error.contains(u'"' + text.simplified() + u'"'), qPrintable(error));
        QVERIFY(error.contains(u"nmea:FILE"_s) && error.contains(u"gpsd://HOST:PORT"_s));
        QVERIFY(error.endsWith(u'.') && !error.contains(u'\n'));
    }
};

QTEST_APPLESS_MAIN(PositionChoiceTest)
#include "positionchoice_test.moc"
