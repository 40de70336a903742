// The built velometer-cli against the built velometer-service, as a shell would run them.

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// A test lasts a good 15 s; more only on a machine that is busy with something else.
constexpr int limitMs = 60'000;

/// The rows of a query on a SQLite file that another program wrote.
QList<QVariantList> rows(const QString &file, const QString &query)
{
    QList<QVariantList> result;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"reader"_s);
        db.setDatabaseName(file);
        QSqlQuery statement(db);
        if (!db.open() || !statement.exec(query))
            qWarning("%s", qPrintable(statement.lastError().text()));
        while (statement.next()) {
            QVariantList row;
            for (int i = 0; statement.value(i).isValid(); ++i)
                row.append(statement.value(i));
            result.append(row);
        }
    }
    QSqlDatabase::removeDatabase(u"reader"_s);
    return result;
}

QJsonObject object(const QByteArray &line)
{
    return QJsonDocument::fromJson(line).object();
}

} // namespace

class VelometerCliTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        port = 0;
        startService();
        QFile config(path(u"deployment.conf"_s));
        QVERIFY(config.open(QIODevice::WriteOnly));
        config.write("[Service]\nWebHost=127.0.0.1\nWebPort=" + QByteArray::number(port) +
                     "\n[TestServers]\nSwisscom=127.0.0.1:" + QByteArray::number(port) + '\n');
    }

    void cleanup()
    {
        stopService();
        home.reset();
    }

    void deliversAndStoresATest()
    {
        const Ended ended = run({u"--json"_s, u"--location"_s, u"indoor"_s});
        QCOMPARE(ended.messages, QByteArray());
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.printed.count('\n'), 1);
        const QJsonObject test = object(ended.printed);
        const QJsonObject download = test.value("download"_L1).toObject();
        const QJsonObject upload = test.value("upload"_L1).toObject();
        const QJsonObject rtt = test.value("rtt"_L1).toObject();
        const QJsonObject tcp = test.value("tcp"_L1).toObject();
        const QJsonObject report = test.value("report"_L1).toObject();
        for (const QJsonObject &phase : {download, upload, rtt})
            QCOMPARE(phase.value("valid"_L1), true);
        QCOMPARE(download.value("interval_bytes"_L1).toArray().size(), 70);
        QCOMPARE(rtt.value("samples_ns"_L1).toArray().size(), 3);
        QVERIFY(upload.value("server_avg_bps"_L1).toInteger() > 0);
        QVERIFY(tcp.value("mss"_L1).toInteger() > 0);
        QVERIFY(tcp.value("congestion"_L1).isString());
        QCOMPARE(report.value("delivered"_L1), true);
        QCOMPARE(report.value("queue_id"_L1), QJsonValue(QJsonValue::Null));

        // Both stores tell the same as the line that was printed.
        const qint64 downloadRate = download.value("avg_bps"_L1).toInteger();
        const qint64 uploadRate = upload.value("server_avg_bps"_L1).toInteger();
        const qint64 clientRate = upload.value("avg_bps"_L1).toInteger();
        const qint64 testId = test.value("test_id"_L1).toString().toLongLong();
        const qint64 seriesId = test.value("series_id"_L1).toString().toLongLong();
        const qint64 userId = test.value("user_id"_L1).toString().toLongLong();
        QCOMPARE(rows(store(), u"SELECT testid, seriesid, downloadSpeed, uploadSpeed, "
                               "uploadSpeedClient, location, server FROM testresults"_s),
                 QList<QVariantList>({{testId, seriesId, downloadRate, uploadRate, clientRate,
                                       u"Indoor"_s, u"127.0.0.1"_s}}));
        QCOMPARE(rows(reports(), u"SELECT testid, seriesid, userid, download_avg, upload_avg, "
                                 "upload_client_avg, location FROM reports"_s),
                 QList<QVariantList>({{testId, seriesId, userId, downloadRate, uploadRate,
                                       clientRate, u"Indoor"_s}}));

        const Ended shown = run({u"show"_s, u"%1/%2"_s.arg(seriesId).arg(testId), u"--json"_s});
        QCOMPARE(shown.status, 0);
        QCOMPARE(object(shown.printed).value("timestamp"_L1), test.value("timestamp"_L1));

        // Where the device was is its owner's alone.
        for (const QString &name : {u"data/orvak"_s, u"config/orvak"_s}) {
            QDirIterator made(path(name), QDir::AllEntries | QDir::NoDotAndDotDot,
                              QDirIterator::Subdirectories);
            QVERIFY(made.hasNext());
            while (made.hasNext()) {
                made.next();
                QVERIFY2(!(made.fileInfo().permissions() & 0x0077), qPrintable(made.filePath()));
            }
        }
    }

    void aBudgetEndsATestThatIsStoredAndDelivered()
    {
        QFile script(path(u"device"_s));
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write(R"({"mode": "LteMode", "metered": "yes"})");
        script.close();
        const QStringList device{u"--platform"_s, u"scripted:"_s + script.fileName()};
        const Ended ended = run(QStringList{u"--max-bytes"_s, u"1M"_s} + device);
        QCOMPARE(ended.status, 4);
        const auto lines = ended.messages.split('\n');
        QVERIFY2(lines.size() == 3 && lines[0].contains("metered") && lines[0].contains("1 MB") &&
                     lines[1].contains("--max-bytes"),
                 ended.messages.constData());
        const QByteArray note = "at most 1 MB; ended early: download, upload\n";
        QVERIFY2(ended.printed.contains(note), ended.printed.constData());
        QVERIFY(run({u"show"_s, u"1"_s}).printed.contains(note));
        QCOMPARE(rows(reports(), u"SELECT count(*) FROM reports WHERE testid = 1"_s),
                 QList<QVariantList>({{1}}));

        // The settings are followed, and lifted for one call.
        QFile settings(path(u"config/orvak/Velometer.conf"_s));
        QVERIFY(settings.open(QIODevice::Append));
        settings.write("MaxBytes=2000000\n");
        settings.close();
        QVERIFY(run(device).printed.contains("at most 2 MB; "));
        const Ended whole = run(QStringList{u"--max-bytes"_s, u"0"_s} + device);
        QCOMPARE(whole.status, 0);
        QVERIFY(!whole.printed.contains("ended early"));
    }

    void queuesTheReportOfABrokenTest()
    {
        const Process broken = start({u"--json-stream"_s});
        QVERIFY(waitForText(*broken, "\"phase\":\"upload\""));
        stopService();
        Ended ended = end(*broken);
        QCOMPARE(ended.status, 1);
        const QJsonObject result = ended.lastLine().value("result"_L1).toObject();
        const QJsonObject report = result.value("report"_L1).toObject();
        QCOMPARE(report.value("delivered"_L1), false);
        QCOMPARE(report.value("queue_id"_L1), u"1"_s);
        QCOMPARE(result.value("download"_L1).toObject().value("valid"_L1), true);
        QCOMPARE(result.value("rtt"_L1).toObject().value("valid"_L1), false);
        QCOMPARE(run({u"resend"_s}).status, 5);
        // The report cannot count its attempts.
        rows(store(), u"CREATE TRIGGER broken BEFORE UPDATE ON xmlfiles "
                      "BEGIN SELECT RAISE(ABORT, 'broken'); END"_s);
        ended = run({u"resend"_s});
        QCOMPARE(ended.status, 3);
        QVERIFY2(ended.messages.contains("orvakVelometer.db.sqlite"), ended.messages.constData());
        rows(store(), u"DROP TRIGGER broken"_s);

        startService();
        ended = run({u"--json"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.lastLine().value("report"_L1).toObject().value("resent"_L1), 1);
        QCOMPARE(rows(store(), u"SELECT id FROM xmlfiles"_s).size(), 0);
        QCOMPARE(rows(reports(), u"SELECT testid FROM reports ORDER BY testid"_s),
                 QList<QVariantList>({{1}, {2}}));
        ended = run({u"results"_s, u"--json"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.printed.count('\n'), 2);
        QCOMPARE(ended.lastLine().value("test_id"_L1), u"1"_s); // the oldest
    }

    void keepsWhatAnInterruptedTestHas()
    {
        const Process process = start({u"--json-stream"_s, u"--count"_s, u"2"_s});
        QVERIFY(waitForText(*process, "\"event\":\"progress\""));
        ::kill(static_cast<pid_t>(process->processId()), SIGINT);
        const Ended ended = end(*process);
        QCOMPARE(ended.status, 130);
        QCOMPARE(ended.lastLine().value("event"_L1), u"error"_s);
        QCOMPARE(ended.lastLine().value("status"_L1), 130);

        QCOMPARE(rows(store(), u"PRAGMA integrity_check"_s), QList<QVariantList>({{u"ok"_s}}));
        QCOMPARE(rows(store(), u"SELECT id FROM xmlfiles"_s).size(), 1);
        QCOMPARE(run({u"resend"_s}).status, 0);
        QCOMPARE(rows(store(), u"SELECT id FROM xmlfiles"_s).size(), 0);
        QCOMPARE(rows(reports(), u"SELECT testid FROM reports"_s).size(), 1);
    }

    void saysThatAnInterruptedTestIsLost()
    {
        const Process process = start({u"--json-stream"_s});
        QVERIFY(waitForText(*process, "\"event\":\"progress\""));
        rows(store(), u"DROP TABLE xmlfiles"_s);
        ::kill(static_cast<pid_t>(process->processId()), SIGTERM);
        const Ended ended = end(*process);
        QCOMPARE(ended.status, 143);
        QVERIFY2(ended.messages.contains("could not be stored"), ended.messages.constData());
    }

    void refusesAStoreThatCannotBe_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("directory");
        // A directory below a file cannot be made, by nobody.
        QTest::newRow("test") << u"test"_s << u"deployment.conf/below"_s;
        QTest::newRow("results in a file") << u"results"_s << u"deployment.conf"_s;
        QTest::newRow("resend from a file") << u"resend"_s << u"deployment.conf"_s;
    }
    void refusesAStoreThatCannotBe()
    {
        QFETCH(QString, command);
        QFETCH(QString, directory);
        const Ended ended = run({command, u"--data-dir"_s, path(directory)});
        QCOMPARE(ended.status, 3);
        QCOMPARE(ended.printed, QByteArray());
        QCOMPARE(ended.messages.count('\n'), 1);
    }

private:
    using Process = std::unique_ptr<QProcess>;

    /// What a whole run left; status -1 when it crashed or did not end.
    struct Ended
    {
        int status;
        QByteArray printed;
        QByteArray messages;

        QJsonObject lastLine() const { return object(printed.trimmed().split('\n').last()); }
    };

    void startService()
    {
        service = std::make_unique<QProcess>();
        service->setStandardErrorFile(QProcess::nullDevice());
        service->start(QStringLiteral(SERVICE_PROGRAM),
                       {u"--listen"_s, u"127.0.0.1:%1"_s.arg(port), u"--database"_s,
                        u"sqlite:"_s + reports()});
        const QByteArray announced = "listening on 127.0.0.1:";
        QVERIFY2(waitForText(*service, announced), "the service did not start");
        QByteArray line = service->readLine();
        while (!line.contains(announced))
            line = service->readLine();
        port = line.mid(line.indexOf(announced) + announced.size()).trimmed().toInt();
    }

    void stopService()
    {
        if (!service)
            return;
        service->kill();
        service->waitForFinished();
        service.reset();
    }

    QString path(const QString &name) const { return home->filePath(name); }
    QString store() const { return path(u"data/orvak/Velometer/orvakVelometer.db.sqlite"_s); }
    QString reports() const { return path(u"reports.sqlite"_s); }
    Process start(const QStringList &arguments) const
    {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, home->path());
        environment.insert(u"XDG_DATA_HOME"_s, path(u"data"_s));
        environment.insert(u"XDG_CONFIG_HOME"_s, path(u"config"_s));
        environment.insert(u"XDG_CACHE_HOME"_s, path(u"cache"_s));
        process->setProcessEnvironment(environment);
        process->start(QStringLiteral(CLIENT_PROGRAM),
                       arguments + QStringList{u"--config"_s, path(u"deployment.conf"_s)});
        return process;
    }
    static Ended end(QProcess &process)
    {
        const bool whole =
            process.waitForFinished(limitMs) && process.exitStatus() == QProcess::NormalExit;
        return {whole ? process.exitCode() : -1, process.readAllStandardOutput(),
                process.readAllStandardError()};
    }
    Ended run(const QStringList &arguments) const { return end(*start(arguments)); }

    /// Waits for a line with @p text on the standard output and leaves it unread.
    static bool waitForText(QProcess &process, const QByteArray &text)
    {
        return QTest::qWaitFor(
            [&] {
                const QByteArray printed = process.peek(1024 * 1024);
                const auto at = printed.indexOf(text);
                return at >= 0 && printed.indexOf('\n', at) > at;
            },
            limitMs);
    }

    std::unique_ptr<QTemporaryDir> home;
    std::unique_ptr<QProcess> service;
    int port = 0;
};

QTEST_GUILESS_MAIN(VelometerCliTest)
#include "velometer_cli_test.moc"
