#pragma once

#include "reports/reportstore.h"
#include "reports/sqliteconnection.h"

/// What a user may see, share, note and delete. Each runs inside the transaction of its caller;
/// nothing, or false where it says nothing else, on failure, whose reason is the connection's
/// problem().
namespace velometer::UserQueries {

std::optional<Access> access(SqliteConnection &connection, qint64 userId);
std::optional<Access> accessOfShare(SqliteConnection &connection, const QString &key, qint64 now);

std::optional<bool> setNote(SqliteConnection &connection, const TestScope &scope, qint64 id,
                            const QString &note);

/// Deletes a few of the tests of @p scope: those gone, none when there are no more.
std::optional<QList<StreamKey>> deleteSome(SqliteConnection &connection, const TestScope &scope);

/// From now on the user is a deleted one, without shares and unknown by his device.
bool markDeleted(SqliteConnection &connection, qint64 userId, qint64 now);

/// Deletes a few rows of a user marked deleted: how many, 0 when all are gone.
std::optional<qint64> eraseSome(SqliteConnection &connection, qint64 userId);

/// Users whose deletion has not come to its end.
std::optional<QList<qint64>> unfinished(SqliteConnection &connection);

std::optional<bool> addShare(SqliteConnection &connection, qint64 userId, const Share &share);
std::optional<QList<Share>> shares(SqliteConnection &connection, qint64 userId, qint64 now);
std::optional<bool> removeShare(SqliteConnection &connection, qint64 userId, const QString &key);

} // namespace velometer::UserQueries
