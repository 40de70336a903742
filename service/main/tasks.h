#pragma once

#include "http/serveroptions.h"

#include <QString>

#include <cstdio>

/// What velometer-service does besides serving: each comes to an end by itself. What was asked for
/// goes to standard output, what went wrong to standard error; the status is 0, or 1 when it could
/// not be done.
namespace velometer::Tasks {

/// Brings the PostgreSQL data base @p to to what the SQLite file @p from has.
int migrate(const QString &from, const QString &to);

/// Deletes all that belongs to @p user, for good, beside a running service.
int forget(const StoreOptions &store, qint64 user);

/// Writes all that is kept of @p user, one JSON object a line, each with its "table".
int exportUser(const StoreOptions &store, qint64 user);

/// Writes how much is in the store.
int stats(const StoreOptions &store);

/// Looks whether a service could do its work here with @p options, without starting one: a line
/// for each thing, and what is to be done where something is wrong.
int check(const ServerOptions &options);

} // namespace velometer::Tasks
