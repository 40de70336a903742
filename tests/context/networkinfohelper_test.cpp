#include "context/networkinfohelper.h"

#include "platform/scriptedplatform.h"
#include "support/fakeplatform.h"
#include "utils/utils.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

qsizetype logged(const QString &text)
{
    return Utils::getLogEntries().count(u": %1\r\n"_s.arg(text));
}

void poll(NetworkInfoHelper &helper)
{
    QMetaObject::invokeMethod(helper.findChild<QTimer *>(), "timeout", Qt::DirectConnection);
}

} // namespace

class NetworkInfoHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheMode_data();
    void namesTheMode();
    void fillsEveryFieldAtOnce();
    void wlanOverridesTheMobileMode();
    void roamsByStatusAlone_data();
    void roamsByStatusAlone();
    void keepsSignalsApart();
    void pollsCellAndArea();
    void cleansTextsFromOutside();
    void followsAScript();
};

void NetworkInfoHelperTest::namesTheMode_data()
{
    QTest::addColumn<NetworkMode>("mode");
    QTest::addColumn<int>("cell");
    QTest::addColumn<QString>("name");
    QTest::newRow("Unknown") << NetworkMode::Unknown << 123456 << u"Unknown"_s;
    QTest::newRow("GSM, no cell") << NetworkMode::Gsm << -1 << u"GsmMode"_s;
    QTest::newRow("GSM, 5 digits") << NetworkMode::Gsm << 65535 << u"GsmMode"_s;
    QTest::newRow("GSM, 6 digits") << NetworkMode::Gsm << 100000 << u"WcdmaMode"_s;
    QTest::newRow("WCDMA, no cell") << NetworkMode::Wcdma << -1 << u"GsmMode"_s;
    QTest::newRow("WCDMA, 5 digits") << NetworkMode::Wcdma << 12345 << u"GsmMode"_s;
    QTest::newRow("WCDMA, 6 digits") << NetworkMode::Wcdma << 123456 << u"WcdmaMode"_s;
    QTest::newRow("CDMA") << NetworkMode::Cdma << 123456 << u"CdmaMode"_s;
    QTest::newRow("WLAN without connection") << NetworkMode::Wlan << 1 << u"WlanMode"_s;
    QTest::newRow("Ethernet") << NetworkMode::Ethernet << -1 << u"EthernetMode"_s;
    QTest::newRow("Bluetooth") << NetworkMode::Bluetooth << -1 << u"BluetoothMode"_s;
    QTest::newRow("WiMAX") << NetworkMode::Wimax << 1 << u"WimaxMode"_s;
    QTest::newRow("LTE, short cell") << NetworkMode::Lte << 12345 << u"LteMode"_s;
    QTest::newRow("NR, short cell") << NetworkMode::Nr << 1 << u"NrMode"_s;
    QTest::newRow("no such mode") << static_cast<NetworkMode>(77) << 123456 << u"Unknown"_s;
}

void NetworkInfoHelperTest::namesTheMode()
{
    QFETCH(NetworkMode, mode);
    QFETCH(int, cell);
    FakePlatform platform;
    platform.network.cell = cell;
    NetworkInfoHelper helper(platform, nullptr);
    platform.network.setMode(mode);
    QTEST(helper.getNetworkmode(), "name");
}

