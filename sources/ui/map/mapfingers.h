#pragma once

#include <QPointF>

class QTouchEvent;

namespace velometer {

/// What fingers on the map mean, px of the map item.
class MapHandling
{
public:
    MapHandling(const MapHandling &) = delete;
    MapHandling &operator=(const MapHandling &) = delete;

    virtual void pressed(QPointF at) = 0;
    virtual void dragged(QPointF from, QPointF to) = 0;
    virtual void released(QPointF at) = 0;
    /// In place of pressed(), when it follows a tap at the same place at once.
    virtual void pressedTwice(QPointF at) = 0;
    /// Two fingers whose middle has moved from @p from to @p to, now @p factor times as far apart
    /// as a moment ago.
    virtual void pinched(QPointF from, QPointF to, double factor) = 0;
    /// In place of released(): one of the two fingers is gone, or whatever was begun is called off.
    virtual void letGo() = 0;

protected:
    MapHandling() = default;
    ~MapHandling() = default;
};

/// Reads touches: one finger presses, drags and taps as a mouse does, two pinch, and the one that
/// is left of two does nothing until it is lifted. More fingers than two change nothing.
class MapFingers
{
public:
    /// @p receiver is borrowed and outlives this.
    explicit MapFingers(MapHandling &receiver)
        : handling(receiver)
    {}

    void take(const QTouchEvent &event);
    /// For when the touches will not be ended.
    void forget();

private:
    enum class State { Free, OneFinger, TwoFingers, Done };

    void begin(const QTouchEvent &event);
    void pinch(const QTouchEvent &event);

    MapHandling &handling;
    State state = State::Free;
    int first = 0; ///< ids of the touch points
    int second = 0;
    QPointF at; ///< the first finger's, or the middle of the two
    double apart = 0;
    QPointF lastTap;
    quint64 lastTapMs = 0;
    QPointF pressedAt;
};

} // namespace velometer
