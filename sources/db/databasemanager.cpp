#include "db/databasemanager.h"

#include "data/reportdocument.h"
#include "data/testdetails.h"
#include "data/testresults.h"
#include "db/databasestatements.h"
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
/// Far more than a test has; the file may come from anywhere.
constexpr int maxIntervalsText = 10'000;
constexpr double mebiPerKibi = 0.0009765625;

void logError(const QString &text, const QSqlError &error)
{
    Utils::addLogEntry(text.arg(error.databaseText(), error.driverText()));
}

/// A transaction that a failed statement does not end: what the others stored is kept by commit().
/// Without commit() all of it is undone.
class Transaction
{
public:
    explicit Transaction(QSqlDatabase &connection)
        : db(connection)
        , open(run(u"BEGIN IMMEDIATE"_s))
    {}
    ~Transaction()
    {
        if (open) {
            run(u"ROLLBACK"_s);
        }
    }
    Q_DISABLE_COPY_MOVE(Transaction)

    bool isOpen() const { return open; }

    /// True once everything is on the disk.
    bool commit()
    {
        const bool committed = open && run(u"COMMIT"_s);
        if (committed) {
            open = false;
        }
        return committed;
    }

private:
    bool run(const QString &statement)
    {
        QSqlQuery query(db);
        const bool done = query.exec(statement);
        if (!done) {
            logError(u"ERROR: %1 %2"_s, query.lastError());
        }
        return done;
    }

    QSqlDatabase &db;
    bool open;
};

QString wholeNumber(double value)
{
    return QString::number(value, 'f', 0);
}

/// The columns of the results table in the order in which it is created: looking them up by name
/// would take longer than reading them.
enum ResultColumn {
    IdColumn,
    TimestampColumn,
    SeriesIdColumn,
    TestIdColumn,
    DownloadSpeedColumn,
    UploadSpeedColumn,
    UploadSpeedClientColumn,
    RttColumn,
    ConnectionTypeColumn,
    LocationColumn,
    ServerColumn,
    VelocityColumn,
    DistanceColumn,
    AccuracyVertColumn,
    AccuracyHorColumn,
    DistanceDurationColumn,
};

std::unique_ptr<DBTestResults> fromRow(const QSqlQuery &row)
{
    auto result = std::make_unique<DBTestResults>();
    result->myTestId = row.value(IdColumn).toULongLong();
    result->timestamp = row.value(TimestampColumn).toDouble();
    result->seriesId = row.value(SeriesIdColumn).toLongLong();
    result->testId = row.value(TestIdColumn).toLongLong();
    result->downloadSpeed = row.value(DownloadSpeedColumn).toDouble();
    result->uploadSpeed = row.value(UploadSpeedColumn).toDouble();
    result->uploadSpeedClient = row.value(UploadSpeedClientColumn).toDouble();
    result->rtt = row.value(RttColumn).toLongLong();
    result->connectionType = row.value(ConnectionTypeColumn).toString();
    result->location = row.value(LocationColumn).toString();
    result->testServer = row.value(ServerColumn).toString();
    result->velocity = row.value(VelocityColumn).toDouble();
    result->distance = row.value(DistanceColumn).toDouble();
    result->accuracyvert = row.value(AccuracyVertColumn).toDouble();
    result->accuracyhor = row.value(AccuracyHorColumn).toDouble();
    result->distanceDurationInSeconds = row.value(DistanceDurationColumn).toDouble();
    return result;
}

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
        execute(CREATE_INDEX_TOTALBYTES); // a file from before there was one
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
            logError("SQLError-"_L1 + step.name + ": %1 %2"_L1, query.lastError());
        }
    }
    execute(CREATE_INDEX_TOTALBYTES);
}

qulonglong DatabaseManager::storeTestResults(const TestResults *results)
{
    DBTestResults row;
    row.createDBTestResultFromTestResult(results);
    const QString testId = QString::number(row.testId);
    const QString seriesId = QString::number(row.seriesId);
    const QString statement =
        QString(INSERT_INTO_TESTRESULTS)
            .arg(wholeNumber(row.timestamp), seriesId, testId, wholeNumber(row.downloadSpeed),
                 wholeNumber(row.uploadSpeed), wholeNumber(row.uploadSpeedClient),
                 QString::number(row.rtt), row.connectionType, row.location, row.testServer,
                 wholeNumber(row.velocity), wholeNumber(row.distance),
                 wholeNumber(row.accuracyvert), wholeNumber(row.accuracyhor),
                 wholeNumber(row.distanceDurationInSeconds));
    QSqlQuery insert(db);
    if (!insert.exec(statement)) {
        logError(u"ERROR: %1 %2"_s, insert.lastError());
        return 0;
    }
    // Ids start again when the settings are lost: of several rows with these ids, it is the one
    // just inserted.
    const qulonglong inserted = insert.lastInsertId().toULongLong();
    QSqlQuery select(db);
    select.exec(QString(SELECT_TESTRESULTS_ID_BY_TEST_AND_SERIES_ID).arg(testId, seriesId));
    while (select.next()) {
        if (select.value(0).toULongLong() == inserted) {
            return inserted;
        }
    }
    return 0;
}