void NetworkInfoHelperTest::fillsEveryFieldAtOnce()
{
    FakePlatform platform;
    platform.network.mode = NetworkMode::Lte;
    platform.network.status[NetworkMode::Lte] = NetworkStatus::HomeNetwork;
    platform.network.signal[NetworkMode::Lte] = 71;
    platform.network.name[NetworkMode::Lte] = u"Demo"_s;
    platform.network.mcc = u"228"_s;
    platform.network.mnc = u"01"_s;
    platform.network.homeMcc = u"262"_s;
    platform.network.homeMnc = u"02"_s;
    platform.network.cell = 2814211;
    platform.network.lac = 512;
    NetworkInfoHelper helper(platform, nullptr);
    QCOMPARE(helper.getNetworkmode(), u"LteMode"_s);
    QCOMPARE(helper.getNetworkstatus(), u"HomeNetwork"_s);
    QCOMPARE(helper.getNetworksignal(), u"71"_s);
    QCOMPARE(helper.getNetworkname(), u"Demo"_s);
    QCOMPARE(helper.getMcc(), u"228"_s);
    QCOMPARE(helper.getMnc(), u"01"_s);
    QCOMPARE(helper.getHomemcc(), u"262"_s);
    QCOMPARE(helper.getHomemnc(), u"02"_s);
    QCOMPARE(helper.getNetworkcell(), u"2814211"_s);
    QCOMPARE(helper.getNetworklac(), u"512"_s);
    QCOMPARE(helper.findChild<QTimer *>()->intervalAsDuration(), 1000ms);

    platform.network.setMcc(u"208"_s);
    platform.network.setMnc(u"10"_s);
    platform.network.setName(NetworkMode::Wlan, u"Home"_s);
    QCOMPARE(helper.getMcc(), u"208"_s);
    QCOMPARE(helper.getMnc(), u"10"_s);
    QCOMPARE(helper.getNetworkname(), u"Demo"_s);
    QCOMPARE(logged(u"networkMCCChanged 208"_s), 1);
    QCOMPARE(logged(u"networkMNCChanged 10"_s), 1);
}

void NetworkInfoHelperTest::wlanOverridesTheMobileMode()
{
    FakePlatform platform;
    platform.network.mode = NetworkMode::Wcdma;
    platform.network.cell = 123456;
    platform.network.status[NetworkMode::Wlan] = NetworkStatus::Connected;
    NetworkInfoHelper helper(platform, nullptr);
    QCOMPARE(helper.getNetworkmode(), u"WlanMode"_s);
    QCOMPARE(logged(u"WLAN mode detected"_s), 1);
    platform.network.setStatus(NetworkMode::Wlan, NetworkStatus::Searching);
    QCOMPARE(helper.getNetworkmode(), u"WcdmaMode"_s);
    platform.network.setStatus(NetworkMode::Wlan, NetworkStatus::Connected);
    platform.network.setStatus(NetworkMode::Wlan, NetworkStatus::Connected);
    QCOMPARE(helper.getNetworkmode(), u"WlanMode"_s);
    QCOMPARE(logged(u"WLAN mode detected"_s), 2);
    // The status of another mode is noted once and is not the status of the current one.
    QCOMPARE(logged(u"Network status change: mode 4 : status 3"_s), 1);
    QCOMPARE(logged(u"Network status change: mode 4 : status 5"_s), 0);
    QCOMPARE(helper.getNetworkstatus(), u"UndefinedStatus"_s);
}

void NetworkInfoHelperTest::roamsByStatusAlone_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("name");
    const char *names[] = {
        "UndefinedStatus", "NoNetworkAvailable", "EmergencyOnly", "Searching", "Busy",
        "Connected",       "HomeNetwork",        "Denied",        "Roaming"};
    for (int status = 0; status < 9; ++status)
        QTest::newRow(names[status]) << status << QString::fromLatin1(names[status]);
    QTest::newRow("no such status") << 99 << u"UndefinedStatus"_s;
}

void NetworkInfoHelperTest::roamsByStatusAlone()
{
    QFETCH(int, status);
    FakePlatform platform;
    platform.network.mode = NetworkMode::Gsm;
    platform.network.homeMcc = u"228"_s;
    platform.network.mcc = u"262"_s;
    NetworkInfoHelper helper(platform, nullptr);
    platform.network.setStatus(NetworkMode::Gsm, static_cast<NetworkStatus>(status));
    QTEST(helper.getNetworkstatus(), "name");
    QCOMPARE(helper.roaming(), status == 8);
    QVERIFY(logged(u"RoamingCheck: HomeMCC: 228 MCC: 262"_s) > 0);
}

