#include "data/testreport.h"

#include "data/result.h"
#include "data/surroundings.h"
#include "data/testresultlog.h"
#include "data/testresults.h"
#include "utils/utils.h"

#include "support/fakeclock.h"
#include "support/fakecontext.h"

#include <QFile>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString golden(const QString &name)
{
    QFile file(QStringLiteral(GOLDEN) + u'/' + name);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no golden file");
    }
    QString document;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).remove(u'\n');
        if (!line.startsWith(u'#')) {
            document += line;
        }
    }
    return document.replace(u"\\n"_s, u"\n"_s).replace(u"@QT@"_s, QString::fromLatin1(qVersion()));
}

/// The document with its diagnostic log, which belongs to the whole process, taken out.
QString withoutLog(QString document)
{
    const QString open = u"<JavaConsoleOutput><![CDATA["_s;
    const qsizetype from = document.indexOf(open) + open.size();
    return document.replace(from, document.indexOf(u"]]>"_s, from) - from, u"@LOG@"_s);
}

bool wellFormed(const QString &document)
{
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        reader.readNext();
    }
    if (reader.hasError()) {
        qWarning() << reader.errorString();
    }
    return !reader.hasError();
}

} // namespace

class ReportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        made = std::make_unique<FakeContext>();
        made->server->setHostname(u"127.0.0.1"_s);
        madeRecord = std::make_unique<TestResults>(13, 3, nullptr);
    }

    void isTheGoldenDocument()
    {
        fillRecord();
        Utils::addLogEntry(u"a line with <b> & ]]> and \u0001"_s);
        const QString report = document();
        QVERIFY(wellFormed(report));
        QCOMPARE(withoutLog(report), golden(u"report.txt"_s));
        QVERIFY(report.contains(u": a line with &amp;lt;b&amp;gt; &amp; ]]&amp;gt; and \r\n"_s));
        QVERIFY(report.contains(u": Public IP: ###SERVER_PUBLICIP###\r\n"_s));
        QVERIFY(report.contains(u": ScheduleInfo:1,20,60\r\n"_s));
    }

    void hasPlaceholdersAndZerosForWhatATestNeverGot()
    {
        record()->setTimestamp(1'700'000'000'000);
        const QString report = document();
        QVERIFY(wellFormed(report));
        QVERIFY(report.contains(u"Hash=\"mnMsIBbh+dTxTCgsjuLhmQ==\""_s));
        QCOMPARE(report.count(u"<Valid>0</Valid>"_s), 3);
        QVERIFY(report.contains(u"<PublicIP>###SERVER_PUBLICIP###</PublicIP>"
                                "<Domain>###SERVER_CLIENTNAME###</Domain>"_s));
        QVERIFY(!report.contains(u"ScheduleInfo>"_s));
    }

    void whatTheServiceSaysOfTheClientCannotBreakTheDocument()
    {
        record()->getInitialValues()->remoteInitialValuesLoaded(
            u"Client-Hostname:</Domain><x a=\"&;Remote-IP:1'2\u0000\u0008;MSS:1;"_s);
        const QString report = document();
        QVERIFY(wellFormed(report));
        QVERIFY(!report.contains(u'\'')); // the queue could not hold it
    }

private:
    FakeContext *context() const { return made.get(); }
    TestResults *record() const { return madeRecord.get(); }
    QString document() const
    {
        return TestReport::document(record()->finished(Surroundings::of(*context())))->xml;
    }

    void fillRecord()
    {
        FakeClock clock;
        FakePlatform &platform = context()->platform;
        platform.device.manufacturer = u"Bob's <Works>"_s;
        platform.network.mode = NetworkMode::Lte;
        platform.network.signal[NetworkMode::Lte] = 40;
        platform.network.name[NetworkMode::Lte] = u"Zürich ]]> Ä"_s;
        platform.network.mcc = u"228"_s;
        platform.network.mnc = u"01"_s;
        platform.network.homeMcc = u"229"_s;
        platform.network.homeMnc = u"02"_s;
        platform.network.cell = 123456;
        platform.network.lac = 77;
        context()->network = std::make_unique<NetworkInfoHelper>(platform, nullptr);
        context()->device = std::make_unique<DeviceInfoHelper>(platform, nullptr);
        context()->schedule = u"1,20,60"_s;

        record()->setTimestamp(1'700'000'000'000);
        record()->getInitialValues()->remoteInitialValuesLoaded(
            u"Client-Hostname:client.example;Server-IP:192.0.2.1;Remote-IP:192.0.2.2;MSS:1460;"
            "WinScaleRcvd:7;MaxRwinRcvd:65535;SACK:0;Timestamp:1;Local-IP:10.0.0.3;"_s);
        const IntervalTable bytes{{0, 10}, {1, 20}, {2, 30}};
        record()->setDownloadResult(new Result(8080, 7, 8'000'000'000, 2'500'000, bytes, bytes,
                                               5'999'999, 1'500'999, 2'000'000, Result::Download,
                                               record()));
        record()->setUploadResult(new Result(8080, 7, 8'000'000'000, 5'000'000'000, {}, {}, 0, -1,
                                             -1, Result::Upload, record()));
        record()->setRTTResult(
            new Result(8080, {{1, 45'000'000}, {2, 44'000'000}, {3, 46'000'000}}, record()));
        record()->setServerSideUpload(u"100000;200000;300000"_s);

        auto start = std::make_unique<DoubleLocation>();
        start->setTime(1'700'000'000'000);
        start->setLatitude(47.123456);
        start->setLongitude(8.5);
        start->setAltitude(408);
        record()->setDownloadLocationStart(std::move(start));
        record()->setAllLocations({{1'700'000'001'000, 8.5, 47.25, 408, 5, 8, true},
                                   {1'700'000'002'000, 8.5, 47.5, -1, 50, -1, false}});
        auto *entry = new TestResultLog(context()->network.get(), context()->location.get(),
                                        u"DownloadStart"_s, context(), record());
        entry->fillInGPSAndNetworkData();
        record()->addTestResultLog(entry);
    }

    std::unique_ptr<FakeContext> made;
    std::unique_ptr<TestResults> madeRecord;
};

} // namespace velometer

QTEST_GUILESS_MAIN(velometer::ReportTest)
#include "report_test.moc"
