// The built velometer-cli against the built velometer-service, as a shell would run them.

#include "data/xmldata.h"
#include "support/programhome.h"
#include "support/registeredtest.h"
#include "support/storedtests.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>

namespace velometer {

namespace {

QJsonObject object(const QByteArray &line)
{
    return QJsonDocument::fromJson(line).object();
}

/// Members of a test that no report carries; those of a table are named alike but for the place.
const QStringList onDeviceOnly{u"server.name"_s,        u"server.city"_s,
                               u"server.state"_s,       u"server.country"_s,
                               u"server.ip"_s,          u"rtt.samples_ns"_s,
                               u"tcp.congestion"_s,     u"network.roaming"_s,
                               u"budget.max_bytes"_s,   u"budget.reached"_s,
                               u"report.delivered"_s,   u"report.queue_id"_s,
                               u"report.resent"_s,      u"position.velocity_kmh"_s,
                               u"position.distance_m"_s};

/// The device's export of one test in @p format with nothing where a report tells nothing.
QByteArray asReported(const QByteArray &document, const QString &format)
{
    QList<QByteArray> lines = document.split('\n');
    const auto withoutDevice = [](QJsonObject test) {
        for (const QString &key : onDeviceOnly) {
            QJsonObject group = test[key.section(u'.', 0, 0)].toObject();
            group[key.section(u'.', 1)] = QJsonValue::Null;
            test[key.section(u'.', 0, 0)] = group;
        }
        return test;
    };
    const auto line = [](const QJsonObject &each) {
        return QJsonDocument(each).toJson(QJsonDocument::Compact);
    };
    if (format == u"json"_s) {
        lines[0] = line(withoutDevice(object(lines[0])));
    } else if (format == u"geojson"_s) {
        QJsonObject feature = object(lines[1]);
        feature[u"properties"_s] = withoutDevice(feature[u"properties"_s].toObject());
        lines[1] = line(feature);
    } else if (format == u"csv"_s) {
        const auto names = lines[0].trimmed().split(',');
        auto cells = lines[1].trimmed().split(',');
        for (qsizetype i = 0; i < names.size(); ++i) {
            const QString name = QString::fromLatin1(names[i]);
            const bool isShort = name == u"roaming"_s || name == u"velocity_kmh"_s;
            if (name == u"id"_s || name == u"distance_m"_s || isShort ||
                onDeviceOnly.contains(QString(name).replace(name.indexOf(u'_'), 1, u'.'))) {
                cells[i].clear();
            }
        }
        lines[1] = cells.join(',') + '\r';
    }
    return lines.join('\n');
}

QJsonObject lastObject(const ProgramHome::Ended &ended)
{
    return object(ended.printed.trimmed().split('\n').last());
}

} // namespace

class VelometerCliTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // One test is measured for as long as figures are comparable: no test lasts 0 s.
        const bool whole = qstrcmp(QTest::currentTestFunction(), "deliversAndStoresATest") == 0;
        qputenv("VELOMETER_MEASUREMENT_SECONDS", whole ? "0" : "1");
        home = std::make_unique<ProgramHome>();
        home->startService();
        home->environment.insert(u"VELOMETER_CONFIG"_s, home->config());
    }
    void cleanup() { home.reset(); }

    void deliversAndStoresATest()
    {
        const Ended ended =
            run({u"--json"_s, u"--location"_s, u"indoor"_s, u"--server"_s, u"swisscom"_s});
        QCOMPARE(ended.messages, QByteArray());
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.printed.count('\n'), 1);
        QJsonObject test = object(ended.printed);
        const QJsonValue download = test["download"_L1];
        const QJsonValue upload = test["upload"_L1];
        const QJsonValue rtt = test["rtt"_L1];
        QJsonObject report = test["report"_L1].toObject();
        for (const QJsonValue &phase : {download, upload, rtt}) {
            QCOMPARE(phase["valid"_L1], true);
        }
        QCOMPARE(download["interval_bytes"_L1].toArray().size(), 70);
        QCOMPARE(rtt["samples_ns"_L1].toArray().size(), 3);
        QVERIFY(upload["server_avg_bps"_L1].toInteger() > 0);
        QVERIFY(test["tcp"_L1]["mss"_L1].toInteger() > 0);
        QVERIFY(test["tcp"_L1]["congestion"_L1].isString());
        QCOMPARE(report["delivered"_L1], true);
        QCOMPARE(report["queue_id"_L1], QJsonValue(QJsonValue::Null));

        // The service has the same figures, and the store everything but what is past: how many
        // other reports went out.
        QVariantList figures;
        for (const auto id : {"test_id"_L1, "series_id"_L1, "user_id"_L1}) {
            figures += test[id].toString().toLongLong();
        }
        for (const QJsonValue &rate :
             {download["avg_bps"_L1], upload["server_avg_bps"_L1], upload["avg_bps"_L1]}) {
            figures += rate.toInteger();
        }
        figures += u"Indoor"_s;
        QCOMPARE(reported(u"SELECT testid, seriesid, userid, download_avg, upload_avg, "
                          "upload_client_avg, location FROM reports"_s),
                 QList<QVariantList>{figures});

        const QString wanted =
            test["series_id"_L1].toString() + u'/' + test["test_id"_L1].toString();
        const Ended shown = run({u"show"_s, wanted, u"--json"_s});
        QCOMPARE(shown.status, 0);
        report.insert("resent"_L1, QJsonValue::Null);
        test.insert("report"_L1, report);
        QCOMPARE(object(shown.printed), test);
        QVERIFY(run({u"servers"_s}).printed.startsWith("* Swisscom "));

        // Where the device was is its owner's alone.
        for (const QString &name : {u"data/orvak"_s, u"config/orvak"_s}) {
            QDirIterator made(home->path(name), QDir::AllEntries | QDir::NoDotAndDotDot,
                              QDirIterator::Subdirectories);
            QVERIFY(made.hasNext());
            while (made.hasNext()) {
                made.next();
                QVERIFY2(!(made.fileInfo().permissions() & 0x0077), qPrintable(made.filePath()));
            }
        }
    }

    void theServiceExportsWhatTheDeviceDoes()
    {
        const QString script = home->write(
            u"device"_s,
            R"({"mode":"LteMode","status":"HomeNetwork","signal":71,"name":"Net <1>",)"
            R"("mcc":"228","mnc":"01","home_mcc":"229","home_mnc":"02","cell":2814211,"lac":4711,)"
            R"("device":{"imei":"3569","manufacturer":"Maker","product":"Pro","model":"M1"}})"
            "\n"
            R"({"at_ms":100,"position":{"latitude":47.2266,"longitude":8.8184,"altitude":412.5,)"
            R"("accuracy_h":9,"accuracy_v":14}})");
        const Ended ended = run({u"--platform"_s, u"scripted:"_s + script, u"--location"_s,
                                 u"train"_s, u"--wait-position"_s, u"9"_s});
        QCOMPARE(ended.status, 0);
        const QByteArray user = reported(u"SELECT userid FROM reports"_s)[0][0].toByteArray();
        for (const QString &format : {u"csv"_s, u"json"_s, u"geojson"_s, u"gpx"_s}) {
            // Not among what is JSON alone.
            const Ended device = ProgramHome::end(*start({u"export"_s, u"--format"_s, format}));
            const QByteArray service = home->get("/velometer/api/v1/export?userid=" + user +
                                                 "&format=" + format.toLatin1());
            QCOMPARE(service.split(','), asReported(device.printed, format).split(','));
            QVERIFY2(format == u"csv"_s || service.contains("47.2266"), service.constData());
        }
    }

    void aDriveIsTheSameOnTheDeviceAndAtTheService()
    {
        QByteArray lines =
            R"({"mode":"LteMode","status":"HomeNetwork","signal":71,"name":"Net <1>",)"
            R"("mcc":"228","mnc":"01","cell":11,"lac":4711,"rsrp":-97.5,"rsrq":-11,)"
            R"("snr":8,"band":"B20"})"
            "\n";
        for (int i = 0; i < 40; ++i) {
            const QByteArray cell =
                i == 14 ? R"(,"mode":"NrMode","status":"HomeNetwork","cell":22,"rsrp":null)" : "";
            lines += R"({"at_ms":)" + QByteArray::number(i * 250) +
                     R"(,"position":{"latitude":47.2)" + QByteArray::number(100 + i) +
                     R"(,"longitude":8.8})" + cell + "}\n";
        }
        const QString device = u"scripted:"_s + home->write(u"drive"_s, lines);
        // Nobody knows the user before his first test, and a service that is away gets the track
        // later.
        Ended ended = run({u"track"_s, u"--duration"_s, u"1"_s, u"--platform"_s, device});
        QCOMPARE(ended.status, 0);
        QVERIFY2(ended.messages.contains("run one test"), ended.messages.constData());
        const auto broken = start({u"track"_s, u"--platform"_s, device});
        QVERIFY(QTest::qWaitFor(
            [&] {
                return stored(u"SELECT points FROM tracks WHERE points > 3 AND id = 2"_s).size() ==
                       1;
            },
            20'000));
        ended = run({u"delete-track"_s, u"2"_s, u"--yes"_s});
        QVERIFY2(ended.status == 2 && ended.messages.contains("is being recorded"),
                 ended.messages.constData());
        broken->kill();
        broken->waitForFinished();
        ended = run({u"track"_s, u"--resume"_s, u"--duration"_s, u"8"_s, u"--test-every"_s, u"5s"_s,
                     u"--platform"_s, device});
        QCOMPARE(ended.status, 0);
        QVERIFY2(ended.printed.contains("Track 2: ") && ended.printed.contains(", 2 tests"),
                 ended.printed.constData());
        QCOMPARE(run({u"tracks"_s, u"--send"_s}).status, 0);
        QCOMPARE(reported(u"SELECT count(*) FROM tracks WHERE ended"_s),
                 QList<QVariantList>({{2}}));

        const QByteArray user = reported(u"SELECT userid FROM reports"_s)[0][0].toByteArray();
        const QByteArray id =
            stored(u"SELECT track FROM tracks WHERE id = 2"_s)[0][0].toByteArray();
        const QByteArray address = "/velometer/api/v1/tracks/" + id;
        for (const QString &format : {u"csv"_s, u"json"_s, u"geojson"_s, u"gpx"_s}) {
            const Ended exported = ProgramHome::end(
                *start({u"export"_s, u"--track"_s, u"2"_s, u"--format"_s, format}));
            QCOMPARE(home->get(address + "/export?userid=" + user + "&format=" + format.toLatin1())
                         .split('\n'),
                     exported.printed.split('\n'));
            for (const char *part : {"47.21", "Net ", "NrMode", "B20", "-97.5", "1/2"}) {
                QVERIFY2(exported.printed.contains(part), part);
            }
        }
        const QByteArray line = home->get(address + "?userid=" + user);
        QVERIFY2(line.contains("\"lte\",71,-97.5]") && line.contains("\"5g\",") &&
                     line.contains(",1,47.2"), // the second segment
                 line.constData());

        QCOMPARE(run({u"delete-track"_s, u"2"_s}).status, 2);
        QCOMPARE(run({u"delete-track"_s, u"2"_s, u"--yes"_s}).status, 0);
        QCOMPARE(stored(u"SELECT count(*) FROM trackpoints WHERE track = 2"_s),
                 QList<QVariantList>({{0}}));
        QCOMPARE(run({u"export"_s, u"--track"_s, u"2"_s, u"--format"_s, u"gpx"_s}).status, 2);
    }

    void aBudgetEndsATestThatIsStoredAndDelivered()
    {
        const QString script = home->write(u"device"_s, R"({"mode": "LteMode", "metered": "yes"})");
        const QStringList device{u"--platform"_s, u"scripted:"_s + script};
        const Ended ended = run(QStringList{u"--max-bytes"_s, u"1M"_s} + device);
        QCOMPARE(ended.status, 4);
        const auto lines = ended.messages.split('\n');
        QVERIFY2(lines.size() == 3 && lines[0].contains("metered") && lines[0].contains("1 MB") &&
                     lines[1].contains("--max-bytes"),
                 ended.messages.constData());
        const QByteArray note = "at most 1 MB; ended early: download, upload\n";
        QVERIFY2(ended.printed.contains(note), ended.printed.constData());
        QVERIFY(run({u"show"_s, u"1"_s}).printed.contains(note));
        QCOMPARE(reported(u"SELECT count(*) FROM reports WHERE testid = 1"_s),
                 QList<QVariantList>({{1}}));

        // The settings are followed, and lifted for one call.
        home->write(u"config/orvak/Velometer.conf"_s, "MaxBytes=2000000\n");
        QVERIFY(run(device).printed.contains("at most 2 MB; "));
        const Ended whole = run(QStringList{u"--max-bytes"_s, u"0"_s} + device);
        QCOMPARE(whole.status, 0);
        QVERIFY(!whole.printed.contains("ended early"));
    }

    void queuesTheReportOfABrokenTest()
    {
        const auto broken = start({u"--json-stream"_s});
        QVERIFY(ProgramHome::waitForText(*broken, "\"phase\":\"upload\""));
        home->stopService();
        Ended ended = end(*broken);
        QCOMPARE(ended.status, 1);
        const QJsonValue result = lastObject(ended)["result"_L1];
        QCOMPARE(result["report"_L1]["delivered"_L1], false);
        QCOMPARE(result["report"_L1]["queue_id"_L1], u"1"_s);
        QCOMPARE(result["download"_L1]["valid"_L1], true);
        QCOMPARE(result["rtt"_L1]["valid"_L1], false);
        QCOMPARE(run({u"resend"_s, u"--server"_s, u"127.0.0.1:1"_s}).status, 5); // this once
        // The report cannot count its attempts.
        stored(u"CREATE TRIGGER broken BEFORE UPDATE ON xmlfiles "
               "BEGIN SELECT RAISE(ABORT, 'broken'); END"_s);
        ended = run({u"resend"_s});
        QCOMPARE(ended.status, 3);
        QVERIFY2(ended.messages.contains("orvakVelometer.db.sqlite"), ended.messages.constData());
        stored(u"DROP TRIGGER broken"_s);

        home->startService();
        QCOMPARE(run({u"resend"_s, u"-6"_s}).status, 5); // it listens on IPv4
        ended = run({u"--json"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(lastObject(ended).value("report"_L1).toObject().value("resent"_L1), 1);
        QCOMPARE(stored(u"SELECT id FROM xmlfiles"_s).size(), 0);
        QCOMPARE(reported(u"SELECT testid FROM reports ORDER BY testid"_s),
                 QList<QVariantList>({{1}, {2}}));
    }

    void keepsWhatAnInterruptedTestHas_data()
    {
        const Rows<int, int> row("number", "status");
        row("interrupted", SIGINT, 130);
        row("hung up", SIGHUP, 129);
        row("terminated, and nowhere to keep it", SIGTERM, 143);
    }
    void keepsWhatAnInterruptedTestHas()
    {
        const auto [number, status] = currentRow<int, int>();
        const auto process =
            start({u"--json-stream"_s, u"--count"_s, u"2"_s, u"--interval"_s, u"60"_s});
        QVERIFY(ProgramHome::waitForText(*process, "\"event\":\"progress\""));
        if (number == SIGTERM) {
            stored(u"DROP TABLE xmlfiles"_s);
        }
        // The shell and the terminal both tell of a hang-up.
        for (int i = 0; i < (number == SIGHUP ? 3 : 1); ++i) {
            ::kill(static_cast<pid_t>(process->processId()), number);
        }
        const Ended ended = end(*process);
        QCOMPARE(ended.status, status);
        QCOMPARE(lastObject(ended).value("event"_L1), u"error"_s);
        QCOMPARE(lastObject(ended).value("status"_L1), status);
        QCOMPARE(ended.messages.contains("could not be stored"), number == SIGTERM);
        if (number == SIGTERM) {
            return;
        }
        QCOMPARE(stored(u"PRAGMA integrity_check"_s), QList<QVariantList>({{u"ok"_s}}));
        QCOMPARE(stored(u"SELECT id FROM xmlfiles WHERE xml LIKE '%>1,2,2<%'"_s).size(), 1);
        QCOMPARE(run({u"resend"_s}).status, 0);
        QCOMPARE(stored(u"SELECT id FROM xmlfiles"_s).size(), 0);
        QCOMPARE(reported(u"SELECT testid FROM reports"_s).size(), 1);
    }

    void tellsAndDeletesWhatIsStored()
    {
        StoredTests store;
        store.add({});
        store.add({2, 13, 4, 1'700'000'060'000.0, 5'200'000, 610'000, 48, u"WLAN"_s, u"Car"_s,
                   u"other.example"_s});
        store.add({3, 13, 5, 1'700'000'120'000.0, 7'300'000, 820'000, 59, u"Mobile(5G)"_s,
                   u"Train"_s, u"third.example"_s});
        const XMLData waiting{u"<report/>"_s, {}};
        gDB->insertOrUpdateXMLFile(&waiting);
        // The file is a session: commands, and what each answers.
        QFile session(QStringLiteral(GOLDEN) + u"/stored.session"_s);
        QVERIFY(session.open(QFile::ReadOnly));
        const QList<QByteArray> expected = session.readAll().split('\n');
        QByteArray seen;
        for (const QByteArray &line : expected) {
            if (line.startsWith("$ ")) {
                const QStringList words = QString::fromUtf8(line.mid(2)).split(u' ');
                const Ended ended =
                    ProgramHome::end(*start(words + QStringList{u"--data-dir"_s, store.path()}));
                seen += line + '\n' + ended.printed + ended.messages + "status " +
                        QByteArray::number(ended.status) + '\n';
            }
        }
        QCOMPARE(seen.replace(store.path().toUtf8(), "DIR").split('\n'), expected);
    }

    void refusesAStoreThatCannotBe()
    {
        QCOMPARE(run({u"results"_s}).status, 0); // there is none yet
        for (const QString &command : {u"test"_s, u"results"_s, u"resend"_s}) {
            // A directory below a file cannot be made, by nobody.
            const Ended ended = run({command, u"--data-dir"_s, home->config() + u"/below"_s});
            QCOMPARE(ended.status, 3);
            QCOMPARE(ended.printed, QByteArray());
            QCOMPARE(ended.messages.count('\n'), 1);
        }
    }

    /// By the tests above.
    void whatWasPrintedFollowsTheSchema()
    {
        QByteArray lines = "\n";
        for (const QByteArray &line : printed.split('\n')) {
            const bool isOurs = line.startsWith('{') && line.endsWith('}') &&
                                !line.contains("\"geometry\""); // a map's
            lines += isOurs ? line + '\n' : QByteArray();
        }
        for (const char *kind : {"\n{\"budget", "\"event\":\"progress", "\"event\":\"phase",
                                 "\"event\":\"error", "\"event\":\"result"}) {
            QVERIFY2(lines.contains(kind), kind);
        }
        QProcess validator;
        validator.start(u"python3"_s, {QStringLiteral(VALIDATOR), QStringLiteral(SCHEMA)});
        validator.write(lines);
        validator.closeWriteChannel();
        QVERIFY(validator.waitForFinished());
        QVERIFY2(validator.exitStatus() == QProcess::NormalExit && validator.exitCode() == 0,
                 validator.readAll() + validator.readAllStandardError());
    }

private:
    using Ended = ProgramHome::Ended;

    ProgramHome::Process start(const QStringList &arguments) const
    {
        return home->start(QStringLiteral(CLIENT_PROGRAM), arguments);
    }
    Ended run(const QStringList &arguments) { return end(*start(arguments)); }
    Ended end(QProcess &process)
    {
        const Ended ended = ProgramHome::end(process);
        printed += ended.printed;
        return ended;
    }
    QList<QVariantList> stored(const QString &query) const
    {
        return ProgramHome::rows(home->store(), query);
    }
    QList<QVariantList> reported(const QString &query) const
    {
        return ProgramHome::rows(home->reports(), query);
    }

    std::unique_ptr<ProgramHome> home;
    QByteArray printed; ///< by every run of every test
};

} // namespace velometer

VELOMETER_TEST(VelometerCliTest)
#include "velometer_cli_test.moc"
