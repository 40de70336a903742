#include "app/resultlisting.h"

#include "support/fakeclock.h"
#include "support/registeredtest.h"

#include <QDateTime>

#include <limits>

namespace velometer {

namespace {

constexpr qint64 nowMs = 1'700'000'000'000; // 2023-11-15 03:43 of this machine
constexpr double hour = 3'600'000;

DBTestResults test(qulonglong id, double age, qlonglong series, double download = 0)
{
    DBTestResults test;
    test.myTestId = id;
    test.timestamp = nowMs - age;
    test.seriesId = series;
    test.testId = static_cast<qlonglong>(id);
    test.downloadSpeed = download;
    test.uploadSpeed = 1e9 - download;
    test.rtt = static_cast<qlonglong>(download / 1e6);
    return test;
}

ResultListing listed(const std::vector<DBTestResults> &tests)
{
    ResultListing::Rows rows;
    for (const DBTestResults &each : tests) {
        rows.push_back(std::make_unique<DBTestResults>(each));
    }
    ResultListing listing;
    listing.setRows(std::move(rows));
    return listing;
}

/// "[2023-11-15/12]" for a heading, "[...]+" for a closed one, the test's number for a test.
QString textOf(const ResultListing &listing)
{
    QStringList lines;
    for (const ResultListing::Item &item : listing.items()) {
        const ResultListing::Group &group = listing.group(item.group);
        lines.append(item.test ? QString::number(item.test->testId)
                               : u"[%1/%2]%3"_s.arg(group.day.toString(Qt::ISODate))
                                     .arg(group.series)
                                     .arg(group.open ? u""_s : u"+"_s));
    }
    return lines.join(u' ');
}

} // namespace

class ResultListingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filters_data()
    {
        using Kind = std::optional<ConnectionKind>;
        const Rows<bool, Kind, QString, QString, int, QString, bool> row(
            "mobile", "kind", "server", "location", "period", "text", "matches");
        const auto none = Kind();
        row("nothing", false, none, {}, {}, 0, {}, true);
        row("another kind", false, ConnectionKind::Nr, {}, {}, 0, {}, false);
        row("the kind, not mobile alone", true, ConnectionKind::Wlan, {}, {}, 0, {}, false);
        row("mobile", true, none, {}, {}, 0, {}, true);
        row("another server", false, none, "a.example", {}, 0, {}, false);
        row("server and place", false, none, "b.example", "Car", 0, {}, true);
        row("another place", false, none, "b.example", "Train", 0, {}, false);
        row("older than a day", false, none, {}, {}, 1, {}, false);
        row("a week and no more", false, none, {}, {}, 2, {}, true);
        row("ids as written", false, none, {}, {}, 0, "13/7", true);
        row("ids as shown, any case, any order", false, none, {}, {}, 0, "LTE  13 / 7", true);
        row("date of this machine", false, none, {}, {}, 0, "2023-11-08 03:43", true);
        row("a word that is not there", false, none, {}, {}, 0, "b.example train", false);
    }
    void filters()
    {
        const auto [mobile, kind, server, location, period, text] =
            currentRow<bool, std::optional<ConnectionKind>, QString, QString, int, QString>();
        DBTestResults each = test(7, 7 * 24 * hour, 13);
        each.connectionType = u"Mobile(LTE)"_s;
        each.testServer = u"b.example"_s;
        each.location = u"Car"_s;
        const ResultFilter filter{mobile, kind, server, location, ResultFilter::Period(period),
                                  text};
        QTEST(filter.matches(each, nowMs), "matches");
    }

    void groupsByDayAndSeries()
    {
        // As the store gives them: series first. 23:43 of the day before is four hours ago.
        ResultListing listing = listed(
            {test(9, 1 * hour, 13), test(8, 2 * hour, 13), test(7, 0, 12), test(6, 3 * hour, 12),
             test(5, 4 * hour, 12), test(4, std::numeric_limits<double>::quiet_NaN(), 12)});
        QCOMPARE(textOf(listing),
                 u"[2023-11-15/12] 7 6 [2023-11-15/13] 9 8 [2023-11-14/12] 5 [/12] 4"_s);
        QCOMPARE(listing.ids(), (QList<qulonglong>{7, 6, 9, 8, 5, 4}));
        listing.toggle(0);
        QCOMPARE(textOf(listing),
                 u"[2023-11-15/12]+ [2023-11-15/13] 9 8 [2023-11-14/12] 5 [/12] 4"_s);
        // Still closed when another test has come in, and all that is filtered is counted.
        ResultFilter filter;
        filter.text = u"12"_s;
        filter.period = ResultFilter::Period::Day;
        listing.setFilter(filter);
        QCOMPARE(textOf(listing), u"[2023-11-15/12]+ [2023-11-14/12] 5"_s);
        QCOMPARE(listing.matching(), 3U);
        QCOMPARE(listing.total(), 6U);
    }

    void aLongGroupBeginsClosedUnlessItIsTheNewest()
    {
        std::vector<DBTestResults> tests;
        for (qulonglong id = 18; id > 0; --id) {
            tests.push_back(test(id, static_cast<double>(18 - id),
                                 id > 12  ? 3
                                 : id > 6 ? 2
                                 : id > 5 ? 4
                                          : 1));
        }
        ResultListing listing = listed(tests);
        QCOMPARE(textOf(listing), u"[2023-11-15/3] 18 17 16 15 14 13 [2023-11-15/2]+ "
                                  "[2023-11-15/4] 6 [2023-11-15/1] 5 4 3 2 1"_s);
        listing.toggle(1);
        QCOMPARE(listing.items().size(), 4U + 18U);
    }

    void sortsByAFigureWithTheUnmeasuredLast_data()
    {
        using enum ResultListing::Order;
        const Rows<ResultListing::Order, QString> row("order", "ids");
        row("download", Download, "[/0] 2 3 1 4");
        row("upload", Upload, "[/0] 4 1 3 2");
        row("shortest RTT", Rtt, "[/0] 1 3 2 4");
    }
    void sortsByAFigureWithTheUnmeasuredLast()
    {
        QFETCH(ResultListing::Order, order);
        ResultListing listing =
            listed({test(4, 0, 3), test(3, 1, 3, 20e6), test(2, 2, 2, 30e6), test(1, 3, 1, 10e6)});
        listing.setOrder(order);
        QTEST(textOf(listing), "ids");
        // The group of all never closes; its medians leave out what was not measured.
        listing.toggle(0);
        QCOMPARE(listing.items().size(), 5U);
        QCOMPARE(listing.medians(0).download, 20e6);
        QCOMPARE(listing.medians(0).upload, 985e6);
        QCOMPARE(listing.medians(0).rtt, 20);
    }

private:
    const FakeClock clock{std::chrono::milliseconds(nowMs)};
};

} // namespace velometer

VELOMETER_TEST(ResultListingTest)
#include "resultlisting_test.moc"
