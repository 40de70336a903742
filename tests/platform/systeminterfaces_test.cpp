#include "platform/systeminterfaces.h"

#include <QHostAddress>
#include <QTest>

using namespace Qt::StringLiterals;

using Interface = QNetworkInterface;

class SystemInterfacesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void describes_data();
    void describes();
    void findsTheDefaultRoute_data();
    void findsTheDefaultRoute();
    void choosesWhereTrafficLeaves();
    void hidesHardwareAddresses();
};

void SystemInterfacesTest::describes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("bearer");
    QTest::addColumn<NetworkMode>("mode");
    QTest::addColumn<bool>("routable");
    const auto row = [](const char *hazard, const QString &name, Interface::InterfaceType type,
                        const QString &address, const QString &bearer, NetworkMode mode,
                        bool routable) {
        QTest::newRow(hazard) << name << int(type) << address << bearer << mode << routable;
    };
    const auto private4 = u"192.168.1.5"_s;
    const auto ethernet = u"Ethernet"_s;
    row("wifi", u"wlp3s0"_s, Interface::Wifi, private4, u"WLAN"_s, NetworkMode::Wlan, true);
    row("wired", u"eth0"_s, Interface::Ethernet, private4, ethernet, NetworkMode::Ethernet, true);
    row("bridge", u"br0"_s, Interface::Virtual, u"fd00::2"_s, ethernet, NetworkMode::Ethernet,
        true);
    row("link-local 4", u"eth0"_s, Interface::Ethernet, u"169.254.7.7"_s, ethernet,
        NetworkMode::Ethernet, false);
    row("link-local 6", u"eth0"_s, Interface::Ethernet, u"fe80::1"_s, ethernet,
        NetworkMode::Ethernet, false);
    row("no address", u"eth0"_s, Interface::Ethernet, QString(), ethernet, NetworkMode::Ethernet,
        false);
    row("modem posing as a cable", u"wwan0"_s, Interface::Ethernet, private4, u"Mobile"_s,
        NetworkMode::Unknown, true);
    row("dial-up", u"ppp0"_s, Interface::Ppp, private4, u"Mobile"_s, NetworkMode::Unknown, true);
    row("something else", u"can0"_s, Interface::CanBus, QString(), u"Unknown"_s,
        NetworkMode::Unknown, false);
}

void SystemInterfacesTest::describes()
{
    QFETCH(QString, name);
    QFETCH(int, type);
    QFETCH(QString, address);
    const SystemInterface described =
        describeInterface(name, static_cast<Interface::InterfaceType>(type),
                          Interface::IsUp | Interface::IsRunning, {QHostAddress(address)});
    QTEST(described.bearer, "bearer");
    QTEST(described.mode, "mode");
    QTEST(described.routable, "routable");
    QVERIFY(described.up && !described.loopback);
}

void SystemInterfacesTest::findsTheDefaultRoute_data()
{
    QTest::addColumn<QByteArray>("ipv4");
    QTest::addColumn<QByteArray>("ipv6");
    QTest::addColumn<QString>("interface");

    const QByteArray head =
        "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\n";
    const QByteArray wlan = "wlan0\t00000000\t0101A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0\n";
    const QByteArray cable = "eth0\t00000000\t0102A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n";
    const QByteArray network = "docker0\t000011AC\t00000000\t0001\t0\t0\t0\t0000FFFF\t0\t0\t0\n";
    const QByteArray half = "tun0\t00000000\t00000000\t0001\t0\t0\t0\t00000080\t0\t0\t0\n";
    const QByteArray rejected = "*\t00000000\t00000000\t0201\t0\t0\t0\t00000000\t0\t0\t0\n";
    const QByteArray zeros(32, '0');
    const QByteArray v6 =
        zeros + " 00 " + zeros + " 00 " + zeros + " 00000400 00000001 00000000 00000003 eth1\n";
    const QByteArray v6Reject =
        zeros + " 00 " + zeros + " 00 " + zeros + " ffffffff 00000001 00000000 00200200 lo\n";

    QTest::newRow("lowest metric") << head + network + wlan + cable << v6 << u"eth0"_s;
    QTest::newRow("half of the world") << head + half + wlan << QByteArray() << u"wlan0"_s;
    QTest::newRow("IPv6 only") << head + network << v6Reject + v6 << u"eth1"_s;
    QTest::newRow("rejected") << head + rejected << v6Reject << QString();
    QTest::newRow("nonsense") << QByteArray("\n\0x y\n 00000000 \t\n", 16) << zeros + " 00 x\n"
                              << QString();
}

void SystemInterfacesTest::findsTheDefaultRoute()
{
    QFETCH(QByteArray, ipv4);
    QFETCH(QByteArray, ipv6);
    QTEST(defaultRouteInterface(ipv4, ipv6), "interface");
}

void SystemInterfacesTest::choosesWhereTrafficLeaves()
{
    const SystemInterface lo{u"lo"_s, u"Loopback"_s, NetworkMode::Unknown, true, true, false};
    const SystemInterface unplugged{u"eth1"_s, u"Ethernet"_s, NetworkMode::Ethernet,
                                    false,     false,         true};
    const SystemInterface bridge{u"docker0"_s, u"Ethernet"_s, NetworkMode::Ethernet,
                                 false,        true,          true};
    const SystemInterface wlan{u"wlan0"_s, u"WLAN"_s, NetworkMode::Wlan, false, true, true};
    const QList<SystemInterface> all{lo, unplugged, bridge, wlan};
    QVERIFY(!(SystemNetwork{{lo, unplugged}, u"eth1"_s}.outgoing()));
    QCOMPARE((SystemNetwork{all, u"wlan0"_s}.outgoing()->name), u"wlan0"_s);
    QCOMPARE((SystemNetwork{all, QString()}.outgoing()->name), u"docker0"_s);
}

void SystemInterfacesTest::hidesHardwareAddresses()
{
    QCOMPARE(anonymousInterfaceName(u"enx0050b6123abc"_s), u"enx"_s);
    QCOMPARE(anonymousInterfaceName(u"wlx0050b6123abc"_s), u"wlx"_s);
    QCOMPARE(anonymousInterfaceName(u"enp0s31f6"_s), u"enp0s31f6"_s);
}

QTEST_GUILESS_MAIN(SystemInterfacesTest)
#include "systeminterfaces_test.moc"