void NetworkInfoHelperTest::keepsSignalsApart()
{
    FakePlatform platform;
    platform.network.mode = NetworkMode::Ethernet;
    NetworkInfoHelper helper(platform, nullptr);
    int percent = 10;
    for (const NetworkMode cellular : {NetworkMode::Gsm, NetworkMode::Cdma, NetworkMode::Wcdma,
                                       NetworkMode::Lte, NetworkMode::Nr}) {
        platform.network.setSignal(cellular, ++percent);
        QCOMPARE(helper.getNetworksignal(), QString::number(percent));
    }
    platform.network.setSignal(NetworkMode::Wlan, 90);
    platform.network.setSignal(NetworkMode::Bluetooth, 50);
    QCOMPARE(helper.getNetworksignal(), u"15"_s);
    QCOMPARE(helper.getWlansignal(), u"90"_s);
    platform.network.setSignal(NetworkMode::Ethernet, 100);
    QCOMPARE(helper.getNetworksignal(), u"100"_s);
}

void NetworkInfoHelperTest::pollsCellAndArea()
{
    FakePlatform platform;
    platform.network.cell = 901;
    platform.network.lac = 801;
    NetworkInfoHelper helper(platform, nullptr);
    platform.network.cell = 902;
    platform.network.lac = 802;
    QCOMPARE(helper.getNetworkcell(), u"901"_s);
    poll(helper);
    poll(helper);
    QCOMPARE(helper.getNetworkcell(), u"902"_s);
    QCOMPARE(helper.getNetworklac(), u"802"_s);
    QCOMPARE(logged(u"networkCellChanged 902"_s), 1);
    QCOMPARE(logged(u"networkLACChanged 802"_s), 1);
    platform.network.cell = -1;
    platform.network.lac = -1;
    poll(helper);
    QCOMPARE(helper.getNetworkcell(), QString());
    QCOMPARE(helper.getNetworklac(), QString());
    QCOMPARE(Utils::getLogEntries().count(u"networkCellChanged"_s), 1);
    QCOMPARE(logged(u"networkLACChanged "_s), 1);
}

void NetworkInfoHelperTest::cleansTextsFromOutside()
{
    FakePlatform platform;
    platform.network.homeMcc = u"2\u001b28"_s;
    platform.network.homeMnc = QString(1000, u'%');
    NetworkInfoHelper helper(platform, nullptr);
    platform.network.setName(NetworkMode::Unknown, u"a\nb%1"_s + QString(1000, u'c'));
    platform.network.setMcc(u"%2\r"_s);
    platform.network.setMnc(u"%1"_s);
    QCOMPARE(helper.getHomemcc(), u"228"_s);
    QCOMPARE(helper.getHomemnc().size(), 256);
    QCOMPARE(helper.getNetworkname(), u"ab%1"_s + QString(252, u'c'));
    helper.roaming();
    QCOMPARE(logged(u"RoamingCheck: HomeMCC: 228 MCC: %2"_s), 1);
}

void NetworkInfoHelperTest::followsAScript()
{
    QString error;
    const auto script = PlatformScript::parse(
        R"({"mode": "WlanMode", "status": "Connected", "signal": 90, "name": "Home", "cell": 5}
{"at_ms": 3600001, "mode": "NrMode", "status": "Roaming", "signal": 33, "name": "Far", "cell": 7}
{"at_ms": 3600002, "mode": "WlanMode", "status": "Searching"})",
        u"script"_s, &error);
    QVERIFY2(script, qPrintable(error));
    ScriptedPlatform platform(*script);
    NetworkInfoHelper helper(platform, nullptr);
    QCOMPARE(helper.getNetworkmode(), u"WlanMode"_s);
    QCOMPARE(helper.getWlansignal(), u"90"_s);
    QVERIFY(!helper.roaming());
    platform.advanceTo(3600001ms);
    poll(helper);
    QCOMPARE(helper.getNetworkmode(), u"NrMode"_s);
    QCOMPARE(helper.getNetworksignal(), u"33"_s);
    QCOMPARE(helper.getNetworkname(), u"Far"_s);
    QCOMPARE(helper.getNetworkcell(), u"7"_s);
    QVERIFY(helper.roaming());
    platform.advanceTo(3600002ms);
    QCOMPARE(helper.getNetworkstatus(), u"Searching"_s);
    QVERIFY(!helper.roaming());
}

QTEST_GUILESS_MAIN(NetworkInfoHelperTest)
#include "networkinfohelper_test.moc"
