#include "platform/deviceinfosource.h"
#include "platform/machine/machinedeviceinfosource.h"
#include "platform/machine/machinenetwork.h"
#include "platform/machine/machinenetworkinfosource.h"
#include "platform/machine/machinenetworksession.h"
#include "support/fakeclock.h"
#include "support/registeredtest.h"

#include <QDir>
#include <QHostAddress>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTemporaryDir>

namespace velometer {

using Interface = QNetworkInterface;

namespace {

const MachineInterface loopback{u"lo"_s, u"Loopback"_s, NetworkMode::Unknown, true, true, false};
const MachineInterface cable{u"eth0"_s, u"Ethernet"_s, NetworkMode::Ethernet, false, true, true};
const MachineInterface wlan{u"wlan0"_s, u"WLAN"_s, NetworkMode::Wlan, false, true, true};

} // namespace

class MachineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void describesInterfaces()
    {
        const auto described = [](const QString &name, Interface::InterfaceType type,
                                  const QString &address) {
            const auto found = describeInterface(name, type, Interface::IsUp | Interface::IsRunning,
                                                 {QHostAddress(address)});
            return u"%1 %2 %3"_s.arg(found.bearer).arg(int(found.mode)).arg(found.routable);
        };
        QCOMPARE(described(u"wlp3s0"_s, Interface::Wifi, u"10.0.0.1"_s), u"WLAN 4 1"_s);
        QCOMPARE(described(u"br0"_s, Interface::Virtual, u"fd00::2"_s), u"Ethernet 5 1"_s);
        QCOMPARE(described(u"eth4"_s, Interface::Ethernet, u"169.254.7.7"_s), u"Ethernet 5 0"_s);
        QCOMPARE(described(u"eth6"_s, Interface::Ethernet, u"fe80::1"_s), u"Ethernet 5 0"_s);
        // A modem that poses as a cable.
        QCOMPARE(described(u"wwan0"_s, Interface::Ethernet, u"10.0.0.1"_s), u"Mobile 0 1"_s);
        QCOMPARE(anonymousInterfaceName(u"wlx0050b6123abc"_s), u"wlx"_s);
        QCOMPARE(anonymousInterfaceName(u"enp0s31f6"_s), u"enp0s31f6"_s);
    }

    void findsTheDefaultRoute()
    {
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
        QCOMPARE(defaultRouteInterface(head + network + wlan + cable, v6), u"eth0"_s);
        QCOMPARE(defaultRouteInterface(head + half + wlan, v6Reject), u"wlan0"_s);
        QCOMPARE(defaultRouteInterface(head + network, v6Reject + v6), u"eth1"_s);
        QCOMPARE(defaultRouteInterface(head + rejected, v6Reject), QString());
    }

    void choosesWhereTrafficLeaves()
    {
        const MachineInterface unplugged{u"eth1"_s, {}, NetworkMode::Ethernet, false, false, true};
        const QList<MachineInterface> all{loopback, unplugged, cable, wlan};
        QCOMPARE((MachineNetwork{all, u"wlan0"_s}.outgoing()->name), u"wlan0"_s);
        QCOMPARE((MachineNetwork{all, u"eth1"_s}.outgoing()->name), u"eth0"_s);
        QVERIFY(!(MachineNetwork{{loopback, unplugged}, u"eth1"_s}.outgoing()));

        const MachineInterface tunnel{u"wg0"_s, u"Unknown"_s, NetworkMode::Unknown,
                                      false,    true,         true};
        const auto under = [&](const QList<MachineInterface> &interfaces) {
            return MachineNetwork{interfaces, u"wg0"_s}.carrier()->name;
        };
        QCOMPARE(under({loopback, tunnel, unplugged, wlan}), u"wlan0"_s);
        QCOMPARE(under({tunnel, cable, wlan}), u"wg0"_s);
        QCOMPARE(under({tunnel}), u"wg0"_s);
    }

