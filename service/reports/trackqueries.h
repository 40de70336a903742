#pragma once

#include "reports/reportstore.h"
#include "reports/sqliteconnection.h"

/// The tracks of users. Each runs inside the transaction of its caller; nothing on failure, whose
/// reason is the connection's problem().
namespace velometer::TrackQueries {

std::optional<ReportStore::TrackTaken> take(SqliteConnection &connection, qint64 userId,
                                            const TrackPart &part);
std::optional<QList<Track>> all(SqliteConnection &connection, qint64 userId);
std::optional<QList<TrackPart>> part(SqliteConnection &connection, qint64 userId, const QString &id,
                                     qint64 first);
std::optional<bool> remove(SqliteConnection &connection, qint64 userId, const QString &id);

/// Deletes one track of a user, whichever: false when he has none.
std::optional<bool> removeAny(SqliteConnection &connection, qint64 userId);

} // namespace velometer::TrackQueries
