#pragma once

#include "reports/sqldatabase.h"

#include <chrono>

namespace velometer {

/// The connection of one thread, made anew when it was lost: at once the first time, then after
/// pauses that grow.
class Reconnecting
{
public:
    Reconnecting(SqlDatabase &connected, bool forWriting)
        : database(connected)
        , writes(forWriting)
    {}

    /// Null while there is none: after a failure this waits for a moment of the pause, so that who
    /// asks again and again does not spin.
    SqlConnection *get();

    bool isLost() const { return !connection || connection->isLost(); }
    QString problem() const { return connection ? connection->problem() : reason; }

private:
    using Clock = std::chrono::steady_clock;

    SqlDatabase &database;
    const bool writes;
    std::unique_ptr<SqlConnection> connection;
    QString reason;
    std::chrono::milliseconds pause{0};
    Clock::time_point next; ///< try
};

} // namespace velometer
