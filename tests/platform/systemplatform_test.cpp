#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/platform.h"
#include "platform/positionsource.h"
#include "platform/systemnetworkinfosource.h"
#include "platform/systemnetworksession.h"

#include <QLoggingCategory>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

const SystemInterface loopbackInterface{u"lo"_s, u"Loopback"_s, NetworkMode::Unknown,
                                        true,    true,          false};
const SystemInterface cable{u"eth0"_s, u"Ethernet"_s, NetworkMode::Ethernet, false, true, true};
const SystemInterface wlan{u"wlan0"_s, u"WLAN"_s, NetworkMode::Wlan, false, true, true};

QStringList warnings;

void record(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    if (type == QtWarningMsg)
        warnings += text;
}

void fireTimer(const QObject &source)
{
    QMetaObject::invokeMethod(source.findChild<QTimer *>(), "timeout", Qt::DirectConnection);
}

} // namespace

/// On whatever machine this runs: only what holds on every one that has its loopback up.
class SystemPlatformTest : public QObject
{
    Q_OBJECT

public:
    SystemPlatformTest();

private Q_SLOTS:
    void startsQuietlyWithoutReceivers();
    void opensLaterAndOnLoopbackToo();
    void keepsTheHostNameToItself();
    void noticesAnotherNetwork();
    void losesASession_data();
    void losesASession();

private:
    const std::unique_ptr<Platform> platform = Platform::system();
};

// While Qt Test runs, Qt hides the real positioning plug-ins: they are tried before.
SystemPlatformTest::SystemPlatformTest()
{
    const QLoggingCategory earlier("qt.positioning.earlier");
    const QLoggingCategory other("qt.other");
    const QtMessageHandler previous = qInstallMessageHandler(record);
    const auto position = platform->createPositionSource();
    position->setUpdateInterval(1000);
    position->startPosition();
    position->startSatellites();
    QCoreApplication::processEvents();
    position->stopPosition();
    position->stopSatellites();
    qCWarning(earlier, "not heard");
    qCWarning(other, "still heard");
    qWarning("still heard");
    qInstallMessageHandler(previous);
}

void SystemPlatformTest::startsQuietlyWithoutReceivers()
{
    QCOMPARE(warnings, QStringList(2, u"still heard"_s));
}

void SystemPlatformTest::opensLaterAndOnLoopbackToo()
{
    const auto session = platform->createNetworkSession();
    const QList<NetworkConfiguration> configurations = session->allConfigurations();
    const auto loopback = std::find_if(configurations.begin(), configurations.end(),
                                       [](const NetworkConfiguration &configuration) {
                                           return configuration.bearer == u"Loopback"_s;
                                       });
    QVERIFY(loopback != configurations.end());
    QCOMPARE(loopback->state, int(NetworkConfiguration::Active));
    QVERIFY(loopback->valid && session->defaultConfiguration().valid);
    QCOMPARE(session->defaultConfiguration().state, int(NetworkConfiguration::Active));

    QSignalSpy opened(session.get(), &NetworkSession::opened);
    QSignalSpy failed(session.get(), &NetworkSession::error);
    session->open();
    QVERIFY(opened.isEmpty() && !session->isOpen());
    QCoreApplication::processEvents();
    QCOMPARE(opened.size(), 1);
    QVERIFY(session->isOpen() && failed.isEmpty());

    // Both look at the same interfaces.
    const auto network = platform->createNetworkInfoSource();
    const bool loopbackOnly = session->defaultConfiguration().bearer == u"Loopback"_s;
    QCOMPARE(network->networkStatus(network->currentMode()) == NetworkStatus::Connected,
             !loopbackOnly);
}

void SystemPlatformTest::keepsTheHostNameToItself()
{
    const auto device = platform->createDeviceInfoSource();
    QVERIFY(device->imei().isEmpty() && device->imsi().isEmpty());
    QVERIFY(!device->productName().isEmpty() && !device->model().isEmpty());
    QVERIFY(device->productName() != QSysInfo::machineHostName());
    QVERIFY(device->model() != QSysInfo::machineHostName());
}

void SystemPlatformTest::noticesAnotherNetwork()
{
    SystemNetwork network{{loopbackInterface, wlan}, u"wlan0"_s};
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
    network = {{loopbackInterface, cable, wlan}, u"eth0"_s};
    fireTimer(source);
    QCOMPARE(heard, (QStringList{u"mode 5"_s, u"status 4 1"_s, u"status 5 5"_s}));
    heard.clear();
    network = {{loopbackInterface}, QString()};
    fireTimer(source);
    QCOMPARE(heard, (QStringList{u"mode 0"_s, u"status 5 1"_s, u"status 0 1"_s}));
}

void SystemPlatformTest::losesASession_data()
{
    QTest::addColumn<QList<SystemInterface>>("before");
    QTest::addColumn<QList<SystemInterface>>("after");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<bool>("stays");
    using List = QList<SystemInterface>;
    QTest::newRow("nothing up") << List() << List() << false << false;
    QTest::newRow("network gone") << List{loopbackInterface, wlan} << List{loopbackInterface}
                                  << true << false;
    QTest::newRow("other network")
        << List{loopbackInterface, wlan} << List{loopbackInterface, cable} << true << true;
    QTest::newRow("loopback all along")
        << List{loopbackInterface} << List{loopbackInterface} << true << true;
    QTest::newRow("loopback gone") << List{loopbackInterface} << List() << true << false;
}

void SystemPlatformTest::losesASession()
{
    QFETCH(QList<SystemInterface>, before);
    QFETCH(QList<SystemInterface>, after);
    QFETCH(bool, opens);
    QFETCH(bool, stays);
    SystemNetwork network{before, QString()};
    SystemNetworkSession session([&] { return network; });
    QSignalSpy failed(&session, &NetworkSession::error);
    session.open();
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

QTEST_GUILESS_MAIN(SystemPlatformTest)
#include "systemplatform_test.moc"
