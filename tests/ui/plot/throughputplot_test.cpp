#include "ui/plot/throughputplot.h"

#include "data/result.h"

#include "support/registeredtest.h"

#include <QPainter>

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

    void theDelaysHaveAScaleOfTheirOwn()
    {
        DelayLine line;
        QCOMPARE(line.description(), QString());
        // As they come back, one lost, and what no phase has.
        line.add(Result::Upload, 400'000'000, std::nullopt);
        line.add(Result::Upload, 200'000'000, 201'000'000);
        for (const auto &[at, delay] : {std::pair<qint64, qint64>{-1, 900'000'000},
                                        {2'000'000'000'000, 900'000'000},
                                        {0, -900'000'000},
                                        {0, 20'000'000'000}}) {
            line.add(Result::Upload, at, delay);
        }
        line.add(Result::Rtt, 0, 900'000'000);
        QCOMPARE(line.top(), 500.0);
        line.set(Result::Upload, {Delays{41'000'000, std::nullopt, 50'000'000, 49'000'000},
                                  QList<qint64>{1, 2, 3, 4, 5},
                                  {}});
        line.set(Result::Download, {Delays{30'000'000}, QList<qint64>{1}, {}});
        QCOMPARE(line.top(), 50.0);
        QCOMPARE(line.scaleText(), u"RTT 0 to 50 ms"_s);
        QCOMPARE(line.description(), u"RTT under load: Download 30 ms, Upload 49 ms"_s);

        // A lost one is a gap, the others are joined.
        const auto drawn = [](const Delays &delays) {
            DelayLine one;
            one.set(Result::Upload, {delays, QList<qint64>{0, 1'000'000'000, 2'000'000'000}, {}});
            QImage image(90, 50, QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            one.draw(painter, Result::Upload, {0, 0, 90, 50}, 2, Qt::black);
            return image;
        };
        const auto isEmpty = [](const QImage &image, int x) {
            const QImage column = image.copy(x, 0, 1, image.height());
            QImage white(column.size(), QImage::Format_RGB32);
            white.fill(Qt::white);
            return column == white;
        };
        QVERIFY(!isEmpty(drawn({10'000'000, 11'000'000, 12'000'000}), 20));
        QVERIFY(isEmpty(drawn({10'000'000, std::nullopt, 12'000'000}), 20));
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
