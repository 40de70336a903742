#include "app/serverselection.h"
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
#include "support/rows.h"
#include "utils/deployment.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// What the runner of a test on a device makes of @p record.
TestSummary summaryOf(const TestResults *record, bool located)
{
    FakePlatform platform;
    platform.network.mode = NetworkMode::Lte;
    platform.network.status[NetworkMode::Lte] = NetworkStatus::Roaming;
    platform.network.name[NetworkMode::Lte] = u"Net\x1b[31m\n\"=x"_s;
    platform.network.mcc = u"228"_s;
    platform.network.mnc = u"01"_s;
    platform.network.cell = 2814211;
    platform.device.model = u"Mo\adel"_s;
    Output output(-1);
    TestPrinter printer(CommandLine::Format::Json, output, u"en"_s);
    ProgressLine progress(output, ProgressLine::Mode::Silent);
    ServerSelection servers(platform, nullptr);
    TestRunner runner({}, servers, printer, progress, platform);
    if (located) {
        QGeoPositionInfo fix({47.22, 8.82, 410}, QDateTime::fromSecsSinceEpoch(1'700'000'000));
        fix.setAttribute(QGeoPositionInfo::HorizontalAccuracy, 0);
        fix.setAttribute(QGeoPositionInfo::VerticalAccuracy, 12.5);
        platform.position.emitPosition(fix);
    }
    return TestSummary::ofTest(runner.getController(), record);
}

/// The printed line as a reader sees it, one field a line.
QList<QByteArray> printed(const TestSummary &summary)
{
    const QByteArray line = JsonFormat::line(JsonFormat::test(summary));
    if (line.count('\n') != 1 || !line.endsWith('\n')) {
        return {"not one line"};
    }
    QByteArray text = QJsonDocument::fromJson(line).toJson();
    return text.replace(qVersion(), "@QT@").split('\n');
}

QList<QByteArray> golden(const QString &name)
{
    QFile file(QFINDTESTDATA(u"golden/%1.json"_s.arg(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>();
}

} // namespace

class FormatsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void printsAFinishedTest()
    {
        const IntervalTable bytes{{0, 1000}, {1, 1001}, {2, 1002}};
        TestResults record(3, 12, nullptr);
        record.setTimestamp(1'700'000'000'123);
        record.getInitialValues()->remoteInitialValuesLoaded(
            u"Client-Hostname:a\x07.example;Server-IP:192.0.2.1;Remote-IP:192.0.2.2;MSS:1460;"
            "WinScaleRcvd:7;MaxRwinRcvd:65535;SACK:1;Timestamp:0;Local-IP:10.0.0.1;"_s);
        auto *download = new Result(80, 7, 7'000'000'000, 3500, bytes, bytes, 5, 6, -1,
                                    Result::Download, &record);
        download->setAllBytesTransfered(6'000'000'000);
        record.setDownloadResult(download);
        record.setRTTResult(new Result(80, {{3, 30'000'000}, {1, 10'000'000}, {2, -1}}, &record));
        // Refused: an answer of 500 bytes within 100 ms.
        auto *upload = new Result(80, 7, 100'000'000, 500, {{0, 40'000}}, {{0, 500}}, 5, 6, 7,
                                  Result::Upload, &record);
        upload->setAllBytesTransfered(500);
        record.setUploadResult(upload);
        record.setServerSideUploadSpeeds(100, 9'007'199'254'740'993, 300);
        const TestSummary summary = summaryOf(&record, true);
        QCOMPARE(printed(summary), golden(u"finished"_s));
        const QString text = TextFormat::test(summary, QString());
        QVERIFY2(text.contains("Upload      not measured"_L1), qPrintable(text));
    }

    void printsATestWithoutFigures()
    {
        TestSummary summary = summaryOf(nullptr, false);
        QVERIFY(summary.timestamp);
        summary.timestamp.reset();
        QCOMPARE(printed(summary), golden(u"unfinished"_s));
    }

    void printsAStoredTest_data()
    {
        const Rows<bool, double> row("withDetails", "clientRate");
        row("stored-server-measured-upload", true, 4e6);
        row("stored-client-measured-upload", true, 5e6);
        row("stored-without-details", false, 5e6);
    }
    void printsAStoredTest()
    {
        QFETCH(bool, withDetails);
        QFETCH(double, clientRate);
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
        QCOMPARE(printed(TestSummary::ofStored(row, withDetails ? &details : nullptr, table)),
                 golden(QString::fromLatin1(QTest::currentDataTag())));
    }

    void guardsTextCells()
    {
        TestSummary summary;
        summary.position = TestSummary::Position{-33.5, -70.25, {}, {}, {}, {}, {}};
        for (const auto &[text, cell] : {std::pair{u"ä \"b\",\r\nc"_s, "\"ä \"\"b\"\",c\""},
                                         {u"=1+1"_s, "'=1+1"},
                                         {u"\t-1"_s, "'-1"}}) {
            summary.network.name = text;
            const QByteArray line = CsvFormat::test(summary);
            QVERIFY2(line.contains(',' + QByteArray(cell) + ','), line.constData());
            QVERIFY2(line.contains(",-33.5,-70.25,"), "numbers stay numbers");
        }
    }

    void makesDocumentsForMaps()
    {
        TestSummary nowhere;
        TestSummary somewhere;
        somewhere.network.type = u"<&\"'>"_s;
        somewhere.position = TestSummary::Position{47.25, -8.5, {}, {}, {}, {}, {}};
        const QByteArray geoJson =
            ExportFormat::geoJsonBegin() + ExportFormat::geoJsonFeature(nowhere, true) +
            ExportFormat::geoJsonFeature(somewhere, false) + ExportFormat::geoJsonEnd();
        const QJsonArray features =
            QJsonDocument::fromJson(geoJson).object().value("features"_L1).toArray();
        QCOMPARE(features.size(), 2);
        QVERIFY(features[0].toObject().value("geometry"_L1).isNull());
        QCOMPARE(features[1].toObject().value("geometry"_L1).toObject().value("coordinates"_L1),
                 QJsonArray({-8.5, 47.25}));

        QCOMPARE(ExportFormat::gpxWaypoint(nowhere), "");
        QCOMPARE(ExportFormat::gpxWaypoint(somewhere),
                 "<wpt lat=\"47.2500000\" lon=\"-8.5000000\"><name>0/0</name>"
                 "<desc>&lt;&amp;&quot;'&gt;</desc></wpt>\n");
        QXmlStreamReader gpx(ExportFormat::gpxBegin() + ExportFormat::gpxWaypoint(somewhere) +
                             ExportFormat::gpxEnd());
        while (!gpx.atEnd()) {
            gpx.readNext();
        }
        QVERIFY2(!gpx.hasError(), qPrintable(gpx.errorString()));
    }

    void showsRatesInTheirUnit()
    {
        QCOMPARE(TextFormat::rate(9'600), u"10 kbit/s"_s);
        QCOMPARE(TextFormat::rate(999'700), u"1.00 Mbit/s"_s);
        QCOMPARE(TextFormat::rate(93'240'000), u"93.24 Mbit/s"_s);
        QCOMPARE(TextFormat::rate(10'919'046'663), u"10919.0 Mbit/s"_s);
    }
};

} // namespace velometer

QTEST_GUILESS_MAIN(velometer::FormatsTest)
#include "formats_test.moc"
