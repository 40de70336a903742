#pragma once

#include "reports/report.h"
#include "reports/streamrecord.h"

#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace velometer {

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
        Failed
    };

    struct UserReports
    {
        bool userKnown = false;
        QList<Report> reports;       ///< newest first, without their documents
        qint64 count = 0;            ///< of all his reports
        std::optional<qint64> older; ///< before it there are older ones beyond the limit
    };

    ReportStore() = default;
    virtual ~ReportStore() = default;
    ReportStore(const ReportStore &) = delete;
    ReportStore &operator=(const ReportStore &) = delete;

    /// The user of the device @p uuid, drawn at random when it is a new one. Nothing on failure.
    virtual void findOrCreateUser(const QString &uuid,
                                  std::function<void(std::optional<User>)> done) = 0;

    /// Keeps @p record for the reports that follow it, for a month. A failure is logged.
    virtual void storeStream(StreamRecord record) = 0;

    /// A report of a user that the store does not know makes him known. It is verified against the
    /// streams stored before.
    virtual void storeReport(Report report, std::function<void(Outcome)> done) = 0;

    /// The newest @p limit reports, of those after @p before (an `older`) where it is given.
    /// Nothing on failure.
    virtual void reportsOfUser(qint64 userId, std::optional<qint64> before, int limit,
                               std::function<void(std::optional<UserReports>)> done) = 0;

    /// Why the store cannot take a report now ("its disk is full"); empty when it can.
    virtual void ping(std::function<void(QString)> done) = 0;

    /// Finishes what waits, by @p deadline at the latest: what is left then fails. Returns when
    /// every callback has been called; calls that come later fail.
    virtual void close(std::chrono::steady_clock::time_point deadline) = 0;
};

} // namespace velometer
