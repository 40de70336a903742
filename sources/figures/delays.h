#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace velometer {

/// Round-trip times in ns, in the order in which they were asked for; nothing for one that was
/// lost.
using Delays = QList<std::optional<qint64>>;

/// What TCP connects took while a stream ran beside them.
struct LoadDelays
{
    std::optional<Delays> samples;
    std::optional<QList<qint64>> times; ///< ns from the stream's first data, of each sample
    std::optional<QString> congestion;  ///< the control of the end that sent the stream
};

/// What follows from delays. What was lost counts in the share of the lost alone; nothing where
/// there is nothing to tell it from.
namespace DelayFigures {

std::optional<qint64> minimum(const std::optional<Delays> &delays);
std::optional<qint64> median(const std::optional<Delays> &delays);
/// By linear interpolation between neighbours.
std::optional<qint64> percentile95(const std::optional<Delays> &delays);
/// The estimator of RFC 3550, 6.4.1, over round trips instead of one-way times: it gains a 16th of
/// each new difference between neighbours. Needs two.
std::optional<qint64> jitter(const std::optional<Delays> &delays);
/// What the load adds to the median of the idle line; negative when it was faster.
std::optional<qint64> added(const std::optional<Delays> &idle,
                            const std::optional<Delays> &underLoad);
/// 0 to 100.
std::optional<double> lostPercent(const std::optional<Delays> &delays);

} // namespace DelayFigures

} // namespace velometer
