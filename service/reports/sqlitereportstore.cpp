#include "reports/sqlitereportstore.h"

#include "ops/background.h"
#include "ops/log.h"
#include "reports/reportqueries.h"
#include "reports/sqliteschema.h"

#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <future>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <unistd.h>

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
constexpr qint64 streamAgeMs = qint64{30} * 24 * 3600 * 1000;
constexpr auto forgetPeriod = 1h;

/// A full batch of large reports, and SQLite's journal of it, must fit.
constexpr std::uint64_t minFree = std::uint64_t{8} << 20;

} // namespace

std::unique_ptr<SqliteReportStore> SqliteReportStore::open(const QString &file, QString *error)
{
    std::unique_ptr<SqliteReportStore> store(new SqliteReportStore);
    store->file = file;
    QString problem;
    if (!store->start(&problem)) {
        *error = u"The database %1 cannot be used: %2."_s.arg(file, problem);
        return nullptr;
    }
    return store;
}

SqliteReportStore::~SqliteReportStore()
{
    close(Clock::time_point::max());
    if (lockDescriptor >= 0) {
        ::close(lockDescriptor);
    }
}

/// Two services on one file would each take the other's work for a program that holds it. The
/// lock ends with the process, however that ends.
bool SqliteReportStore::lock()
{
    const auto name = QFile::encodeName(file + u".lock"_s);
    lockDescriptor = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return lockDescriptor < 0 || ::flock(lockDescriptor, LOCK_EX | LOCK_NB) == 0;
}

bool SqliteReportStore::start(QString *error)
{
    std::promise<QString> opened;
    threads.emplace_back([this, &opened] {
        SqliteConnection connection;
        QString problem;
        if (!connection.open(file)) {
            problem = connection.problem();
        } else if (!lock()) {
            problem = u"another velometer-service uses it"_s;
        } else {
            // Nobody waits yet, so another program may take its time.
            connection.execute(u"PRAGMA busy_timeout=5000"_s);
            problem = SqliteSchema::bringForward(connection, file);
            connection.execute(u"PRAGMA busy_timeout=100"_s);
        }
        const bool usable = problem.isEmpty();
        opened.set_value(problem);
        if (usable) {
            write(connection);
        }
    });
    *error = opened.get_future().get();
    if (!error->isEmpty()) {
        return false;
    }
    for (int i = 0; i < readerCount; ++i) {
        threads.emplace_back([this] { read(reads); });
    }
    threads.emplace_back([this] { read(publicReads); });
    finishDeletions();
    return true;
}

void SqliteReportStore::close(Clock::time_point deadline)
{
    end = deadline;
    {
        const std::lock_guard guard(mutex);
        closing = true;
        writes.wake.notify_all();
        reads.wake.notify_all();
        publicReads.wake.notify_all();
    }
    for (auto &thread : threads) {
        thread.join();
    }
    threads.clear();
}

/// Nothing when the store closes and the queue is empty.
std::vector<SqliteReportStore::Job> SqliteReportStore::take(Queue &queue, std::size_t most)
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

void SqliteReportStore::read(Queue &queue)
{
    stepBack();
    SqliteConnection connection;
    const bool opened = connection.open(file) && connection.execute(u"PRAGMA query_only=ON"_s);
    for (auto jobs = take(queue, 1); !jobs.empty(); jobs = take(queue, 1)) {
        const bool done = opened && Clock::now() < end.load() && connection.execute(u"BEGIN"_s) &&
                          jobs.front().run(connection);
        if (!done && Clock::now() < end.load()) {
            Log::write(Log::Level::Error,
                       "reports cannot be read: " + connection.problem().toStdString());
        }
        connection.rollBack();
        jobs.front().finish(done);
    }
}

void SqliteReportStore::write(SqliteConnection &connection)
{
    auto forgetAt = Clock::now();
    for (auto jobs = take(writes, batchSize); !jobs.empty(); jobs = take(writes, batchSize)) {
        runBatch(connection, jobs);
        if (Clock::now() >= forgetAt) {
            forgetAt = Clock::now() + forgetPeriod;
            ReportQueries::forgetStreams(connection,
                                         QDateTime::currentMSecsSinceEpoch() - streamAgeMs);
        }
    }
}

