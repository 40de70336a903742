#include "reports/sqlreportstore.h"

#include "ops/background.h"
#include "ops/log.h"
#include "reports/allowancequeries.h"
#include "reports/postgresdatabase.h"
#include "reports/reconnecting.h"
#include "reports/reportqueries.h"
#include "reports/retentionqueries.h"
#include "reports/sqlitedatabase.h"
#include "reports/storesettings.h"

#include <QDateTime>

#include <algorithm>
#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// Operations that share one transaction; more would make the first of them wait.
constexpr std::size_t batchSize = 64;

constexpr int readerCount = 2;

/// How long another program (a backup, a shell) may hold the file before writes fail.
constexpr auto holdTime = 5s;

/// A report a client keeps for longer than this has lost its streams' records.
constexpr int streamAgeDays = 30;
/// Longer than any of them takes to come back.
constexpr int allowanceDays = 2;
constexpr qint64 msOfDay = qint64{24} * 3600 * 1000;
constexpr auto upkeepPeriod = 1h;
/// Between two steps: what is old may go slowly.
constexpr auto purgePause = 5ms;

} // namespace

std::unique_ptr<SqlDatabase> SqlReportStore::databaseOf(const QString &name, int inheritedLock)
{
    if (PostgresDatabase::isAddress(name)) {
        return std::make_unique<PostgresDatabase>(name);
    }
    return std::make_unique<SqliteDatabase>(name, inheritedLock);
}

std::unique_ptr<SqlReportStore> SqlReportStore::open(const StoreOptions &options, QString *error)
{
    std::unique_ptr<SqlReportStore> store(
        new SqlReportStore(options, databaseOf(options.database, options.inheritedLock)));
    // A connection belongs to its thread.
    const auto prepare = [&] {
        QString problem = store->database->prepare();
        const auto connection =
            problem.isEmpty() ? store->database->connect(true, &problem) : nullptr;
        const auto key =
            connection ? StoreSettings::adoptKey(*connection, options.shownKeyFile(), &problem)
                       : std::nullopt;
        store->deviceKey = key.value_or(DeviceKey());
        return problem;
    };
    const QString problem = std::async(std::launch::async, prepare).get();
    if (!problem.isEmpty()) {
        *error =
            u"The database %1 cannot be used: %2."_s.arg(store->database->shownName(), problem);
        return nullptr;
    }
    store->start();
    return store;
}

SqlReportStore::SqlReportStore(StoreOptions storeOptions, std::unique_ptr<SqlDatabase> opened)
    : options(std::move(storeOptions))
    , database(std::move(opened))
{}

SqlReportStore::~SqlReportStore()
{
    close(Clock::time_point::max());
}

void SqlReportStore::start()
{
    for (int i = 0; i < database->writers(); ++i) {
        Queue &queue = writes.at(static_cast<std::size_t>(i));
        threads.emplace_back([this, &queue] { write(queue); });
    }
    for (int i = 0; i < readerCount; ++i) {
        threads.emplace_back([this] { read(reads); });
    }
    threads.emplace_back([this] { read(publicReads); });
    finishDeletions();
    threads.emplace_back([this] { upkeep(); });
}

void SqlReportStore::close(Clock::time_point deadline)
{
    end = deadline;
    {
        const std::lock_guard guard(mutex);
        closing = true;
        for (Queue &each : writes) {
            each.wake.notify_all();
        }
        reads.wake.notify_all();
        publicReads.wake.notify_all();
        upkeepWake.notify_all();
    }
    for (auto &thread : threads) {
        thread.join();
    }
    threads.clear();
}

/// Nothing when the store closes and the queue is empty.
std::vector<SqlReportStore::Job> SqlReportStore::take(Queue &queue, std::size_t most)
{
    std::unique_lock guard(mutex);
    queue.wake.wait(guard, [&] { return closing || !queue.jobs.empty(); });
    std::vector<Job> taken;
    while (!queue.jobs.empty() && taken.size() < most) {
        taken.push_back(std::move(queue.jobs.front()));
        queue.jobs.pop_front();
    }
    return taken;
}

