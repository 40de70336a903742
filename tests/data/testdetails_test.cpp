#include "data/testdetails.h"

#include "support/registeredtest.h"

using namespace Qt::StringLiterals;

namespace velometer {

class TestDetailsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatsAsAPersonReadsIt_data()
    {
        const Rows<QString, QVariant, QString> row("key", "value", "text");
        row("bytes that are no number", "totalBytes", u"x"_s, "Format Error");
        row("no rate", "downloadAverage", 0.0, "n/a");
        row("rate", "uploadMaximum", 2500000.0, "2500 kBit/s");
        row("round trip", "rttAverage", 45000000.0, "45 ms");
        row("altitude", "deviceAltitude", 408.6, "409 m");
        row("budget, words of nobody", "budgetReached", u"upload,<b>,download,upload"_s,
            "ended early: download, upload");
        row("integer by any other key", "testServerPort", 8080.0, "8080");
    }
    void formatsAsAPersonReadsIt()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        TestDetails details(nullptr, 1);
        if (value.typeId() == QMetaType::QString) {
            details.putString(key, value.toString());
        } else {
            details.putDouble(key, value.toDouble());
        }
        QTEST(details.getFormatedStringByKey(key), "text");
    }

    void showsABoundWhereNoiseHidesTheMovement_data()
    {
        // values: velocity, accuracy, distance, duration
        const Rows<QList<double>, QString, QString> row("values", "velocity", "distance");
        row("clear movement", {60, 10, 80, 60}, "60 km/h", "80 m");
        row("at the threshold", {20, 10, 50, 6}, "< 30 km/h", "< 50 m");
        row("bounds below 5 km/h and 1 m", {20, 0.1, 0.2, 600}, "< 5 km/h", "< 1 m");
        row("no accuracy", {20, 0, 30, 6}, "n/a", "n/a");
        row("no duration", {20, 10, 30, 0}, "n/a", "< 50 m");
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
    }
};

} // namespace velometer

VELOMETER_TEST(TestDetailsTest)
#include "testdetails_test.moc"
