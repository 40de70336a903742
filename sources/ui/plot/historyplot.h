#pragma once

#include "app/history.h"

#include <QList>
#include <QString>
#include <QWidget>

#include <vector>

namespace velometer {

/// One figure of many tests over time: a mark for each part of the time, with a line from its least
/// to its greatest value, and the curve through the medians of parts that follow each other; a part
/// without a test is a gap. Each kind of connection has its colour, its shape, and its sign at the
/// end. Time goes to the right, zero is at the bottom, and the unit stands above the axis. Main
/// thread only.
class HistoryPlot : public QWidget
{
    Q_OBJECT

public:
    /// Parts into which the time is divided, however many tests there are.
    static constexpr int parts = 60;

    explicit HistoryPlot(QWidget *parent);

    struct Curve
    {
        ConnectionKind kind{};
        std::vector<History::Mark> marks;
    };

    /// The medians and ranges of a figure in @p range. @p title is in the user's language.
    /// A screen reader is told what each lies between.
    void setCurves(History::Figure figure, const QString &title, History::Range range,
                   const QList<Curve> &curves);

    struct Tick
    {
        qint64 time = 0; ///< ms
        QString label;
    };
    /// At most @p most moments of @p range to name at the axis, on this machine's hours, days or
    /// months.
    static QList<Tick> ticks(History::Range range, int most);
    /// A round number of which at most four reach @p highest.
    static double roundStep(double highest);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    class Painting;

    void describe();

    History::Figure figure{};
    QString title;
    History::Range range;
    QList<Curve> curves;
};

} // namespace velometer
