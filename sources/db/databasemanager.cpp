#include "db/databasemanager.h"

#include "data/reportdocument.h"
#include "data/testdetails.h"
#include "db/databasestatements.h"
#include "db/transaction.h"
#include "utils/utils.h"

#include <QDir>
#include <QFile>
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

    if (!db.isValid()) {
        db = QSqlDatabase::addDatabase(u"QSQLITE"_s);
    }
    db.setDatabaseName(file);
    // A file that cannot be written opens all the same; only a write tells.
    if (!db.open() || !execute(u"BEGIN IMMEDIATE"_s) || !execute(u"ROLLBACK"_s)) {
        Utils::addLogEntry(u"Unable to open Database!"_s);
        db.close();
        return false;
    }
    // It holds positions and the device's identity.
    QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    // Readers of another program do not stop a writer, and what is committed survives a power cut.
    execute(u"PRAGMA journal_mode=WAL"_s);
    execute(u"PRAGMA synchronous=FULL"_s);
    if (checkDatabase()) {
        return true;
    }
    db.close();
    return false;
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
    return QFile::remove(file);
}

bool DatabaseManager::resetDB()
{
    Transaction transaction(db);
    if (!transaction.isOpen()) {
        return false;
    }
    recreateTables();
    return transaction.commit();
}

QSqlError DatabaseManager::lastError() const
{
    return db.lastError();
}

bool DatabaseManager::execute(const QString &statement)
{
    return QSqlQuery(db).exec(statement);
}

// One transaction: a program that starts at the same moment, or a kill, sees all of it or nothing.
// A version that cannot be read is no other version: only one that was read may wipe.
bool DatabaseManager::checkDatabase()
{
    Transaction transaction(db);
    Utils::addLogEntry(u"checkDatabase()"_s);
    QSqlQuery query(db);
    if (!transaction.isOpen() || !query.exec(COUNT_VERSION_TABLES) || !query.next()) {
        return false;
    }
    if (query.value(0).toInt() == 0) {
        query.finish();
        Utils::addLogEntry(u"Create Version Table..."_s);
        execute(CREATE_TABLE_VERSION);
        updateVersion();
        recreateTables();
        return transaction.commit();
    }
    if (!query.exec(SELECT_VERSION)) {
        return false;
    }
    const int version = query.next() ? query.value(0).toInt() : -1;
    if (query.lastError().isValid()) {
        return false;
    }
    query.finish();
    Utils::addLogEntry(u"Database Version: %1"_s.arg(version));
    execute(CREATE_TABLE_TESTINTERVALS);
    if (version != schemaVersion) {
        updateVersion();
        recreateTables();
    } else {
        createIndexes(); // a file from before there were any
    }
    return transaction.commit();
}

void DatabaseManager::updateVersion()
{
    execute(DELETE_FROM_VERSION);
    execute(QString(INSERT_INTO_VERSION).arg(schemaVersion));
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

qulonglong DatabaseManager::storeTest(const FinishedTest &test)
{
    return tests.store(test);
}

FinishedTest DatabaseManager::getTest(const DBTestResults &row)
{
    return tests.test(row);
}

std::unique_ptr<DBTestResults> DatabaseManager::getResultsById(qulonglong id)
{
    return tests.row(id);
}

std::vector<std::unique_ptr<DBTestResults>> DatabaseManager::getAllResults()
{
    return tests.rows();
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

std::unique_ptr<XMLData> DatabaseManager::getNextUnsentXMLFile(int lastId)
{
    QSqlQuery query(db);
    if (!query.exec(QString(SELECT_NEXTUNSENTXMLFILE).arg(lastId))) {
        Utils::addLogEntry(query.lastError().databaseText());
    }
    if (!query.next()) {
        return nullptr;
    }
    auto data = std::make_unique<XMLData>();
    data->identification = query.value(0).toInt();
    data->numberofretries = query.value(1).toInt();
    data->xml = ReportDocument::withoutUmlauts(query.value(2).toString());
    return data;
}

bool DatabaseManager::deleteUnsentXMLFile(int id)
{
    // Row ids are used again: a test that keeps one must not take the next report for its own.
    Transaction transaction(db);
    if (!transaction.isOpen()) {
        return false;
    }
    for (const auto &statement : {UPDATE_DELIVERED, DELETE_REPORTQUEUEID, DELETE_UNSENTXMLFILE}) {
        QSqlQuery query(db);
        if (!query.exec(QString(statement).arg(id))) {
            logSqlError(u"ERROR: %1 %2"_s, query.lastError());
            return false;
        }
    }
    return transaction.commit();
}

int DatabaseManager::insertOrUpdateXMLFile(const XMLData *data)
{
    const bool isNew = data->identification == -1;
    const QString retries = QString::number(data->numberofretries);
    const QString statement =
        isNew ? QString(INSERT_UNSENTXMLFILE).arg(retries, data->xml)
              : QString(UPDATE_UNSENTXMLFILE).arg(retries, QString::number(data->identification));
    QSqlQuery query(db);
    if (!query.exec(statement)) {
        logSqlError(u"ERROR: %1 %2"_s, query.lastError());
        return -1;
    }
    return isNew ? query.lastInsertId().toInt() : data->identification;
}

int DatabaseManager::countUnsentXMLFiles()
{
    QSqlQuery query(db);
    query.exec(COUNT_UNSENTXMLFILES);
    return query.next() ? query.value(0).toInt() : 0;
}

} // namespace velometer
