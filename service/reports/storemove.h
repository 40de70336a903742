#pragma once

#include "reports/sqlconnection.h"
#include "reports/storetables.h"

#include <functional>
#include <map>

namespace velometer {

/// Brings a PostgreSQL data base to what an SQLite store has, while a service goes on using the
/// store: user by user, what is missing is copied, what differs is changed, and what is gone goes.
/// It may be interrupted at any moment, and run as often as one likes; the last time no service
/// uses the store any more. A data base into which a move has not come to its end is no service's,
/// and one that a service has used is not moved into. Belongs to one thread.
class StoreMove
{
public:
    /// Both have this program's schema, and outlive it.
    StoreMove(SqlConnection &source, SqlConnection &target)
        : from(source)
        , to(target)
    {}

    /// Told now and then how many users have been looked at, and how many rows were changed.
    using Progress = std::function<void(qint64 users, qint64 rows)>;

    /// Why it came to no end, in words for an operator; empty when everything is there.
    QString run(const Progress &progress);

private:
    /// By what names them.
    using Rows = std::map<QString, QVariantList>;

    QString begin();
    bool moveAll(const Progress &progress);
    bool moveUser(qint64 user);
    bool moveTable(const StoreTables::Table &table, qint64 user);
    std::optional<Rows> rowsOf(SqlConnection &connection, const StoreTables::Table &table,
                               qint64 user);
    bool insert(const StoreTables::Table &table, const QVariantList &row);
    bool finish();
    QString problem() const;

    SqlConnection &from;
    SqlConnection &to;
    qint64 changed = 0; ///< rows
};

} // namespace velometer
