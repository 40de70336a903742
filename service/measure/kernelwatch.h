#pragma once

#include "limits/streamkey.h"
#include "net/kernelfacts.h"

#include <chrono>

namespace velometer {

/// Asks the kernel ten times a second what it knows of one measurement stream. Whoever runs the
/// stream calls look() whenever he is awake, and wakes up in time; a call between two samples costs
/// a comparison.
class KernelWatch
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::milliseconds interval{100};

    /// @p socket stays open as long as this looks. @p direction is the client's: we send his
    /// download.
    KernelWatch(int socket, Direction direction, TimePoint begun);

    void look(TimePoint now);
    /// When the next sample is due.
    TimePoint due() const { return next; }

    const KernelFacts &getFacts() const { return facts; }

private:
    const int socket;
    const Direction direction;
    const TimePoint begun;
    TimePoint next;
    TimePoint last;
    KernelFacts facts;
    std::uint64_t received = 0; ///< bytes, at the last sample
    std::uint64_t busy = 0;     ///< us, each up to the last sample
    std::uint64_t byReceiver = 0;
    std::uint64_t byBuffer = 0;
};

} // namespace velometer
