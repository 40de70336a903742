// The built velometer-cli against the built velometer-service, as a shell would run them.

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
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
constexpr int testLimitMs = 60'000;
constexpr int startLimitMs = 10'000;

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
    void init();
    void cleanup();

    void deliversAndStoresATest();
    void queuesTheReportOfABrokenTest();
    void saysWhenNobodyAnswers();
    void keepsWhatAnInterruptedTestHas();
    void refusesAStoreThatCannotBeWritten();

private:
    using Process = std::unique_ptr<QProcess>;

    void startService();
    void stopService();
    QString path(const QString &name) const { return home->filePath(name); }
    QString store() const { return path(u"data/orvak/Velometer/orvakVelometer.db.sqlite"_s); }
    QString reports() const { return path(u"reports.sqlite"_s); }
    Process start(const QStringList &arguments) const;
    /// Exit status of a whole run; what it printed goes to @p printed.
    int run(const QStringList &arguments, QByteArray *printed = nullptr) const;
    static bool waitForText(QProcess &process, const QByteArray &text);

    std::unique_ptr<QTemporaryDir> home;
    std::unique_ptr<QProcess> service;
    int port = 0;
};

void VelometerCliTest::init()
{
    home = std::make_unique<QTemporaryDir>();
    port = 0;
    startService();
    QFile config(path(u"deployment.conf"_s));
    QVERIFY(config.open(QIODevice::WriteOnly));
    config.write("[Service]\nWebHost=127.0.0.1\nWebPort=" + QByteArray::number(port) +
                 "\n[TestServers]\nSwisscom=127.0.0.1:" + QByteArray::number(port) + '\n');
}

void VelometerCliTest::cleanup()
{
    stopService();
    home.reset();
}

void VelometerCliTest::startService()
{
    service = std::make_unique<QProcess>();
    service->setStandardErrorFile(QProcess::nullDevice());
    service->start(QStringLiteral(SERVICE_PROGRAM), {u"--listen"_s, u"127.0.0.1:%1"_s.arg(port),
                                                     u"--database"_s, u"sqlite:"_s + reports()});
    QByteArray printed;
    static const QRegularExpression address(u"listening on 127\\.0\\.0\\.1:([0-9]+)"_s);
    const bool listening = QTest::qWaitFor(
        [&] {
            printed += service->readAllStandardOutput();
            const auto match = address.match(QString::fromUtf8(printed));
            port = match.hasMatch() ? match.captured(1).toInt() : port;
            return match.hasMatch();
        },
        startLimitMs);
    QVERIFY2(listening, "the service did not start");
}

void VelometerCliTest::stopService()
{
    if (!service)
        return;
    service->kill();
    service->waitForFinished();
    service.reset();
}

VelometerCliTest::Process VelometerCliTest::start(const QStringList &arguments) const
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

int VelometerCliTest::run(const QStringList &arguments, QByteArray *printed) const
{
    const Process process = start(arguments);
    if (!process->waitForFinished(testLimitMs) || process->exitStatus() != QProcess::NormalExit)
        return -1;
    if (printed)
        *printed = process->readAllStandardOutput();
    return process->exitCode();
}

bool VelometerCliTest::waitForText(QProcess &process, const QByteArray &text)
{
    QByteArray printed;
    return QTest::qWaitFor(
        [&] {
            process.setCurrentReadChannel(QProcess::StandardOutput);
            printed = process.peek(1024 * 1024);
            return printed.contains(text);
        },
        testLimitMs);
}

void VelometerCliTest::deliversAndStoresATest()
{
    const Process process = start({u"--json"_s, u"--location"_s, u"indoor"_s});
    QVERIFY(process->waitForFinished(testLimitMs));
    const QByteArray messages = process->readAllStandardError();
    QVERIFY2(process->exitCode() == 0, messages.constData());
    QCOMPARE(messages, QByteArray());

    const QByteArray printed = process->readAllStandardOutput();
    QCOMPARE(printed.count('\n'), 1);
    const QJsonObject test = object(printed);
    const QJsonObject download = test.value("download"_L1).toObject();
    const QJsonObject upload = test.value("upload"_L1).toObject();
    const QJsonObject rtt = test.value("rtt"_L1).toObject();
    const QJsonObject report = test.value("report"_L1).toObject();
    for (const QJsonObject &phase : {download, upload, rtt})
        QCOMPARE(phase.value("valid"_L1), true);
    QCOMPARE(download.value("interval_bytes"_L1).toArray().size(), 70);
    QCOMPARE(rtt.value("samples_ns"_L1).toArray().size(), 3);
    QVERIFY(upload.value("server_avg_bps"_L1).toInteger() > 0);
    QVERIFY(test.value("tcp"_L1).toObject().value("mss"_L1).toInteger() > 0);
    QVERIFY(test.value("tcp"_L1).toObject().value("congestion"_L1).isString());
    QCOMPARE(test.value("location"_L1), u"Indoor"_s);
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
             QList<QVariantList>(
                 {{testId, seriesId, userId, downloadRate, uploadRate, clientRate, u"Indoor"_s}}));

    QByteArray shown;
    QCOMPARE(run({u"show"_s, u"%1/%2"_s.arg(seriesId).arg(testId), u"--json"_s}, &shown), 0);
    QCOMPARE(object(shown).value("timestamp"_L1), test.value("timestamp"_L1));
    QCOMPARE(object(shown).value("download"_L1).toObject().value("avg_bps"_L1), downloadRate);
}

