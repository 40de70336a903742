#include "platform/platformscript.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class PlatformScriptTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryKey();
    void countsSkippedLines();
    void refusesWrongLines_data();
    void refusesWrongLines();
    void boundsWhatItReads_data();
    void boundsWhatItReads();
    void opensOnlyFiles();
};

void PlatformScriptTest::readsEveryKey()
{
    QString error;
    const auto script = PlatformScript::parse(
        R"({"device": {"imei": "1", "imsi": "2", "manufacturer": "3", "product": "4", "model": "5"}}
{"at_ms": 7, "position": {"latitude": -47.5, "longitude": 8.25, "altitude": 410, "accuracy_h": 12.5,
 "accuracy_v": 30, "speed": 1.5, "direction": 270, "timestamp": "2024-02-29T12:00:01Z"},
 "satellites_in_use": [3, 17], "satellites_in_view": [3, 17, 22], "mode": "NrMode",
 "status": "Roaming", "signal": 100, "name": "N", "mcc": "228", "mnc": "01", "home_mcc": "262",
 "home_mnc": "02", "cell": 2147483647, "lac": 0, "session": "error:3"}
{"at_ms": 7, "position": null, "cell": null, "session": "lost"}
)"_ba.replace(",\n", ","),
        u"s"_s, &error);
    QVERIFY2(script, qPrintable(error));
    QCOMPARE(script->device.imei, u"1"_s);
    QCOMPARE(script->device.imsi, u"2"_s);
    QCOMPARE(script->device.manufacturer, u"3"_s);
    QCOMPARE(script->device.product, u"4"_s);
    QCOMPARE(script->device.model, u"5"_s);
    QVERIFY(script->hasPosition && script->hasSatellites);
    QCOMPARE(script->events.size(), 3);

    const ScriptEvent &event = script->events.at(1);
    QCOMPARE(event.at.count(), 7);
    QCOMPARE(event.position->coordinate(), QGeoCoordinate(-47.5, 8.25, 410));
    QCOMPARE(event.position->timestamp().toMSecsSinceEpoch(), 1'709'208'001'000);
    QCOMPARE(event.position->attribute(QGeoPositionInfo::HorizontalAccuracy), 12.5);
    QCOMPARE(event.position->attribute(QGeoPositionInfo::VerticalAccuracy), 30.0);
    QCOMPARE(event.position->attribute(QGeoPositionInfo::GroundSpeed), 1.5);
    QCOMPARE(event.position->attribute(QGeoPositionInfo::Direction), 270.0);
    QCOMPARE(event.satellitesInUse, (QList<int>{3, 17}));
    QCOMPARE(event.satellitesInView, (QList<int>{3, 17, 22}));
    QCOMPARE(event.mode, NetworkMode::Nr);
    QCOMPARE(event.status, NetworkStatus::Roaming);
    QCOMPARE(event.signal, 100);
    QCOMPARE(event.name, u"N"_s);
    QCOMPARE(event.mcc, u"228"_s);
    QCOMPARE(event.mnc, u"01"_s);
    QCOMPARE(event.homeMcc, u"262"_s);
    QCOMPARE(event.homeMnc, u"02"_s);
    QCOMPARE(event.cell, 2147483647);
    QCOMPARE(event.lac, 0);
    QCOMPARE(event.session->kind, ScriptEvent::Session::Error);
    QCOMPARE(event.session->error, NetworkSession::OperationNotSupportedError);

    const ScriptEvent &last = script->events.at(2);
    QVERIFY(last.positionTimeout && !last.position);
    QCOMPARE(last.cell, -1);
    QVERIFY(!last.lac && !last.mode && !last.name);
    QCOMPARE(last.session->kind, ScriptEvent::Session::Lost);
}

void PlatformScriptTest::countsSkippedLines()
{
    QString error;
    QVERIFY(!PlatformScript::parse("# comment\r\n\r\n  {\"signal\": 1}\r\n{\"signal\": 101}",
                                   u"a.jsonl"_s, &error));
    QCOMPARE(error, u"a.jsonl, line 4: \"signal\" must be a whole number from 0 to 100"_s);
    QCOMPARE(PlatformScript::parse("# comment\n\n{}\n", u"a.jsonl"_s, &error)->events.size(), 1);
}

