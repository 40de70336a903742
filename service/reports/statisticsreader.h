#pragma once

#include "reports/sqlconnection.h"
#include "reports/statistics.h"

#include <chrono>
#include <functional>

namespace velometer {

/// Keeps the public figures as new as they need to be. Belongs to one thread.
class StatisticsReader
{
public:
    /// How old figures may be, and how long what was deleted may still count.
    static constexpr std::chrono::minutes refreshPeriod{5};
    static constexpr std::chrono::minutes rebuildPeriod{60};

    /// The figures, after reading what has come since the last time, or everything when tests were
    /// deleted. Nothing on failure, and soon after @p stop says so.
    std::optional<Statistics> figures(SqlConnection &connection, StatisticsBy by,
                                      const std::function<bool()> &stop);

private:
    using Clock = std::chrono::steady_clock;

    bool refresh(SqlConnection &connection, const std::function<bool()> &stop);

    StatisticsTable table;
    std::optional<Clock::time_point> refreshed, rebuilt;
    qint64 updated = 0;
    qint64 lastId = 0;
    qint64 lastCell = 0;
    qint64 changes = 0; ///< of all users, when it was built
};

} // namespace velometer
