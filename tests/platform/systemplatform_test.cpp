#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/platform.h"
#include "platform/positionsource.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTest>

using namespace Qt::StringLiterals;

/// On whatever machine this runs: only what holds on every one that has its loopback up.
class SystemPlatformTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsQuietlyWithoutReceivers();
    void opensLaterAndOnLoopbackToo();
    void keepsTheHostNameToItself();

private:
    const std::unique_ptr<Platform> platform = Platform::system();
};

void SystemPlatformTest::startsQuietlyWithoutReceivers()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const auto position = platform->createPositionSource();
    position->setUpdateInterval(1000);
    position->startPosition();
    position->startSatellites();
    QCoreApplication::processEvents();
    position->stopPosition();
    position->stopSatellites();
    // The message handler is the test's again.
    QTest::ignoreMessage(QtWarningMsg, "still heard");
    qWarning("still heard");
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

QTEST_GUILESS_MAIN(SystemPlatformTest)
#include "systemplatform_test.moc"
