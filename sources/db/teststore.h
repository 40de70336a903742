#pragma once

#include "data/finishedtest.h"
#include "data/result.h"
#include "db/dbtestresults.h"

#include <QSqlDatabase>
#include <QSqlQuery>

#include <memory>
#include <vector>

namespace velometer {

class TestDetails;

/// The tests in the database: a row of testresults each, details by key, and lists of numbers
/// beside them. Writes one in one transaction and reads it back as the same value. SQL errors go to
/// the diagnostic log. DatabaseManager is how others reach it.
class TestStore
{
public:
    /// @p connection is borrowed; it is open whenever one of these is called.
    explicit TestStore(QSqlDatabase &connection)
        : db(connection)
    {}

    /// The new row's id; 0, and nothing is stored, when a part of it failed.
    qulonglong store(const FinishedTest &test);

    std::vector<std::unique_ptr<DBTestResults>> rows();  ///< newest series and test first
    std::unique_ptr<DBTestResults> row(qulonglong id);   ///< null when absent
    std::unique_ptr<TestDetails> details(qulonglong id); ///< null when it has none
    QList<qint64> list(qulonglong id, int number);       ///< empty when it has none

    /// The whole test of @p row. What older programs did not store stays unknown.
    FinishedTest test(const DBTestResults &row);

private:
    bool storeRow(FinishedTest &test);
    bool storeDetails(const FinishedTest &test);
    bool storeLists(const FinishedTest &test);
    void readLists(FinishedTest &test);

    QSqlDatabase &db;
};

} // namespace velometer
