#pragma once

#include "data/result.h"
#include "data/xmldata.h"
#include "db/dbtestresults.h"

#include <QObject>
#include <QSqlDatabase>
#include <QSqlError>
#include <QString>

#include <memory>
#include <vector>

namespace velometer {

class TestDetails;
class TestResults;

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
/// value. Texts are put into the statements as they are: one with an apostrophe fails its
/// statement, so a text from outside loses its apostrophes before it comes here. Main thread only.
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

    /// The new row's id, 0 when it was not stored.
    qulonglong storeTestResults(const TestResults *results);
    /// Replaces the details of the test; false when one of them was not stored.
    bool storeTestDetails(const TestDetails *details);

    std::unique_ptr<DBTestResults> getResultsById(qulonglong id); ///< null when absent
    /// Newest series and test first.
    std::vector<std::unique_ptr<DBTestResults>> getAllResults();
    /// Null when the test has no details.
    std::unique_ptr<TestDetails> getDetailsById(qulonglong id);

    /// Keeps the bytes per 100 ms of one phase of a test, in place of those it had; false when they
    /// were not stored.
    bool storeIntervals(qulonglong id, int resulttype, const IntervalTable &bytes);
    /// Empty when the test has none.
    IntervalTable getIntervals(qulonglong id, int resulttype);

    double getTotalMegabytesInDB();
    double getTotalMegabytesOverMobileInDB();

    bool locationsAvailable();
    /// Newest test first.
    std::vector<TestLocation> getLocationsOfTests();

    /// The first queued report after row @p lastId that has been tried fewer than 20 times; null
    /// when there is none.
    std::unique_ptr<XMLData> getNextUnsentXMLFile(int lastId);
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
    bool execute(const QString &statement);

    QSqlDatabase db;
};

/// The one database of the process: there before main() begins, deleted by it at its end.
extern DatabaseManager *gDB;

} // namespace velometer
