#pragma once

#include "utils/clocktimer.h"

#include <QObject>

#include <chrono>
#include <optional>

namespace velometer {

class LocationHelper;

/// Before a test: the receiver's first position, without which it is not known where the test began
/// and how far it went. Positioning stays on meanwhile. Main thread only.
class PositionWait : public QObject
{
    Q_OBJECT

public:
    /// A receiver that was on a moment ago finds its position in that time.
    static constexpr std::chrono::seconds usual{5};
    /// One that was off for weeks, under a good sky.
    static constexpr std::chrono::seconds longest{600};

    /// @p location is borrowed and outlives this.
    explicit PositionWait(LocationHelper &location, QObject *parent = nullptr);

    /// Waits for @p wanted, without it for usual, and answers with that; then one ended() follows.
    /// Answers with nothing, and does nothing, when there is a position already or a wait has no
    /// point: nothing tells positions, or, where nobody asked for the wait, what does is not
    /// allowed to or cannot be reached.
    std::optional<std::chrono::seconds> start(std::optional<std::chrono::seconds> wanted);
    /// Without ended().
    void cancel();

Q_SIGNALS:
    /// There is a position, or time is up, or there is no more hope of one.
    void ended();

private:
    bool hasPoint() const;
    void look();
    void end();

    LocationHelper &location;
    ClockTimer patience;
    bool isWanted = false;
};

} // namespace velometer
