#include "cli/csvformat.h"
#include "cli/exportformat.h"
#include "cli/jsonformat.h"
#include "cli/textformat.h"

#include "cli/progressline.h"
#include "cli/testprinter.h"
#include "cli/testrunner.h"
#include "data/remoteinitialvalues.h"
#include "data/result.h"
#include "data/testdetails.h"
#include "data/testresults.h"
#include "data/testservertable.h"
#include "db/dbtestresults.h"
#include "support/fakeplatform.h"
#include "utils/deployment.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

const QStringList fields = uR"(schema_version test_id series_id user_id timestamp schedule location
        server.name server.host server.port server.city server.state server.country server.ip
        download.avg_bps download.min_bps download.max_bps download.bytes download.duration_ns
        download.connect_ns download.first_byte_ns download.max_pause_ns download.valid
        download.interval_bytes
        upload.avg_bps upload.min_bps upload.max_bps upload.bytes upload.duration_ns
        upload.connect_ns upload.first_byte_ns upload.max_pause_ns upload.valid
        upload.interval_bytes upload.server_min_bps upload.server_avg_bps upload.server_max_bps
        rtt.min_ns rtt.avg_ns rtt.max_ns rtt.samples_ns rtt.valid
        tcp.mss tcp.rwin tcp.wscale tcp.sack tcp.timestamps tcp.congestion tcp.public_ip
        tcp.device_ip tcp.client_hostname
        network.type network.mode network.name network.mcc network.mnc network.home_mcc
        network.home_mnc network.lac network.cell network.signal network.roaming
        device.manufacturer device.product device.model device.platform
        report.delivered report.queue_id report.resent)"_s.simplified()
                               .split(u' ');
const QStringList positionFields = {u"position.latitude"_s,     u"position.longitude"_s,
                                    u"position.altitude_m"_s,   u"position.accuracy_h_m"_s,
                                    u"position.accuracy_v_m"_s, u"position.velocity_kmh"_s,
                                    u"position.distance_m"_s};

void collect(const QJsonObject &object, const QString &prefix, QJsonObject *flat)
{
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it->isObject())
            collect(it->toObject(), prefix + it.key() + u'.', flat);
        else
            flat->insert(prefix + it.key(), *it);
    }
}

/// The object as a reader of the line sees it, its fields under their paths.
QJsonObject printed(const TestSummary &summary)
{
    const QByteArray line = JsonFormat::line(JsonFormat::test(summary));
    QJsonObject flat;
    if (line.count('\n') == 1 && line.endsWith('\n'))
        collect(QJsonDocument::fromJson(line).object(), QString(), &flat);
    return flat;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

/// A device, and the runner of a test on it.
struct Device
{
    Device()
        : output(-1)
        , printer(CommandLine::Format::Json, output, u"en"_s)
        , progress(output, ProgressLine::Mode::Silent)
        , table(Deployment(), nullptr)
    {
        platform.network.mode = NetworkMode::Lte;
        platform.network.status[NetworkMode::Lte] = NetworkStatus::Roaming;
        platform.network.name[NetworkMode::Lte] = u"Net\x1b[31m\n\"=x"_s;
        platform.network.mcc = u"228"_s;
        platform.network.mnc = u"01"_s;
        platform.network.cell = 2814211;
        platform.device.model = u"Mo\adel"_s;
    }

    TestSummary summary(const TestResults *record)
    {
        TestRunner runner({}, table, printer, progress, platform);
        if (!positions.isEmpty())
            platform.position.emitPosition(positions[0], positions[1], 410);
        return TestSummary::ofTest(runner.getController(), record);
    }

    FakePlatform platform;
    QList<double> positions;
    Output output;
    TestPrinter printer;
    ProgressLine progress;
    TestServerTable table;
};

} // namespace

class FormatsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void printsAFinishedTest();
    void printsATestWithoutFigures();
    void printsAStoredTest_data();
    void printsAStoredTest();
    void guardsTextCells_data();
    void guardsTextCells();
    void makesDocumentsForMaps_data();
    void makesDocumentsForMaps();
    void showsRates_data();
    void showsRates();
};

