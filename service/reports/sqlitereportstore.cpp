#include "reports/sqlitereportstore.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Operations that share one transaction; more would make the first of them wait.
constexpr std::size_t batchSize = 64;

/// Another program (a backup, a shell) may hold the file for so long.
constexpr int busyTimeoutMs = 5000;

/// Step n brings a file from version n to n + 1. Steps that were released are never changed.
const QList<QStringList> &migrations()
{
    static const QList<QStringList> steps{
        {u"CREATE TABLE users("
         "id INTEGER PRIMARY KEY, uuid TEXT UNIQUE, created INTEGER NOT NULL)"_s,
         u"CREATE TABLE reports("
         "id INTEGER PRIMARY KEY, userid INTEGER NOT NULL REFERENCES users(id), "
         "seriesid INTEGER NOT NULL, testid INTEGER NOT NULL, client_time INTEGER NOT NULL, "
         "server_time INTEGER NOT NULL, public_ip TEXT NOT NULL, test_server TEXT NOT NULL, "
         "connection_type TEXT NOT NULL, location TEXT NOT NULL, network TEXT NOT NULL, "
         "mcc TEXT NOT NULL, mnc TEXT NOT NULL, platform TEXT NOT NULL, model TEXT NOT NULL, "
         "manufacturer TEXT NOT NULL, applet_version TEXT NOT NULL, "
         "download_min INTEGER, download_avg INTEGER, download_max INTEGER, "
         "upload_min INTEGER, upload_avg INTEGER, upload_max INTEGER, "
         "upload_client_min INTEGER, upload_client_avg INTEGER, upload_client_max INTEGER, "
         "rtt_min INTEGER, rtt_avg INTEGER, rtt_max INTEGER, latitude REAL, longitude REAL, "
         "document TEXT NOT NULL, UNIQUE(userid, seriesid, testid, client_time))"_s},
        // The users' pages list by time.
        {u"CREATE INDEX reports_by_time ON reports(userid, client_time)"_s},
    };
    return steps;
}

bool execute(QSqlDatabase &database, const QString &statement)
{
    QSqlQuery query(database);
    return query.exec(statement);
}

/// Nothing when @p statement fails or gives no row.
std::optional<qint64> single(QSqlDatabase &database, const QString &statement,
                             const QVariantList &values = {})
{
    QSqlQuery query(database);
    query.prepare(statement);
    for (const auto &value : values) {
        query.addBindValue(value);
    }
    return query.exec() && query.next() ? std::optional(query.value(0).toLongLong()) : std::nullopt;
}

QString migrate(QSqlDatabase &database)
{
    const auto version = single(database, u"PRAGMA user_version"_s);
    if (!version) {
        return u"it is no database, or it cannot be read (%1)"_s.arg(database.lastError().text());
    }
    if (*version > migrations().size()) {
        return u"it was written by a newer version of this program"_s;
    }
    for (auto step = static_cast<qsizetype>(*version); step < migrations().size(); ++step) {
        bool done = execute(database, u"BEGIN IMMEDIATE"_s);
        for (const auto &statement : migrations().at(step)) {
            done = done && execute(database, statement);
        }
        done = done && execute(database, u"PRAGMA user_version=%1"_s.arg(step + 1)) &&
               execute(database, u"COMMIT"_s);
        if (!done) {
            execute(database, u"ROLLBACK"_s);
            return u"it cannot be brought from version %1 to %2"_s.arg(step).arg(step + 1);
        }
    }
    return {};
}

/// Takes the file, and what SQLite keeps beside it, from the eyes of other users.
bool keepPrivate(const QString &file)
{
    const auto owner = QFile::ReadOwner | QFile::WriteOwner;
    return std::ranges::all_of(std::array{u""_s, u"-wal"_s, u"-shm"_s}, [&](const auto &suffix) {
        return !QFile::exists(file + suffix) || QFile::setPermissions(file + suffix, owner);
    });
}

