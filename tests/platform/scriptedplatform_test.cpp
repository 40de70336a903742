#include "platform/scripted/scriptedplatform.h"

#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/positionsource.h"
#include "platform/scripted/platformscript.h"
#include "support/fakeclock.h"
#include "support/registeredtest.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace velometer {

namespace {

std::unique_ptr<ScriptedPlatform> play(const QByteArray &text)
{
    QString error;
    std::optional<PlatformScript> script = PlatformScript::parse(text, u"script"_s, &error);
    if (!script) {
        qFatal("%s", qPrintable(error));
    }
    return std::make_unique<ScriptedPlatform>(std::move(*script));
}

} // namespace

class ScriptedPlatformTest : public QObject
{
    Q_OBJECT

    FakeClock clock;

private Q_SLOTS:
    void readsPositions()
    {
        const auto platform = play(
            R"({"position": {"latitude": -47.5, "longitude": 151.25, "altitude": 410,
"accuracy_h": 12.5, "accuracy_v": 30, "speed": 1.5, "direction": 270,
"timestamp": "2024-02-29T12:00:01Z"}})"_ba.replace('\n', ' '));
        const auto position = platform->createPositionSource()->lastKnownPosition();
        QCOMPARE(position,
                 (Position{-47.5, 151.25, 410, 12.5, 30, 1.5, {}, 270, {}, 1'709'208'001'000}));
    }

    void refusesWrongLines()
    {
        // One key of an otherwise good line.
        const auto with = [](const QByteArray &pair) { return "{\"at_ms\": 50, " + pair + '}'; };
        const auto position = [&](const QByteArray &pairs) {
            return with("\"position\": {" + pairs + '}');
        };
        for (const auto &[line, complaint] :
             {std::pair{QByteArray(500'000, '['), u"not JSON"_s},
              {with("\"signl\": 1"), u"\"signl\" is not a known key"_s},
              {"{\"at_ms\": 49}", u"\"at_ms\" goes back"_s},
              {with("\"cell\": 68719476736"), u"\"cell\" must be"_s}, // 37 bits
              {position("\"latitude\": 90.1, \"longitude\": 0"),
               u"\"position.latitude\" must be a number from -90 to 90"_s},
              {position("\"latitude\": 1, \"longitude\": 1, \"timestamp\": \"now\""),
               u"\"position.timestamp\" must be an ISO 8601"_s},
              {with("\"session\": \"error:5\""), u"\"session\" knows"_s}}) {
            QString error;
            QVERIFY(!PlatformScript::parse("# comment\r\n\r\n{\"at_ms\": 50}\n" + line + "\n{}",
                                           u"s"_s, &error));
            QVERIFY2(error.startsWith(u"s, line 4: "_s + complaint), qPrintable(error));
        }
    }

    void boundsWhatItReads()
    {
        QString error;
        const QByteArray mebibyte(1024 * 1024, ' ');
        QVERIFY(!PlatformScript::parse(mebibyte + "\n " + mebibyte, u"s"_s, &error));
        QCOMPARE(error, u"s, line 2: longer than 1 MiB"_s);
        QVERIFY(!PlatformScript::parse(QByteArray(100'001, '\n'), u"s"_s, &error));
        QCOMPARE(error, u"s, line 100001: more than 100000 lines"_s);
        QVERIFY(!PlatformScript::parse(mebibyte.repeated(16) + '\n', u"s"_s, &error));
        QCOMPARE(error, u"s: is larger than 16 MiB"_s);
    }

    void startsWithTheLinesAtZeroAndPlaysOnByItself()
    {
        const auto platform = play(R"({"device": {"imei": "356938035643809"}, "mcc": "228"}
{"mode": "LteMode", "status": "HomeNetwork", "signal": 71, "name": "Demo", "cell": 68719476735}
{"home_mcc": "262", "home_mnc": "02", "lac": 0}
{"at_ms": 30, "mnc": "01"}
{"at_ms": 60, "cell": null, "mode": "WcdmaMode", "signal": 40})");
        QCOMPARE(platform->createDeviceInfoSource()->imei(), u"356938035643809"_s);
        const auto network = platform->createNetworkInfoSource();
        using Link = NetworkState::Link;
        NetworkState lte{NetworkMode::Lte,
                         {{NetworkMode::Lte, Link{NetworkStatus::HomeNetwork, 71, u"Demo"_s}}},
                         u"228"_s,
                         {},
                         u"262"_s,
                         u"02"_s,
                         68'719'476'735,
                         0,
                         true};
        QCOMPARE(network->state(), lte);
        QVERIFY(!platform->createPositionSource()->hasPosition());
        // The modem tells its operator late, and then is waited for no more.
        QSignalSpy changed(network.get(), &NetworkInfoSource::changed);
        clock.advance(29ms);
        QVERIFY(changed.isEmpty());
        clock.advance(1ms);
        QCOMPARE(changed.size(), 1);
        lte.mnc = u"01"_s;
        lte.codesPending = false;
        QCOMPARE(network->state(), lte);

        // Nothing of the old mode stays behind.
        clock.advance(30ms);
        lte.mode = NetworkMode::Wcdma;
        lte.links = {{NetworkMode::Wcdma, Link{NetworkStatus::Undefined, 40, {}}}};
        lte.cell.reset();
        QCOMPARE(network->state(), lte);
    }

    void signalsPositionsOnlyWhileStarted()
    {
        const auto platform = play(R"({"position": {"latitude": 1, "longitude": 1}}
{"at_ms": 1, "position": {"latitude": 2, "longitude": 2}, "satellites_in_use": [4, 5]}
{"at_ms": 1, "satellites_in_view": [6]}
{"at_ms": 2, "position": null}
{"at_ms": 3, "position": {"latitude": 3, "longitude": 3}, "satellites_in_use": [6]})");
        const auto source = platform->createPositionSource();
        QCOMPARE(*source->lastKnownPosition().latitude, 1.0);
        QList<double> latitudes;
        connect(source.get(), &PositionSource::positionUpdated, this,
                [&] { latitudes += source->position() ? *source->position()->latitude : -1; });
        source->startPosition();
        source->startSatellites();
        clock.advance(2ms);
        source->stopPosition();
        source->stopSatellites();
        clock.advance(1ms);

        QCOMPARE(latitudes, (QList<double>{2, -1})); // a fix, then none
        QCOMPARE(source->satellites(), (Satellites{QList{4, 5}, QList{6}}));
    }

    void answersOpenLater()
    {
        using Failures = QList<NetworkSession::SessionError>;
        for (auto [script, failures] :
             {std::pair{QByteArray(), Failures()},
              {"{\"session\": \"error:2\"}", {NetworkSession::RoamingError}},
              {"{\"session\": \"lost\"}", {NetworkSession::SessionAbortedError}}}) { // before
            const auto platform = play(script + "\n{\"at_ms\": 1, \"session\": \"lost\"}\n"
                                                "{\"at_ms\": 2, \"session\": \"error:4\"}");
            const auto session = platform->createNetworkSession();
            QSignalSpy opened(session.get(), &NetworkSession::opened);
            Failures failed;
            connect(session.get(), &NetworkSession::error, this,
                    [&](NetworkSession::SessionError error) { failed += error; });
            session->open();
            QVERIFY(opened.isEmpty() && failed.isEmpty());
            QCoreApplication::processEvents();
            QCOMPARE(failed, failures);
            QCOMPARE(opened.size(), failures.isEmpty() ? 1 : 0);
            QCOMPARE(session->isOpen(), failures.isEmpty());

            // What is open is lost once; what is not stays silent.
            if (failures.isEmpty()) {
                failures += NetworkSession::SessionAbortedError;
            }
            clock.advance(2ms);
            QCOMPARE(failed, failures);
            QVERIFY(!session->isOpen());
        }
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
    }
};

} // namespace velometer

VELOMETER_TEST(ScriptedPlatformTest)
#include "scriptedplatform_test.moc"
