#pragma once

#include "reports/sqlconnection.h"

/// What is too old goes, a few rows a transaction, so that reports are not held up. Each answers
/// how many rows it has dealt with, 0 when nothing is left to do; nothing on failure.
namespace velometer::RetentionQueries {

/// Reports that came before @p oldest (ms since 1970), with their streams.
std::optional<qint64> purgeReports(SqlConnection &connection, qint64 oldest);
/// Tracks that ended before, or began when they have no end.
std::optional<qint64> purgeTracks(SqlConnection &connection, qint64 oldest);
/// The documents alone.
std::optional<qint64> purgeDocuments(SqlConnection &connection, qint64 oldest);

} // namespace velometer::RetentionQueries
