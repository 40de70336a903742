#pragma once

#include "reports/sqldatabase.h"

#include <memory>

namespace velometer {

/// A connection for a task, to a data base that exists and has this program's schema; a service may
/// use it meanwhile. Null on failure, and @p problem then says why.
struct OpenStore
{
    std::unique_ptr<SqlDatabase> database;
    std::unique_ptr<SqlConnection> connection;

    OpenStore(const QString &name, bool writes, QString *problem);
};

} // namespace velometer
