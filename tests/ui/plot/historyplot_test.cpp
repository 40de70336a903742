#include "ui/plot/historyplot.h"

#include "utils/translations.h"

#include "support/registeredtest.h"

#include <limits>

namespace velometer {

class HistoryPlotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesRoundMomentsOfThisMachine_data()
    {
        // From 2023-11-15 03:43:20 of this machine.
        const Rows<qint64, int, QString> row("hours", "most", "labels");
        row("hours", 3, 4, "04:00 05:00 06:00");
        row("every third hour", 12, 4, "06:00 09:00 12:00 15:00");
        row("days", 72, 4, "16 Nov|17 Nov|18 Nov");
        row("every fourth day", 24 * 14, 4, "19 Nov|23 Nov|27 Nov");
        row("months", 24 * 100, 4, "Dec 23|Jan 24|Feb 24");
        row("every fourth month", 24 * 365, 4, "Mar 24|Jul 24|Nov 24");
    }
    void namesRoundMomentsOfThisMachine()
    {
        const auto [hours, most, labels] = currentRow<qint64, int, QString>();
        Translations::choose(u"en"_s);
        const qint64 start = 1'700'000'000'000;
        QStringList found;
        for (const auto &tick : HistoryPlot::ticks({start, start + hours * 3'600'000}, most)) {
            QVERIFY(tick.time >= start);
            found.append(tick.label);
        }
        QCOMPARE(found, labels.split(labels.contains(u'|') ? u'|' : u' '));
    }

    void drawsWhateverTheStoreHolds()
    {
        using Curve = HistoryPlot::Curve;
        HistoryPlot plot(nullptr);
        plot.resize(320, 200);
        const History::Range range{1'700'000'000'000, 1'700'003'600'000};
        const auto drawn = [&](const QList<Curve> &curves) {
            plot.setCurves(History::Figure::Rtt, u"RTT"_s, range, curves);
            return plot.grab().toImage();
        };
        const auto mark = [&](int slot, double value) {
            return History::Mark{slot, range.from + slot * 60'000, 1, value, value, value};
        };
        const QImage empty = drawn({});
        // Two marks with a part without a test between them: no line from one to the other.
        const QImage gap = drawn({{ConnectionKind::Lte, {mark(10, 30), mark(40, 30)}}});
        const QImage line = drawn({{ConnectionKind::Lte, {mark(10, 30), mark(11, 30)}}});
        QVERIFY(gap != empty && line != empty);
        const auto middle = [](const QImage &image) { return image.copy(140, 40, 20, 140); };
        QCOMPARE(middle(gap), middle(drawn({{ConnectionKind::Lte, {mark(10, 30)}},
                                            {ConnectionKind::Lte, {mark(40, 30)}}})));
        // Kinds differ in their shapes too.
        QVERIFY(
            drawn({{ConnectionKind::Gsm, {mark(10, 30)}}}).convertToFormat(QImage::Format_Mono) !=
            drawn({{ConnectionKind::Wlan, {mark(10, 30)}}}).convertToFormat(QImage::Format_Mono));
        drawn({{ConnectionKind::Nr, {mark(59, 1e15), mark(60, 1e-9)}}});
        plot.resize(20, 10);
        plot.grab();
        QCOMPARE(HistoryPlot::roundStep(0), 0.5);
        QCOMPARE(HistoryPlot::roundStep(412), 200.0);
        QCOMPARE(HistoryPlot::roundStep(2001), 1000.0);
    }
};

} // namespace velometer

VELOMETER_WIDGET_TEST(HistoryPlotTest)
#include "historyplot_test.moc"
