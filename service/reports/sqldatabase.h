#pragma once

#include "reports/sqlconnection.h"

namespace velometer {

/// A data base as the store's threads see it. Safe from every thread.
class SqlDatabase
{
public:
    SqlDatabase() = default;
    virtual ~SqlDatabase() = default;
    SqlDatabase(const SqlDatabase &) = delete;
    SqlDatabase &operator=(const SqlDatabase &) = delete;

    /// Takes the data base for this store and brings an older schema forward. Why that fails, in
    /// words for an operator ("it is no database"); empty when it does not.
    virtual QString prepare() = 0;

    /// For the calling thread; nothing on failure, and @p problem then says why.
    virtual std::unique_ptr<SqlConnection> connect(bool writes, QString *problem) = 0;

    /// Whether the data base has this program's schema.
    virtual bool isCurrent(SqlConnection &connection) const = 0;

    /// That which keeps other services away, for a process that takes this one's place; -1: none.
    virtual int lockDescriptor() const { return -1; }

    /// Without its secrets.
    virtual QString shownName() const = 0;

    /// Threads that may write side by side, up to mostWriters.
    virtual int writers() const = 0;
    static constexpr int mostWriters = 2;

    /// Why there is no room for more, as far as this program can see; empty when there is.
    virtual QString shortage() const = 0;

    /// Of its disk; nothing where it is another machine's.
    virtual std::optional<qint64> freeBytes() const { return std::nullopt; }

    /// Something small that fails like a report when reports fail.
    virtual bool tryWriting(SqlConnection &connection) const = 0;
};

} // namespace velometer
