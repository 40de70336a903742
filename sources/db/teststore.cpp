#include "db/teststore.h"

#include "data/storeddetails.h"
#include "data/testdetails.h"
#include "db/databasestatements.h"
#include "db/reportqueue.h"
#include "db/transaction.h"
#include "figures/testfields.h"
#include "utils/utils.h"

#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

using namespace DatabaseStatements;

namespace {

constexpr qint64 nsPerMs = 1'000'000;
/// Far more than a test has; the file may come from anywhere.
constexpr int maxListText = 10'000;
/// No moment and no rate is beyond it.
constexpr double greatestStored = 9e15;

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

enum DetailColumn { KeyColumn, TypeColumn, StringColumn, LongColumn, DoubleColumn };

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

/// The row has a number for what was not measured.
QVariant rate(const FinishedTest::Number &figure)
{
    return static_cast<double>(figure.value_or(-1));
}

QString textOrEmpty(const FinishedTest::Text &value)
{
    return value.value_or(u""_s); // an empty text, not NULL
}

bool succeeded(const QSqlQuery &query, bool done)
{
    if (!done) {
        logSqlError(u"ERROR: %1 %2"_s, query.lastError());
    }
    return done;
}

/// What the details of an older test leave open and its row knows, in the one figure it has for the
/// upload and in whole milliseconds.
void fillFromRow(FinishedTest &test, const DBTestResults &row, const TestDetails *details)
{
    const auto rateOf = [](double value) {
        return value > 0 && value < greatestStored ? FinishedTest::Number(std::llround(value))
                                                   : FinishedTest::Number();
    };
    const auto maximum = rateOf(details ? details->getDouble(u"uploadMaximum"_s) : 0);
    test.download.averageRate = rateOf(row.downloadSpeed);
    test.upload.averageRate = rateOf(row.uploadSpeedClient);
    if (row.uploadSpeed != row.uploadSpeedClient) {
        test.serverAverageRate = rateOf(row.uploadSpeed);
        test.serverMaximumRate = maximum;
    } else {
        test.upload.maximumRate = maximum;
    }
    if (!test.rtt.average && row.rtt > 0) {
        test.rtt.average = row.rtt * nsPerMs;
    }
    if (test.position.latitude) {
        test.position.horizontalAccuracy = Known::above(0, test.movement.horizontalAccuracy);
        test.position.verticalAccuracy = Known::above(0, test.movement.verticalAccuracy);
    }
    if (details && details->contains(u"gsmSignalStrength"_s)) {
        test.network.signal = Known::atLeast(0, test.network.cellularSignal);
    }
}

QList<qint64> numbers(const QString &list)
{
    QList<qint64> values;
    for (const QString &each : list.left(maxListText).split(u',', Qt::SkipEmptyParts)) {
        values.append(each.toLongLong());
    }
    return values;
}

} // namespace

// ---- Writing

// One transaction: a kill leaves the test with its report, or neither.
qulonglong TestStore::store(const FinishedTest &finished, XMLData *report)
{
    FinishedTest test = finished;
    Transaction transaction(db);
    if (!transaction.isOpen() || !storeAll(test, report) || !transaction.commit()) {
        return 0;
    }
    if (report) {
        report->identification = test.report.queueId;
    }
    return static_cast<qulonglong>(test.storedId.value_or(0));
}

// A kill after the commit leaves the test where it came from, too.
bool TestStore::takeIn(const FinishedTest &finished, XMLData *report)
{
    FinishedTest test = finished;
    Transaction transaction(db);
    QSqlQuery known(db);
    known.prepare(SELECT_SAME_TEST);
    known.addBindValue(static_cast<double>(test.timestamp.value_or(0)));
    known.addBindValue(test.seriesId.value_or(0));
    known.addBindValue(test.testId.value_or(0));
    if (!transaction.isOpen() || !succeeded(known, known.exec())) {
        return false;
    }
    return known.next() || (storeAll(test, report) && transaction.commit());
}

bool TestStore::storeAll(FinishedTest &test, XMLData *report)
{
    if (report) {
        test.report = {false, reports.insertOrUpdate(*report), {}};
        if (!test.report.queueId) {
            return false;
        }
    }
    return storeRow(test) && storeDetails(test) && storeLists(test);
}

bool TestStore::storeRow(FinishedTest &test)
{
    QSqlQuery insert(db);
    insert.prepare(INSERT_INTO_TESTRESULTS);
    const QVariantList values{
        static_cast<double>(test.timestamp.value_or(0)),
        test.seriesId.value_or(0),
        test.testId.value_or(0),
        rate(test.download.averageRate),
        rate(test.uploadRate()),
        rate(test.upload.averageRate),
        test.rtt.average.value_or(0) / nsPerMs,
        textOrEmpty(test.network.type),
        textOrEmpty(test.location),
        textOrEmpty(test.server.host),
        std::nearbyint(test.movement.velocity),
        std::nearbyint(test.movement.distance),
        std::nearbyint(test.movement.verticalAccuracy),
        std::nearbyint(test.movement.horizontalAccuracy),
        std::nearbyint(test.movement.duration),
    };
    for (const QVariant &value : values) {
        insert.addBindValue(value);
    }
    const bool stored = succeeded(insert, insert.exec());
    test.storedId = insert.lastInsertId().toLongLong();
    return stored;
}

