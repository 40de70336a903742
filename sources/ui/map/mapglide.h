#pragma once

#include "utils/clocktimer.h"

#include <QObject>
#include <QPointF>

namespace velometer {

/// Lets what a finger dragged go on when it is lifted, slower and slower, for at most a second: a
/// flick gets far. Goes by the clock; main thread only.
class MapGlide : public QObject
{
    Q_OBJECT

public:
    explicit MapGlide(QObject *parent);

    /// A finger has come down: stands still, and forgets.
    void stop();
    /// The finger has dragged by @p way, px.
    void dragged(QPointF way);
    /// The finger is gone. What it did in its last tenth of a second counts.
    void release();

Q_SIGNALS:
    void moved(int dx, int dy); ///< px

private:
    void step();

    ClockTimer timer;
    QPointF velocity; ///< px per ms
    QPointF rest;     ///< of a pixel, not yet moved
    qint64 lastUs = 0;
};

} // namespace velometer
