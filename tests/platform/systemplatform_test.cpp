#include "platform/deviceinfosource.h"
#include "platform/platform.h"
#include "platform/system/systemdeviceinfosource.h"
#include "platform/system/systeminterfaces.h"
#include "platform/system/systemnetworkinfosource.h"
#include "platform/system/systemnetworksession.h"
#include "support/rows.h"

#include <QDir>
#include <QHostAddress>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

using Interface = QNetworkInterface;

namespace {

const SystemInterface loopback{u"lo"_s, u"Loopback"_s, NetworkMode::Unknown, true, true, false};
const SystemInterface cable{u"eth0"_s, u"Ethernet"_s, NetworkMode::Ethernet, false, true, true};
const SystemInterface wlan{u"wlan0"_s, u"WLAN"_s, NetworkMode::Wlan, false, true, true};

void fireTimer(const QObject &source)
{
    QMetaObject::invokeMethod(source.findChild<QTimer *>(), "timeout", Qt::DirectConnection);
}

} // namespace

class SystemPlatformTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void describes_data()
    {
        const Rows<int, QString, QString, NetworkMode, bool> row("type", "address", "bearer",
                                                                 "mode", "routable");
        using enum NetworkMode;
        row("wlp3s0", Interface::Wifi, "10.0.0.1", "WLAN", Wlan, true);
        row("br0", Interface::Virtual, "fd00::2", "Ethernet", Ethernet, true);
        row("eth4", Interface::Ethernet, "169.254.7.7", "Ethernet", Ethernet, false);
        row("eth6", Interface::Ethernet, "fe80::1", "Ethernet", Ethernet, false);
        // A modem that poses as a cable.
        row("wwan0", Interface::Ethernet, "10.0.0.1", "Mobile", Unknown, true);
    }
    void describes()
    {
        QFETCH(int, type);
        QFETCH(QString, address);
        const SystemInterface described =
            describeInterface(QString::fromLatin1(QTest::currentDataTag()),
                              static_cast<Interface::InterfaceType>(type),
                              Interface::IsUp | Interface::IsRunning, {QHostAddress(address)});
        QTEST(described.bearer, "bearer");
        QTEST(described.mode, "mode");
        QTEST(described.routable, "routable");
        QVERIFY(described.up && !described.loopback);
    }

    void findsTheDefaultRoute_data()
    {
        const Rows<QByteArray, QByteArray, QString> row("ipv4", "ipv6", "interface");
        // Interface, destination, gateway, flags, references, use, metric, mask.
        const QByteArray head = "Iface Destination Gateway Flags RefCnt Use Metric Mask\n";
        const QByteArray wlan = "wlan0\t00000000\t0101A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0\n";
        const QByteArray cable = "eth0\t00000000\t0102A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n";
        const QByteArray network = "br0\t000011AC\t00000000\t0001\t0\t0\t0\t0000FFFF\t0\t0\t0\n";
        const QByteArray half = "tun0\t00000000\t00000000\t0001\t0\t0\t0\t00000080\t0\t0\t0\n";
        const QByteArray rejected = "*\t00000000\t00000000\t0201\t0\t0\t0\t00000000\t0\t0\t0\n";
        const QByteArray zeros(32, '0');
        const QByteArray v6 =
            zeros + " 00 " + zeros + " 00 " + zeros + " 00000400 00000001 00000000 00000003 eth1\n";
        const QByteArray v6Reject =
            zeros + " 00 " + zeros + " 00 " + zeros + " ffffffff 00000001 00000000 00200200 lo\n";
        row("lowest metric", head + network + wlan + cable, v6, "eth0");
        row("half of the world", head + half + wlan, v6Reject, "wlan0");
        row("IPv6 only", head + network, v6Reject + v6, "eth1");
        row("rejected", head + rejected, v6Reject, "");
        row("nonsense", QByteArray("\n\0x y\n 00000000 \t\n", 16), zeros + " 00 x\n", "");
    }
    void findsTheDefaultRoute()
    {
        QFETCH(QByteArray, ipv4);
        QFETCH(QByteArray, ipv6);
        QTEST(defaultRouteInterface(ipv4, ipv6), "interface");
    }

    void choosesWhereTrafficLeaves()
    {
        const SystemInterface unplugged{u"eth1"_s, u"Ethernet"_s, NetworkMode::Ethernet,
                                        false,     false,         true};
        const SystemNetwork all{{loopback, unplugged, cable, wlan}, u"wlan0"_s};
        QCOMPARE(all.outgoing()->name, u"wlan0"_s);
        QCOMPARE((SystemNetwork{all.interfaces, QString()}.outgoing()->name), u"eth0"_s);
        QVERIFY(!(SystemNetwork{{loopback, unplugged}, u"eth1"_s}.outgoing()));
    }

    void hidesHardwareAddresses()
    {
        QCOMPARE(anonymousInterfaceName(u"wlx0050b6123abc"_s), u"wlx"_s);
        QCOMPARE(anonymousInterfaceName(u"enp0s31f6"_s), u"enp0s31f6"_s);
    }

    void keepsTheHostNameToItself()
    {
        const auto platform = Platform::system();
        const auto device = platform->createDeviceInfoSource();
        QVERIFY(device->imei().isEmpty() && device->imsi().isEmpty());
        QVERIFY(!device->productName().isEmpty() && !device->model().isEmpty());
        QVERIFY(device->productName() != QSysInfo::machineHostName());
        QVERIFY(device->model() != QSysInfo::machineHostName());
    }

    void namesTheBoard_data()
    {
        const Rows<QByteArray, QString, QByteArray, QString> row("tree", "maker", "dmi", "names");
        row("device tree", QByteArray("Maker Phone 2\0rest", 18), "", "",
            "Maker|Maker Phone 2|Phone 2");
        row("firmware tables", "", "Maker GmbH\n", "Book 3\n", "Maker GmbH|Book 3|Book 3");
        row("placeholders", "", "To be filled by O.E.M.\n", "Default string", "||");
        row("punctuation", "", " ... \n", "-", "||");
        row("control characters", "", "\x1b[31mMaker\n", QByteArray("\xff\xfe\0Book", 7),
            "[31mMaker||");
        row("long", "", "Maker", QByteArray(100000, 'x'), u"Maker|%1|%1"_s.arg(QString(128, u'x')));
    }
    void namesTheBoard()
    {
        QFETCH(QByteArray, tree);
        QFETCH(QString, maker);
        QFETCH(QByteArray, dmi);
        QFETCH(QString, names);
        const QTemporaryDir root;
        const auto write = [&](const QString &file, const QByteArray &content) {
            const QFileInfo path(root.filePath(file));
            QFile out(path.filePath());
            return content.isEmpty() ||
                   (QDir().mkpath(path.path()) && out.open(QIODevice::WriteOnly) &&
                    out.write(content) == content.size());
        };
        QVERIFY(write(u"sys/firmware/devicetree/base/model"_s, tree));
        QVERIFY(write(u"sys/class/dmi/id/sys_vendor"_s, maker.toUtf8()));
        QVERIFY(write(u"sys/class/dmi/id/product_name"_s, dmi));
        QVERIFY(write(u"sys/class/dmi/id/product_version"_s, dmi));
        const SystemDeviceInfoSource device(nullptr, root.path());
        const QStringList expected = names.split(u'|');
        QCOMPARE(device.manufacturer(), expected[0]);
        QCOMPARE(device.productName(),
                 expected[1].isEmpty() ? QSysInfo::prettyProductName() : expected[1]);
        QCOMPARE(device.model(),
                 expected[2].isEmpty() ? QSysInfo::currentCpuArchitecture() : expected[2]);
    }

    void noticesAnotherNetwork()
    {
        SystemNetwork network{{loopback, wlan}, u"wlan0"_s};
        SystemNetworkInfoSource source([&] { return network; });
        QCOMPARE(source.currentMode(), NetworkMode::Wlan);
        QCOMPARE(source.networkStatus(NetworkMode::Wlan), NetworkStatus::Connected);
        QStringList heard;
        connect(&source, &NetworkInfoSource::networkModeChanged, this,
                [&](NetworkMode mode) { heard += u"mode %1"_s.arg(int(mode)); });
        connect(&source, &NetworkInfoSource::networkStatusChanged, this,
                [&](NetworkMode mode, NetworkStatus status) {
                    heard += u"status %1 %2"_s.arg(int(mode)).arg(int(status));
                });
        fireTimer(source);
        QVERIFY(heard.isEmpty());
        network = {{loopback, cable, wlan}, u"eth0"_s};
        fireTimer(source);
        QCOMPARE(heard, (QStringList{u"mode 5"_s, u"status 4 1"_s, u"status 5 5"_s}));
        network = {{loopback}, QString()};
        fireTimer(source);
        QCOMPARE(source.networkStatus(NetworkMode::Ethernet), NetworkStatus::NoNetworkAvailable);
    }

    void losesASession_data()
    {
        const Rows<QList<SystemInterface>, QList<SystemInterface>, bool, bool> row(
            "before", "after", "opens", "stays");
        row("nothing up", {}, {}, false, false);
        row("network gone", {loopback, wlan}, {loopback}, true, false);
        row("other network", {loopback, wlan}, {loopback, cable}, true, true);
        row("loopback all along", {loopback}, {loopback}, true, true);
        row("loopback gone", {loopback}, {}, true, false);
    }
    void losesASession()
    {
        QFETCH(QList<SystemInterface>, before);
        QFETCH(QList<SystemInterface>, after);
        QFETCH(bool, opens);
        QFETCH(bool, stays);
        SystemNetwork network{before, QString()};
        SystemNetworkSession session([&] { return network; });
        QCOMPARE(session.defaultConfiguration().valid, opens);
        QSignalSpy failed(&session, &NetworkSession::error);
        session.open();
        QVERIFY(!session.isOpen() && failed.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(session.isOpen(), opens);
        QCOMPARE(failed.size(), opens ? 0 : 1);
        if (!opens)
            return;
        // One look without a network is a hand-over, two in a row are a loss.
        network.interfaces = after;
        fireTimer(session);
        QVERIFY(session.isOpen());
        network.interfaces = before;
        fireTimer(session);
        network.interfaces = after;
        fireTimer(session);
        QVERIFY(session.isOpen());
        fireTimer(session);
        QCOMPARE(session.isOpen(), stays);
        QCOMPARE(failed.size(), stays ? 0 : 1);
    }
};

QTEST_GUILESS_MAIN(SystemPlatformTest)
#include "systemplatform_test.moc"
