#include "data/result.h"

#include "support/registeredtest.h"

namespace velometer {

class ResultTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void derivesThroughputFigures_data()
    {
        const Rows<QList<qint64>, qint64, bool, qint64, qint64> row("rates", "valuesAvg", "valid",
                                                                    "min", "max");

        using Rates = QList<qint64>;
        row("ramp-up alone is not valid", {9, 9, 0, 0}, 0, false, -1, -1);
        row("eleven samples have no window", {9, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 5, true, -1, -1);
        row("twelve samples have one", {99, 99, 10, 20, 30, 40, 50, 60, 70, 80, 90, 105}, 55, true,
            55, 55);
        row("windows slide", {0, 0, 0, 10, 10, 10, 10, 10, 10, 10, 10, 10, 20, 200}, 25, true, 9,
            30);
        row("beyond 32 bits", Rates(12, 20'000'000'000), 20'000'000'000, true, 20'000'000'000,
            20'000'000'000);
    }
    void derivesThroughputFigures()
    {
        QFETCH(QList<qint64>, rates);
        IntervalTable table;
        for (int i = 0; i < rates.size(); ++i) {
            table.insert(i, rates[i]);
        }
        const Result result(80, 7, 2'000'000'000, 500'000, table, table, 5, 6, 7, Result::Download,
                            nullptr);
        QCOMPARE(result.getRateAvg(), result.isValid() ? 2'000'000 : -1);
        QTEST(result.getValuesAvg(), "valuesAvg");
        QTEST(result.isValid(), "valid");
        QTEST(result.getRateMin(), "min");
        QTEST(result.getRateMax(), "max");
    }

    void aRefusedOrShortStreamHasNoRateAtAll()
    {
        IntervalTable table;
        for (int i = 0; i < 14; ++i) {
            table.insert(i, 1000);
        }
        for (const auto &[ns, accepted] :
             {std::pair{499'999'999LL, true}, {0LL, true}, {7'000'000'000LL, false}}) {
            Result result(80, 7, ns, 1000, table, table, 0, -1, -1, Result::Upload, nullptr);
            result.setAccepted(accepted);
            result.setCutByBudget(true);
            QVERIFY(!result.isValid());
            QCOMPARE((QList<qint64>{result.getRateMin(), result.getRateAvg(), result.getRateMax()}),
                     (QList<qint64>{-1, -1, -1}));
        }
    }

    void derivesResponseTimes()
    {
        const auto figures = [](const QHash<int, int> &times) {
            const Result result(80, times, nullptr);
            return QList<int>{result.isValid(), result.getResponseMin(), result.getResponseAvg(),
                              result.getResponseMax()};
        };
        QCOMPARE(figures({{1, -1}, {2, -1}, {3, 0}}), (QList<int>{0, -1, -1, -1}));
        QCOMPARE(figures({{1, -1}, {2, 35}, {3, -1}}), (QList<int>{1, 35, 35, 35}));
        // Their sum is beyond 32 bits.
        QCOMPARE(figures({{1, 2'000'000'000}, {2, 2'000'000'000}, {3, 1'700'000'001}}),
                 (QList<int>{1, 1'700'000'001, 1'900'000'000, 2'000'000'000}));
    }
};

} // namespace velometer

VELOMETER_TEST(ResultTest)
#include "result_test.moc"
