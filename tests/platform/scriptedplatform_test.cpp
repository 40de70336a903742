#include "platform/scriptedplatform.h"

#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/positionsource.h"

#include <QSignalSpy>
#include <QTemporaryFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Later than any run of this test takes, so that only advanceTo() plays these lines.
constexpr auto later = 3'600'000ms;

std::unique_ptr<ScriptedPlatform> play(const QByteArray &text)
{
    QString error;
    std::optional<PlatformScript> script = PlatformScript::parse(text, u"script"_s, &error);
    if (!script)
        qFatal("%s", qPrintable(error));
    return std::make_unique<ScriptedPlatform>(std::move(*script));
}

} // namespace

class ScriptedPlatformTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void startsWithTheLinesAtZero();
    void playsOnByItself();
    void signalsPositionsOnlyWhileStarted();
    void leavesNothingOfTheOldModeBehind();
    void answersOpenLater_data();
    void answersOpenLater();
    void losesOpenSessionsOnce();
    void loadsFromFile();
};

void ScriptedPlatformTest::initTestCase()
{
    qRegisterMetaType<NetworkMode>();
    qRegisterMetaType<NetworkStatus>();
}

void ScriptedPlatformTest::startsWithTheLinesAtZero()
{
    const auto platform = play(R"({"device": {"imei": "356938035643809"}, "mcc": "228"}
{"mode": "LteMode", "status": "HomeNetwork", "signal": 71, "name": "Demo", "cell": 2814211}
{"at_ms": 3600000, "cell": null, "mcc": "262"})");
    QCOMPARE(platform->createDeviceInfoSource()->imei(), u"356938035643809"_s);
    const auto network = platform->createNetworkInfoSource();
    QCOMPARE(network->currentMode(), NetworkMode::Lte);
    QCOMPARE(network->networkStatus(NetworkMode::Lte), NetworkStatus::HomeNetwork);
    QCOMPARE(network->networkSignalStrength(NetworkMode::Lte), 71);
    QCOMPARE(network->networkSignalStrength(NetworkMode::Wlan), -1);
    QCOMPARE(network->networkName(NetworkMode::Lte), u"Demo"_s);
    QCOMPARE(network->cellId(), 2814211);
    QCOMPARE(network->currentMobileCountryCode(), u"228"_s);
    QVERIFY(!platform->createPositionSource()->hasPosition());

    QSignalSpy mcc(network.get(), &NetworkInfoSource::currentMobileCountryCodeChanged);
    platform->advanceTo(later - 1ms);
    QCOMPARE(network->cellId(), 2814211);
    platform->advanceTo(later);
    QCOMPARE(network->cellId(), -1);
    QCOMPARE(mcc.size(), 1);
    QCOMPARE(mcc.at(0).at(0), u"262"_s);
}

void ScriptedPlatformTest::playsOnByItself()
{
    const auto platform =
        play("{\"at_ms\": 1, \"mode\": \"GsmMode\"}\n{\"at_ms\": 30, \"cell\": 7, "
             "\"mnc\": \"01\"}\n{\"at_ms\": 3600000, \"cell\": 8}");
    const auto network = platform->createNetworkInfoSource();
    QSignalSpy mnc(network.get(), &NetworkInfoSource::currentMobileNetworkCodeChanged);
    QVERIFY(mnc.wait());
    QCOMPARE(network->currentMode(), NetworkMode::Gsm);
    QCOMPARE(network->cellId(), 7);
}

void ScriptedPlatformTest::signalsPositionsOnlyWhileStarted()
{
    const auto platform = play(R"({"position": {"latitude": 1, "longitude": 1}}
{"at_ms": 3600001, "position": {"latitude": 2, "longitude": 2}, "satellites_in_use": [4, 5]}
{"at_ms": 3600002, "position": null}
{"at_ms": 3600003, "position": {"latitude": 3, "longitude": 3}, "satellites_in_use": [6]})");
    const auto source = platform->createPositionSource();
    QVERIFY(source->hasPosition() && source->hasSatellites());
    QCOMPARE(source->lastKnownPosition().coordinate(), QGeoCoordinate(1, 1));
    QVERIFY(source->lastKnownPosition().isValid());

    QSignalSpy updates(source.get(), &PositionSource::positionUpdated);
    QSignalSpy timeouts(source.get(), &PositionSource::updateTimeout);
    QSignalSpy satellites(source.get(), &PositionSource::satellitesInUseUpdated);
    source->startPosition();
    source->startSatellites();
    platform->advanceTo(later + 2ms);
    source->stopPosition();
    source->stopSatellites();
    platform->advanceTo(later + 3ms);

    QCOMPARE(updates.size(), 1);
    QCOMPARE(updates.at(0).at(0).value<QGeoPositionInfo>().coordinate(), QGeoCoordinate(2, 2));
    QCOMPARE(timeouts.size(), 1);
    QCOMPARE(satellites.size(), 1);
    const auto used = satellites.at(0).at(0).value<QList<QGeoSatelliteInfo>>();
    QCOMPARE(used.size(), 2);
    QCOMPARE(used.at(1).satelliteIdentifier(), 5);
    QCOMPARE(source->lastKnownPosition().coordinate(), QGeoCoordinate(3, 3));
}