void SqlReportStore::read(Queue &queue)
{
    stepBack();
    Reconnecting connection(*database, false);
    for (auto jobs = take(queue, 1); !jobs.empty(); jobs = take(queue, 1)) {
        bool done = false;
        // A connection that broke is made again once: a restart of the data base is no failure.
        for (int attempt = 0; attempt < 2 && !done && Clock::now() < end.load(); ++attempt) {
            SqlConnection *const open = connection.get();
            done = open && open->beginReading() && jobs.front().run(*open);
            if (open) {
                open->rollBack();
            }
            if (!connection.isLost()) {
                break;
            }
        }
        if (!done && Clock::now() < end.load()) {
            Log::write(Log::Level::Error, "store",
                       "reports cannot be read: " + connection.problem().toStdString());
        }
        jobs.front().finish(done);
    }
}

void SqlReportStore::write(Queue &queue)
{
    Reconnecting connection(*database, true);
    for (auto jobs = take(queue, batchSize); !jobs.empty(); jobs = take(queue, batchSize)) {
        // Writers that lock whom they write for in one order do not wait for each other.
        if (database->writers() > 1) {
            std::ranges::stable_sort(jobs, {}, &Job::whose);
        }
        runBatch(connection, jobs);
    }
}

/// False when the store closes or fails: the next time goes on.
bool SqlReportStore::purge(std::optional<int> days,
                           std::optional<qint64> (*step)(SqlConnection &connection, qint64 oldest))
{
    std::optional<qint64> count;
    do {
        std::promise<std::optional<qint64>> gone;
        const qint64 oldest = QDateTime::currentMSecsSinceEpoch() - msOfDay * days.value_or(0);
        ask<qint64>(
            writesFor(0),
            [&](SqlConnection &connection) {
                return days ? step(connection, oldest) : std::optional<qint64>(0);
            },
            [&](std::optional<qint64> rows) { gone.set_value(rows); });
        count = gone.get_future().get();
        std::unique_lock guard(mutex);
        upkeepWake.wait_for(guard, purgePause, [this] { return closing; });
    } while (count && *count > 0);
    return count.has_value();
}

void SqlReportStore::upkeep()
{
    stepBack();
    std::unique_lock guard(mutex);
    while (!closing) {
        guard.unlock();
        purge(streamAgeDays, ReportQueries::forgetStreams);
        purge(allowanceDays, AllowanceQueries::forget);
        purge(options.reportDays, RetentionQueries::purgeReports);
        purge(options.reportDays, RetentionQueries::purgeTracks);
        purge(options.documentDays, RetentionQueries::purgeDocuments);
        guard.lock();
        upkeepWake.wait_for(guard, upkeepPeriod, [this] { return closing; });
    }
}

SqlReportStore::Attempt SqlReportStore::tryOnce(Reconnecting &connection, std::span<const Job> jobs)
{
    const auto patience = Clock::now() + holdTime;
    while (true) {
        SqlConnection *const open = connection.get();
        const bool begun = open && open->beginWriting();
        if (begun && std::ranges::all_of(jobs, [&](const Job &job) { return job.run(*open); }) &&
            open->commit()) {
            return Attempt::Committed;
        }
        const QString reason = connection.problem();
        if (begun) {
            open->rollBack();
        }
        // What was lost at its commit may be there all the same: then it says so itself.
        const bool mayCome = connection.isLost() || (!begun && open->isHeld());
        if (!mayCome || Clock::now() >= std::min(patience, end.load())) {
            if (begun) {
                noteFailure(reason);
            }
            return begun ? Attempt::Failed : Attempt::Held;
        }
    }
}

/// All in one transaction, or, when that fails, each in its own: one bad job fails alone. Who
/// cannot begin at all tells everybody at once.
void SqlReportStore::runBatch(Reconnecting &connection, std::span<const Job> batch)
{
    const bool over = Clock::now() >= end.load();
    auto attempt = over ? Attempt::Held : tryOnce(connection, batch);
    if (attempt == Attempt::Held) {
        noteFailure(over ? u"the service ends"_s : connection.problem());
    } else if (attempt == Attempt::Committed) {
        noteSuccess();
    }
    const bool apart = attempt == Attempt::Failed && batch.size() > 1;
    for (const auto &job : batch) {
        if (apart && attempt != Attempt::Held && Clock::now() < end.load()) {
            attempt = tryOnce(connection, {&job, 1});
        } else if (apart) {
            attempt = Attempt::Held;
        }
        job.finish(attempt == Attempt::Committed);
    }
}

