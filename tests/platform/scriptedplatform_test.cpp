#include "platform/scripted/scriptedplatform.h"

#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/positionsource.h"
#include "platform/scripted/platformscript.h"
#include "support/rows.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

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
    void readsPositions()
    {
        QString error;
        const auto script = PlatformScript::parse(
            R"({"at_ms": 7, "position": {"latitude": -47.5, "longitude": 8.25, "altitude": 410,
 "accuracy_h": 12.5, "accuracy_v": 30, "speed": 1.5, "direction": 270,
 "timestamp": "2024-02-29T12:00:01Z"}, "satellites_in_view": [3, 17, 22]}
{"at_ms": 7, "position": null})"_ba.replace(",\n", ","),
            u"s"_s, &error);
        QVERIFY2(script, qPrintable(error));
        QVERIFY(script->hasPosition && script->hasSatellites);
        const ScriptEvent &event = script->events.at(0);
        QCOMPARE(event.at.count(), 7);
        QCOMPARE(event.position->coordinate(), QGeoCoordinate(-47.5, 8.25, 410));
        QCOMPARE(event.position->timestamp().toMSecsSinceEpoch(), 1'709'208'001'000);
        QCOMPARE(event.position->attribute(QGeoPositionInfo::HorizontalAccuracy), 12.5);
        QCOMPARE(event.position->attribute(QGeoPositionInfo::VerticalAccuracy), 30.0);
        QCOMPARE(event.position->attribute(QGeoPositionInfo::GroundSpeed), 1.5);
        QCOMPARE(event.position->attribute(QGeoPositionInfo::Direction), 270.0);
        QCOMPARE(event.satellitesInView, (QList<int>{3, 17, 22}));
        QVERIFY(!event.lac && !event.mode && !event.name);
        QVERIFY(script->events.at(1).positionTimeout && !script->events.at(1).position);
    }

    void refusesWrongLines_data()
    {
        const Rows<QByteArray, QString> row("line", "complaint");
        // One key of an otherwise good line.
        const auto with = [](const QByteArray &pair) { return "{\"at_ms\": 50, " + pair + '}'; };
        const auto position = [&](const QByteArray &pairs) {
            return with("\"position\": {" + pairs + '}');
        };
        row("nesting", QByteArray(500'000, '['), "not JSON");
        row("unknown key", with("\"signl\": 1"), "\"signl\" is not a known key");
        row("unknown inner key", position("\"latitude\": 1, \"longitude\": 1, \"height\": 1"),
            "\"position.height\" is not");
        row("time goes back", "{\"at_ms\": 49}", "\"at_ms\" goes back");
        row("time beyond a timer", "{\"at_ms\": 604800001}", "\"at_ms\" must be");
        row("cell beyond an int", with("\"cell\": 2147483648"), "\"cell\" must be");
        row("latitude", position("\"latitude\": 90.1, \"longitude\": 0"),
            "\"position.latitude\" must be a number from -90 to 90");
        row("longitude missing", position("\"latitude\": 1"), "\"position.longitude\" is missing");
        row("timestamp", position("\"latitude\": 1, \"longitude\": 1, \"timestamp\": \"now\""),
            "\"position.timestamp\" must be an ISO 8601");
        row("mode", with("\"mode\": \"lteMode\""), "\"mode\" is none of");
        row("metered", with("\"metered\": true"), "\"metered\" must be a text");
        row("session error", with("\"session\": \"error:5\""), "\"session\" knows");
    }
    void refusesWrongLines()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, complaint);
        QString error;
        QVERIFY(!PlatformScript::parse("# comment\r\n\r\n{\"at_ms\": 50}\n" + line + "\n{}", u"s"_s,
                                       &error));
        QVERIFY2(error.startsWith(u"s, line 4: "_s + complaint), qPrintable(error));
    }

    void boundsWhatItReads_data()
    {
        const Rows<QByteArray, QString> row("text", "error");
        const QByteArray mebibyte(1024 * 1024, ' ');
        row("line too long", mebibyte + "\n " + mebibyte, "s, line 2: longer than 1 MiB");
        row("too many lines", QByteArray(100'001, '\n'), "s, line 100001: more than 100000 lines");
        row("file too large", mebibyte.repeated(16) + '\n', "s: is larger than 16 MiB");
    }
    void boundsWhatItReads()
    {
        QFETCH(QByteArray, text);
        QString error;
        QVERIFY(!PlatformScript::parse(text, u"s"_s, &error));
        QTEST(error, "error");
    }

    void startsWithTheLinesAtZeroAndPlaysOnByItself()
    {
        const auto platform = play(R"({"device": {"imei": "356938035643809"}, "mcc": "228"}
{"mode": "LteMode", "status": "HomeNetwork", "signal": 71, "name": "Demo", "cell": 2814211}
{"mnc": "01", "home_mcc": "262", "home_mnc": "02", "lac": 0}
{"at_ms": 30, "mcc": "262"}
{"at_ms": 3600000, "cell": null})");
        QCOMPARE(platform->createDeviceInfoSource()->imei(), u"356938035643809"_s);
        const auto network = platform->createNetworkInfoSource();
        QCOMPARE(network->currentMode(), NetworkMode::Lte);
        QCOMPARE(network->networkStatus(NetworkMode::Lte), NetworkStatus::HomeNetwork);
        QCOMPARE((QList<int>{network->networkSignalStrength(NetworkMode::Lte),
                             network->networkSignalStrength(NetworkMode::Wlan),
                             network->locationAreaCode()}),
                 (QList<int>{71, -1, 0}));
        QCOMPARE(
            (QStringList{network->networkName(NetworkMode::Lte),
                         network->currentMobileCountryCode(), network->currentMobileNetworkCode(),
                         network->homeMobileCountryCode(), network->homeMobileNetworkCode()}),
            (QStringList{u"Demo"_s, u"228"_s, u"01"_s, u"262"_s, u"02"_s}));
        QVERIFY(!platform->createPositionSource()->hasPosition());

        QSignalSpy mcc(network.get(), &NetworkInfoSource::currentMobileCountryCodeChanged);
        QVERIFY(mcc.wait());
        QCOMPARE(mcc.at(0).at(0), u"262"_s);
        platform->advanceTo(later - 1ms);
        QCOMPARE(network->cellId(), 2814211);
        platform->advanceTo(later);
        QCOMPARE(network->cellId(), -1);
    }

    void signalsPositionsOnlyWhileStarted()
    {
        const auto platform = play(R"({"position": {"latitude": 1, "longitude": 1}}
{"at_ms": 3600001, "position": {"latitude": 2, "longitude": 2}, "satellites_in_use": [4, 5]}
{"at_ms": 3600002, "position": null}
{"at_ms": 3600003, "position": {"latitude": 3, "longitude": 3}, "satellites_in_use": [6]})");
        const auto source = platform->createPositionSource();
        QCOMPARE(source->lastKnownPosition().coordinate(), QGeoCoordinate(1, 1));
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
        QCOMPARE(used.last().satelliteIdentifier(), 5);
    }

    void leavesNothingOfTheOldModeBehind()
    {
        const auto platform =
            play(R"({"mode": "WlanMode", "status": "Connected", "signal": 90, "name": "Home"}
{"at_ms": 3600000, "mode": "WcdmaMode", "signal": 40})");
        const auto network = platform->createNetworkInfoSource();
        QCOMPARE(network->networkStatus(NetworkMode::Wlan), NetworkStatus::Connected);
        QStringList heard;
        connect(network.get(), &NetworkInfoSource::networkModeChanged, this,
                [&] { heard += u"mode"_s; });
        connect(network.get(), &NetworkInfoSource::networkStatusChanged, this,
                [&] { heard += u"status"_s; });
        connect(network.get(), &NetworkInfoSource::networkNameChanged, this,
                [&] { heard += u"name"_s; });
        platform->advanceTo(later);
        // The mode first: who hears of a name asks whose it is.
        QCOMPARE(heard, (QStringList{u"mode"_s, u"status"_s, u"status"_s, u"name"_s}));
        QCOMPARE(network->networkStatus(NetworkMode::Wlan), NetworkStatus::NoNetworkAvailable);
        QCOMPARE(network->networkSignalStrength(NetworkMode::Wcdma), 40);
    }

    void answersOpenLater_data()
    {
        const Rows<QByteArray, QList<NetworkSession::SessionError>> row("script", "failures");
        row("nothing said", "", {});
        row("error", "{\"session\": \"error:2\"}", {NetworkSession::RoamingError});
        row("lost before", "{\"session\": \"lost\"}", {NetworkSession::SessionAbortedError});
    }
    void answersOpenLater()
    {
        QFETCH(QByteArray, script);
        QFETCH(QList<NetworkSession::SessionError>, failures);
        const auto platform = play(script + "\n{\"at_ms\": 3600001, \"session\": \"lost\"}\n"
                                            "{\"at_ms\": 3600002, \"session\": \"error:4\"}");
        const auto session = platform->createNetworkSession();
        QSignalSpy opened(session.get(), &NetworkSession::opened);
        QList<NetworkSession::SessionError> failed;
        connect(session.get(), &NetworkSession::error, this,
                [&](NetworkSession::SessionError error) { failed += error; });
        session->open();
        QVERIFY(opened.isEmpty() && failed.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(failed, failures);
        QCOMPARE(opened.size(), failures.isEmpty() ? 1 : 0);
        QCOMPARE(session->isOpen(), failures.isEmpty());

        // What is open is lost once; what is not stays silent.
        if (failures.isEmpty())
            failures += NetworkSession::SessionAbortedError;
        platform->advanceTo(later + 2ms);
        QCOMPARE(failed, failures);
        QVERIFY(!session->isOpen());
    }

    void loadsFilesOnly()
    {
        const QTemporaryDir directory;
        QString error;
        const QString pipe = directory.filePath(u"pipe"_s);
        QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
        for (const QString &path : {pipe, directory.path(), directory.filePath(u"missing"_s)}) {
            QVERIFY(!Platform::scripted(path, &error));
            QCOMPARE(error, path + u": is not a file"_s);
        }
        QFile file(directory.filePath(u"script"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"cell\": 5}\n");
        file.close();
        const auto platform = Platform::scripted(file.fileName(), &error);
        QVERIFY2(platform, qPrintable(error));
        QCOMPARE(platform->createNetworkInfoSource()->cellId(), 5);
    }
};

QTEST_GUILESS_MAIN(ScriptedPlatformTest)
#include "scriptedplatform_test.moc"
