#pragma once

#include "limits/allowances.h"
#include "reports/report.h"
#include "reports/statistics.h"
#include "reports/streamrecord.h"
#include "reports/testquery.h"
#include "track/trackpart.h"

#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace velometer {

/// What a store has to do at a moment.
struct StoreLoad
{
    qint64 writes = 0; ///< that wait
    qint64 reads = 0;  ///< likewise
    // NOLINTNEXTLINE(readability-redundant-member-init): lets it be left out
    std::optional<qint64> freeBytes{}; ///< of its disk, where it is this machine's
};

/// Where users and reports are kept for good. Every call returns at once and is safe from every
/// thread; its callback is called exactly once, from a thread of the store or, when the store is
/// overloaded or closing, within the call.
class ReportStore
{
public:
    struct User
    {
        qint64 id = 0;
        qint64 lastSeries = 0; ///< greatest series among his stored reports, 0 without any
    };

    enum class Outcome {
        Stored,   ///< committed to disk
        Repeated, ///< this very report was committed before
        Deleted,  ///< its user has had everything deleted; nothing is kept
        Failed
    };

    /// One test with all that is kept of it.
    struct StoredTest
    {
        TestRow row;
        QString document;                     ///< the report, filled in
        std::optional<StreamRecord> download; ///< what the service saw itself
        std::optional<StreamRecord> upload;
    };

    /// Of a long walk through tests.
    struct Documents
    {
        QList<StoredTest> tests;
        QString next; ///< cursor of what follows; empty at the end
    };

    template <typename Value>
    using Answer = std::function<void(std::optional<Value>)>;

    ReportStore() = default;
    virtual ~ReportStore() = default;
    ReportStore(const ReportStore &) = delete;
    ReportStore &operator=(const ReportStore &) = delete;

    /// The user of @p device, drawn at random when it is a new one. Of the device's text a keyed
    /// hash alone is kept. Nothing on failure.
    virtual void findOrCreateUser(const QString &device,
                                  std::function<void(std::optional<User>)> done) = 0;

    /// Keeps @p record for the reports that follow it, for a month. A failure is logged.
    virtual void storeStream(StreamRecord record) = 0;

    /// What was kept of such a stream, by whichever service measured it; an empty list when nothing
    /// was.
    virtual void stream(const StreamKey &test, Direction direction,
                        std::function<void(std::optional<QList<StreamRecord>>)> done) = 0;

    /// A report of a user that the store does not know makes him known. It is verified against the
    /// streams stored before.
    virtual void storeReport(Report report, std::function<void(Outcome)> done) = 0;

    // What subscribers have spent at all services that share the store.

    /// The name under which @p text is kept, which tells nobody what it was.
    virtual std::string pseudonym(const std::string &text) const = 0;
    virtual void allowances(const Allowances::Limits &limits,
                            Answer<std::vector<Allowances::Level>> done) = 0;
    /// Adds @p news to them; the answer is what comes of it.
    virtual void addAllowances(const Allowances::Limits &limits,
                               std::vector<Allowances::Level> news,
                               Answer<std::vector<Allowances::Level>> done) = 0;
    /// Whether @p userId has a report that streams of a service back.
    virtual void isProven(qint64 userId, Answer<bool> done) = 0;

    // What is asked about the tests of a user, see testquery.h. Nothing on failure; of a user that
    // is not known there are no tests.

    /// What a user id lets one see, and what a share's key does at the moment @p now.
    virtual void accessOfUser(qint64 userId, Answer<Access> done) = 0;
    virtual void accessOfShare(const QString &key, qint64 now, Answer<Access> done) = 0;

    virtual void tests(const TestScope &scope, const TestOrder &order, Answer<TestPage> done) = 0;
    virtual void summary(const TestScope &scope, Answer<Summary> done) = 0;
    virtual void buckets(const TestScope &scope, const BucketQuery &query,
                         Answer<Buckets> done) = 0;
    virtual void distribution(const TestScope &scope, const DistributionQuery &query,
                              Answer<Distribution> done) = 0;
    virtual void map(const TestScope &scope, const MapQuery &query, Answer<MapData> done) = 0;
    virtual void facets(const TestScope &scope, Answer<Facets> done) = 0;

    /// The test called @p name, the newest where the device has counted anew; an empty list where
    /// the scope has none of that name.
    virtual void test(const TestScope &scope, const TestName &name,
                      Answer<QList<StoredTest>> done) = 0;

    /// Some of the tests, the newest first, from the cursor @p after on, as many as are read
    /// quickly. Tests that come meanwhile may be missed; none comes twice.
    virtual void documents(const TestScope &scope, const QString &after,
                           Answer<Documents> done) = 0;

    // What a user changes. Nothing on failure.

    /// False when the scope has no such test. An empty note takes it away.
    virtual void setNote(const TestScope &scope, qint64 id, const QString &note,
                         Answer<bool> done) = 0;

    /// Deletes with documents and streams, a few at a time, so that reports go on being taken: the
    /// answer is the tests that are gone. After a failure some may be.
    virtual void deleteTests(const TestScope &scope, Answer<QList<StreamKey>> done) = 0;

    /// From the moment this begins the user is deleted for good; the answer comes when everything
    /// is gone, with the number of rows. What a crash leaves is deleted at the next start.
    virtual void deleteUser(qint64 userId, Answer<qint64> done) = 0;

    /// False when the user has too many, or is not known.
    virtual void addShare(qint64 userId, const Share &share, Answer<bool> done) = 0;
    /// Those that have not expired at @p now, the newest first.
    virtual void shares(qint64 userId, qint64 now, Answer<QList<Share>> done) = 0;
    /// False when there is none of that key.
    virtual void removeShare(qint64 userId, const QString &key, Answer<bool> done) = 0;

    // Tracks: points in their order, which only ever grow at their end.

    enum class TrackState {
        Taken,   ///< committed to disk
        Gap,     ///< the part begins beyond the points that are here
        Full,    ///< the user has as many tracks as are kept
        Deleted, ///< the user has had everything deleted
    };
    struct TrackTaken
    {
        TrackState state = TrackState::Taken;
        qint64 points = 0; ///< that are here now
    };
    static constexpr qint64 maxTracks = 1'000; ///< of one user

    /// Puts the points of @p part behind those that are here; what came before is not kept twice.
    virtual void takeTrack(qint64 userId, const TrackPart &part, Answer<TrackTaken> done) = 0;
    /// The newest first.
    virtual void tracks(qint64 userId, Answer<QList<Track>> done) = 0;
    /// As many points as are kept together, from number @p first of the track on; without points
    /// behind its end. An empty list where there is no such track.
    virtual void trackPart(qint64 userId, const QString &id, qint64 first,
                           Answer<QList<TrackPart>> done) = 0;
    /// False when there is none.
    virtual void removeTrack(qint64 userId, const QString &id, Answer<bool> done) = 0;

    /// Figures of all users that may be public, some minutes old at most. After a start this may
    /// take a while; nothing else waits for it.
    virtual void statistics(StatisticsBy by, Answer<Statistics> done) = 0;

    /// Why the store cannot take a report now ("its disk is full"); empty when it can.
    virtual void ping(std::function<void(QString)> done) = 0;

    /// That which keeps other services away from it; -1: nothing does.
    virtual int lockDescriptor() const = 0;

    /// How much it has to do.
    virtual StoreLoad load() = 0;

    /// Finishes what waits, by @p deadline at the latest: what is left then fails. Returns when
    /// every callback has been called; calls that come later fail.
    virtual void close(std::chrono::steady_clock::time_point deadline) = 0;
};

} // namespace velometer
