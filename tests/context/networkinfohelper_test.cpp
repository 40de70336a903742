#include "context/networkinfohelper.h"

#include "support/fakeplatform.h"
#include "support/registeredtest.h"

using namespace Qt::StringLiterals;

namespace velometer {

class NetworkInfoHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheMode_data()
    {
        const Rows<NetworkMode, std::optional<int>, QString> row("mode", "cell", "name");
        row("GSM, 6 digits", NetworkMode::Gsm, 100000, "WcdmaMode");
        row("WCDMA, 5 digits", NetworkMode::Wcdma, 12345, "GsmMode");
        row("Ethernet", NetworkMode::Ethernet, std::nullopt, "EthernetMode");
        row("WCDMA, no cell", NetworkMode::Wcdma, std::nullopt, "WcdmaMode");
        row("WCDMA, cell not read yet", NetworkMode::Wcdma, 0, "WcdmaMode");
        row("LTE, short cell", NetworkMode::Lte, 12345, "LteMode");
        row("no such mode", static_cast<NetworkMode>(77), 123456, "Unknown");
    }
    void namesTheMode()
    {
        QFETCH(NetworkMode, mode);
        QFETCH(std::optional<int>, cell);
        FakePlatform platform;
        platform.network.cell = cell;
        NetworkInfoHelper helper(platform, nullptr);
        platform.network.setMode(mode);
        QTEST(helper.getNetworkmode(), "name");
    }

    void fillsEveryFieldAtOnce()
    {
        FakePlatform platform;
        FakeNetwork &network = platform.network;
        NetworkInfoHelper helper(platform, nullptr);
        network.links[NetworkMode::Lte].status = NetworkStatus::HomeNetwork;
        network.links[NetworkMode::Lte].signal = 71;
        network.links[NetworkMode::Lte].name = u"De\nmo"_s;
        network.links[NetworkMode::Wlan].name = u"Home"_s;
        network.mcc = u"2\u001b08"_s;
        network.mnc = u"10\n"_s;
        network.homeMcc = u"262"_s;
        network.homeMnc = u"02"_s;
        network.cell = 901;
        network.lac = 512;
        network.setMode(NetworkMode::Lte);
        const auto fields = [&] {
            return QStringList{helper.getNetworkmode(),   helper.getNetworkstatus(),
                               helper.getNetworksignal(), helper.getNetworkname(),
                               helper.getMcc(),           helper.getMnc(),
                               helper.getHomemcc(),       helper.getHomemnc(),
                               helper.getNetworkcell(),   helper.getNetworklac()}
                .join(u' ');
        };
        QCOMPARE(fields(), u"LteMode HomeNetwork 71 Demo 208 10 262 02 901 512"_s);
        network.lac.reset();
        network.tell();
        QCOMPARE(fields(), u"LteMode HomeNetwork 71 Demo 208 10 262 02 901 "_s);
    }

    void wlanOverridesTheMobileMode()
    {
        FakePlatform platform;
        platform.network.mode = NetworkMode::Wcdma;
        platform.network.cell = 123456;
        platform.network.links[NetworkMode::Wlan].status = NetworkStatus::Connected;
        NetworkInfoHelper helper(platform, nullptr);
        QCOMPARE(helper.getNetworkmode(), u"WlanMode"_s);
        platform.network.setStatus(NetworkMode::Wlan, NetworkStatus::Searching);
        QCOMPARE(helper.getNetworkmode(), u"WcdmaMode"_s);
        platform.network.setStatus(NetworkMode::Wlan, NetworkStatus::Connected);
        QCOMPARE(helper.getNetworkmode(), u"WlanMode"_s);
        // The status of another mode is not the status of the current one.
        QCOMPARE(helper.getNetworkstatus(), u"NoNetworkAvailable"_s);
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
        platform.network.links[NetworkMode::Wlan].signal = 90;
        NetworkInfoHelper helper(platform, nullptr);
        QCOMPARE(helper.getNetworksignal(), QString());
        // The modem, while traffic leaves elsewhere.
        platform.network.links[NetworkMode::Lte].signal = 15;
        platform.network.links[NetworkMode::Bluetooth].signal = 50;
        platform.network.tell();
        QCOMPARE(helper.getNetworksignal(), u"15"_s);
        QCOMPARE(helper.getWlansignal(), u"90"_s);
        platform.network.links.remove(NetworkMode::Lte);
        platform.network.setMode(NetworkMode::Bluetooth);
        QCOMPARE(helper.getNetworksignal(), u"50"_s);
        platform.network.setMode(NetworkMode::Ethernet);
        QCOMPARE(helper.getNetworksignal(), u"-1"_s);
    }
};

} // namespace velometer

VELOMETER_TEST(NetworkInfoHelperTest)
#include "networkinfohelper_test.moc"
