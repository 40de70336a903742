#include "ui/plot/throughputplot.h"

#include "support/registeredtest.h"
#include "support/rows.h"

#include <QTest>

using namespace Qt::StringLiterals;

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

    void theAxisHoldsTheHighestPoint_data()
    {
        const Rows<double, double, int, QString> row("highest", "step", "steps", "unit");
        row("nothing came", 0, 500, 1, "kbit/s");
        row("just below a unit", 999'999, 500'000, 2, "kbit/s");
        row("just above a line", 40.1e6, 20e6, 3, "Mbit/s");
        row("loopback", 31.2e9, 10e9, 4, "Gbit/s");
    }
    void theAxisHoldsTheHighestPoint()
    {
        QFETCH(double, highest);
        const ThroughputPlot::Axis axis = ThroughputPlot::axisFor(highest);
        QTEST(axis.step, "step");
        QTEST(axis.steps, "steps");
        QTEST(axis.unit, "unit");
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
