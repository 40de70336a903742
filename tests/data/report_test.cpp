#include "data/testreport.h"

#include "utils/utils.h"

#include "support/registeredtest.h"
#include "support/wholetest.h"

#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// The document with its diagnostic log, which belongs to the whole process, taken out.
QString withoutLog(QString document)
{
    const QString open = u"<JavaConsoleOutput><![CDATA["_s;
    const qsizetype from = document.indexOf(open) + open.size();
    return document.replace(from, document.indexOf(u"]]>"_s, from) - from, u"@LOG@"_s);
}

/// Empty when the document is well-formed.
QString mistake(const QString &document)
{
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        reader.readNext();
    }
    return reader.errorString();
}

} // namespace

class ReportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { context.server->setHostname(u"127.0.0.1"_s); }

    void isTheGoldenDocument()
    {
        Utils::addLogEntry(u"a line with <b> & ]]> and \u0001"_s);
        const QString report = TestReport::document(WholeTest().value())->xml;
        QCOMPARE(mistake(report), QString());
        QCOMPARE(withoutLog(report).replace(u"><"_s, u">\n<"_s).split(u'\n'),
                 Utils::readFile(QStringLiteral(GOLDEN "/report.txt")).trimmed().split(u'\n'));
        QVERIFY(report.contains(u": a line with &amp;lt;b&amp;gt; &amp; ]]&amp;gt; and \r\n"_s));
        QVERIFY(report.contains(u": Public IP: ###SERVER_PUBLICIP###\r\n"_s));
        QVERIFY(report.contains(u": ScheduleInfo:2,20,60\r\n"_s));
        QVERIFY(report.contains(
            uR"(LoadFigures: {"download":{"cc":"reno","rtt_ns":[41000000,-1,45000000],)"
            R"("t_ns":[200000001,400000002,600000003]},)"
            R"("extra_download":{"cc":"cubic","rtt_ns":[151000000],"t_ns":[200000006]},)"
            R"("extra_upload":{"cc":"vegas","rtt_ns":[850000000],"t_ns":[200000007]},)"
            R"("idle_ns":[31400000,-1,29300000,30100000],)"
            R"("radio":{"band":"B20","rsrp_dbm":-97.5,"rsrq_db":-11,"snr_db":8.25},)"
            R"("upload":{"cc":"bbr","rtt_ns":[361000000,363000000],)"
            R"("t_ns":[200000004,400000005]},"upload_confirmed":[170000%1],"v":1})"_s
                .arg(u",170000"_s.repeated(69))
                .replace(u'"', u"&quot;"_s) +
            u"\r\n]]>"_s));
    }

    void hasPlaceholdersAndZerosForWhatATestNeverGot()
    {
        record.setTimestamp(1'700'000'000'000);
        record.setUploadResult(
            new Result(8080, 7, 0, 0, {}, {}, 5'999'999, 1'500'999, -1, Result::Upload, &record));
        const QString report = document();
        QCOMPARE(mistake(report), QString());
        QVERIFY(report.contains(u"Hash=\"mnMsIBbh+dTxTCgsjuLhmQ==\""_s));
        QCOMPARE(report.count(u"<Valid>0</Valid>"_s), 2);
        QVERIFY(report.contains(u"<TcpResponseTime>1500</TcpResponseTime>"
                                "<DataWriteWaitTime>0</DataWriteWaitTime>"_s));
        QVERIFY(report.contains(u"<ClientMin>-1</ClientMin><ClientAvg>-1</ClientAvg>"
                                "<ClientMax>-1</ClientMax><MaxPause>5999</MaxPause>"
                                "<StartLocation></StartLocation>"_s));
        QVERIFY(report.contains(u"<PublicIP>###SERVER_PUBLICIP###</PublicIP>"
                                "<Domain>###SERVER_CLIENTNAME###</Domain>"_s));
        QVERIFY(!report.contains(u"ScheduleInfo>"_s));
    }

    void whatTheServiceSaysOfTheClientCannotBreakTheDocument()
    {
        record.getInitialValues()->remoteInitialValuesLoaded(
            u"Client-Hostname:</Domain><x a=\"&;Remote-IP:1'2\u0000\u0008;MSS:1;"_s);
        const QString report = document();
        QCOMPARE(mistake(report), QString());
        QVERIFY(!report.contains(u'\'')); // the queue could not hold it
    }

private:
    QString document() const
    {
        return TestReport::document(record.finished(Surroundings::of(context)))->xml;
    }

    FakeContext context;
    TestResults record{13, 3, nullptr};
};

} // namespace velometer

VELOMETER_TEST(ReportTest)
#include "report_test.moc"
