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

    /// What is to be kept of a reading, for whoever reads next: this service after its next start,
    /// or another one.
    struct News
    {
        qint64 version = 0; ///< that it was read on top of
        qint64 next = 0;    ///< its own, drawn at random: nobody else's
        bool isWhole = false;
        qint64 lastId = 0, lastCell = 0, changes = 0;
        QList<StatisticsTable::Rolled> groups;
    };
    using Keep = std::function<void(News news)>;

    /// The figures, after reading what has come since the last time, or everything when tests were
    /// deleted; @p keep then gets what is to be saved. Nothing on failure, and soon after @p stop
    /// says so.
    std::optional<Statistics> figures(SqlConnection &connection, StatisticsBy by,
                                      const std::function<bool()> &stop, const Keep &keep);

    /// In a transaction that writes, one at a time. When another service has saved meanwhile its
    /// reading holds, and this one's is forgotten.
    static bool save(SqlConnection &connection, const News &news);

private:
    using Clock = std::chrono::steady_clock;

    bool refresh(SqlConnection &connection, const std::function<bool()> &stop, const Keep &keep);
    bool loadSaved(SqlConnection &connection);

    StatisticsTable table;
    std::optional<Clock::time_point> refreshed, rebuilt;
    qint64 updated = 0;
    qint64 lastId = 0;
    qint64 lastCell = 0;
    qint64 changes = 0; ///< of all users, when it was built
    qint64 version = 0; ///< of what was saved, that the table has
};

} // namespace velometer