bool TestStore::storeDetails(const FinishedTest &test)
{
    const auto details = StoredDetails::of(test);
    QSqlQuery insert(db);
    insert.prepare(INSERT_INTO_TESTDETAILS);
    bool stored = true;
    const auto &data = details->getData();
    for (auto entry = data.begin(); entry != data.end() && stored; ++entry) {
        const int type = entry->typeId();
        const bool isText = type == QMetaType::QString;
        const bool isReal = type == QMetaType::Double;
        const QVariant none;
        insert.bindValue(0, test.storedId.value_or(0));
        insert.bindValue(1, entry.key());
        insert.bindValue(2, isText ? u"s"_s : isReal ? u"f"_s : u"l"_s);
        insert.bindValue(3, isText ? *entry : none);
        insert.bindValue(4, isText || isReal ? none : *entry);
        insert.bindValue(5, isReal ? *entry : none);
        stored = succeeded(insert, insert.exec());
    }
    return stored;
}

bool TestStore::storeLists(const FinishedTest &test)
{
    for (const TestField &field : TestFields::all()) {
        const QVariant list = field.list != 0 ? field.get(test) : QVariant();
        if (!list.isValid()) {
            continue;
        }
        QStringList values;
        for (const QVariant &value : list.toList()) {
            values.append(value.isValid() ? value.toString() : u"-1"_s);
        }
        QSqlQuery insert(db);
        insert.prepare(INSERT_INTO_TESTINTERVALS);
        insert.addBindValue(test.storedId.value_or(0));
        insert.addBindValue(field.list);
        insert.addBindValue(values.join(u','));
        if (!succeeded(insert, insert.exec())) {
            return false;
        }
    }
    return true;
}

// One transaction: nothing of a test stays behind, and no report of one that is gone.
bool TestStore::remove(const QList<qulonglong> &ids)
{
    Transaction transaction(db);
    if (!transaction.isOpen()) {
        return false;
    }
    for (const auto &statement :
         {DELETE_TESTREPORT, DELETE_TESTDETAILS, DELETE_TESTINTERVALS, DELETE_TESTRESULTS}) {
        QSqlQuery query(db);
        query.prepare(statement);
        for (const qulonglong id : ids) {
            query.bindValue(0, id);
            if (!succeeded(query, query.exec())) {
                return false;
            }
        }
    }
    return transaction.commit();
}

// ---- Reading

int TestStore::countReports(const QList<qulonglong> &ids)
{
    int count = 0;
    QSqlQuery query(db);
    query.prepare(COUNT_TESTREPORT);
    for (const qulonglong id : ids) {
        query.bindValue(0, id);
        if (query.exec() && query.next()) {
            count += query.value(0).toInt();
        }
    }
    return count;
}

std::vector<HistoryPoint> TestStore::history()
{
    enum Column { Time, Download, Upload, Rtt, Type };
    std::vector<HistoryPoint> points;
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.exec(SELECT_HISTORY);
    while (query.next()) {
        points.push_back({query.value(Time).toDouble(), query.value(Download).toDouble(),
                          query.value(Upload).toDouble(), query.value(Rtt).toDouble(),
                          query.value(Type).toString()});
    }
    return points;
}

std::vector<std::unique_ptr<DBTestResults>> TestStore::rows()
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

std::unique_ptr<DBTestResults> TestStore::row(qulonglong id)
{
    QSqlQuery query(db);
    query.exec(QString(SELECT_TESTRESULTS_BY_ID).arg(id));
    return query.next() ? fromRow(query) : nullptr;
}

std::unique_ptr<DBTestResults> TestStore::newest()
{
    QSqlQuery query(db);
    query.exec(SELECT_NEWEST_TESTRESULTS);
    return query.next() ? fromRow(query) : nullptr;
}

std::unique_ptr<TestDetails> TestStore::details(qulonglong id)
{
    std::unique_ptr<TestDetails> details;
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.exec(QString(SELECT_TESTDETAILS_BY_ID).arg(id));
    while (query.next()) {
        if (!details) {
            details = std::make_unique<TestDetails>(nullptr, static_cast<qlonglong>(id));
        }
        const QString key = query.value(KeyColumn).toString();
        const QString type = query.value(TypeColumn).toString();
        if (type == "s"_L1) {
            details->putString(key, query.value(StringColumn).toString());
        } else if (type == "l"_L1) {
            details->putLong(key, query.value(LongColumn).toLongLong());
        } else if (type == "f"_L1) {
            details->putDouble(key, query.value(DoubleColumn).toDouble());
        }
    }
    return details;
}

QList<qint64> TestStore::list(qulonglong id, int number)
{
    QSqlQuery query(db);
    query.exec(QString(SELECT_TESTINTERVALS).arg(QString::number(id), QString::number(number)));
    return query.next() ? numbers(query.value(0).toString()) : QList<qint64>();
}

FinishedTest TestStore::test(const DBTestResults &row)
{
    FinishedTest test;
    test.storedId = static_cast<qint64>(row.myTestId);
    test.testId = row.testId;
    test.seriesId = row.seriesId;
    if (row.timestamp > 0 && row.timestamp < greatestStored) {
        test.timestamp = std::llround(row.timestamp);
    }
    test.location = Known::text(row.location);
    test.server.host = Known::text(row.testServer);
    test.network.type = Known::text(row.connectionType);

    const auto stored = details(row.myTestId);
    if (stored) {
        StoredDetails::read(*stored, test);
    }
    if (!stored || !StoredDetails::haveEverything(*stored)) {
        fillFromRow(test, row, stored.get());
    }
    readLists(test);
    return test;
}

void TestStore::readLists(FinishedTest &test)
{
    QSqlQuery query(db);
    query.exec(QString(SELECT_ALL_TESTINTERVALS).arg(test.storedId.value_or(0)));
    while (query.next()) {
        const int number = query.value(0).toInt();
        QVariantList values;
        for (const qint64 value : numbers(query.value(1).toString())) {
            values.append(value);
        }
        for (const TestField &field : TestFields::all()) {
            if (field.list != 0 && field.list == number) {
                field.set(test, values);
            }
        }
    }
}

} // namespace velometer