void ScriptedPlatformTest::leavesNothingOfTheOldModeBehind()
{
    const auto platform =
        play(R"({"mode": "WlanMode", "status": "Connected", "signal": 90, "name": "Home"}
{"at_ms": 3600000, "mode": "WcdmaMode", "signal": 40})");
    const auto network = platform->createNetworkInfoSource();
    QCOMPARE(network->networkStatus(NetworkMode::Wlan), NetworkStatus::Connected);
    QStringList heard;
    connect(network.get(), &NetworkInfoSource::networkModeChanged, this,
            [&](NetworkMode mode) { heard += u"mode %1"_s.arg(int(mode)); });
    connect(network.get(), &NetworkInfoSource::networkStatusChanged, this,
            [&](NetworkMode mode, NetworkStatus status) {
                heard += u"status %1 %2"_s.arg(int(mode)).arg(int(status));
            });
    connect(network.get(), &NetworkInfoSource::networkSignalStrengthChanged, this,
            [&](NetworkMode mode, int percent) {
                heard += u"signal %1 %2"_s.arg(int(mode)).arg(percent);
            });
    connect(network.get(), &NetworkInfoSource::networkNameChanged, this,
            [&](NetworkMode mode, const QString &name) {
                heard += u"name %1 '%2'"_s.arg(QString::number(int(mode)), name);
            });
    platform->advanceTo(later);
    QCOMPARE(heard, (QStringList{u"mode 3"_s, u"status 4 1"_s, u"status 3 0"_s, u"signal 3 40"_s,
                                 u"name 3 ''"_s}));
    QCOMPARE(network->networkStatus(NetworkMode::Wlan), NetworkStatus::NoNetworkAvailable);
    QCOMPARE(network->networkStatus(NetworkMode::Wcdma), NetworkStatus::Undefined);
}

void ScriptedPlatformTest::answersOpenLater_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("failure");
    QTest::newRow("nothing said") << QByteArray() << -1;
    QTest::newRow("opened") << QByteArray("{\"session\": \"opened\"}") << -1;
    QTest::newRow("error") << QByteArray("{\"session\": \"error:2\"}") << 2;
    QTest::newRow("lost before") << QByteArray("{\"session\": \"lost\"}") << 1;
}

void ScriptedPlatformTest::answersOpenLater()
{
    QFETCH(QByteArray, script);
    QFETCH(int, failure);
    const auto platform = play(script);
    const auto session = platform->createNetworkSession();
    QSignalSpy opened(session.get(), &NetworkSession::opened);
    QSignalSpy failed(session.get(), &NetworkSession::error);
    session->open();
    QVERIFY(opened.isEmpty() && failed.isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(opened.size(), failure < 0 ? 1 : 0);
    QCOMPARE(failed.size(), failure < 0 ? 0 : 1);
    QCOMPARE(session->isOpen(), failure < 0);
    if (failure >= 0)
        QCOMPARE(int(failed.at(0).at(0).value<NetworkSession::SessionError>()), failure);
}

void ScriptedPlatformTest::losesOpenSessionsOnce()
{
    const auto platform = play(R"({"mode": "LteMode", "name": "Demo"}
{"at_ms": 3600001, "session": "lost"}
{"at_ms": 3600002, "session": "error:4"})");
    const auto session = platform->createNetworkSession();
    const auto neverOpened = platform->createNetworkSession();
    QSignalSpy failed(session.get(), &NetworkSession::error);
    QSignalSpy unheard(neverOpened.get(), &NetworkSession::error);
    QCOMPARE(session->defaultConfiguration().bearer, u"Mobile"_s);
    QCOMPARE(session->defaultConfiguration().name, u"Demo"_s);
    QCOMPARE(session->defaultConfiguration().state, int(NetworkConfiguration::Active));
    session->open();
    QCoreApplication::processEvents();
    platform->advanceTo(later + 2ms);
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.at(0).at(0).value<NetworkSession::SessionError>(),
             NetworkSession::SessionAbortedError);
    QVERIFY(!session->isOpen() && unheard.isEmpty());
}

void ScriptedPlatformTest::loadsFromFile()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("{\"cell\": 5}\n{\"cell\": 5.5}\n");
    file.flush();
    QString error;
    QVERIFY(!Platform::scripted(file.fileName(), &error));
    QVERIFY2(error.startsWith(file.fileName() + u", line 2: \"cell\""_s), qPrintable(error));
    file.resize(12);
    const auto platform = Platform::scripted(file.fileName(), &error);
    QVERIFY(platform);
    QCOMPARE(platform->createNetworkInfoSource()->cellId(), 5);
}

QTEST_GUILESS_MAIN(ScriptedPlatformTest)
#include "scriptedplatform_test.moc"
