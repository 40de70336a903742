#pragma once

#include "utils/clock.h"
#include "utils/clocktimer.h"

#include <chrono>

namespace velometer {

/// A clock that stands still until the test moves it. In force from its construction to its
/// destruction, when the system's clock is back. One at a time.
class FakeClock : public Clock
{
public:
    explicit FakeClock(
        std::chrono::milliseconds start = std::chrono::milliseconds{1'700'000'000'000})
        : wall(start)
        , steady(start)
    {
        install(this);
    }
    ~FakeClock() override { install(nullptr); }

    qint64 wallMs() const override
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(wall).count();
    }
    qint64 steadyUs() const override { return steady.count(); }

    /// Time passes: both clocks move, and what became due happens.
    void advance(std::chrono::microseconds duration)
    {
        lag(duration);
        ClockTimer::fireDue();
    }

    /// Time passes while the program is busy: what became due is late.
    void lag(std::chrono::microseconds duration)
    {
        wall += duration;
        steady += duration;
    }

    /// Somebody sets the system clock: only the wall clock moves, back too.
    void stepWall(std::chrono::microseconds step) { wall += step; }

private:
    std::chrono::microseconds wall;
    std::chrono::microseconds steady;
};

} // namespace velometer
