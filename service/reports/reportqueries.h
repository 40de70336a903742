#pragma once

#include "reports/reportstore.h"
#include "reports/sqlconnection.h"

/// What the store asks of its file. Each runs inside the transaction of its caller; a failure's
/// reason is the connection's problem().
namespace velometer::ReportQueries {

/// What findOrCreateUser() locks: like a user's id, of a device.
qint64 lockOf(const QString &uuid);

/// The user of the device with that hash.
std::optional<ReportStore::User> findOrCreateUser(SqlConnection &connection, const QString &uuid);

/// A report's text without the number of the device that it names, wherever that stands in it.
QString withoutDevice(QString document);

/// Failed when the database refuses, Deleted when the user is gone for good. Holds the report's
/// rates against the streams recorded.
ReportStore::Outcome insert(SqlConnection &connection, Report report);

/// Fills, for some of the reports from before version 4 of the schema, the columns that it brought:
/// how many they were, 0 when all are filled.
std::optional<qint64> fillColumns(SqlConnection &connection);

/// Takes the place of an earlier stream of the same test and direction.
bool insertStream(SqlConnection &connection, const StreamRecord &stream);

/// Forgets some of the streams without a report that ended before @p oldest, in ms since 1970: how
/// many they were.
std::optional<qint64> forgetStreams(SqlConnection &connection, qint64 oldest);

} // namespace velometer::ReportQueries
