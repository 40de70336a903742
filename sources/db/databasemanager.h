#pragma once

#include "data/result.h"
#include "data/xmldata.h"
#include "db/dbtestresults.h"
#include "db/reportqueue.h"
#include "db/teststore.h"
#include "db/trackstore.h"

#include <QObject>
#include <QSqlDatabase>
#include <QSqlError>
#include <QString>

#include <memory>
#include <optional>
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
/// value. So it does when another program holds the store locked: nothing here waits, StoreWriter
/// does. A report is put into its statement as it is: an apostrophe fails it, so a report has none.
/// Main thread only.
class DatabaseManager : public QObject
{
    Q_OBJECT

public:
    explicit DatabaseManager(QObject *parent);
    ~DatabaseManager() override;

    /// Directory of the database file; the platform's per-application data directory unless set.
    static QString database_path;
    static QString databaseFile();

    /// Opens the file, creating directory and tables as needed. A file of another version is set
    /// aside: renamed, with its version in the name, and an empty one takes its place. False, and
    /// nothing has changed, when the file cannot be opened, read, written or set aside.
    bool openDB();
    /// Where the last openDB() has set a file of another version aside; empty when it has not.
    QString getAsideFile() const { return asideFile; }
    bool isOpen() const;
    /// Closes the database and removes its file.
    bool deleteDB();
    /// Recreates all tables empty; false, and everything is as it was, when that failed.
    bool resetDB();
    QSqlError lastError() const;

    /// Stores the whole test, and puts @p report, which has no row yet, into the queue as the
    /// test's own; it then knows its row. The new test's row; 0, and nothing is stored, when a part
    /// failed.
    qulonglong storeTest(const FinishedTest &test, XMLData *report = nullptr);
    /// For a test that storeTest() has not taken because another program holds the store: keeps it
    /// beside the store, which takes it in with its next test or when it is opened again. False
    /// when that failed too.
    static bool keepForLater(const FinishedTest &test, const XMLData &report);
    /// The whole test of @p row: what was stored of it, but for what only the running program knew.
    FinishedTest getTest(const DBTestResults &row);

    std::unique_ptr<DBTestResults> getResultsById(qulonglong id); ///< null when absent
    std::unique_ptr<DBTestResults> getNewestResults(); ///< of the test stored last, or null
    /// Another text whenever the tests in the store are others, whoever has changed them.
    QString getResultsState();
    int countResults();
    /// Newest series and test first.
    std::vector<std::unique_ptr<DBTestResults>> getAllResults();
    /// Of all stored tests whose time is known, in its order; short, for charts of many.
    std::vector<HistoryPoint> getHistory();
    /// Deletes these tests with everything that belongs to them, their reports that still wait
    /// included; a row that is not there is no failure. False, and nothing is deleted, when a part
    /// failed. Not while a test runs: a report on its way would not find its row any more.
    bool deleteTests(const QList<qulonglong> &ids);
    /// How many of their reports still wait.
    int countReportsOf(const QList<qulonglong> &ids);
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
    /// when there is none. Rows have any number of 64 bits.
    std::unique_ptr<XMLData> getNextUnsentXMLFile(qint64 lastId);
    /// For a report that was delivered, which marks the test it came from, or will never be.
    bool deleteUnsentXMLFile(qint64 id, bool delivered = true);
    /// Inserts a report that has no row yet; else updates its row's count of attempts, never its
    /// document. The row; none, and nothing changed, when the statement failed. The record itself
    /// stays as it is.
    std::optional<qint64> insertOrUpdateXMLFile(const XMLData *data);
    /// Reports that wait and will still be tried.
    int countUnsentXMLFiles();

    /// Lives as long as this; the database is open whenever it is used.
    TrackStore &tracks() { return trackStore; }

private:
    bool connectFile();
    std::optional<int> readVersion();
    bool setAside();
    void takeInSpares();
    bool checkTables();
    void recreateTables();
    void createIndexes();
    bool execute(const QString &statement);

    QSqlDatabase db;
    QString asideFile;
    ReportQueue reports{db};
    TestStore tests{db, reports};
    TrackStore trackStore{db};
};

/// The one database of the process: there before main() begins, deleted by it at its end.
extern DatabaseManager *gDB;

} // namespace velometer
