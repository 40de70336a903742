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
    return test;
}

const QString written =
    u"LoadFigures: {\"download\":{\"cc\":\"bbr\",\"rtt_us\":[41001,-1],\"t_ms\":[200,401]},"
    "\"extra_upload\":{\"rtt_us\":[3000000],\"t_ms\":[0]},\"idle_us\":[31400,-1],\"v\":1}"_s;

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
        const QString log = u"LoadFigures: {\"v\":1,\"idle_us\":[5]}\n1: x\n"_s + written +
                            u"\r\n17: not at its begin LoadFigures: {}\n"_s;
        QVERIFY(LoadFigures::read(log, test));
        QCOMPARE(test.idleDelays, (Delays{31'400'000, std::nullopt}));
        QCOMPARE(test.downloadLoad.samples, (Delays{41'001'000, std::nullopt}));
        QCOMPARE(test.downloadLoad.times, (QList<qint64>{200'000'000, 401'000'000}));
        QCOMPARE(test.downloadLoad.congestion, u"bbr"_s);
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
        row("cut", R"({"v":1,"idle_us":[5)");
        row("a list", R"([{"v":1}])");
        row("no version", R"({"idle_us":[5]})");
        row("version of tomorrow", R"({"v":2,"idle_us":[5]})");
        row("stranger", R"({"v":1,"idle_us":[5],"x":1})");
        row("no samples", R"({"v":1,"idle_us":[]})");
        row("zero", R"({"v":1,"idle_us":[0]})");
        row("less than lost", R"({"v":1,"idle_us":[-2]})");
        row("too long", R"({"v":1,"idle_us":[3000001]})");
        row("part of one", R"({"v":1,"idle_us":[5.5]})");
        row("text", R"({"v":1,"idle_us":["5"]})");
        row("beyond every number", R"({"v":1,"idle_us":[1e300]})");
        row("too many", uR"({"v":1,"idle_us":[5%1]})"_s.arg(u",5"_s.repeated(200)));
        row("much too long", uR"({"v":1,%1"idle_us":[5]})"_s.arg(QString(16'000, u' ')));
        row("group that is none", R"({"v":1,"upload":7})");
        row("no times", R"({"v":1,"upload":{"rtt_us":[5]}})");
        row("a time too few", R"({"v":1,"upload":{"rtt_us":[5,6],"t_ms":[1]}})");
        row("back in time", R"({"v":1,"upload":{"rtt_us":[5,6],"t_ms":[2,1]}})");
        row("before the begin", R"({"v":1,"upload":{"rtt_us":[5],"t_ms":[-1]}})");
        row("after the end", R"({"v":1,"upload":{"rtt_us":[5],"t_ms":[60001]}})");
        row("control of nobody", R"({"v":1,"upload":{"rtt_us":[5],"t_ms":[1],"cc":"<b>"}})");
        row("control too long",
            R"({"v":1,"upload":{"rtt_us":[5],"t_ms":[1],"cc":"a123456789012345"}})");
        row("control that is a number", R"({"v":1,"upload":{"rtt_us":[5],"t_ms":[1],"cc":1}})");
        row("stranger in a group", R"({"v":1,"upload":{"rtt_us":[5],"t_ms":[1],"x":"y"}})");
        row("after a good group", R"({"v":1,"download":{"rtt_us":[5],"t_ms":[1]},"upload":{}})");
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
