#pragma once

#include "reports/sqlconnection.h"
#include "reports/testtable.h"

#include <QHash>

#include <any>
#include <map>
#include <memory>
#include <mutex>

namespace velometer {

/// The tables of the users who looked last, so many tests in all. Safe from every thread.
class TableCache
{
public:
    /// A hundred bytes each.
    static constexpr qint64 maxTests = TestTable::maxTests;

    /// What was computed from one table, by the question's text: a page that is looked at again
    /// costs nothing. Safe from every thread.
    class Memo
    {
    public:
        template <typename Value, typename Compute>
        Value get(const QString &question, const Compute &compute)
        {
            if (const std::any known = find(question); known.has_value()) {
                return std::any_cast<Value>(known);
            }
            Value value = compute();
            keep(question, value);
            return value;
        }

    private:
        std::any find(const QString &question);
        void keep(const QString &question, const std::any &value);

        std::mutex mutex;
        QHash<QString, std::any> answers;
    };

    struct Tests
    {
        std::shared_ptr<const TestTable> table; ///< null on failure
        std::shared_ptr<Memo> memo;
    };

    /// The tests of @p userId as @p connection's transaction sees them; of a user who is not known
    /// there are none. Reads those alone that are new since the last time, unless some were
    /// deleted.
    Tests of(SqlConnection &connection, qint64 userId);

private:
    struct Kept
    {
        Tests tests;
        qint64 changes = 0; ///< of the user, when it was read
        qint64 lastUse = 0;
    };
    Kept find(qint64 userId);
    void keep(qint64 userId, const Kept &kept);

    std::mutex mutex;
    std::map<qint64, Kept> users;
    qint64 uses = 0;
};

} // namespace velometer
