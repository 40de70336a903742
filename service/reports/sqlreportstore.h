#pragma once

#include "reports/devicekey.h"
#include "reports/reconnecting.h"
#include "reports/reportstore.h"
#include "reports/sqldatabase.h"
#include "reports/statisticsreader.h"
#include "reports/storeoptions.h"
#include "reports/tablecache.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

namespace velometer {

/// Users, reports and shares in a data base: threads that write, and others that read beside them,
/// each with a connection of its own. Writes that wait at the same time share a transaction, and a
/// callback comes after its commit: a report that was acknowledged survives a power cut. A
/// connection that is lost is made again.
class SqlReportStore : public ReportStore
{
public:
    /// Writes, and reads, that may wait; beyond them the store fails them at once.
    static constexpr std::size_t queueLength = 1000;

    /// Opens the data base that @p options tell; a file is made, with its directory, when missing.
    /// Nothing on failure; @p error then says in a sentence why.
    static std::unique_ptr<SqlReportStore> open(const StoreOptions &options, QString *error);

    /// The data base that @p name tells, not opened yet.
    static std::unique_ptr<SqlDatabase> databaseOf(const QString &name, int inheritedLock = -1);

    /// Closes, with all the time it takes.
    ~SqlReportStore() override;

    void findOrCreateUser(const QString &device,
                          std::function<void(std::optional<User>)> done) override;
    void storeStream(StreamRecord record) override;
    void stream(const StreamKey &test, Direction direction,
                Answer<QList<StreamRecord>> done) override;
    void storeReport(Report report, std::function<void(Outcome)> done) override;
    std::string pseudonym(const std::string &text) const override;
    void allowances(const Allowances::Limits &limits,
                    Answer<std::vector<Allowances::Level>> done) override;
    void addAllowances(const Allowances::Limits &limits, std::vector<Allowances::Level> news,
                       Answer<std::vector<Allowances::Level>> done) override;
    void isProven(qint64 userId, Answer<bool> done) override;
    void accessOfUser(qint64 userId, Answer<Access> done) override;
    void accessOfShare(const QString &key, qint64 now, Answer<Access> done) override;
    void tests(const TestScope &scope, const TestOrder &order, Answer<TestPage> done) override;
    void summary(const TestScope &scope, Answer<Summary> done) override;
    void buckets(const TestScope &scope, const BucketQuery &query, Answer<Buckets> done) override;
    void distribution(const TestScope &scope, const DistributionQuery &query,
                      Answer<Distribution> done) override;
    void map(const TestScope &scope, const MapQuery &query, Answer<MapData> done) override;
    void facets(const TestScope &scope, Answer<Facets> done) override;
    void test(const TestScope &scope, const TestName &name,
              Answer<QList<StoredTest>> done) override;
    void documents(const TestScope &scope, const QString &after, Answer<Documents> done) override;
    void setNote(const TestScope &scope, qint64 id, const QString &note,
                 Answer<bool> done) override;
    void deleteTests(const TestScope &scope, Answer<QList<StreamKey>> done) override;
    void deleteUser(qint64 userId, Answer<qint64> done) override;
    void addShare(qint64 userId, const Share &share, Answer<bool> done) override;
    void shares(qint64 userId, qint64 now, Answer<QList<Share>> done) override;
    void removeShare(qint64 userId, const QString &key, Answer<bool> done) override;
    void takeTrack(qint64 userId, const TrackPart &part, Answer<TrackTaken> done) override;
    void tracks(qint64 userId, Answer<QList<Track>> done) override;
    void trackPart(qint64 userId, const QString &id, qint64 first,
                   Answer<QList<TrackPart>> done) override;
    void removeTrack(qint64 userId, const QString &id, Answer<bool> done) override;
    void statistics(StatisticsBy by, Answer<Statistics> done) override;
    void ping(std::function<void(QString)> done) override;
    int lockDescriptor() const override { return database->lockDescriptor(); }
    StoreLoad load() override;
    void close(std::chrono::steady_clock::time_point deadline) override;

private:
    using Clock = std::chrono::steady_clock;

    /// One operation: runs inside the transaction, true on success, and again when the transaction
    /// it shared failed; in the end it is told how it went and calls its callback.
    struct Job
    {
        std::function<bool(SqlConnection &)> run;
        std::function<void(bool committed)> finish;
        qint64 whose = 0; ///< writes what belongs to this user, or what lockOf() gives
    };
    struct Queue
    {
        std::deque<Job> jobs;
        std::condition_variable wake;
    };
    enum class Attempt { Committed, Failed, Held /**< by another program */ };

    SqlReportStore(StoreOptions storeOptions, std::unique_ptr<SqlDatabase> opened);
    void start();
    void enqueue(Queue &queue, Job job, bool urgent = false);
    /// Runs @p query on one of the queues and hands on what it gives.
    template <typename Value>
    void ask(Queue &queue, std::function<std::optional<Value>(SqlConnection &)> query,
             Answer<Value> done, qint64 whose = 0);
    /// Hands on what @p figures makes of a user's tests, or made of them when the @p question was
    /// asked before.
    template <typename Value>
    void compute(const TestScope &scope, const QString &question,
                 std::function<Value(const TestTable &)> figures, Answer<Value> done);
    void finishDeletions();
    /// What the store does by itself, between what it is asked.
    void upkeep();
    bool purge(std::optional<int> days,
               std::optional<qint64> (*step)(SqlConnection &connection, qint64 oldest));
    void deleteMore(const TestScope &scope, QList<StreamKey> gone, Answer<QList<StreamKey>> done);
    void eraseMore(qint64 userId, qint64 gone, Answer<qint64> done);
    std::vector<Job> take(Queue &queue, std::size_t most);
    void read(Queue &queue);
    void write(Queue &queue);
    Queue &writesFor(qint64 whose);
    Attempt tryOnce(Reconnecting &connection, std::span<const Job> jobs);
    void runBatch(Reconnecting &connection, std::span<const Job> batch);
    void noteFailure(const QString &reason);
    void noteSuccess();

    const StoreOptions options;
    DeviceKey deviceKey;
    std::unique_ptr<SqlDatabase> database;
    std::mutex mutex;
    std::array<Queue, SqlDatabase::mostWriters> writes; ///< one each writer
    Queue reads;
    Queue publicReads; ///< long ones, of a thread of their own
    bool closing = false;
    std::condition_variable upkeepWake;
    TableCache tables;
    StatisticsReader publicFigures;                               ///< of the thread of publicReads
    std::vector<std::function<void(QString)>> pings;              ///< that one check answers
    std::atomic<Clock::time_point> end{Clock::time_point::max()}; ///< of all work
    int failures = 0;   ///< of the writers since their last success
    QString lastReason; ///< of the latest of them
    std::vector<std::thread> threads;
};

template <typename Value>
void SqlReportStore::ask(Queue &queue, std::function<std::optional<Value>(SqlConnection &)> query,
                         Answer<Value> done, qint64 whose)
{
    auto value = std::make_shared<std::optional<Value>>();
    enqueue(queue, {.run =
                        [query = std::move(query), value](SqlConnection &connection) {
                            *value = query(connection);
                            return value->has_value();
                        },
                    .finish = [value, done = std::move(done)](
                                  bool worked) { done(worked ? std::move(*value) : std::nullopt); },
                    .whose = whose});
}

} // namespace velometer
