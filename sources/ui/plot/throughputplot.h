#pragma once

#include "data/result.h"
#include "ui/plot/delayline.h"

#include <QList>
#include <QWidget>

namespace velometer {

/// The throughput of a test over time: the download's curve and beside it the upload's, from bytes
/// per interval of 100 ms, each point the mean of the second that ends there (of what there is of
/// it). The axis has one unit, chosen by the highest point: kbit/s, Mbit/s or Gbit/s.
/// The round-trip times meanwhile are a thin line over the curves, with a scale of its own.
/// A screen reader is told means and maxima.
class ThroughputPlot : public QWidget
{
    Q_OBJECT
    /// Colours for a white ground instead of the dark one. Set in the form.
    Q_PROPERTY(bool onPaper MEMBER onPaper)

public:
    explicit ThroughputPlot(QWidget *parent);

    void clear();
    /// @p bytes of interval number @p interval (0 to 9999) of the phase @p resulttype; intervals
    /// that were passed over count as empty. Anything else is ignored.
    void addValue(int resulttype, int interval, qint64 bytes);
    /// All intervals of a phase at once.
    void setValues(int resulttype, const IntervalTable &bytes);
    /// The round-trip time of a connect that began @p at ns after the phase's first data, ns.
    void addDelay(int resulttype, qint64 at, qint64 delay);
    void setDelays(int resulttype, const LoadDelays &delays);
    bool isEmpty() const { return download.isEmpty() && upload.isEmpty(); }

    /// bit/s per interval: eighty times the mean bytes of the last ten intervals.
    static QList<double> smoothed(const QList<qint64> &bytes);
    struct Axis
    {
        double step;  ///< between two lines, bit/s
        int steps;    ///< lines above 0
        double scale; ///< bit/s of one unit
        QString unit;
    };
    /// The axis that holds @p highest (bit/s), with at most four lines above 0.
    static Axis axisFor(double highest);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QList<qint64> *valuesOf(int resulttype);
    void keep(int resulttype, int interval, qint64 bytes);
    void describe();
    void drawCurve(class QPainter &painter, const QRectF &area, const QList<double> &rates,
                   double top, const QColor &colour) const;

    bool onPaper = false;
    QList<qint64> download;
    QList<qint64> upload;
    DelayLine delays;
};

} // namespace velometer