void VelometerCliTest::queuesTheReportOfABrokenTest()
{
    const Process broken = start({u"--json-stream"_s});
    QVERIFY(waitForText(*broken, "\"phase\":\"upload\""));
    stopService();
    QVERIFY(broken->waitForFinished(testLimitMs));
    QCOMPARE(broken->exitCode(), 1);
    const QList<QByteArray> lines = broken->readAllStandardOutput().trimmed().split('\n');
    const QJsonObject result = object(lines.last()).value("result"_L1).toObject();
    const QJsonObject report = result.value("report"_L1).toObject();
    QCOMPARE(report.value("delivered"_L1), false);
    QCOMPARE(report.value("queue_id"_L1), u"1"_s);
    QCOMPARE(result.value("download"_L1).toObject().value("valid"_L1), true);
    QCOMPARE(result.value("rtt"_L1).toObject().value("valid"_L1), false);

    QCOMPARE(run({u"resend"_s}), 5);

    startService();
    QByteArray printed;
    QCOMPARE(run({u"--json"_s}, &printed), 0);
    QCOMPARE(object(printed).value("report"_L1).toObject().value("resent"_L1), 1);
    QCOMPARE(rows(store(), u"SELECT id FROM xmlfiles"_s).size(), 0);
    QCOMPARE(rows(reports(), u"SELECT testid FROM reports ORDER BY testid"_s),
             QList<QVariantList>({{1}, {2}}));
    QCOMPARE(run({u"results"_s, u"--json"_s}, &printed), 0);
    QCOMPARE(printed.count('\n'), 2);
    QCOMPARE(object(printed.left(printed.indexOf('\n'))).value("test_id"_L1), u"2"_s);
}

void VelometerCliTest::saysWhenNobodyAnswers()
{
    // Port 1 of the loopback refuses at once.
    const Process process = start({u"--server"_s, u"127.0.0.1:1"_s, u"--csv"_s});
    QVERIFY(process->waitForFinished(testLimitMs));
    QCOMPARE(process->exitCode(), 5);
    QCOMPARE(process->readAllStandardError().count('\n'), 1);
    QCOMPARE(process->readAllStandardOutput().count("\r\n"), 2);
    QCOMPARE(run({u"servers"_s}), 0);
}

void VelometerCliTest::keepsWhatAnInterruptedTestHas()
{
    const Process process = start({u"--json-stream"_s, u"--count"_s, u"2"_s});
    QVERIFY(waitForText(*process, "\"event\":\"progress\""));
    ::kill(static_cast<pid_t>(process->processId()), SIGINT);
    QVERIFY(process->waitForFinished(testLimitMs));
    QCOMPARE(process->exitStatus(), QProcess::NormalExit);
    QCOMPARE(process->exitCode(), 130);
    const QList<QByteArray> lines = process->readAllStandardOutput().trimmed().split('\n');
    QCOMPARE(object(lines.last()).value("event"_L1), u"error"_s);
    QCOMPARE(object(lines.last()).value("status"_L1), 130);

    QCOMPARE(rows(store(), u"PRAGMA integrity_check"_s), QList<QVariantList>({{u"ok"_s}}));
    QCOMPARE(rows(store(), u"SELECT id FROM xmlfiles"_s).size(), 1);
    QByteArray printed;
    QCOMPARE(run({u"resend"_s}, &printed), 0);
    QCOMPARE(rows(store(), u"SELECT id FROM xmlfiles"_s).size(), 0);
    QCOMPARE(rows(reports(), u"SELECT testid FROM reports"_s).size(), 1);
}

void VelometerCliTest::refusesAStoreThatCannotBeWritten()
{
    // A directory below a file cannot be made, by nobody.
    const Process process = start({u"--json"_s, u"--data-dir"_s, path(u"deployment.conf/below"_s)});
    QVERIFY(process->waitForFinished(startLimitMs));
    QCOMPARE(process->exitCode(), 3);
    QCOMPARE(process->readAllStandardOutput(), QByteArray());
    QCOMPARE(process->readAllStandardError().count('\n'), 1);
}

QTEST_GUILESS_MAIN(VelometerCliTest)
#include "velometer_cli_test.moc"
