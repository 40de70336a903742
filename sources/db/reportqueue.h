#pragma once

#include "data/xmldata.h"

#include <QSqlDatabase>

#include <memory>
#include <optional>

namespace velometer {

/// The reports in the database that the service has not taken yet. SQL errors go to the diagnostic
/// log. DatabaseManager is how others reach it.
class ReportQueue
{
public:
    /// @p connection is borrowed; it is open whenever one of these is called.
    explicit ReportQueue(QSqlDatabase &connection)
        : db(connection)
    {}

    std::unique_ptr<XMLData> next(qint64 lastId);
    bool remove(qint64 id, bool delivered);
    std::optional<qint64> insertOrUpdate(const XMLData &report);
    int count();

private:
    QSqlDatabase &db;
};

} // namespace velometer
