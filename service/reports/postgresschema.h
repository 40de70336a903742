#pragma once

#include "reports/sqlconnection.h"

/// The tables of a store in PostgreSQL.
namespace velometer::PostgresSchema {

/// Makes or migrates what is there, one program at a time: others wait. Why it cannot; empty when
/// it could.
QString bringForward(SqlConnection &connection);

/// Whether the data base is of this program's version.
bool isCurrent(SqlConnection &connection);

} // namespace velometer::PostgresSchema