SqliteReportStore::Attempt SqliteReportStore::tryOnce(SqliteConnection &connection,
                                                      std::span<const Job> jobs)
{
    const auto patience = Clock::now() + holdTime;
    while (!connection.beginWriting()) {
        if (!connection.isHeld() || Clock::now() >= std::min(patience, end.load())) {
            return Attempt::Held;
        }
    }
    if (std::ranges::all_of(jobs, [&](const Job &job) { return job.run(connection); }) &&
        connection.commit()) {
        return Attempt::Committed;
    }
    const QString reason = connection.problem();
    connection.rollBack();
    noteFailure(reason);
    return Attempt::Failed;
}

/// All in one transaction, or, when that fails, each in its own: one bad job fails alone. Who
/// cannot begin at all tells everybody at once.
void SqliteReportStore::runBatch(SqliteConnection &connection, std::span<const Job> batch)
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
void SqliteReportStore::noteFailure(const QString &reason)
{
    const std::lock_guard guard(mutex);
    if (++failures == 1 || reason != lastReason) {
        Log::write(Log::Level::Error, "the store cannot write: " + reason.toStdString());
    }
    lastReason = reason;
}

void SqliteReportStore::noteSuccess()
{
    if (failures > 0) {
        Log::write(Log::Level::Warning,
                   "the store writes again, after failing " + std::to_string(failures) + " times");
    }
    failures = 0;
}

QString SqliteReportStore::shortage() const
{
    struct statvfs disk{};
    const bool known = ::statvfs(QFile::encodeName(file).constData(), &disk) == 0;
    return known && disk.f_bavail < minFree / disk.f_frsize ? u"its disk is full"_s : QString();
}

void SqliteReportStore::enqueue(Queue &queue, Job job, bool urgent)
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

void SqliteReportStore::findOrCreateUser(const QString &uuid,
                                         std::function<void(std::optional<User>)> done)
{
    auto user = std::make_shared<std::optional<User>>();
    enqueue(writes, {[uuid, user](SqliteConnection &connection) {
                         *user = ReportQueries::findOrCreateUser(connection, uuid);
                         return user->has_value();
                     },
                     [user, done = std::move(done)](bool committed) {
                         done(committed ? *user : std::nullopt);
                     }});
}

void SqliteReportStore::storeStream(StreamRecord record)
{
    enqueue(writes, {[record](SqliteConnection &connection) {
                         return ReportQueries::insertStream(connection, record);
                     },
                     [](bool) {}});
}

void SqliteReportStore::storeReport(Report report, std::function<void(Outcome)> done)
{
    auto outcome = std::make_shared<Outcome>(Outcome::Failed);
    enqueue(writes, {[report = std::move(report), outcome](SqliteConnection &connection) {
                         *outcome = ReportQueries::insert(connection, report);
                         return *outcome != Outcome::Failed;
                     },
                     [outcome, done = std::move(done)](bool committed) {
                         done(committed ? *outcome : Outcome::Failed);
                     }});
}

void SqliteReportStore::ping(std::function<void(QString)> done)
{
    {
        const std::lock_guard guard(mutex);
        pings.push_back(std::move(done));
        if (pings.size() > 1) {
            return;
        }
    }
    // A file that can be read may still take nothing, so this writes a page; and ahead of the
    // reports, because a long queue is no illness.
    const auto check = [](SqliteConnection &connection) {
        const auto version = connection.number(u"PRAGMA user_version"_s);
        return version && connection.execute(u"PRAGMA user_version=%1"_s.arg(*version));
    };
    const auto finish = [this](bool committed) {
        std::vector<std::function<void(QString)>> waiting;
        QString answer = shortage();
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
    enqueue(writes, {check, finish}, true);
}

} // namespace velometer
