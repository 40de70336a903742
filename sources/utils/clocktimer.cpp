#include "utils/clocktimer.h"

#include "utils/clock.h"

#include <QList>

#include <algorithm>
#include <utility>

namespace velometer {

namespace {

constexpr qint64 usPerMs = 1000;
/// The longest that a toolkit's timer is asked for; longer waits are asked for in pieces.
constexpr qint64 longestWaitMs = 3'600'000;

QList<ClockTimer *> &activeTimers()
{
    static QList<ClockTimer *> timers;
    return timers;
}

} // namespace

ClockTimer::ClockTimer(QObject *parent)
    : QObject(parent)
{
    wake.setSingleShot(true);
    wake.setTimerType(Qt::PreciseTimer);
    connect(&wake, &QTimer::timeout, this, &ClockTimer::awake);
}

ClockTimer::~ClockTimer()
{
    activeTimers().removeOne(this);
}

void ClockTimer::start(std::chrono::milliseconds duration)
{
    stop();
    dueUs = Clock::current().steadyUs() +
            std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
    active = true;
    activeTimers().append(this);
    arm();
}

void ClockTimer::stop()
{
    wake.stop();
    if (active) {
        activeTimers().removeOne(this);
    }
    active = false;
}

void ClockTimer::arm()
{
    const qint64 leftUs = std::max<qint64>(0, dueUs - Clock::current().steadyUs());
    if (leftUs == 0 || Clock::runsByItself()) {
        // Rounded up: nothing happens before its time.
        const qint64 leftMs = (leftUs + usPerMs - 1) / usPerMs;
        wake.start(static_cast<int>(std::min(leftMs, longestWaitMs)));
    }
}

// Woken early when the wait is longer than one piece of it.
void ClockTimer::awake()
{
    if (dueUs <= Clock::current().steadyUs()) {
        fire();
    } else {
        arm();
    }
}

void ClockTimer::fire()
{
    stop();
    Q_EMIT timeout();
}

void ClockTimer::fireDue()
{
    const qint64 now = Clock::current().steadyUs();
    QList<ClockTimer *> due;
    for (ClockTimer *timer : std::as_const(activeTimers())) {
        if (timer->dueUs <= now) {
            due.append(timer);
        }
    }
    std::ranges::sort(due, {}, &ClockTimer::dueUs);
    for (ClockTimer *timer : std::as_const(due)) {
        // One that fired before it may have stopped or ended this one.
        if (activeTimers().contains(timer) && timer->dueUs <= now) {
            timer->fire();
        }
    }
}

} // namespace velometer
