#pragma once

#include "reports/reportstore.h"
#include "reports/sqlconnection.h"
#include "reports/testtable.h"

/// What is read about a user's tests. Each runs inside the transaction of its caller; nothing on
/// failure, whose reason is the connection's problem().
namespace velometer::TestQueries {

/// An SQL condition on rows of reports, and its values.
struct Condition
{
    QString text;
    QVariantList values;
};

Condition condition(const TestScope &scope);

/// The rows of @p ids that are there, in the order of the ids.
std::optional<QList<TestRow>> rows(SqlConnection &connection, const QList<qint64> &ids);

/// Adds the tests of @p userId with greater row ids than those in @p table.
bool fill(SqlConnection &connection, qint64 userId, TestTable &table);

std::optional<QList<ReportStore::StoredTest>> test(SqlConnection &connection,
                                                   const TestScope &scope, const TestName &name);
std::optional<ReportStore::Documents> documents(SqlConnection &connection, const TestScope &scope,
                                                const QString &after);

/// Nothing also when no such stream was served, or when nobody could tell.
std::optional<StreamRecord> stream(SqlConnection &connection, const StreamKey &test,
                                   Direction direction);

} // namespace velometer::TestQueries