/// A disk that is full fails every report; the log needs to hear it once.
void SqlReportStore::noteFailure(const QString &reason)
{
    const std::lock_guard guard(mutex);
    if (++failures == 1 || reason != lastReason) {
        Log::write(Log::Level::Error, "store", "the store cannot write: " + reason.toStdString());
    }
    lastReason = reason;
}

void SqlReportStore::noteSuccess()
{
    const std::lock_guard guard(mutex);
    if (failures > 0) {
        Log::write(Log::Level::Warning, "store",
                   "the store writes again, after failing " + std::to_string(failures) + " times");
    }
    failures = 0;
}

/// What is written for one user is written in the order of its coming.
SqlReportStore::Queue &SqlReportStore::writesFor(qint64 whose)
{
    return writes.at(static_cast<quint64>(whose) % static_cast<quint64>(database->writers()));
}

void SqlReportStore::enqueue(Queue &queue, Job job, bool urgent)
{
    {
        const std::lock_guard guard(mutex);
        if (queue.jobs.size() < queueLength && !closing) {
            if (urgent) {
                queue.jobs.push_front(std::move(job));
            } else {
                queue.jobs.push_back(std::move(job));
            }
            queue.wake.notify_one();
            return;
        }
    }
    job.finish(false);
}

void SqlReportStore::findOrCreateUser(const QString &device,
                                      std::function<void(std::optional<User>)> done)
{
    const QString uuid = deviceKey.hash(device);
    auto user = std::make_shared<std::optional<User>>();
    const qint64 whose = ReportQueries::lockOf(uuid);
    enqueue(writesFor(whose),
            {.run =
                 [uuid, user](SqlConnection &connection) {
                     *user = ReportQueries::findOrCreateUser(connection, uuid);
                     return user->has_value();
                 },
             .finish = [user, done = std::move(done)](
                           bool committed) { done(committed ? *user : std::nullopt); },
             .whose = whose});
}

void SqlReportStore::storeStream(StreamRecord record)
{
    enqueue(writesFor(record.test.user), {.run =
                                              [record](SqlConnection &connection) {
                                                  return ReportQueries::insertStream(connection,
                                                                                     record);
                                              },
                                          .finish = [](bool) {},
                                          .whose = record.test.user});
}

void SqlReportStore::storeReport(Report report, std::function<void(Outcome)> done)
{
    auto outcome = std::make_shared<Outcome>(Outcome::Failed);
    const qint64 user = report.userId;
    enqueue(writesFor(user),
            {.run =
                 [report = std::move(report), outcome](SqlConnection &connection) {
                     *outcome = ReportQueries::insert(connection, report);
                     return *outcome != Outcome::Failed;
                 },
             .finish = [outcome, done = std::move(done)](
                           bool committed) { done(committed ? *outcome : Outcome::Failed); },
             .whose = user});
}

StoreLoad SqlReportStore::load()
{
    StoreLoad load{.freeBytes = database->freeBytes()};
    const std::lock_guard guard(mutex);
    for (const Queue &each : writes) {
        load.writes += static_cast<qint64>(each.jobs.size());
    }
    load.reads =
        static_cast<qint64>(reads.jobs.size()) + static_cast<qint64>(publicReads.jobs.size());
    return load;
}

void SqlReportStore::ping(std::function<void(QString)> done)
{
    {
        const std::lock_guard guard(mutex);
        pings.push_back(std::move(done));
        if (pings.size() > 1) {
            return;
        }
    }
    // Ahead of the reports, because a long queue is no illness.
    const auto check = [this](SqlConnection &connection) {
        return database->tryWriting(connection);
    };
    const auto finish = [this](bool committed) {
        std::vector<std::function<void(QString)>> waiting;
        QString answer = database->shortage();
        {
            const std::lock_guard guard(mutex);
            waiting.swap(pings);
            if (!committed) {
                answer = failures > 0 ? lastReason : u"it has too much to do"_s;
            }
        }
        for (const auto &each : waiting) {
            each(answer);
        }
    };
    enqueue(writesFor(0), {.run = check, .finish = finish}, true);
}

} // namespace velometer
