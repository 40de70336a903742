#include "data/result.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ResultTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void derivesThroughputFigures_data()
    {
        QTest::addColumn<QList<qint64>>("rates");
        QTest::addColumn<qint64>("valuesAvg");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<qint64>("min");
        QTest::addColumn<qint64>("max");

        using Rates = QList<qint64>;
        QTest::newRow("too short for anything") << Rates{9, 9} << 0LL << false << -1LL << -1LL;
        QTest::newRow("ramp-up alone is not valid")
            << Rates{9, 9, 0, 0} << 0LL << false << -1LL << -1LL;
        QTest::newRow("eleven samples have no window")
            << Rates{9, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9} << 5LL << true << -1LL << -1LL;
        QTest::newRow("twelve samples have one")
            << Rates{99, 99, 10, 20, 30, 40, 50, 60, 70, 80, 90, 105} << 55LL << true << 55LL
            << 55LL;
        QTest::newRow("windows slide")
            << Rates{0, 0, 0, 10, 10, 10, 10, 10, 10, 10, 10, 10, 20, 200} << 25LL << true << 9LL
            << 30LL;
        QTest::newRow("beyond 32 bits") << Rates(12, 20'000'000'000LL) << 20'000'000'000LL << true
                                        << 20'000'000'000LL << 20'000'000'000LL;
    }
    void derivesThroughputFigures()
    {
        QFETCH(QList<qint64>, rates);
        IntervalTable table;
        for (int i = 0; i < rates.size(); ++i)
            table.insert(i, rates[i]);
        const Result result(80, 7, 2'000'000'000, 500'000, table, table, 5, 6, 7, Result::Download,
                            nullptr);
        QCOMPARE(result.getRateAvg(), 2'000'000);
        QTEST(result.getValuesAvg(), "valuesAvg");
        QTEST(result.isValid(), "valid");
        QTEST(result.getRateMin(), "min");
        QTEST(result.getRateMax(), "max");
    }

    void aPhaseWithoutDurationHasNoRate()
    {
        const Result result(80, 7, 0, 1000, {}, {}, 0, -1, -1, Result::Upload, nullptr);
        QCOMPARE(result.getRateAvg(), -1);
        QVERIFY(!result.isLimited());
        QCOMPARE(result.toString(), u"Bytes: 1000, Duration: 0, Min: -1, Avg time: -1, "
                                    "Avg values: 0, Max: -1, Max Pause: 0, "_s);
    }

    void derivesResponseTimes_data()
    {
        QTest::addColumn<QList<int>>("times");
        QTest::addColumn<QList<int>>("minAvgMax");
        QTest::newRow("all failed") << QList<int>{-1, -1, 0} << QList<int>{-1, -1, -1};
        QTest::newRow("one") << QList<int>{-1, 35, -1} << QList<int>{35, 35, 35};
        QTest::newRow("sum beyond 32 bits")
            << QList<int>{2'000'000'000, 2'000'000'000, 1'700'000'001}
            << QList<int>{1'700'000'001, 1'900'000'000, 2'000'000'000};
    }
    void derivesResponseTimes()
    {
        QFETCH(QList<int>, times);
        QFETCH(QList<int>, minAvgMax);
        QHash<int, int> table;
        for (int i = 0; i < times.size(); ++i)
            table.insert(i + 1, times[i]);
        const Result result(80, table, nullptr);
        QCOMPARE(
            (QList<int>{result.getResponseMin(), result.getResponseAvg(), result.getResponseMax()}),
            minAvgMax);
        QCOMPARE(result.isValid(), minAvgMax.first() > 0);
        QCOMPARE(result.getResultType(), 3);
    }
};

QTEST_GUILESS_MAIN(ResultTest)
#include "result_test.moc"
