#include "ui/plot/throughputplot.h"

#include "support/registeredtest.h"

namespace velometer {

class ThroughputPlotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachPointIsTheMeanOfItsLastSecond()
    {
        // 1000 bytes in 100 ms are 80 kbit/s.
        QList<qint64> bytes(12, 1000);
        bytes[0] = 6000;
        const QList<double> rates = ThroughputPlot::smoothed(bytes);
        QCOMPARE(rates.size(), 12);
        QCOMPARE(rates[0], 480'000.0);
        QCOMPARE(rates[1], 280'000.0);
        QCOMPARE(rates[9], 120'000.0);
        QCOMPARE(rates[10], 80'000.0); // the burst is a second ago
    }

    void theAxisHoldsTheHighestPoint()
    {
        // Nothing, just below a unit, just above a line, loopback.
        for (const auto &[highest, expected] : {std::pair{0.0, u"1 steps of 500 kbit/s"_s},
                                                {999'999.0, u"2 steps of 500000 kbit/s"_s},
                                                {40.1e6, u"3 steps of 20000000 Mbit/s"_s},
                                                {31.2e9, u"4 steps of 10000000000 Gbit/s"_s}}) {
            const ThroughputPlot::Axis axis = ThroughputPlot::axisFor(highest);
            QCOMPARE(
                u"%1 steps of %2 %3"_s.arg(axis.steps).arg(axis.step, 0, 'f', 0).arg(axis.unit),
                expected);
        }
    }

    void drawsWhatMayComeFromAnyFile()
    {
        ThroughputPlot plot(nullptr);
        plot.resize(320, 130);
        const QImage empty = plot.grab().toImage();
        plot.addValue(1, -1, 5);
        plot.addValue(1, 10'000, 5);
        plot.addValue(3, 0, 5);
        QVERIFY(plot.isEmpty());
        QCOMPARE(plot.grab().toImage(), empty);
        plot.addValue(2, 9'999, std::numeric_limits<qint64>::max() / 100);
        plot.addValue(1, 0, -7);
        QVERIFY(plot.grab().toImage() != empty);
        plot.resize(20, 10);
        plot.grab();
    }
};

} // namespace velometer

VELOMETER_WIDGET_TEST(ThroughputPlotTest)

#include "throughputplot_test.moc"
