#include "reports/sqliteconnection.h"
#include "storequestions.h"
#include "support/postgresserver.h"
#include "support/registeredtest.h"
#include "support/rows.h"
#include "support/sqlitefile.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace velometer {

/// What an operator does with a store beside its service, by the program's own commands.
class ServiceTasksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        directory = std::make_unique<QTemporaryDir>();
        file = directory->filePath(u"r.db"_s);
        source = openStore({.database = file});
        // User 1 has two tests, a note, a stream whose report is to come and a track; user 2 a
        // test.
        put(source, report(1, 3, 40));
        put(source, report(1, 3, 41));
        put(source, report(2, 5, 42));
        device = userOf(source, u"490154203237518"_s).id;
        StreamRecord stream;
        stream.test = {.user = 1, .series = 4, .test = 6};
        stream.bytes = 7;
        source->storeStream(stream);
        TrackPart part;
        part.track.id = u"way"_s;
        part.points.resize(2);
        for (TrackPoint &point : part.points) {
            point.time = 8;
            point.latitude = 47.5;
            point.longitude = 8.5;
        }
        answer<ReportStore::TrackTaken>([&](auto done) { source->takeTrack(1, part, done); });
        setNote(u"by the lake"_s);
        answer<bool>([&](auto done) {
            source->addShare(1, {.key = u"k"_s, .bounds = {}, .created = 9, .expires = 10}, done);
        });
    }

    void movesAStoreThatGoesOn()
    {
        const QString target = server.database();
        const QStringList move{u"migrate"_s, u"--from"_s, u"sqlite:"_s + file, u"--to"_s, target};
        QCOMPARE(run(move), 0);
        QVERIFY2(output.startsWith("10 rows changed; "), output);
        QCOMPARE(run(move), 0);
        QVERIFY2(output.startsWith("0 rows changed; "), output);

        // Meanwhile: a test goes, one comes, a note is changed, a user goes and comes as another.
        TestScope one{.userId = 1, .filter = {}, .bounds = {}};
        one.filter.test = 1;
        answer<QList<StreamKey>>([&](auto done) { source->deleteTests(one, done); });
        put(source, report(2, 5, 43));
        setNote(u"on the hill"_s);
        answer<qint64>([&](auto done) { source->deleteUser(device, done); });
        device = userOf(source, u"490154203237518"_s).id;
        // A move that does not come to its end is nobody's store.
        QVERIFY(sqlOf(target, u"ALTER TABLE users ADD CHECK(id <> %1)"_s.arg(device)));
        QCOMPARE(run(move), 1);
        QVERIFY(output.contains("Run it again"));
        QString error;
        QVERIFY(!SqlReportStore::open({.database = target, .keyFile = file + u".key"_s}, &error));
        QVERIFY2(error.contains(u"migrate again"_s), qUtf8Printable(error));
        QVERIFY(sqlOf(target, u"ALTER TABLE users DROP CONSTRAINT users_id_check"_s));
        QCOMPARE(run(move), 0);

        DeviceKey::load(storeOptions(target).keyFile, true, &error);
        QVERIFY(!SqlReportStore::open(storeOptions(target), &error));
        QVERIFY2(error.contains(u"is not the device key"_s), qUtf8Printable(error));
        const Store moved = openStore({.database = target, .keyFile = file + u".key"_s});
        QCOMPARE(userOf(moved, u"490154203237518"_s).id, device);
        for (const qint64 user : {1, 2}) {
            const auto expected = testsOf(source, user);
            const auto found = testsOf(moved, user);
            QCOMPARE(found.size(), user);
            for (qsizetype i = 0; i < found.size(); ++i) {
                QCOMPARE(found[i].id, expected[i].id);
                QCOMPARE(found[i].note, user == 1 ? u"on the hill"_s : QString());
            }
        }
        QCOMPARE(put(moved, report(2, 9, 50)), ReportStore::Outcome::Stored);
        QCOMPARE(testsOf(moved, 2).constFirst().id, 5);
        const auto part =
            answer<QList<TrackPart>>([&](auto done) { moved->trackPart(1, u"way"_s, 0, done); });
        QCOMPARE(part.value(0).points.value(1).time, 8);
        // What a service has taken since would be lost.
        QCOMPARE(run(move), 1);
        QVERIFY(output.contains("users of its own"));
    }

    void tellsAllOfAUserAndForgetsHim()
    {
        const QStringList whose{u"--database"_s, u"sqlite:"_s + file};
        QCOMPARE(run(QStringList{u"export"_s, u"1"_s} + whose), 0);
        QStringList tables;
        for (const QByteArray &line : output.trimmed().split('\n')) {
            const auto row = QJsonDocument::fromJson(line).object();
            tables += row.value(u"table"_s).toString();
            if (tables.constLast() == u"reports"_s) {
                QCOMPARE(row.value(u"document"_s).toString(), u"<a/>"_s);
            }
        }
        QCOMPARE(tables.join(u' '), u"users reports reports streams shares tracks trackparts"_s);
        QCOMPARE(run(QStringList{u"stats"_s} + whose), 0);
        QVERIFY(output.contains("           3 users\n"));
        QVERIFY(output.contains("           3 reports\n"));

        QCOMPARE(run(QStringList{u"forget"_s, u"1"_s} + whose), 0);
        QVERIFY2(output.startsWith("Deleted 4 rows of user 1"), output);
        QCOMPARE(testsOf(source, 1).size(), 0);
        QCOMPARE(put(source, report(1, 9, 50)), ReportStore::Outcome::Deleted);
        QCOMPARE(testsOf(source, 2).size(), 1);
        for (const auto *task : {"export", "forget"}) {
            QCOMPARE(run(QStringList{QLatin1StringView(task), u"77"_s} + whose), 1);
            QCOMPARE(output, "There is no user 77.\n");
        }
    }

    void saysWhatIsWrong_data()
    {
        const Rows<int, QString> row("status", "output");
        row("stats --database sqlite:/no/such/file", 1, "there is no such file.");
        row("stats --database postgresql://x@/y?host=/no", 1, "No such file");
        row("migrate --from sqlite:/no/file --to postgresql://x@/y?host=/no", 1, "no such file");
        row("migrate --from sqlite:/no/file", 2, "migrate needs --from and --to.");
        row("migrate --from sqlite:/no/file --to sqlite:x", 1, "is moved from sqlite:FILE to");
        row("forget", 2, "forget takes a user's id");
        row("check --database sqlite:/etc/hostname/x", 1,
            "error    the database /etc/hostname/x cannot be made");
        row("check --tls-cert /no --tls-key /no", 1, "The certificate /no cannot be used");
        row("--tls-cert /no", 2, "need each other");
        row("--tls-listen 127.0.0.1:0", 2, "needs --tls-cert and --tls-key");
        row("--tls-cert /no --tls-key /no --tls-listen 127.0.0.1:0 --listen 127.0.0.1:0", 1,
            "The certificate /no cannot be used");
    }
    void saysWhatIsWrong()
    {
        const auto [status, text] = currentRow<int, QString>();
        QCOMPARE(run(QString::fromLatin1(QTest::currentDataTag()).split(u' ')), status);
        QVERIFY2(output.contains(text.toUtf8()), output);
    }

private:
    /// Runs the program with @p words; what it said is in output then.
    int run(const QStringList &words)
    {
        QProcess program;
        program.setProcessChannelMode(QProcess::MergedChannels);
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, directory->path());
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(SERVICE_PROGRAM), words);
        const bool ended = program.waitForFinished();
        output = program.readAll();
        return ended ? program.exitCode() : -1;
    }
    static bool sqlOf(const QString &database, const QString &statement)
    {
        QString problem;
        const auto opened = SqlReportStore::databaseOf(database);
        const auto connection = opened->connect(true, &problem);
        return connection && connection->execute(statement);
    }
    /// On the second test of user 1.
    void setNote(const QString &text)
    {
        const TestScope scope{.userId = 1, .filter = {}, .bounds = {}};
        answer<bool>([&](auto done) { source->setNote(scope, 2, text, done); });
    }

    PostgresServer server;
    std::unique_ptr<QTemporaryDir> directory;
    QString file;
    Store source;
    qint64 device = 0;
    QByteArray output;
};

} // namespace velometer

VELOMETER_TEST(ServiceTasksTest)
#include "service_tasks_test.moc"
