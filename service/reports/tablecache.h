#pragma once

#include "reports/sqliteconnection.h"
#include "reports/testtable.h"

#include <map>
#include <memory>
#include <mutex>

namespace velometer {

/// The tables of the users who looked last, so many tests in all. Safe from every thread.
class TableCache
{
public:
    /// Some hundred bytes each.
    static constexpr qint64 maxTests = 1'000'000;

    /// The tests of @p userId as @p connection's transaction sees them; of a user who is not known
    /// there are none. Reads those alone that are new since the last time, unless some were
    /// deleted. Null on failure.
    std::shared_ptr<const TestTable> of(SqliteConnection &connection, qint64 userId);

private:
    struct Kept
    {
        std::shared_ptr<const TestTable> table;
        qint64 changes = 0; ///< of the user, when it was read
        qint64 lastUse = 0;
    };
    Kept find(qint64 userId);
    void keep(qint64 userId, const Kept &kept);

    std::mutex mutex;
    std::map<qint64, Kept> users;
    qint64 uses = 0;
};

} // namespace velometer