void FormatsTest::printsAFinishedTest()
{
    IntervalTable bytes;
    IntervalTable rates;
    QJsonArray expectedBytes;
    for (int i = 0; i < 70; ++i) {
        bytes.insert(i, 1000 + i);
        rates.insert(i, (1000 + i) * 80);
        expectedBytes.append(1000 + i);
    }
    TestResults record(3, 12, nullptr);
    record.setTimestamp(1'700'000'000'123);
    record.getInitialValues()->remoteInitialValuesLoaded(
        u"Client-Hostname:a\x07.example;Server-IP:192.0.2.1;Remote-IP:192.0.2.2;MSS:1460;"
        "WinScaleRcvd:7;MaxRwinRcvd:65535;SACK:1;Timestamp:0;Local-IP:10.0.0.1;"_s);
    auto *download =
        new Result(80, 7, 7'050'000'000, 72'415, rates, bytes, 5, 6, -1, Result::Download, &record);
    download->setAllBytesTransfered(6'000'000'000);
    record.setDownloadResult(download);
    record.setRTTResult(new Result(80, {{3, 30'000'000}, {1, 10'000'000}, {2, -1}}, &record));
    record.setServerSideUploadSpeeds(100, 9'007'199'254'740'993, 300);

    Device device;
    device.positions = {47.22, 8.82};
    const QJsonObject json = printed(device.summary(&record));
    QCOMPARE(json.keys(), sorted(fields + positionFields));

    const QList<std::pair<QString, QJsonValue>> expected = {
        {u"schema_version"_s, 1},
        {u"test_id"_s, u"12"_s},
        {u"series_id"_s, u"3"_s},
        {u"timestamp"_s, u"2023-11-14T22:13:20.123Z"_s},
        {u"download.bytes"_s, qint64(6'000'000'000)},
        {u"download.connect_ns"_s, 6},
        {u"download.first_byte_ns"_s, QJsonValue::Null},
        {u"download.interval_bytes"_s, expectedBytes},
        {u"download.valid"_s, true},
        {u"upload.avg_bps"_s, QJsonValue::Null},
        {u"upload.interval_bytes"_s, QJsonValue::Null},
        {u"upload.server_avg_bps"_s, qint64(9'007'199'254'740'993)},
        {u"rtt.samples_ns"_s, QJsonArray{10'000'000, QJsonValue::Null, 30'000'000}},
        {u"rtt.avg_ns"_s, 20'000'000},
        {u"tcp.timestamps"_s, 0},
        {u"tcp.congestion"_s, QJsonValue::Null},
        {u"tcp.public_ip"_s, u"192.0.2.2"_s},
        {u"tcp.device_ip"_s, u"10.0.0.1"_s},
        {u"tcp.client_hostname"_s, u"a.example"_s},
        {u"server.ip"_s, u"192.0.2.1"_s},
        {u"network.name"_s, u"Net[31m\"=x"_s},
        {u"network.mnc"_s, u"01"_s},
        {u"network.type"_s, u"Mobile(LTE)"_s},
        {u"network.roaming"_s, true},
        {u"network.signal"_s, QJsonValue::Null},
        {u"device.model"_s, u"Model"_s},
        {u"position.latitude"_s, 47.22},
        {u"position.altitude_m"_s, 410},
        {u"position.accuracy_h_m"_s, QJsonValue::Null},
        {u"position.velocity_kmh"_s, QJsonValue::Null},
    };
    for (const auto &[field, value] : expected)
        QVERIFY2(json.value(field) == value, qPrintable(field));
}

void FormatsTest::printsATestWithoutFigures()
{
    Device device;
    const QJsonObject json = printed(device.summary(nullptr));
    QCOMPARE(json.keys(), sorted(fields + QStringList{u"position"_s}));
    for (const QString &field : {u"test_id"_s, u"download.avg_bps"_s, u"rtt.samples_ns"_s,
                                 u"tcp.wscale"_s, u"server.ip"_s, u"position"_s})
        QVERIFY2(json.value(field).isNull(), qPrintable(field));
    QCOMPARE(json.value("server.name"_L1), u"Swisscom"_s);
    QCOMPARE(json.value("report.delivered"_L1), false);
    QVERIFY(json.value("timestamp"_L1).isString());
}

void FormatsTest::printsAStoredTest_data()
{
    QTest::addColumn<bool>("withDetails");
    QTest::addColumn<double>("clientRate");
    QTest::addColumn<QJsonObject>("expected");

    const QJsonValue null = QJsonValue::Null;
    QTest::newRow("the server measured the upload")
        << true << 4e6
        << QJsonObject{{u"upload.avg_bps"_s, 4'000'000},
                       {u"upload.server_avg_bps"_s, 5'000'000},
                       {u"upload.server_max_bps"_s, 6'000'000},
                       {u"upload.max_bps"_s, null},
                       {u"rtt.avg_ns"_s, 45'600'000},
                       {u"server.name"_s, u"Swisscom"_s},
                       {u"download.bytes"_s, 7},
                       {u"position.longitude"_s, 8.5},
                       {u"position.altitude_m"_s, null}};
    QTest::newRow("only the client did") << true << 5e6
                                         << QJsonObject{{u"upload.avg_bps"_s, 5'000'000},
                                                        {u"upload.server_avg_bps"_s, null},
                                                        {u"upload.max_bps"_s, 6'000'000}};
    QTest::newRow("without details")
        << false << 5e6
        << QJsonObject{{u"rtt.avg_ns"_s, 45'000'000}, {u"server.host"_s, u"127.0.0.1"_s},
                       {u"server.port"_s, null},      {u"download.bytes"_s, null},
                       {u"position"_s, null},         {u"report.delivered"_s, null}};
}

void FormatsTest::printsAStoredTest()
{
    QFETCH(bool, withDetails);
    QFETCH(double, clientRate);
    QFETCH(QJsonObject, expected);
    DBTestResults row;
    row.myTestId = 17;
    row.timestamp = 1.7e12;
    row.downloadSpeed = 0;
    row.uploadSpeed = 5e6;
    row.uploadSpeedClient = clientRate;
    row.rtt = 45;
    row.testServer = u"127.0.0.1"_s;
    TestDetails details(nullptr, 17);
    details.putDouble(u"uploadMaximum"_s, 6e6);
    details.putDouble(u"rttAverage"_s, 45.6e6);
    details.putDouble(u"testServerPort"_s, 8080);
    details.putLong(u"downloadedBytes"_s, 7);
    details.putDouble(u"deviceLatitude"_s, 47.5);
    details.putDouble(u"deviceLongitude"_s, 8.5);
    details.putDouble(u"deviceAltitude"_s, -1);

    const TestServerTable table(Deployment(), nullptr);
    const QJsonObject json =
        printed(TestSummary::ofStored(row, withDetails ? &details : nullptr, table));
    QCOMPARE(json.keys(),
             sorted(fields + (withDetails ? positionFields : QStringList{u"position"_s})));
    QVERIFY(json.value("download.avg_bps"_L1).isNull());
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QVERIFY2(json.value(it.key()) == *it, qPrintable(it.key()));
}

void FormatsTest::guardsTextCells_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cell");

    QTest::newRow("plain") << u"Zürich West"_s << u"Zürich West"_s;
    QTest::newRow("comma") << u"a,b"_s << u"\"a,b\""_s;
    QTest::newRow("quote") << u"a \"b\""_s << u"\"a \"\"b\"\"\""_s;
    QTest::newRow("line breaks") << u"a\r\nb"_s << u"ab"_s;
    QTest::newRow("formula") << u"=1+1"_s << u"'=1+1"_s;
    QTest::newRow("plus") << u"+41"_s << u"'+41"_s;
    QTest::newRow("minus") << u"-1"_s << u"'-1"_s;
    QTest::newRow("at") << u"@SUM(A1,A2)"_s << u"\"'@SUM(A1,A2)\""_s;
    QTest::newRow("formula behind a tabulator") << u"\t=1"_s << u"'=1"_s;
}

void FormatsTest::guardsTextCells()
{
    QFETCH(QString, text);
    QFETCH(QString, cell);
    QCOMPARE(CsvFormat::cell(text), cell);
    TestSummary summary;
    summary.network.name = text;
    summary.position = TestSummary::Position{-33.5, -70.25, {}, {}, {}, {}, {}};
    const QByteArray line = CsvFormat::test(summary);
    QVERIFY(line.contains(',' + cell.toUtf8() + ','));
    QVERIFY2(line.contains(",-33.5,-70.25,"), "numbers stay numbers");
}

void FormatsTest::makesDocumentsForMaps_data()
{
    QTest::addColumn<int>("located");
    QTest::addColumn<int>("elsewhere");

    QTest::newRow("no test") << 0 << 0;
    QTest::newRow("one") << 1 << 0;
    QTest::newRow("one without position first") << 2 << 1;
}

void FormatsTest::makesDocumentsForMaps()
{
    QFETCH(int, located);
    QFETCH(int, elsewhere);
    QByteArray geoJson = ExportFormat::geoJsonBegin();
    QByteArray gpx = ExportFormat::gpxBegin();
    for (int i = 0; i < located + elsewhere; ++i) {
        TestSummary summary;
        summary.testId = i;
        summary.network.type = u"<&\"'>"_s;
        if (i >= elsewhere)
            summary.position = TestSummary::Position{47.25, -8.5, {}, {}, {}, {}, {}};
        geoJson += ExportFormat::geoJsonFeature(summary, i == 0);
        gpx += ExportFormat::gpxWaypoint(summary);
    }
    geoJson += ExportFormat::geoJsonEnd();
    gpx += ExportFormat::gpxEnd();

    QJsonParseError error{};
    const QJsonObject collection = QJsonDocument::fromJson(geoJson, &error).object();
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    const QJsonArray features = collection.value("features"_L1).toArray();
    QCOMPARE(features.size(), located + elsewhere);
    for (qsizetype i = 0; i < features.size(); ++i) {
        const QJsonValue geometry = features[i].toObject().value("geometry"_L1);
        QCOMPARE(geometry.isNull(), i < elsewhere);
        if (i >= elsewhere)
            QCOMPARE(geometry.toObject().value("coordinates"_L1), QJsonArray({-8.5, 47.25}));
    }

    int waypoints = 0;
    QXmlStreamReader xml(gpx);
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == "wpt"_L1) {
            ++waypoints;
            QCOMPARE(xml.attributes().value("lat"_L1).toDouble(), 47.25);
            QCOMPARE(xml.attributes().value("lon"_L1).toDouble(), -8.5);
        } else if (xml.name() == "desc"_L1) {
            QCOMPARE(xml.readElementText(), u"<&\"'>"_s);
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QCOMPARE(waypoints, located);
}

void FormatsTest::showsRates_data()
{
    QTest::addColumn<qint64>("rate");
    QTest::addColumn<QString>("text");

    QTest::newRow("slow") << qint64(9'600) << u"10 kbit/s"_s;
    QTest::newRow("rounds up to a megabit") << qint64(999'700) << u"1.00 Mbit/s"_s;
    QTest::newRow("fast") << qint64(93'240'000) << u"93.24 Mbit/s"_s;
    QTest::newRow("very fast") << qint64(10'919'046'663) << u"10919.0 Mbit/s"_s;
}

void FormatsTest::showsRates()
{
    QFETCH(qint64, rate);
    QFETCH(QString, text);
    QCOMPARE(TextFormat::rate(rate), text);
}

QTEST_GUILESS_MAIN(FormatsTest)
#include "formats_test.moc"
