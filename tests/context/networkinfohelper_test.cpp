#include "context/networkinfohelper.h"

#include "support/fakeplatform.h"
#include "support/registeredtest.h"
#include "support/rows.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace velometer {

class NetworkInfoHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheMode_data()
    {
        const Rows<NetworkMode, int, QString> row("mode", "cell", "name");
        row("GSM, 6 digits", NetworkMode::Gsm, 100000, "WcdmaMode");
        row("WCDMA, 5 digits", NetworkMode::Wcdma, 12345, "GsmMode");
        row("Ethernet", NetworkMode::Ethernet, -1, "EthernetMode");
        row("WCDMA, no cell", NetworkMode::Wcdma, -1, "WcdmaMode");
        row("WCDMA, cell not read yet", NetworkMode::Wcdma, 0, "WcdmaMode");
        row("LTE, short cell", NetworkMode::Lte, 12345, "LteMode");
        row("no such mode", static_cast<NetworkMode>(77), 123456, "Unknown");
    }
    void namesTheMode()
    {
        QFETCH(NetworkMode, mode);
        QFETCH(int, cell);
        FakePlatform platform;
        platform.network.cell = cell;
        NetworkInfoHelper helper(platform, nullptr);
        platform.network.setMode(mode);
        QTEST(helper.getNetworkmode(), "name");
    }

    void fillsEveryFieldAtOnce()
    {
        FakePlatform platform;
        platform.network.mode = NetworkMode::Lte;
        platform.network.status[NetworkMode::Lte] = NetworkStatus::HomeNetwork;
        platform.network.signal[NetworkMode::Lte] = 71;
        platform.network.name[NetworkMode::Lte] = u"De\nmo"_s;
        platform.network.mcc = u"228"_s;
        platform.network.mnc = u"01"_s;
        platform.network.homeMcc = u"262"_s;
        platform.network.homeMnc = u"02"_s;
        platform.network.cell = 901;
        platform.network.lac = 512;
        NetworkInfoHelper helper(platform, nullptr);
        QCOMPARE(helper.getNetworkmode(), u"LteMode"_s);
        QCOMPARE(helper.getNetworkstatus(), u"HomeNetwork"_s);
        QCOMPARE(helper.getNetworksignal(), u"71"_s);
        QCOMPARE((QStringList{helper.getHomemcc(), helper.getHomemnc()}),
                 (QStringList{u"262"_s, u"02"_s}));
        QCOMPARE(changing(helper), (QStringList{u"Demo"_s, u"228"_s, u"01"_s, u"901"_s, u"512"_s}));

        platform.network.mcc = u"2\u001b08"_s;
        platform.network.mnc = u"10\n"_s;
        platform.network.name[NetworkMode::Wlan] = u"Home"_s;
        platform.network.cell = 902;
        platform.network.lac = -1;
        platform.network.tell();
        QCOMPARE(changing(helper),
                 (QStringList{u"Demo"_s, u"208"_s, u"10"_s, u"902"_s, QString()}));
    }

    void wlanOverridesTheMobileMode()
    {
        FakePlatform platform;
        platform.network.mode = NetworkMode::Wcdma;
        platform.network.cell = 123456;
        platform.network.status[NetworkMode::Wlan] = NetworkStatus::Connected;
        NetworkInfoHelper helper(platform, nullptr);
        QCOMPARE(helper.getNetworkmode(), u"WlanMode"_s);
        platform.network.setStatus(NetworkMode::Wlan, NetworkStatus::Searching);
        QCOMPARE(helper.getNetworkmode(), u"WcdmaMode"_s);
        platform.network.setStatus(NetworkMode::Wlan, NetworkStatus::Connected);
        QCOMPARE(helper.getNetworkmode(), u"WlanMode"_s);
        // The status of another mode is not the status of the current one.
        QCOMPARE(helper.getNetworkstatus(), u"UndefinedStatus"_s);
    }

    void roamsByStatusAlone()
    {
        FakePlatform platform;
        platform.network.mode = NetworkMode::Gsm;
        platform.network.homeMcc = u"228"_s;
        platform.network.mcc = u"262"_s;
        NetworkInfoHelper helper(platform, nullptr);
        for (const auto status : {NetworkStatus::HomeNetwork, NetworkStatus::Denied,
                                  NetworkStatus::Roaming, static_cast<NetworkStatus>(99)}) {
            platform.network.setStatus(NetworkMode::Gsm, status);
            QCOMPARE(helper.roaming(), status == NetworkStatus::Roaming);
            QCOMPARE(helper.getNetworkstatus() == u"Roaming"_s, helper.roaming());
        }
    }

    void keepsSignalsApart()
    {
        FakePlatform platform;
        platform.network.mode = NetworkMode::Wlan;
        platform.network.signal[NetworkMode::Wlan] = 90;
        NetworkInfoHelper helper(platform, nullptr);
        QCOMPARE(helper.getNetworksignal(), QString());
        platform.network.signal[NetworkMode::Lte] = 15; // the modem, while traffic leaves elsewhere
        platform.network.signal[NetworkMode::Bluetooth] = 50;
        platform.network.tell();
        QCOMPARE(helper.getNetworksignal(), u"15"_s);
        QCOMPARE(helper.getWlansignal(), u"90"_s);
        platform.network.signal.remove(NetworkMode::Lte);
        platform.network.setMode(NetworkMode::Bluetooth);
        QCOMPARE(helper.getNetworksignal(), u"50"_s);
        platform.network.setMode(NetworkMode::Ethernet);
        QCOMPARE(helper.getNetworksignal(), u"-1"_s);
    }

private:
    static QStringList changing(const NetworkInfoHelper &helper)
    {
        return {helper.getNetworkname(), helper.getMcc(), helper.getMnc(), helper.getNetworkcell(),
                helper.getNetworklac()};
    }
};

} // namespace velometer

VELOMETER_TEST(NetworkInfoHelperTest)
#include "networkinfohelper_test.moc"
