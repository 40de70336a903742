#pragma once

#include "reports/reportstore.h"

#include <QSqlDatabase>
#include <QStringList>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

namespace velometer {

/// The reports in one SQLite file, written and read by one thread of its own. Writes that wait at
/// the same time share a transaction, and a callback comes after its commit: a report that was
/// acknowledged survives a power cut. One process per file.
class SqliteReportStore : public ReportStore
{
public:
    /// Operations that may wait; beyond them the store fails them at once.
    static constexpr std::size_t queueLength = 1000;

    /// Opens @p file, makes it and its directory when missing, and brings an older schema forward.
    /// Nothing on failure; @p error then says in a sentence why.
    static std::unique_ptr<SqliteReportStore> open(const QString &file, QString *error);

    /// Finishes what is in the queue, then closes the file.
    ~SqliteReportStore() override;

    void findOrCreateUser(const QString &uuid,
                          std::function<void(std::optional<User>)> done) override;
    void storeReport(Report report, std::function<void(Outcome)> done) override;
    void reportsOfUser(qint64 userId, int limit,
                       std::function<void(std::optional<UserReports>)> done) override;
    void ping(std::function<void(bool)> done) override;

private:
    /// One operation: runs inside the transaction, true on success, and again when the transaction
    /// it shared failed; in the end it is told how it went and calls its callback.
    struct Job
    {
        bool writes;
        std::function<bool(QSqlDatabase &)> run;
        std::function<void(bool committed)> finish;
    };

    SqliteReportStore() = default;
    void enqueue(Job job);
    void work(const QString &file, QString *error, bool *opened);
    enum class Attempt { Committed, Failed, Held /**< by another program */ };
    static Attempt tryOnce(QSqlDatabase &database, std::span<const Job> jobs);

    /// All in one transaction, or, when that fails, each in its own: one bad job fails alone.
    static void runBatch(QSqlDatabase &database, std::span<const Job> batch);

    std::mutex mutex;
    std::condition_variable wake;
    std::deque<Job> queue;
    bool closing = false;
    bool started = false;
    std::thread thread;
};

} // namespace velometer
