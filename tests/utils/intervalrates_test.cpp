#include "utils/intervalrates.h"

#include "support/registeredtest.h"

namespace velometer {

namespace {

// Hundreds of bytes per 100 ms, recorded on emulated links with BBR.
constexpr auto lte =
    "552 1882 4749 4822 4836 4822 4836 4822 4822 4836 4822 4822 4822 4836 4822 4822 "
    "4836 4822 4822 4836 4822 4822 4836 4822 4822 4836 4822 4822 4822 4836 4822 4822 "
    "4836 4822 4822 4836 4822 4822 4822 4822 4836 4822 4822 4836 4822 4822 4822 4836 "
    "4822 4836 4822 4822 4822 4836 4822 4822 4836 4822 4822 4836 4822 4822 4822 4836 "
    "4822 4836 4822 4822 4836 4822";
constexpr auto slowStart =
    "0 0 146 145 0 145 145 159 145 261 290 319 434 608 710 883 1100 1448 1853 2273 2418 "
    "2418 2404 2418 2404 2418 2418 2418 2404 2418 2404 2418 2418 2404 2418 2418 2404 "
    "2418 2418 2404 2418 2418 2404 2418 2418 2404 2418 2418 2404 2418 2418 2404 2418 "
    "2418 2404 2418 2404 2418 2418 2404 2418 2418 2230 2389 2389 2389 2404 2389 2389 "
    "2389";
constexpr auto lossy =
    "436 695 1072 840 1136 0 1405 681 2505 1361 507 1868 1202 1216 2201 1043 666 854 "
    "1187 941 1940 681 1216 1202 1535 1361 811 536 2273 637 1622 767 1173 1231 1144 "
    "1231 1853 507 449 1911 1796 898 1028 1043 1434 956 1202 1202 1390 999 1202 1216 "
    "1202 1911 492 1086 2027 1100 536 1202 1202 1173 1202 1086 1303 1405 1520 753 1072 "
    "1665";
constexpr auto train =
    "451 695 2215 3620 3620 3606 3620 3620 3012 1448 1448 1448 1448 1448 1448 1448 1448 "
    "1448 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1057 261 956 970 970 956 970 970 941 "
    "970 970 956 970 970 956 970 1506 2896 2896 2896 2896 2896 2896 2896 2896 2896 3113 "
    "3591 3548 2896 3026 3606 3620";
constexpr auto policed =
    "1189 8065 12047 12076 12062 12062 12062 12076 12062 12062 12076 12047 12076 12076 "
    "12062 12062 12062 12062 12076 12047 12091 12062 5995 2476 2433 2331 2462 2462 2433 "
    "2404 2404 2433 2404 2404 2433 2404 2404 2433 2404 2404 2418 2418 2404 2418 2418 "
    "2404 2404 2433 2404 2404 2433 2404 2404 2433 2404 2404 2433 2404 2404 2433 2404 "
    "2404 2433 2404 2404 2433 2404 2404 2418 2418";

using Table = QList<qint64>;

Table table(const QByteArray &numbers)
{
    Table intervals;
    for (const QByteArray &number : numbers.split(' ')) {
        intervals.append(number.toLongLong());
    }
    return intervals;
}

Table level(qsizetype count, qint64 value)
{
    return Table(count, value);
}

} // namespace

class IntervalRatesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSteadyRateIsThatOfALineAtRest_data()
    {
        const Rows<Table, int, int> row("intervals", "begin", "rate");
        row("clean ramp-up", table(lte), 2, 4825);
        row("slow start over 300 ms", table(slowStart), 19, 2403);
        row("gaps and what they held up", table(lossy), 4, 1199);
        row("policed after a burst", table(policed), 23, 2415);
        row("policed too late to be sure", level(45, 1206) + level(25, 240), -1, -1);
        row("a line that has five rates", table(train), -1, -1);
        row("every second interval empty", table("0 0 10" + QByteArray(" 0 20").repeated(20)), 2,
            10);
        row("every third is full", table("0 0 10" + QByteArray(" 0 0 30").repeated(20)), 2, 10);
        row("a stall is part of it", level(40, 100) + level(10, 0) + level(20, 100), 0, 85);
        row("a stall at the end", level(50, 100) + level(20, 0), 0, 71);
        row("a stall at the begin", level(20, 0) + level(50, 100), 20, 100);
        row("rising all the time", table("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20"), -1,
            -1);
        row("a stall over the first half", level(36, 0) + level(34, 100), -1, -1);
        row("less than a second", level(9, 100), -1, -1);
        row("less than a second of data", level(9, 100) + level(20, 0), -1, -1);
        row("no data", level(70, 0), -1, -1);
        row("nothing", {}, -1, -1);
    }
    void aSteadyRateIsThatOfALineAtRest()
    {
        const auto [intervals, begin, rate] = currentRow<Table, int, int>();
        const auto from = IntervalRates::steadyFrom(intervals);
        QCOMPARE(from ? int(*from) : -1, begin);
        QCOMPARE(IntervalRates::steady(intervals).value_or(-1), qint64(rate));
    }
};

} // namespace velometer

VELOMETER_TEST(IntervalRatesTest)
#include "intervalrates_test.moc"