    void namesTheBoard_data()
    {
        const Rows<QByteArray, QByteArray, QByteArray, QString> row("tree", "maker", "dmi",
                                                                    "names");
        row("device tree", QByteArray("Maker Phone 2\0rest", 18), "", "",
            "Maker|Maker Phone 2|Phone 2");
        row("firmware tables", "", "Maker GmbH\n", "Book 3\n", "Maker GmbH|Book 3|Book 3");
        // Where nobody names the board, its system and its processor stand in.
        const QString none =
            u'|' + QSysInfo::prettyProductName() + u'|' + QSysInfo::currentCpuArchitecture();
        row("placeholders", "", "To be filled by O.E.M.\n", "Default string", none);
        row("control characters", "", "\x1b[31mMaker\n", QByteArray("\xff\xfe\0Book", 7),
            u"[31mMaker"_s + none);
        row("long", "", "Maker", QByteArray(100000, 'x'), u"Maker|%1|%1"_s.arg(QString(128, u'x')));
    }
    void namesTheBoard()
    {
        const QTemporaryDir root;
        const auto [tree, maker, dmi] = currentRow<QByteArray, QByteArray, QByteArray>();
        for (const auto &[file, content] :
             {std::pair{u"sys/firmware/devicetree/base/model"_s, tree},
              {u"sys/class/dmi/id/sys_vendor"_s, maker},
              {u"sys/class/dmi/id/product_name"_s, dmi},
              {u"sys/class/dmi/id/product_version"_s, dmi}}) {
            QFile out(root.filePath(file));
            QVERIFY(QDir().mkpath(QFileInfo(out).path()));
            QVERIFY(content.isEmpty() || out.open(QIODevice::WriteOnly));
            QCOMPARE(out.write(content), content.isEmpty() ? -1 : content.size());
        }
        const MachineDeviceInfoSource device(nullptr, root.path());
        const QStringList names{device.manufacturer(), device.productName(), device.model()};
        QTEST(names.join(u'|'), "names");
    }

    void noticesAnotherNetwork()
    {
        FakeClock clock;
        MachineNetwork network{{loopback, wlan}, u"wlan0"_s};
        MachineNetworkInfoSource source([&] { return network; });
        const auto on = [](NetworkMode mode) {
            NetworkState state;
            state.mode = mode;
            state.links[mode].status = NetworkStatus::Connected;
            return state;
        };
        QCOMPARE(source.state(), on(NetworkMode::Wlan));
        QSignalSpy changed(&source, &NetworkInfoSource::changed);
        clock.advance(2s);
        QVERIFY(changed.isEmpty());
        network = {{loopback, cable, wlan}, u"eth0"_s};
        clock.advance(2s);
        QCOMPARE(source.state(), on(NetworkMode::Ethernet));
        network = {{loopback}, QString()};
        clock.advance(2s);
        QCOMPARE(source.state(), NetworkState());
        QCOMPARE(changed.size(), 2);
    }

    void losesASession()
    {
        // The network goes, another one comes, the loopback goes.
        using Interfaces = QList<MachineInterface>;
        for (const auto &[before, after] :
             {std::pair{Interfaces{loopback, wlan}, Interfaces{loopback}},
              {Interfaces{loopback, wlan}, Interfaces{loopback, cable}},
              {Interfaces{loopback}, Interfaces()}}) {
            const bool stays = after.size() == 2;
            FakeClock clock;
            MachineNetwork network{before, QString()};
            MachineNetworkSession session([&] { return network; });
            QSignalSpy failed(&session, &NetworkSession::error);
            session.open();
            QVERIFY(!session.isOpen() && failed.isEmpty());
            QCoreApplication::processEvents();
            QVERIFY(session.isOpen());
            // One look without a network is a hand-over, two in a row are a loss.
            network.interfaces = after;
            clock.advance(2s);
            QVERIFY(session.isOpen());
            network.interfaces = before;
            clock.advance(2s);
            network.interfaces = after;
            clock.advance(2s);
            QVERIFY(session.isOpen());
            clock.advance(2s);
            QCOMPARE(session.isOpen(), stays);
            QCOMPARE(failed.size(), stays ? 0 : 1);
        }
    }
};

} // namespace velometer

VELOMETER_TEST(MachineTest)
#include "machine_test.moc"
