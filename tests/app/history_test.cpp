#include "app/history.h"

#include "support/registeredtest.h"

#include <limits>

namespace velometer {

namespace {

const QString lte = u"Mobile(LTE)"_s;
const QString wlan = u"WLAN"_s;

QString textOf(const std::vector<History::Mark> &marks)
{
    QStringList texts;
    for (const History::Mark &mark : marks) {
        texts.append(u"%1@%2: %3 of %4..%5..%6"_s.arg(mark.slot)
                         .arg(mark.time)
                         .arg(mark.count)
                         .arg(mark.minimum)
                         .arg(mark.median)
                         .arg(mark.maximum));
    }
    return texts.join(u"; "_s);
}

} // namespace

class HistoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void marksKeepLeastMiddleAndGreatest()
    {
        using History::Figure;
        const double inf = std::numeric_limits<double>::infinity();
        const std::vector<HistoryPoint> points{
            {99, 1, 101, 201, lte},  // before the range
            {100, 6, 102, 202, lte}, // its first moment
            {104, 2, 103, 0, lte},   {105, 5, 104, -1, wlan},
            {108, 7, 105, inf, lte}, {109, 1, 106, 204, lte}, // even number of tests
            {125, 9, 107, 205, lte},                          // after a gap of one part
            {130, 8, 108, 206, lte},                          // no longer within
        };
        const auto textFor = [&](Figure figure, ConnectionKind kind) {
            return textOf(History::marks(points, figure, kind, {100, 130}, 3));
        };
        QCOMPARE(textFor(Figure::Download, ConnectionKind::Lte),
                 u"0@105: 4 of 1..4..7; 2@125: 1 of 9..9..9"_s);
        QCOMPARE(textFor(Figure::Upload, ConnectionKind::Wlan), u"0@105: 1 of 104..104..104"_s);
        QCOMPARE(textFor(Figure::Rtt, ConnectionKind::Lte),
                 u"0@105: 2 of 202..203..204; 2@125: 1 of 205..205..205"_s);

        const auto all = [](const HistoryPoint &) { return true; };
        const auto summary = History::summary(points, Figure::Upload, {99, 131}, all);
        QCOMPARE(summary.count, 8);
        QCOMPARE(summary.median, 104.5);
        QCOMPARE(summary.low, 102.0);
        QCOMPARE(summary.high, 108.0);
        const auto none = History::summary(points, Figure::Upload, {99, 131},
                                           [](const HistoryPoint &) { return false; });
        QVERIFY(!none.median && none.count == 0);
    }

    void manyTestsAreAsManyMarksAsFew()
    {
        std::vector<HistoryPoint> points(100'000, {0, 5, 6, 7, lte});
        for (size_t i = 0; i < points.size(); ++i) {
            points[i].timestamp = static_cast<double>(i);
        }
        const auto marks =
            History::marks(points, History::Figure::Rtt, ConnectionKind::Lte, {0, 100'000}, 60);
        QCOMPARE(marks.size(), 60U);
        QCOMPARE(marks.back().slot, 59);
        QVERIFY(std::abs(marks.back().count - 1666) <= 1);
    }

    void aRangeIsThePeriodOrWhatThereIs()
    {
        using Period = ResultFilter::Period;
        const auto textFor = [](Period period, const std::vector<HistoryPoint> &points) {
            const auto range = History::Range::of(period, points, 100'000'000);
            return u"%1 to %2"_s.arg(range.from).arg(range.to);
        };
        QCOMPARE(textFor(Period::Day, {}), u"13600000 to 100000001"_s);
        QCOMPARE(textFor(Period::All, {}), u"96400000 to 100000001"_s);
        QCOMPARE(textFor(Period::All, {{50'000'000, 1, 1, 1, lte}}), u"46400001 to 50000001"_s);
        // A moment that cannot be one does not stretch the axis.
        QCOMPARE(textFor(Period::All,
                         {{7, 1, 1, 1, lte}, {50'000'000, 1, 1, 1, lte}, {1e18, 1, 1, 1, lte}}),
                 u"7 to 50000001"_s);
    }
};

} // namespace velometer

VELOMETER_TEST(HistoryTest)
#include "history_test.moc"
