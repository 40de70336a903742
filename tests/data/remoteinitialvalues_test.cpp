#include "data/remoteinitialvalues.h"

#include "utils/utils.h"

#include <QTest>

using namespace Qt::StringLiterals;

class RemoteInitialValuesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsItsKeysAnywhere()
    {
        RemoteInitialValues values(nullptr);
        values.remoteInitialValuesLoaded(
            u"HTTP noise Timestamp:1;SACK:1;MaxRwinRcvd:65535;WinScaleRcvd:7;MSS:1460;\r\n"
            "Client-Hostname:host1;Server-IP:10.0.0.1;Remote-IP:10.0.0.2;Local-IP:/10.0.0.3"_s);
        QCOMPARE(values.getClientHostname(), u"host1"_s);
        QCOMPARE(values.getRemoteIP(), u"10.0.0.1"_s);
        QCOMPARE(values.getLocalIP(), u"10.0.0.2"_s);
        QCOMPARE(values.getInternalIP(), u"10.0.0.3"_s);
        QCOMPARE(values.getMss(), 1460);
        QCOMPARE(values.getWscale(), 7);
        QCOMPARE(values.getRwin(), 65535);
        QCOMPARE(values.getSack(), 1);
        QCOMPARE(values.getTimestamp(), 1);
        QVERIFY(!values.isWeb100Error());
    }

    void malformedNumbersBecomeZeroAndAreLogged_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<int>("mss");
        QTest::addColumn<bool>("error");
        QTest::addColumn<QString>("logged");
        QTest::newRow("empty") << "" << 0 << true << "";
        QTest::newRow("text") << "MSS:abc;" << 0 << true << "Error decoding mss (abc)";
        QTest::newRow("beyond 32 bits")
            << "MSS:99999999999;" << 0 << true << "Error decoding mss (99999999999)";
        QTest::newRow("negative stays") << "MSS:-5;" << -5 << false << "";
        QTest::newRow("service says so") << "MSS:1460;Web100:failed;" << 1460 << true << "";
        QTest::newRow("no semicolon") << "MSS:1460\r\n" << 1460 << false << "";
    }
    void malformedNumbersBecomeZeroAndAreLogged()
    {
        QFETCH(QString, answer);
        QFETCH(QString, logged);
        RemoteInitialValues values(nullptr);
        values.remoteInitialValuesLoaded(answer);
        QTEST(values.getMss(), "mss");
        QTEST(values.isWeb100Error(), "error");
        if (!logged.isEmpty())
            QVERIFY(Utils::getLogEntries().contains(logged));
    }
};

QTEST_GUILESS_MAIN(RemoteInitialValuesTest)
#include "remoteinitialvalues_test.moc"