/// Empty on success.
QString prepare(QSqlDatabase &database, const QString &file)
{
    if (!QDir().mkpath(QFileInfo(file).absolutePath())) {
        return u"its directory cannot be made"_s;
    }
    database.setDatabaseName(file);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=%1"_s.arg(busyTimeoutMs));
    if (!database.open()) {
        return database.lastError().text();
    }
    if (!execute(database, u"PRAGMA journal_mode=WAL"_s)) {
        return u"it is no database, or it cannot be written"_s;
    }
    if (!execute(database, u"PRAGMA synchronous=FULL"_s) ||
        !execute(database, u"PRAGMA foreign_keys=ON"_s)) {
        return database.lastError().text();
    }
    if (QString problem = migrate(database); !problem.isEmpty()) {
        return problem;
    }
    if (!keepPrivate(file)) {
        return u"it cannot be hidden from other users"_s;
    }
    // A file on a read-only medium opens and fails at the first report; better now.
    if (!execute(database, u"BEGIN IMMEDIATE"_s) || !execute(database, u"ROLLBACK"_s)) {
        return u"it cannot be written"_s;
    }
    return {};
}

template <typename Value>
QVariant nullable(const std::optional<Value> &value)
{
    return value ? QVariant::fromValue(*value) : QVariant();
}

std::optional<ReportStore::User> findOrCreate(QSqlDatabase &database, const QString &uuid)
{
    QSqlQuery query(database);
    query.prepare(u"SELECT id, (SELECT max(seriesid) FROM reports WHERE userid = users.id) "
                  "FROM users WHERE uuid = ?"_s);
    query.addBindValue(uuid);
    if (!query.exec()) {
        return std::nullopt;
    }
    if (query.next()) {
        return ReportStore::User{.id = query.value(0).toLongLong(),
                                 .lastSeries = std::max(query.value(1).toLongLong(), 0LL)};
    }
    // The id is all one needs to see the measurements, so it must not be guessed. An id drawn
    // twice is as good as impossible; then the next one is it.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const auto id = static_cast<qint64>(QRandomGenerator::system()->generate64() >> 11);
        if (id == 0 || single(database, u"SELECT 1 FROM users WHERE id = ?"_s, {id})) {
            continue;
        }
        query.prepare(u"INSERT INTO users(id, uuid, created) VALUES(?, ?, ?)"_s);
        query.addBindValue(id);
        query.addBindValue(uuid);
        query.addBindValue(QDateTime::currentMSecsSinceEpoch());
        return query.exec() ? std::optional(ReportStore::User{.id = id}) : std::nullopt;
    }
    return std::nullopt;
}

/// Failed when the database refuses, else Stored or Repeated.
ReportStore::Outcome insert(QSqlDatabase &database, const Report &report)
{
    QSqlQuery query(database);
    query.prepare(
        u"INSERT INTO users(id, uuid, created) VALUES(?, NULL, ?) ON CONFLICT DO NOTHING"_s);
    query.addBindValue(report.userId);
    query.addBindValue(report.serverTime);
    if (!query.exec()) {
        return ReportStore::Outcome::Failed;
    }
    query.prepare(
        u"INSERT INTO reports(userid, seriesid, testid, client_time, server_time, public_ip, "
        "test_server, connection_type, location, network, mcc, mnc, platform, model, manufacturer, "
        "applet_version, download_min, download_avg, download_max, upload_min, upload_avg, "
        "upload_max, upload_client_min, upload_client_avg, upload_client_max, rtt_min, rtt_avg, "
        "rtt_max, latitude, longitude, document) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
        "?, "
        "?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT DO NOTHING"_s);
    // A null string would be NULL, and these columns know no NULL.
    const auto text = [](const QString &value) { return value.isNull() ? u""_s : value; };
    for (const qint64 value :
         {report.userId, report.seriesId, report.testId, report.clientTime, report.serverTime}) {
        query.addBindValue(value);
    }
    for (const auto *value :
         {&report.publicIp, &report.testServer, &report.connectionType, &report.location,
          &report.networkName, &report.mcc, &report.mnc, &report.platform, &report.model,
          &report.manufacturer, &report.appletVersion}) {
        query.addBindValue(text(*value));
    }
    for (const auto *rate : {&report.download, &report.upload, &report.uploadClient}) {
        query.addBindValue(nullable(rate->min));
        query.addBindValue(nullable(rate->avg));
        query.addBindValue(nullable(rate->max));
    }
    for (const auto &value : {report.rttMin, report.rttAvg, report.rttMax}) {
        query.addBindValue(nullable(value));
    }
    query.addBindValue(nullable(report.latitude));
    query.addBindValue(nullable(report.longitude));
    query.addBindValue(text(report.document));
    if (!query.exec()) {
        return ReportStore::Outcome::Failed;
    }
    return query.numRowsAffected() > 0 ? ReportStore::Outcome::Stored
                                       : ReportStore::Outcome::Repeated;
}

