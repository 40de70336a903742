#pragma once

#include "reports/sqliteconnection.h"

namespace velometer::SqliteSchema {

/// Brings the file behind @p connection to this program's schema and settings, one version at a
/// time, and hides @p file from other users. Empty on success, else why not.
QString bringForward(SqliteConnection &connection, const QString &file);

/// Whether the data base is of this program's version.
bool isCurrent(SqlConnection &connection);

} // namespace velometer::SqliteSchema
