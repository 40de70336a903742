#pragma once

#include "reports/reportstore.h"
#include "reports/sqlconnection.h"

/// What a user may see, share, note and delete. Each runs inside the transaction of its caller;
/// nothing, or false where it says nothing else, on failure, whose reason is the connection's
/// problem().
namespace velometer::UserQueries {

std::optional<Access> access(SqlConnection &connection, qint64 userId);
std::optional<Access> accessOfShare(SqlConnection &connection, const QString &key, qint64 now);

std::optional<bool> setNote(SqlConnection &connection, const TestScope &scope, qint64 id,
                            const QString &note);

/// Deletes a few of the tests of @p scope: those gone, none when there are no more.
std::optional<QList<StreamKey>> deleteSome(SqlConnection &connection, const TestScope &scope);

/// From now on the user is a deleted one, without shares and unknown by his device.
bool markDeleted(SqlConnection &connection, qint64 userId, qint64 now);

/// Deletes a few rows of a user marked deleted: how many, 0 when all are gone.
std::optional<qint64> eraseSome(SqlConnection &connection, qint64 userId);

/// Users whose deletion has not come to its end.
std::optional<QList<qint64>> unfinished(SqlConnection &connection);

std::optional<bool> addShare(SqlConnection &connection, qint64 userId, const Share &share);
std::optional<QList<Share>> shares(SqlConnection &connection, qint64 userId, qint64 now);
std::optional<bool> removeShare(SqlConnection &connection, qint64 userId, const QString &key);

} // namespace velometer::UserQueries
