#include "data/testdetails.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestDetailsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatsAsAPersonReadsIt_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const char *key, const QVariant &value,
                            const char *text) {
            QTest::newRow(name) << QString::fromLatin1(key) << value << QString::fromLatin1(text);
        };
        row("test id", "testTestId", 3LL, "3");
        row("date", "testDate", u"2026-11-22"_s, "2026-11-22");
        row("time", "testTime", u"07:05"_s, "07:05");
        row("megabytes", "downloadedBytes", 1572864LL, "1.50 MB");
        row("bytes that are no number", "totalBytes", u"x"_s, "Format Error");
        row("no rate", "downloadAverage", 0.0, "n/a");
        row("rate", "uploadMaximum", 2500000.0, "2500 kBit/s");
        row("round trip", "rttAverage", 45000000.0, "45 ms");
        row("no round trip", "rttMinimum", -1.0, "n/a");
        row("cell", "networkCell", 123456.0, "123456");
        row("signal", "gsmSignalStrength", 40LL, "40");
        row("altitude", "deviceAltitude", 408.6, "409 m");
        row("no altitude", "deviceAltitude", -1.0, "n/a");
        row("no accuracy", "deviceAccuracyHor", 0.0, "n/a");
        row("accuracy", "deviceAccuracyVert", 12.4, "12 m");
        row("integer by any other key", "testServerPort", 8080.0, "8080");
        row("text by any other key", "testServerCity", u"Bern"_s, "Bern");
    }
    void formatsAsAPersonReadsIt()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        TestDetails details(nullptr, 1);
        switch (value.typeId()) {
        case QMetaType::QString:
            details.putString(key, value.toString());
            break;
        case QMetaType::LongLong:
            details.putLong(key, value.toLongLong());
            break;
        default:
            details.putDouble(key, value.toDouble());
        }
        QTEST(details.getFormatedStringByKey(key), "text");
    }

    void showsABoundWhereNoiseHidesTheMovement_data()
    {
        QTest::addColumn<QList<double>>("values"); // velocity, accuracy, distance, duration
        QTest::addColumn<QString>("velocity");
        QTest::addColumn<QString>("distance");
        using Values = QList<double>;
        QTest::newRow("clear movement") << Values{60, 10, 80, 60} << "60 km/h"
                                        << "80 m";
        QTest::newRow("within the noise") << Values{20, 10, 30, 6} << "< 30 km/h"
                                          << "< 50 m";
        QTest::newRow("at the threshold") << Values{20, 10, 50, 6} << "< 30 km/h"
                                          << "< 50 m";
        QTest::newRow("bound below 5 km/h") << Values{20, 10, 30, 600} << "< 5 km/h"
                                            << "< 50 m";
        QTest::newRow("bound below 1 m") << Values{20, 0.1, 0.2, 600} << "< 5 km/h"
                                         << "< 1 m";
        QTest::newRow("no accuracy") << Values{20, 0, 30, 6} << "n/a"
                                     << "n/a";
        QTest::newRow("unknown") << Values{-1, 10, -1, -1} << "n/a"
                                 << "n/a";
        QTest::newRow("no duration") << Values{20, 10, 30, 0} << "n/a"
                                     << "< 50 m";
    }
    void showsABoundWhereNoiseHidesTheMovement()
    {
        QFETCH(QList<double>, values);
        TestDetails details(nullptr, 1);
        details.putDouble(u"deviceVelocity"_s, values[0]);
        details.putDouble(u"deviceAccuracyVert"_s, values[1]);
        details.putDouble(u"deviceDistance"_s, values[2]);
        details.putDouble(u"deviceDistanceDuration"_s, values[3]);
        QTEST(details.getFormatedStringByKey(u"deviceVelocity"_s), "velocity");
        QTEST(details.getFormatedStringByKey(u"deviceDistance"_s), "distance");
        QVERIFY(!details.hasGPSCoordinates());
        details.putDouble(u"deviceLongitude"_s, 8.5);
        QVERIFY(details.hasGPSCoordinates());
    }
};

QTEST_GUILESS_MAIN(TestDetailsTest)
#include "testdetails_test.moc"