bool DatabaseManager::storeTestDetails(const TestDetails *details)
{
    Utils::addLogEntry(u"storeTestDetails()"_s);
    Transaction transaction(db);
    const QString id = QString::number(details->getMyTestId());
    execute(QString(DELETE_FROM_TESTDETAILS).arg(id));

    bool stored = true;
    const auto &data = details->getData();
    for (auto entry = data.begin(); entry != data.end(); ++entry) {
        QString type;
        QString text = u"NULL"_s;
        QString integer = u"NULL"_s;
        QString real = u"NULL"_s;
        switch (entry->typeId()) {
        case QMetaType::QString:
            type = u"s"_s;
            text = entry->toString();
            break;
        case QMetaType::Double:
            type = u"f"_s;
            real = QString::number(entry->toDouble(), 'g', 17);
            break;
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
            type = u"l"_s;
            integer = entry->toString();
            break;
        default:
            Utils::addLogEntry(
                u"INVALID TYPE TYPE: %1"_s.arg(QString::fromLatin1(entry->typeName())));
            continue;
        }
        const QString statement =
            QString(INSERT_INTO_TESTDETAILS).arg(id, entry.key(), type, text, integer, real);
        QSqlQuery query(db);
        if (!query.exec(statement)) {
            Utils::addLogEntry(u"SQLError: %1 %2 %3"_s.arg(
                query.lastError().databaseText(), query.lastError().driverText(), statement));
            stored = false;
        }
    }
    return transaction.commit() && stored;
}

std::unique_ptr<DBTestResults> DatabaseManager::getResultsById(qulonglong id)
{
    QSqlQuery query(db);
    query.exec(QString(SELECT_TESTRESULTS_BY_ID).arg(id));
    return query.next() ? fromRow(query) : nullptr;
}

std::vector<std::unique_ptr<DBTestResults>> DatabaseManager::getAllResults()
{
    std::vector<std::unique_ptr<DBTestResults>> results;
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.exec(SELECT_ALL_TESTRESULTS);
    while (query.next()) {
        results.push_back(fromRow(query));
    }
    Utils::addLogEntry(u"Retrieved %1 test result entries."_s.arg(results.size()));
    return results;
}

std::unique_ptr<TestDetails> DatabaseManager::getDetailsById(qulonglong id)
{
    QSqlQuery count(db);
    count.exec(QString(COUNT_TESTDETAILS_BY_ID).arg(id));
    if (!count.next() || count.value(0).toInt() == 0) {
        return nullptr;
    }

    auto details = std::make_unique<TestDetails>(nullptr, static_cast<qlonglong>(id));
    QSqlQuery query(db);
    query.exec(QString(SELECT_TESTDETAILS_BY_ID).arg(id));
    while (query.next()) {
        const QString key = query.value(u"key"_s).toString();
        const QString type = query.value(u"type"_s).toString();
        if (type == "s"_L1) {
            details->putString(key, query.value(u"string"_s).toString());
        } else if (type == "l"_L1) {
            details->putLong(key, query.value(u"long"_s).toLongLong());
        } else if (type == "f"_L1) {
            details->putDouble(key, query.value(u"double"_s).toDouble());
        }
    }
    return details;
}

bool DatabaseManager::storeIntervals(qulonglong id, int resulttype, const IntervalTable &bytes)
{
    QStringList values;
    for (int i = 0; i < bytes.size(); ++i) {
        values.append(QString::number(bytes.value(i)));
    }
    QSqlQuery query(db);
    const bool stored =
        query.exec(QString(REPLACE_TESTINTERVALS)
                       .arg(QString::number(id), QString::number(resulttype), values.join(u',')));
    if (!stored) {
        logError(u"ERROR: %1 %2"_s, query.lastError());
    }
    return stored;
}

IntervalTable DatabaseManager::getIntervals(qulonglong id, int resulttype)
{
    IntervalTable bytes;
    QSqlQuery query(db);
    query.exec(QString(SELECT_TESTINTERVALS).arg(QString::number(id), QString::number(resulttype)));
    if (!query.next()) {
        return bytes;
    }
    const QStringList values =
        query.value(0).toString().left(maxIntervalsText).split(u',', Qt::SkipEmptyParts);
    for (int i = 0; i < values.size(); ++i) {
        bytes.insert(i, std::max<qint64>(0, values.at(i).toLongLong()));
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
        logError(u"ERROR: %1 %2"_s, query.lastError());
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
    QSqlQuery query(db);
    const bool deleted = query.exec(QString(DELETE_UNSENTXMLFILE).arg(id));
    if (!deleted) {
        logError(u"ERROR: %1 %2"_s, query.lastError());
    }
    return deleted;
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
        logError(u"ERROR: %1 %2"_s, query.lastError());
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
