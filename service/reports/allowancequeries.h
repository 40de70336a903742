#pragma once

#include "limits/allowances.h"
#include "reports/sqlconnection.h"

/// What subscribers have spent at all services that share the data base. Nothing on failure.
namespace velometer::AllowanceQueries {

/// Everybody's levels that are not empty by now.
std::optional<std::vector<Allowances::Level>> all(SqlConnection &connection,
                                                  const Allowances::Limits &limits, qint64 now);

/// Adds @p news to what is there; the levels that come of it.
std::optional<std::vector<Allowances::Level>> add(SqlConnection &connection,
                                                  const Allowances::Limits &limits,
                                                  const std::vector<Allowances::Level> &news);

/// Forgets some that were spent before @p oldest (ms since 1970): how many.
std::optional<qint64> forget(SqlConnection &connection, qint64 oldest);

} // namespace velometer::AllowanceQueries
