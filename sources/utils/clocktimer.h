#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

namespace velometer {

/// A single-shot timer that goes by the one source of time, Clock: it fires when the steady clock
/// has passed its moment, from the event loop. While a clock is installed that stands still, only
/// moving that clock fires it (see fireDue), so that a test waits for nothing. Main thread only.
class ClockTimer : public QObject
{
    Q_OBJECT

public:
    explicit ClockTimer(QObject *parent = nullptr);
    ~ClockTimer() override;

    /// Fires once after @p duration, at the earliest from the event loop; a start that still waits
    /// is replaced.
    void start(std::chrono::milliseconds duration);
    void stop();
    bool isActive() const { return active; }

    /// Fires what is due by the clock, the earliest first, each once. For a clock that was moved.
    static void fireDue();

Q_SIGNALS:
    void timeout();

private:
    void arm();
    void awake();
    void fire();

    QTimer wake;
    qint64 dueUs = 0; ///< by Clock::steadyUs
    bool active = false;
};

} // namespace velometer
