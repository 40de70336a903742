#include "db/databasemanager.h"

#include "data/testdetails.h"
#include "db/databasestatements.h"
#include "db/sparestore.h"
#include "db/transaction.h"
#include "utils/utils.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

using namespace DatabaseStatements;

DatabaseManager *gDB = new DatabaseManager(nullptr);

QString DatabaseManager::database_path;

namespace {

const QString fileName = u"orvakVelometer.db.sqlite"_s;
/// How long a start may wait for a program that starts at the same moment.
constexpr int openingPatienceMs = 2000;
constexpr double mebiPerKibi = 0.0009765625;

} // namespace

DatabaseManager::DatabaseManager(QObject *parent)
    : QObject(parent)
{}

DatabaseManager::~DatabaseManager()
{
    if (!db.isValid()) {
        return;
    }
    const QString connection = db.connectionName();
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

QString DatabaseManager::databaseFile()
{
    if (database_path.isEmpty()) {
        database_path = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    }
    return QDir(database_path).filePath(fileName);
}

bool DatabaseManager::openDB()
{
    const QString file = databaseFile();
    Utils::addLogEntry(u"Database Path: %1"_s.arg(database_path));
    if (!QDir(database_path).exists()) {
        Utils::addLogEntry(u"Directory is not readable --> trying to create directory"_s);
        QString path = QDir::isAbsolutePath(database_path) ? u"/"_s : u"."_s;
        const QStringList components = database_path.split(u'/', Qt::SkipEmptyParts);
        for (const QString &component : components) {
            const QDir parent(path);
            path = parent.filePath(component);
            if (!QDir(path).exists() && parent.mkdir(component)) {
                Utils::addLogEntry(u"Directory created: %1"_s.arg(path));
            }
        }
    }

    asideFile.clear();
    if (!connectFile() || !setAside()) {
        Utils::addLogEntry(u"Unable to open Database!"_s);
        db.close();
        return false;
    }
    // It holds positions and the device's identity.
    QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    // Readers of another program do not stop a writer, and what is committed survives a power cut.
    execute(u"PRAGMA journal_mode=WAL"_s);
    execute(u"PRAGMA synchronous=FULL"_s);
    const bool complete = checkTables();
    execute(u"PRAGMA busy_timeout=0"_s);
    if (!complete) {
        db.close();
    } else {
        takeInSpares();
    }
    return complete;
}

bool DatabaseManager::connectFile()
{
    if (!db.isValid()) {
        db = QSqlDatabase::addDatabase(u"QSQLITE"_s);
    }
    db.close();
    db.setDatabaseName(databaseFile());
    // The driver would block the event loop for seconds.
    db.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=0"_s);
    if (!db.open()) {
        return false;
    }
    // A file that cannot be written opens all the same; only a write tells.
    QSqlQuery probe(db);
    const bool usable =
        probe.exec(u"BEGIN IMMEDIATE"_s) ? execute(u"ROLLBACK"_s) : isLock(probe.lastError());
    // While another program makes the tables even reading has to wait.
    execute(u"PRAGMA busy_timeout=%1"_s.arg(openingPatienceMs));
    return usable;
}

bool DatabaseManager::isOpen() const
{
    return db.isOpen();
}

bool DatabaseManager::deleteDB()
{
    db.close();
    const QString file = databaseFile();
    // What another program's connection has left beside it would come back in the next database.
    QFile::remove(file + "-wal"_L1);
    QFile::remove(file + "-shm"_L1);
    SpareStore::remove(file);
    return QFile::remove(file);
}

bool DatabaseManager::resetDB()
{
    Transaction transaction(db);
    if (!transaction.isOpen()) {
        return false;
    }
    recreateTables();
    if (!transaction.commit()) {
        return false;
    }
    SpareStore::remove(databaseFile());
    return true;
}

QSqlError DatabaseManager::lastError() const
{
    return db.lastError();
}

bool DatabaseManager::execute(const QString &statement)
{
    return QSqlQuery(db).exec(statement);
}

// None when it cannot be read, which is no other version; 0 of a file without tables, -1 of one
// that does not tell.
std::optional<int> DatabaseManager::readVersion()
{
    QSqlQuery query(db);
    if (!query.exec(COUNT_TABLES) || !query.next()) {
        return std::nullopt;
    }
    const int tables = query.value(0).toInt();
    if (query.value(1).toInt() == 0) {
        return tables == 0 ? 0 : -1;
    }
    if (!query.exec(SELECT_VERSION)) {
        return std::nullopt;
    }
    const int version = query.next() ? query.value(0).toInt() : -1;
    return query.lastError().isValid() ? std::nullopt : std::optional(version);
}

// True when the file is of this version or empty.
bool DatabaseManager::setAside()
{
    const auto isOurs = [](std::optional<int> version) {
        return version == schemaVersion || version == 0;
    };
    Utils::addLogEntry(u"checkDatabase()"_s);
    auto version = readVersion();
    Utils::addLogEntry(u"Database Version: %1"_s.arg(version.value_or(-1)));
    if (!version || isOurs(version)) {
        return version.has_value();
    }
    // A program that starts at the same moment must not set the new file aside.
    const QString file = databaseFile();
    QLockFile lock(file + ".aside"_L1);
    if (!lock.tryLock(openingPatienceMs) || !connectFile()) {
        return false;
    }
    version = readVersion();
    if (!version || isOurs(version)) {
        return version.has_value();
    }
    db.close();
    const QString name = *version < 0 ? u"unknown"_s : QString::number(*version);
    QString aside;
    for (int number = 1; aside.isEmpty() || QFile::exists(aside); ++number) {
        const QString copy = number == 1 ? QString() : u"-%1"_s.arg(number);
        aside = u"%1.version-%2%3"_s.arg(file, name, copy);
    }
    // First what belongs to it: beside the new file it would be taken for that one's.
    for (const QString &part : {u"-wal"_s, u"-shm"_s}) {
        QFile::rename(file + part, aside + part);
    }
    if (!QFile::rename(file, aside)) {
        for (const QString &part : {u"-wal"_s, u"-shm"_s}) {
            QFile::rename(aside + part, file + part);
        }
        return false;
    }
    Utils::addLogEntry(u"Database of version %1 set aside: %2"_s.arg(name, aside));
    asideFile = aside;
    return connectFile();
}

// One transaction: a program that starts at the same moment, or a kill, sees all of it or nothing.
bool DatabaseManager::checkTables()
{
    if (readVersion() != 0) {
        // A file from before there were any.
        execute(CREATE_TABLE_TESTINTERVALS);
        trackStore.createTables();
        createIndexes();
        return true;
    }
    Transaction transaction(db);
    if (!transaction.isOpen() || !readVersion()) {
        return false;
    }
    if (readVersion() == 0) {
        Utils::addLogEntry(u"Create Version Table..."_s);
        execute(CREATE_TABLE_VERSION);
        execute(DELETE_FROM_VERSION);
        execute(QString(INSERT_INTO_VERSION).arg(schemaVersion));
        recreateTables();
        trackStore.createTables();
    }
    return transaction.commit();
}

void DatabaseManager::recreateTables()
{
    Utils::addLogEntry(u"recreateTables()"_s);
    const struct
    {
        QLatin1StringView name;
        QLatin1StringView statement;
    } steps[] = {
        {"DROP_TABLE_TESTRESULTS"_L1, DROP_TABLE_TESTRESULTS},
        {"CREATE_TABLE_TESTRESULTS"_L1, CREATE_TABLE_TESTRESULTS},
        {"DROP_TABLE_TESTDETAILS"_L1, DROP_TABLE_TESTDETAILS},
        {"CREATE_TABLE_TESTDETAILS"_L1, CREATE_TABLE_TESTDETAILS},
        {"DROP_TABLE_XMLFILES"_L1, DROP_TABLE_XMLFILES},
        {"CREATE_TABLE_XMLFILES"_L1, CREATE_TABLE_XMLFILES},
        {"CREATE_TABLE_TESTINTERVALS"_L1, CREATE_TABLE_TESTINTERVALS},
        {"DELETE_ALL_TESTINTERVALS"_L1, DELETE_ALL_TESTINTERVALS},
    };
    for (const auto &step : steps) {
        QSqlQuery query(db);
        if (!query.exec(step.statement)) {
            logSqlError("SQLError-"_L1 + step.name + ": %1 %2"_L1, query.lastError());
        }
    }
    createIndexes();
}

void DatabaseManager::createIndexes()
{
    execute(CREATE_INDEX_TOTALBYTES);
    execute(CREATE_INDEX_REPORTQUEUEID);
}

qulonglong DatabaseManager::storeTest(const FinishedTest &test, XMLData *report)
{
    const qulonglong row = tests.store(test, report);
    if (row > 0) {
        takeInSpares();
    }
    return row;
}

bool DatabaseManager::keepForLater(const FinishedTest &test, const XMLData &report)
{
    return SpareStore::keep(databaseFile(), test, report);
}

void DatabaseManager::takeInSpares()
{
    SpareStore::handOver(databaseFile(), [this](const FinishedTest &test, XMLData *report) {
        return tests.takeIn(test, report);
    });
}

FinishedTest DatabaseManager::getTest(const DBTestResults &row)
{
    return tests.test(row);
}

std::unique_ptr<DBTestResults> DatabaseManager::getResultsById(qulonglong id)
{
    return tests.row(id);
}

std::unique_ptr<DBTestResults> DatabaseManager::getNewestResults()
{
    return tests.newest();
}

std::vector<std::unique_ptr<DBTestResults>> DatabaseManager::getAllResults()
{
    return tests.rows();
}

std::vector<HistoryPoint> DatabaseManager::getHistory()
{
    return tests.history();
}

bool DatabaseManager::deleteTests(const QList<qulonglong> &ids)
{
    return tests.remove(ids);
}

int DatabaseManager::countReportsOf(const QList<qulonglong> &ids)
{
    return tests.countReports(ids);
}

QString DatabaseManager::getResultsState()
{
    QSqlQuery query(db);
    return query.exec(SELECT_RESULTSSTATE) && query.next() ? query.value(0).toString() : QString();
}

int DatabaseManager::countResults()
{
    return getResultsState().section(u'/', 0, 0).toInt();
}

std::unique_ptr<TestDetails> DatabaseManager::getDetailsById(qulonglong id)
{
    return tests.details(id);
}

IntervalTable DatabaseManager::getIntervals(qulonglong id, int resulttype)
{
    IntervalTable bytes;
    const QList<qint64> list = tests.list(id, resulttype);
    for (int i = 0; i < list.size(); ++i) {
        bytes.insert(i, std::max<qint64>(0, list.at(i)));
    }
    return bytes;
}

double DatabaseManager::getTotalMegabytesInDB()
{
    QSqlQuery query(db);
    query.exec(QString(SELECT_TOTALMEGABYTEINDB).arg("totalBytes"_L1));
    return query.next() ? query.value(0).toDouble() * mebiPerKibi * mebiPerKibi : 0.0;
}

double DatabaseManager::getTotalMegabytesOverMobileInDB()
{
    QSqlQuery query(db);
    query.exec(QString(SELECT_TOTALMEGABYTESMOBILEINDB).arg("totalBytes"_L1));
    return query.next() ? query.value(0).toDouble() * mebiPerKibi * mebiPerKibi : 0.0;
}

bool DatabaseManager::locationsAvailable()
{
    QSqlQuery query(db);
    query.exec(QString(SELECT_NUMBEROFRESULTSWITHLOCATIONS).arg("deviceLatitude"_L1));
    const int rows = query.next() ? query.value(0).toInt() : 0;
    Utils::addLogEntry(u"Number of rows with locations: %1"_s.arg(rows));
    return rows > 0;
}

std::vector<TestLocation> DatabaseManager::getLocationsOfTests()
{
    std::vector<TestLocation> locations;
    QSqlQuery query(db);
    if (!query.exec(QString(SELECT_ALL_LOCATIONS)
                        .arg("deviceLatitude"_L1, "deviceLongitude"_L1, "deviceAccuracyVert"_L1))) {
        logSqlError(u"ERROR: %1 %2"_s, query.lastError());
    }
    while (query.next()) {
        const qulonglong id = query.value(u"id"_s).toULongLong();
        if (locations.empty() || locations.back().myTestId != id) {
            TestLocation location;
            location.myTestId = id;
            location.downloadSpeed = query.value(u"downloadSpeed"_s).toDouble();
            location.uploadSpeed = query.value(u"uploadSpeed"_s).toDouble();
            location.connectionType = query.value(u"connectionType"_s).toString();
            locations.push_back(location);
        }
        const QString key = query.value(u"key"_s).toString();
        const double value = query.value(u"double"_s).toDouble();
        if (key == "deviceLatitude"_L1) {
            locations.back().latitude = value;
        } else if (key == "deviceLongitude"_L1) {
            locations.back().longitude = value;
        } else {
            locations.back().accuracy = value;
        }
    }
    // A test without a position may have an accuracy all the same.
    std::erase_if(locations, [](const TestLocation &location) {
        return location.latitude == 0.0 && location.longitude == 0.0;
    });
    return locations;
}

std::unique_ptr<XMLData> DatabaseManager::getNextUnsentXMLFile(qint64 lastId)
{
    return reports.next(lastId);
}

bool DatabaseManager::deleteUnsentXMLFile(qint64 id, bool delivered)
{
    return reports.remove(id, delivered);
}

std::optional<qint64> DatabaseManager::insertOrUpdateXMLFile(const XMLData *data)
{
    return reports.insertOrUpdate(*data);
}

int DatabaseManager::countUnsentXMLFiles()
{
    return reports.count();
}

} // namespace velometer
