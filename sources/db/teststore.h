#pragma once

#include "data/result.h"
#include "db/dbtestresults.h"
#include "db/historypoint.h"
#include "figures/finishedtest.h"

#include <QSqlDatabase>
#include <QSqlQuery>

#include <memory>
#include <vector>

namespace velometer {

class ReportQueue;
class TestDetails;
struct XMLData;

/// The tests in the database: a row of testresults each, details by key, and lists of numbers
/// beside them. Writes one in one transaction and reads it back as the same value. SQL errors go to
/// the diagnostic log. DatabaseManager is how others reach it.
class TestStore
{
public:
    /// Both are borrowed; the connection is open whenever one of these is called.
    TestStore(QSqlDatabase &connection, ReportQueue &reportQueue)
        : db(connection)
        , reports(reportQueue)
    {}

    /// See DatabaseManager::storeTest.
    qulonglong store(const FinishedTest &test, XMLData *report);
    /// Stores @p test with @p report, if there is one, unless it is there already; false when that
    /// failed.
    bool takeIn(const FinishedTest &test, XMLData *report);

    /// See DatabaseManager::deleteTests and countReportsOf.
    bool remove(const QList<qulonglong> &ids);
    int countReports(const QList<qulonglong> &ids);

    std::vector<std::unique_ptr<DBTestResults>> rows();  ///< newest series and test first
    std::unique_ptr<DBTestResults> row(qulonglong id);   ///< null when absent
    std::unique_ptr<DBTestResults> newest();             ///< null when there is none
    std::unique_ptr<TestDetails> details(qulonglong id); ///< null when it has none
    QList<qint64> list(qulonglong id, int number);       ///< empty when it has none
    std::vector<HistoryPoint> history();                 ///< in the order of time

    /// The whole test of @p row. What older programs did not store stays unknown.
    FinishedTest test(const DBTestResults &row);

private:
    bool storeAll(FinishedTest &test, XMLData *report);
    bool storeRow(FinishedTest &test);
    bool storeDetails(const FinishedTest &test);
    bool storeLists(const FinishedTest &test);
    void readLists(FinishedTest &test);

    QSqlDatabase &db;
    ReportQueue &reports;
};

} // namespace velometer