void PlatformScriptTest::refusesWrongLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("complaint");
    const auto row = [](const char *name, const QByteArray &line, const QString &complaint) {
        QTest::newRow(name) << line << complaint;
    };
    row("broken JSON", "{\"signal\": }", u"not JSON"_s);
    row("two objects", "{} {}", u"not JSON"_s);
    row("no object", "[1]", u"not a JSON object"_s);
    row("invalid UTF-8", "{\"name\": \"\xff\xfe\"}", u"not JSON"_s);
    row("nesting", QByteArray(500'000, '['), u"not JSON"_s);
    row("unknown key", "{\"at_ms\": 50, \"signl\": 1}", u"\"signl\" is not a known key"_s);
    row("unknown inner key",
        "{\"at_ms\": 50, \"position\": {\"latitude\": 1, \"longitude\": 1, \"height\": 1}}",
        u"\"position.height\" is not"_s);
    row("time goes back", "{\"at_ms\": 49}", u"\"at_ms\" goes back"_s);
    row("time missing after a later line", "{\"signal\": 1}", u"\"at_ms\" goes back"_s);
    row("time negative", "{\"at_ms\": -1}", u"\"at_ms\" must be"_s);
    row("time fractional", "{\"at_ms\": 50.5}", u"\"at_ms\" must be"_s);
    row("time as text", "{\"at_ms\": \"50\"}", u"\"at_ms\" must be"_s);
    row("time beyond a timer", "{\"at_ms\": 604800001}", u"\"at_ms\" must be"_s);
    row("cell beyond an int", "{\"at_ms\": 50, \"cell\": 2147483648}", u"\"cell\" must be"_s);
    row("cell negative", "{\"at_ms\": 50, \"cell\": -1}", u"\"cell\" must be"_s);
    row("latitude", "{\"at_ms\": 50, \"position\": {\"latitude\": 90.1, \"longitude\": 0}}",
        u"\"position.latitude\" must be a number from -90 to 90"_s);
    row("longitude missing", "{\"at_ms\": 50, \"position\": {\"latitude\": 1}}",
        u"\"position.longitude\" is missing"_s);
    row("altitude beyond sense",
        "{\"at_ms\": 50, \"position\": {\"latitude\": 1, \"longitude\": 1, \"altitude\": 1e10}}",
        u"\"position.altitude\" must be"_s);
    row("timestamp",
        "{\"at_ms\": 50, \"position\": {\"latitude\": 1, \"longitude\": 1, \"timestamp\": "
        "\"now\"}}",
        u"\"position.timestamp\" must be an ISO 8601"_s);
    row("satellite", "{\"at_ms\": 50, \"satellites_in_use\": [1, \"2\"]}",
        u"\"satellites_in_use\" must be a list"_s);
    row("mode", "{\"at_ms\": 50, \"mode\": \"lteMode\"}", u"\"mode\" is none of"_s);
    row("status", "{\"at_ms\": 50, \"status\": 5}", u"\"status\" must be a text"_s);
    row("session", "{\"at_ms\": 50, \"session\": \"closed\"}", u"\"session\" must be"_s);
    row("session error", "{\"at_ms\": 50, \"session\": \"error:5\"}", u"\"session\" knows"_s);
    row("device later", "{\"at_ms\": 50, \"device\": {}}", u"\"device\" is only possible"_s);
}

void PlatformScriptTest::refusesWrongLines()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, complaint);
    QString error;
    QVERIFY(!PlatformScript::parse("{\"at_ms\": 50}\n" + line + "\n{}", u"s"_s, &error));
    QVERIFY2(error.startsWith(u"s, line 2: "_s + complaint), qPrintable(error));
    QVERIFY(error.size() < 200);
}

void PlatformScriptTest::boundsWhatItReads_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    const QByteArray mebibyte(1024 * 1024, ' ');
    QTest::newRow("longest line") << mebibyte + '\n' << QString();
    QTest::newRow("line too long") << "{}\n " + mebibyte + '\n'
                                   << u"s, line 2: longer than 1 MiB"_s;
    QTest::newRow("last line too long") << ' ' + mebibyte << u"s, line 1: longer than 1 MiB"_s;
    QTest::newRow("most lines") << QByteArray(100'000, '\n') << QString();
    QTest::newRow("too many lines")
        << QByteArray(100'001, '\n') << u"s, line 100001: more than 100000 lines"_s;
    QTest::newRow("file too large") << mebibyte.repeated(16) + '\n'
                                    << u"s: is larger than 16 MiB"_s;
}

void PlatformScriptTest::boundsWhatItReads()
{
    QFETCH(QByteArray, text);
    QString error;
    const auto script = PlatformScript::parse(text, u"s"_s, &error);
    QTEST(error, "error");
    QCOMPARE(script.has_value(), error.isEmpty());
}

void PlatformScriptTest::opensOnlyFiles()
{
    QTemporaryDir directory;
    QString error;
    const QString pipe = directory.filePath(u"pipe"_s);
    QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
    for (const QString &path : {pipe, directory.path(), directory.filePath(u"missing"_s)}) {
        QVERIFY(!PlatformScript::load(path, &error));
        QCOMPARE(error, path + u": is not a file"_s);
    }
}

QTEST_GUILESS_MAIN(PlatformScriptTest)
#include "platformscript_test.moc"
