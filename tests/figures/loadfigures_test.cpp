#include "figures/loadfigures.h"

#include "support/registeredtest.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

FinishedTest testWithDelays()
{
    FinishedTest test;
    test.rtt.samples = Delays{31'400'499, std::nullopt};
    test.downloadLoad = {Delays{41'000'500, std::nullopt}, QList<qint64>{200'499'999, 400'500'000},
                         u"bbr"_s};
    test.extraUploadLoad = {Delays{2'999'999'999}, QList<qint64>{0}, u"NOT ONE"_s};
    test.uploadLoad.times = QList<qint64>{1}; // probes that were never there
    test.network.rsrp = -97.5;
    test.network.rsrq = 51; // beyond what a modem measures
    test.network.band = u"n78"_s;
    return test;
}

const QString written =
    u"LoadFigures: "
    u"{\"download\":{\"cc\":\"bbr\",\"rtt_ns\":[41000500,-1],\"t_ns\":[200499999,400500000]},"
    "\"extra_upload\":{\"rtt_ns\":[2999999999],\"t_ns\":[0]},\"idle_ns\":[31400499,-1],"
    "\"radio\":{\"band\":\"n78\",\"rsrp_dbm\":-97.5},\"v\":1}"_s;

} // namespace

class LoadFiguresTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrittenIsReadFromTheLastOfItsLines()
    {
        QCOMPARE(LoadFigures::line(testWithDelays()), written);
        QCOMPARE(LoadFigures::line(FinishedTest()), QString());

        FinishedTest test;
        const QString log = u"LoadFigures: {\"v\":1,\"idle_ns\":[5]}\n1: x\n"_s + written +
                            u"\r\n17: not at its begin LoadFigures: {}\n"_s;
        QVERIFY(LoadFigures::read(log, test));
        QCOMPARE(test.idleDelays, (Delays{31'400'499, std::nullopt}));
        QCOMPARE(test.downloadLoad.samples, (Delays{41'000'500, std::nullopt}));
        QCOMPARE(test.downloadLoad.times, (QList<qint64>{200'499'999, 400'500'000}));
        QCOMPARE(test.downloadLoad.congestion, u"bbr"_s);
        QCOMPARE(test.network.rsrp, -97.5);
        QVERIFY(!test.uploadLoad.samples && !test.extraUploadLoad.congestion);
        QCOMPARE(LoadFigures::line(test), written);
    }

    void moreThanAReaderTakesIsNotWritten()
    {
        FinishedTest test = testWithDelays();
        test.rtt.samples = Delays(300, 2'000'000'000);
        for (LoadDelays *load : {&test.downloadLoad, &test.uploadLoad, &test.extraDownloadLoad,
                                 &test.extraUploadLoad}) {
            *load = {Delays(300, 2'999'999'000), QList<qint64>(300, 60'000'000'000),
                     u"a_name_of_15_xx"_s};
        }
        FinishedTest read;
        QVERIFY(LoadFigures::read(LoadFigures::line(test), read));
        QCOMPARE(read.extraUploadLoad.samples->size(), 200);
        QCOMPARE(read.idleDelays, Delays(200, 2'000'000'000));
    }

    void whatIsNotAsItIsWrittenIsNotTaken_data()
    {
        const Rows<QString> row("json");
        row("nothing", "");
        row("cut", R"({"v":1,"idle_ns":[5)");
        row("a list", R"([{"v":1}])");
        row("no version", R"({"idle_ns":[5]})");
        row("version of tomorrow", R"({"v":2,"idle_ns":[5]})");
        row("stranger", R"({"v":1,"idle_ns":[5],"x":1})");
        row("no samples", R"({"v":1,"idle_ns":[]})");
        row("zero", R"({"v":1,"idle_ns":[0]})");
        row("less than lost", R"({"v":1,"idle_ns":[-2]})");
        row("too long", R"({"v":1,"idle_ns":[3000000001]})");
        row("part of one", R"({"v":1,"idle_ns":[5.5]})");
        row("text", R"({"v":1,"idle_ns":["5"]})");
        row("beyond every number", R"({"v":1,"idle_ns":[1e300]})");
        row("too many", uR"({"v":1,"idle_ns":[5%1]})"_s.arg(u",5"_s.repeated(200)));
        row("much too long", uR"({"v":1,%1"idle_ns":[5]})"_s.arg(QString(32'000, u' ')));
        row("radio that is none", R"({"v":1,"radio":[]})");
        row("radio of nothing", R"({"v":1,"radio":{}})");
        row("radio of another", R"({"v":1,"radio":{"snr_db":1,"x":2}})");
        row("SNR as a text", R"({"v":1,"radio":{"snr_db":"1"}})");
        row("more than all power", R"({"v":1,"radio":{"rsrp_dbm":1}})");
        row("band of nobody", R"({"v":1,"radio":{"band":"<b>"}})");
        row("group that is none", R"({"v":1,"upload":7})");
        row("no times", R"({"v":1,"upload":{"rtt_ns":[5]}})");
        row("a time too few", R"({"v":1,"upload":{"rtt_ns":[5,6],"t_ns":[1]}})");
        row("back in time", R"({"v":1,"upload":{"rtt_ns":[5,6],"t_ns":[2,1]}})");
        row("before the begin", R"({"v":1,"upload":{"rtt_ns":[5],"t_ns":[-1]}})");
        row("after the end", R"({"v":1,"upload":{"rtt_ns":[5],"t_ns":[60000000001]}})");
        row("control of nobody", R"({"v":1,"upload":{"rtt_ns":[5],"t_ns":[1],"cc":"<b>"}})");
        row("control too long",
            R"({"v":1,"upload":{"rtt_ns":[5],"t_ns":[1],"cc":"a123456789012345"}})");
        row("control that is a number", R"({"v":1,"upload":{"rtt_ns":[5],"t_ns":[1],"cc":1}})");
        row("stranger in a group", R"({"v":1,"upload":{"rtt_ns":[5],"t_ns":[1],"x":"y"}})");
        row("after a good group", R"({"v":1,"download":{"rtt_ns":[5],"t_ns":[1]},"upload":{}})");
    }
    void whatIsNotAsItIsWrittenIsNotTaken()
    {
        const auto [json] = currentRow<QString>();
        FinishedTest test = testWithDelays();
        QVERIFY(!LoadFigures::read(u"LoadFigures: "_s + json, test));
        QCOMPARE(LoadFigures::line(test), written);
    }
};

} // namespace velometer

VELOMETER_TEST(LoadFiguresTest)
#include "loadfigures_test.moc"
