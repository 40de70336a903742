#pragma once

#include <QtGlobal>

namespace velometer {

/// The one source of time. Everything that measures or stamps asks Utils, which asks the installed
/// clock; a test installs its own and moves it instead of sleeping. Main thread only.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Wall clock, milliseconds since the epoch; follows every step of the system clock.
    virtual qint64 wallMs() const = 0;

    /// Microseconds since the epoch as the wall clock had them at program start, plus steady time
    /// since: differences are true durations even when the system clock is set in between.
    virtual qint64 steadyUs() const = 0;

    static const Clock &current();

    /// Puts @p clock (borrowed; must outlive its use) in the place of the system's; nullptr
    /// restores the system's clock.
    static void install(const Clock *clock);

    /// False while a clock is installed whose time passes only when somebody moves it.
    static bool runsByItself();

protected:
    Clock() = default;
    Q_DISABLE_COPY_MOVE(Clock)
};

} // namespace velometer
