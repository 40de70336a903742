#pragma once

#include "reports/report.h"

#include <QList>
#include <QString>

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
        QList<Report> reports; ///< newest first, without their documents
        bool more = false;     ///< there are older ones beyond the limit
    };

    ReportStore() = default;
    virtual ~ReportStore() = default;
    ReportStore(const ReportStore &) = delete;
    ReportStore &operator=(const ReportStore &) = delete;

    /// The user of the device @p uuid, drawn at random when it is a new one. Nothing on failure.
    virtual void findOrCreateUser(const QString &uuid,
                                  std::function<void(std::optional<User>)> done) = 0;

    /// A report of a user that the store does not know makes him known.
    virtual void storeReport(Report report, std::function<void(Outcome)> done) = 0;

    /// The newest @p limit reports. Nothing on failure.
    virtual void reportsOfUser(qint64 userId, int limit,
                               std::function<void(std::optional<UserReports>)> done) = 0;

    /// Whether the store answers.
    virtual void ping(std::function<void(bool)> done) = 0;
};

} // namespace velometer
