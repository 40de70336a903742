#pragma once

#include "reports/reportstore.h"
#include "reports/sqliteconnection.h"

/// What the store asks of its file. Each runs inside the transaction of its caller; a failure's
/// reason is the connection's problem().
namespace velometer::ReportQueries {

std::optional<ReportStore::User> findOrCreateUser(SqliteConnection &connection,
                                                  const QString &uuid);

/// Failed when the database refuses, Deleted when the user is gone for good. Holds the report's
/// rates against the streams recorded.
ReportStore::Outcome insert(SqliteConnection &connection, Report report);

/// Fills, for some of the reports from before version 4 of the schema, the columns that it brought:
/// how many they were, 0 when all are filled.
std::optional<qint64> fillColumns(SqliteConnection &connection);

/// Takes the place of an earlier stream of the same test and direction.
bool insertStream(SqliteConnection &connection, const StreamRecord &stream);

/// Forgets the streams without a report that ended before @p oldest, in ms since 1970.
bool forgetStreams(SqliteConnection &connection, qint64 oldest);

} // namespace velometer::ReportQueries