std::optional<qint64> optionalNumber(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toLongLong());
}

std::optional<double> optionalReal(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toDouble());
}

std::optional<ReportStore::UserReports> select(QSqlDatabase &database, qint64 userId, int limit)
{
    ReportStore::UserReports result;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    query.prepare(
        u"SELECT seriesid, testid, client_time, server_time, test_server, connection_type, "
        "location, network, download_avg, upload_avg, upload_client_avg, rtt_avg, latitude, "
        "longitude FROM reports WHERE userid = ? ORDER BY client_time DESC, id DESC "
        "LIMIT ?"_s);
    query.addBindValue(userId);
    query.addBindValue(limit + 1);
    if (!query.exec()) {
        return std::nullopt;
    }
    while (query.next()) {
        if (result.reports.size() == limit) {
            result.more = true;
            break;
        }
        Report report;
        report.userId = userId;
        report.seriesId = query.value(0).toLongLong();
        report.testId = query.value(1).toLongLong();
        report.clientTime = query.value(2).toLongLong();
        report.serverTime = query.value(3).toLongLong();
        report.testServer = query.value(4).toString();
        report.connectionType = query.value(5).toString();
        report.location = query.value(6).toString();
        report.networkName = query.value(7).toString();
        report.download.avg = optionalNumber(query.value(8));
        report.upload.avg = optionalNumber(query.value(9));
        report.uploadClient.avg = optionalNumber(query.value(10));
        report.rttAvg = optionalNumber(query.value(11));
        report.latitude = optionalReal(query.value(12));
        report.longitude = optionalReal(query.value(13));
        result.reports += report;
    }
    result.userKnown = !result.reports.isEmpty() ||
                       single(database, u"SELECT 1 FROM users WHERE id = ?"_s, {userId});
    return result;
}

} // namespace

std::unique_ptr<SqliteReportStore> SqliteReportStore::open(const QString &file, QString *error)
{
    std::unique_ptr<SqliteReportStore> store(new SqliteReportStore);
    bool opened = false;
    QString problem;
    store->thread = std::thread([&, raw = store.get()] { raw->work(file, &problem, &opened); });
    {
        std::unique_lock lock(store->mutex);
        store->wake.wait(lock, [&] { return store->started; });
    }
    if (!opened) {
        *error = u"The database %1 cannot be opened: %2."_s.arg(file, problem);
        return nullptr;
    }
    return store;
}

SqliteReportStore::~SqliteReportStore()
{
    {
        const std::lock_guard lock(mutex);
        closing = true;
    }
    wake.notify_all();
    thread.join();
}

