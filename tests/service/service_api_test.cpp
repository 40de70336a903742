#include "http/gzip.h"
#include "reports/sqlreportstore.h"
#include "runningservice.h"
#include "support/registeredtest.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>

#include <numeric>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qint64 owner = 1436911191399025;
constexpr qint64 other = 77;
constexpr qint64 another = 79; // with more tests than one step of an export reads
constexpr qint64 day = 86'400'000;
constexpr qint64 begin = 1'700'006'400'000; // 2023-11-15

QString readAll(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The document that the device's tests have, as it looks when the service has filled it in.
QString document()
{
    QString text = readAll(QStringLiteral(DEVICE_REPORT));
    text.remove(u'\n');
    text.replace(u"@LOG@"_s, u"1: &amp;lt;b&amp;gt; &amp;amp; &quot;x&quot;\r\n2: end\r\n"_s);
    text.replace(u"###SERVER_DOWNLOADFILE###"_s, u"sent 34000000 bytes in 7000 ms"_s);
    text.replace(u"###SERVER_UPLOADFILE###"_s, u"received min 1, avg 14200000, max 3 bit/s"_s);
    return text;
}

Report test(int number)
{
    const QStringList modes{u"LteMode"_s, u"WlanMode"_s, u"NrMode"_s, u"Mobile(mixed)"_s, u"?"_s};
    Report report;
    report.userId = owner;
    report.seriesId = 10 + number / 4;
    report.testId = number;
    report.clientTime = begin + number * (day / 2) + number * 3'600'000;
    report.testServer = number % 3 == 0 ? u"a.example"_s : u"b&d.example"_s;
    report.connectionType = modes.at(number % 5);
    report.location = number % 2 == 0 ? u"Indoor"_s : u"Train <b>"_s;
    report.networkName = u"Net %1"_s.arg(number);
    report.mcc = number == 5 ? u"x"_s : u"228"_s;
    report.mnc = number % 2 == 0 ? u"01"_s : u"02"_s;
    report.download.avg = 1'000'000 * (number + 1);
    report.downloadIntervals = report.uploadIntervals = 5;
    if (number != 4) {
        report.uploadClient.avg = 500'000 * (number + 1);
    }
    report.rttAvg = 70'000'000 - number * 1'000'000;
    if (number > 1) {
        report.latitude = 47.0 + number * 0.25;
        report.longitude = 8.5 - number * 0.125;
        report.accuracy = number;
    }
    report.bytes = 1000 + number;
    report.document = number == 2 ? document() : u"<a/>"_s;
    return report;
}

/// A data base with eight tests of the owner, of which 1 and 7 are not verified, and one of another
/// user.
void fill(const QString &file)
{
    QString error;
    const auto store = SqlReportStore::open({.database = file}, &error);
    QVERIFY2(store, qUtf8Printable(error));
    const QString kernel =
        u"congestion control cubic; ms rtt_us min_rtt_us bit/s retransmitted limit: "
        "100 45100 - 9000000 0 window; 200 - 44800 0 - -; 307 245000 44800 12000000 2896 receiver"_s;
    const QString damaged = QString(kernel).replace(u"9000000"_s, u"9e6"_s);
    for (int number = 0; number < 8; ++number) {
        const Report report = test(number);
        for (const auto direction : {Direction::Download, Direction::Upload}) {
            if (number % 6 != 1) {
                const bool down = direction == Direction::Download;
                const qint64 rate =
                    down ? *report.download.avg : report.uploadClient.avg.value_or(1);
                store->storeStream(
                    {.test = report.key(),
                     .direction = direction,
                     .ended = 4'102'444'800'000, // not so long ago that it is forgotten
                     .bytes = 40'000'000,
                     .lasted = 8000,
                     .min = 5,
                     .avg = rate / 4 * 3,
                     .max = 9,
                     .kernel = down ? kernel : damaged,
                     .late = number == 3});
            }
        }
        store->storeReport(report, [](ReportStore::Outcome) {});
    }
    Report foreign = test(0);
    foreign.userId = other;
    store->storeReport(foreign, [](ReportStore::Outcome) {});
    foreign.userId = another;
    for (foreign.testId = 0; foreign.testId < 45; ++foreign.testId) {
        foreign.document =
            u"<a><TestResult><TestID>%1</TestID></TestResult></a>"_s.arg(foreign.testId);
        store->storeReport(foreign, [](ReportStore::Outcome) {});
    }
    store->close(std::chrono::steady_clock::time_point::max());
}

QByteArray request(const QByteArray &line)
{
    // METHOD target [body], as the owner's where it starts with "own".
    const bool own = line.startsWith("own ");
    const QByteArray rest = own ? line.mid(4) : line;
    const auto first = rest.indexOf(' ');
    const auto second = rest.indexOf(' ', first + 1);
    const QByteArray target = rest.mid(first + 1, second < 0 ? -1 : second - first - 1);
    const QByteArray body = second < 0 ? QByteArray() : rest.mid(second + 1);
    return rest.left(first) + " /velometer/api/v1/" + target + " HTTP/1.1\r\nHost: x\r\n" +
           (own ? "Velometer-User: " + QByteArray::number(owner) + "\r\n" : "") +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

/// What came in chunks, and in how many, the empty last one with them.
QByteArray unchunked(QByteArray rest, int *chunks = nullptr)
{
    QByteArray whole;
    for (qsizetype size = -1; size != 0;) {
        const auto end = rest.indexOf("\r\n");
        size = rest.left(end).toInt(nullptr, 16);
        whole += rest.mid(end + 2, size);
        rest = rest.mid(end + 2 + size + 2);
        if (chunks) {
            ++*chunks;
        }
    }
    return whole;
}

} // namespace

/// The interface for programs: what is asked and what is answered, as a whole.
class ServiceApiTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        directory = std::make_unique<QTemporaryDir>();
        fill(directory->filePath(u"r.db"_s));
        service = std::make_unique<RunningService>([&](ServerOptions &options) {
            options.store.database = directory->filePath(u"r.db"_s);
        });
    }

    /// Asks what stands in the golden file behind "> " and compares the whole of it with what it
    /// says; what is drawn at random or depends on the hour is named instead.
    void answersAreThoseOfTheGoldenTalk()
    {
        const QString name = QStringLiteral(TALK);
        const QStringList expected = readAll(name).trimmed().split(u'\n');
        QStringList talk;
        QByteArray answers;
        QByteArray key;
        for (const QString &line : expected) {
            if (!line.startsWith(u"> "_s)) {
                continue;
            }
            QByteArray question = line.sliced(2).toUtf8();
            question.replace("KEY", key);
            const QByteArray answer = service->exchange(request(question));
            QVERIFY(answer.contains("\r\nReferrer-Policy: no-referrer\r\n"));
            QCOMPARE(answer.contains("\r\nCache-Control: no-store\r\n"),
                     !question.startsWith("GET statistics?by=type"));
            const auto object = QJsonDocument::fromJson(bodyOf(answer)).object();
            if (object.contains(u"key"_s)) {
                key = object[u"key"_s].toString().toLatin1();
            }
            const bool isJson = answer.contains("\r\nContent-Type: application/json\r\n");
            QByteArray body = isJson ? QJsonDocument(object).toJson() : bodyOf(answer);
            answers += QByteArray::number(statusOf(answer)) + ' ' + question + '\n' +
                       (isJson ? QJsonDocument(object).toJson(QJsonDocument::Compact) : "") + '\n';
            body.replace(key.isEmpty() ? QByteArray("\n\n") : key, "KEY");
            static const QRegularExpression moments(u"\"(created|expires|updated)_ms\": [0-9]+"_s);
            talk += line;
            talk += u"%1 %2"_s.arg(statusOf(answer))
                        .arg(QString::fromUtf8(body.trimmed()).replace(moments, u"\"\\1_ms\": T"_s))
                        .split(u'\n');
        }
        if (qEnvironmentVariableIsSet("TALK_TO")) {
            QFile file(qEnvironmentVariable("TALK_TO"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(talk.join(u'\n').toUtf8() + '\n');
        }
        for (qsizetype i = 0; i < talk.size(); ++i) {
            QCOMPARE(talk.at(i), expected.value(i));
        }
        QCOMPARE(talk.size(), expected.size());
        follows(answers);

        // His id is of no use any more.
        const QByteArray late = readAll(QStringLiteral(REPORT_FILE)).toUtf8();
        const QByteArray refused = service->exchange(
            "POST /velometer/redirect_iphone.php HTTP/1.1\r\nHost: x\r\nContent-Length: " +
            QByteArray::number(late.size()) + "\r\n\r\n" + late);
        QCOMPARE(statusOf(refused), 410);
        QCOMPARE(bodyOf(refused),
                 "The measurements of this user id were deleted; reports of it are not taken.\n");
        QCOMPARE(bodyOf(service->get("/velometer/api/v1/openapi.json")),
                 readAll(QStringLiteral(DESCRIPTION)).toUtf8());
    }

    void exportsInPieces()
    {
        QByteArray rest =
            bodyOf(service->exchange(request("GET export?format=gpx&userid=79&share=")));
        QCOMPARE(statusOf(service->exchange(request("own POST delete " + QByteArray(70'000, 'x')))),
                 413);
        QVERIFY(rest.endsWith("\r\n0\r\n\r\n"));
        QByteArray question = request("GET export?format=json&userid=79");
        int chunks = 0;
        const QByteArray whole = unchunked(bodyOf(service->exchange(question)), &chunks);
        QCOMPARE(chunks, 4);
        QList<int> tests;
        for (const QByteArray &line : whole.trimmed().split('\n')) {
            tests += QJsonDocument::fromJson(line).object()[u"test_id"_s].toString().toInt();
        }
        QList<int> expected(45);
        std::iota(expected.rbegin(), expected.rend(), 0);
        QCOMPARE(tests, expected);
        const QByteArray packed =
            service->exchange(question.replace("Host:", "Accept-Encoding: gzip\r\nHost:"));
        QVERIFY(packed.contains("\r\nContent-Encoding: gzip\r\n"));
        QCOMPARE(
            QByteArray::fromStdString(gunzip(unchunked(bodyOf(packed)).toStdString(), 1 << 24)),
            whole);
    }

    void answersWhoIsLateAndWhoseDeletionTakesLong()
    {
        const QString file = directory->filePath(u"late.db"_s);
        fill(file);
        const RunningService late([&](ServerOptions &options) {
            options.store.database = file;
            options.bodyTimeout = std::chrono::milliseconds(100);
            options.deletePatience = std::chrono::milliseconds(1);
        });
        const QByteArray order =
            request("own POST delete {\"filter\":\"\",\"confirm\":\"DELETE\"}");
        SocketClient slow(late.port());
        slow.send(order.chopped(1));
        QCOMPARE(statusOf(slow.receiveAll()), 408);
        auto held = std::make_unique<HeldFile>(file);
        const QByteArray told = late.exchange(order);
        QCOMPARE(statusOf(told), 202);
        QCOMPARE(bodyOf(told), "{\"deleted\":null}\n");
        const auto isEmpty = [&] {
            return bodyOf(late.exchange(request("own GET tests"))).contains("\"count\":0,");
        };
        QVERIFY(!isEmpty());
        held.reset();
        QVERIFY(QTest::qWaitFor(isEmpty, 10'000));
    }

private:
    /// Whether every answer is what the description of the interface says.
    static void follows(const QByteArray &answers)
    {
        QProcess checker;
        checker.start(u"python3"_s, {QStringLiteral(CHECKER), QStringLiteral(DESCRIPTION)});
        checker.write(answers);
        checker.closeWriteChannel();
        QVERIFY(checker.waitForFinished());
        QCOMPARE(checker.readAllStandardOutput() + checker.readAllStandardError(), QByteArray());
    }

    std::unique_ptr<QTemporaryDir> directory;
    std::unique_ptr<RunningService> service;
};

} // namespace velometer

VELOMETER_TEST(ServiceApiTest)
#include "service_api_test.moc"
