#pragma once

#include "platform/bus/busservice.h"

#include <QDBusUnixFileDescriptor>
#include <QObject>

#include <optional>

namespace velometer {

/// Keeps the device from going to sleep while a test or a series runs: a series that sleeps
/// measures nothing, and a test that does measures its sleep. Asks logind and holds what it gives;
/// where there is no logind, or it refuses (over ssh it usually does), the device sleeps as ever,
/// which is written to the log. Main thread only.
class SleepInhibitor : public QObject
{
    Q_OBJECT

public:
    SleepInhibitor(const QDBusConnection &systemBus, QObject *parent);

    /// Returns at once; the device may still fall asleep until logind has answered.
    void hold();
    void release();
    bool isHeld() const { return held.has_value(); }

private:
    void ask();

    BusService logind;
    bool wanted = false;
    bool asked = false;
    std::optional<QDBusUnixFileDescriptor> held; ///< closing it ends the hold
};

} // namespace velometer