void SqliteReportStore::work(const QString &file, QString *error, bool *opened)
{
    // A connection belongs to the thread that made it, and its name to the whole program.
    static std::atomic<int> lastNumber{0};
    const QString name = u"velometer-service-%1"_s.arg(++lastNumber);
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
        const QString problem = prepare(database, file);
        const bool usable = problem.isEmpty();
        {
            const std::lock_guard lock(mutex);
            *error = problem;
            *opened = usable;
            started = true;
        }
        wake.notify_all();

        std::unique_lock lock(mutex);
        while (usable) {
            wake.wait(lock, [this] { return closing || !queue.empty(); });
            if (queue.empty()) {
                break;
            }
            std::vector<Job> batch;
            while (!queue.empty() && batch.size() < batchSize) {
                batch.push_back(std::move(queue.front()));
                queue.pop_front();
            }
            lock.unlock();
            runBatch(database, batch);
            batch.clear();
            lock.lock();
        }
    }
    QSqlDatabase::removeDatabase(name);
}

SqliteReportStore::Attempt SqliteReportStore::tryOnce(QSqlDatabase &database,
                                                      std::span<const Job> jobs)
{
    // Who reads first and wants to write then is refused at once when another has written.
    const bool writes = std::ranges::any_of(jobs, &Job::writes);
    if (!execute(database, writes ? u"BEGIN IMMEDIATE"_s : u"BEGIN"_s)) {
        return Attempt::Held;
    }
    if (std::ranges::all_of(jobs, [&](const Job &job) { return job.run(database); }) &&
        execute(database, u"COMMIT"_s)) {
        return Attempt::Committed;
    }
    execute(database, u"ROLLBACK"_s);
    return Attempt::Failed;
}

void SqliteReportStore::runBatch(QSqlDatabase &database, std::span<const Job> batch)
{
    const bool together = tryOnce(database, batch) == Attempt::Committed;
    bool held = false;
    for (const auto &job : batch) {
        bool good = together;
        // Another program that holds the file for so long is not waited for once per job.
        if (!good && !(held && job.writes)) {
            const auto attempt = tryOnce(database, {&job, 1});
            good = attempt == Attempt::Committed;
            held = held || attempt == Attempt::Held;
        }
        job.finish(good);
    }
}

void SqliteReportStore::enqueue(Job job)
{
    {
        const std::lock_guard lock(mutex);
        if (queue.size() < queueLength && !closing) {
            queue.push_back(std::move(job));
            wake.notify_one();
            return;
        }
    }
    job.finish(false);
}

void SqliteReportStore::findOrCreateUser(const QString &uuid,
                                         std::function<void(std::optional<User>)> done)
{
    auto user = std::make_shared<std::optional<User>>();
    enqueue({true,
             [uuid, user](QSqlDatabase &database) {
                 *user = findOrCreate(database, uuid);
                 return user->has_value();
             },
             [user, done = std::move(done)](bool committed) {
                 done(committed ? *user : std::nullopt);
             }});
}

void SqliteReportStore::storeReport(Report report, std::function<void(Outcome)> done)
{
    auto outcome = std::make_shared<Outcome>(Outcome::Failed);
    enqueue({true,
             [report = std::move(report), outcome](QSqlDatabase &database) {
                 *outcome = insert(database, report);
                 return *outcome != Outcome::Failed;
             },
             [outcome, done = std::move(done)](bool committed) {
                 done(committed ? *outcome : Outcome::Failed);
             }});
}

void SqliteReportStore::reportsOfUser(qint64 userId, int limit,
                                      std::function<void(std::optional<UserReports>)> done)
{
    auto reports = std::make_shared<std::optional<UserReports>>();
    enqueue({false,
             [userId, limit, reports](QSqlDatabase &database) {
                 *reports = select(database, userId, limit);
                 return reports->has_value();
             },
             [reports, done = std::move(done)](bool committed) {
                 done(committed ? *reports : std::nullopt);
             }});
}

void SqliteReportStore::ping(std::function<void(bool)> done)
{
    enqueue({false,
             [](QSqlDatabase &database) {
                 return single(database, u"SELECT count(*) FROM users WHERE id = 0"_s).has_value();
             },
             std::move(done)});
}

} // namespace velometer
