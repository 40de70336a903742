#pragma once

#include "reports/reportstore.h"
#include "reports/sqlconnection.h"

/// The tracks of users. Each runs inside the transaction of its caller; nothing on failure, whose
/// reason is the connection's problem().
namespace velometer::TrackQueries {

std::optional<ReportStore::TrackTaken> take(SqlConnection &connection, qint64 userId,
                                            const TrackPart &part);
std::optional<QList<Track>> all(SqlConnection &connection, qint64 userId);
std::optional<QList<TrackPart>> part(SqlConnection &connection, qint64 userId, const QString &id,
                                     qint64 first);
std::optional<bool> remove(SqlConnection &connection, qint64 userId, const QString &id);

/// Deletes one track of a user, whichever: false when he has none.
std::optional<bool> removeAny(SqlConnection &connection, qint64 userId);

} // namespace velometer::TrackQueries
