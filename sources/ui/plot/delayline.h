#pragma once

#include "figures/delays.h"

#include <QCoreApplication>
#include <QRectF>

class QColor;
class QPainter;

namespace velometer {

/// The round-trip times beside the download and the upload as a thin line over their curves, with a
/// scale of its own that begins at 0. Lost ones leave a gap.
class DelayLine
{
    Q_DECLARE_TR_FUNCTIONS(DelayLine)

public:
    void clear();
    /// One that began @p at ns after the first data of the phase @p resulttype; in any order.
    /// Others than what a phase may have are ignored.
    void add(int resulttype, qint64 at, std::optional<qint64> delay);
    /// All of a phase at once.
    void set(int resulttype, const LoadDelays &delays);

    bool isEmpty() const { return download.isEmpty() && upload.isEmpty(); }
    /// The end of the scale in ms, a round number; 0 without any.
    double top() const;
    /// "RTT 0 to 400 ms", for who sees the line.
    QString scaleText() const;
    /// "RTT under load: Download 245 ms, Upload 31 ms", for who does not; empty without any.
    QString description() const;

    /// The line of one phase in @p area, which is @p seconds wide.
    void draw(QPainter &painter, int resulttype, const QRectF &area, double seconds,
              const QColor &colour) const;

private:
    struct Sample
    {
        qint64 at = 0;
        std::optional<qint64> delay;
    };
    QList<Sample> *samplesOf(int resulttype);

    QList<Sample> download; ///< in the order of their beginnings
    QList<Sample> upload;
};

} // namespace velometer
