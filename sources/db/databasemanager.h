#pragma once

#include "data/result.h"
#include "data/xmldata.h"
#include "db/dbtestresults.h"
#include "db/teststore.h"

#include <QObject>
#include <QSqlDatabase>
#include <QSqlError>
#include <QString>

#include <memory>
#include <vector>

namespace velometer {

class TestDetails;

/// Where one stored test was made, for a map: one record per test that has a position.
struct TestLocation
{
    qulonglong myTestId = 0;
    double latitude = 0;
    double longitude = 0;
    double accuracy = 0;      ///< m, 0 when unknown
    double downloadSpeed = 0; ///< bit/s
    double uploadSpeed = 0;   ///< bit/s
    QString connectionType;   ///< untranslated
};

/// The results, details and waiting reports on this device, in one SQLite file that the programs of
/// the family share. What a store operation has acknowledged survives a kill at any moment.
///
/// Nothing is thrown: an SQL error goes to the diagnostic log and the operation returns its neutral
/// value. A report is put into its statement as it is: an apostrophe fails it, so a report has
/// none. Main thread only.
class DatabaseManager : public QObject
{
    Q_OBJECT

public:
    explicit DatabaseManager(QObject *parent);
    ~DatabaseManager() override;

    /// Directory of the database file; the platform's per-application data directory unless set.
    static QString database_path;
    static QString databaseFile();

    /// Opens the file, creating directory and tables as needed. Tables of another version are
    /// wiped. False, and nothing is wiped, when the file cannot be opened, read or written.
    bool openDB();
    bool isOpen() const;
    /// Closes the database and removes its file.
    bool deleteDB();
    /// Recreates all tables empty; false, and everything is as it was, when that failed.
    bool resetDB();
    QSqlError lastError() const;

    /// Stores the whole test. The new row's id; 0, and nothing is stored, when a part of it failed.
    qulonglong storeTest(const FinishedTest &test);
    /// The whole test of @p row: what was stored of it, but for what only the running program knew.
    FinishedTest getTest(const DBTestResults &row);

    std::unique_ptr<DBTestResults> getResultsById(qulonglong id); ///< null when absent
    /// Newest series and test first.
    std::vector<std::unique_ptr<DBTestResults>> getAllResults();
    /// Null when the test has no details.
    std::unique_ptr<TestDetails> getDetailsById(qulonglong id);

    /// Bytes per 100 ms of one phase of a test; empty when it has none.
    IntervalTable getIntervals(qulonglong id, int resulttype);

    double getTotalMegabytesInDB();
    double getTotalMegabytesOverMobileInDB();

    bool locationsAvailable();
    /// Newest test first.
    std::vector<TestLocation> getLocationsOfTests();

    /// The first queued report after row @p lastId that has been tried fewer than 20 times; null
    /// when there is none.
    std::unique_ptr<XMLData> getNextUnsentXMLFile(int lastId);
    /// For a report that was delivered: the test it came from is marked so.
    bool deleteUnsentXMLFile(int id);
    /// Inserts a report that has no row yet; else updates its row's count of attempts, never its
    /// document. Returns the row; -1, and nothing changed, when the statement failed. The record
    /// itself stays as it is.
    int insertOrUpdateXMLFile(const XMLData *data);
    /// Reports that wait and will still be tried.
    int countUnsentXMLFiles();

private:
    bool checkDatabase();
    void updateVersion();
    void recreateTables();
    void createIndexes();
    bool execute(const QString &statement);

    QSqlDatabase db;
    TestStore tests{db};
};

/// The one database of the process: there before main() begins, deleted by it at its end.
extern DatabaseManager *gDB;

} // namespace velometer
