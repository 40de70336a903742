#pragma once

#include "app/resultfilter.h"
#include "db/dbtestresults.h"

#include <QDate>
#include <QHash>
#include <QList>
#include <QSet>
#include <QStringList>

#include <memory>
#include <utility>
#include <vector>

namespace velometer {

/// The stored tests as a list shows them: filtered, sorted, and by time grouped by day and series,
/// with groups that open and close. Knows no screen. Made anew, it costs some microseconds a test.
class ResultListing
{
public:
    using Rows = std::vector<std::unique_ptr<DBTestResults>>;

    enum class Order {
        Newest,   ///< by time, in groups
        Download, ///< the fastest first, in one group, as the others; what was not measured is last
        Upload,
        Rtt,
    };

    /// Tests of one series on one day, by this machine's time; or, where the order is another one,
    /// all tests.
    struct Group
    {
        QDate day; ///< invalid where the time of its tests cannot be one, and of all tests
        qlonglong series = 0;
        bool closable = true; ///< false of all tests
        bool open = true;
        std::vector<size_t> rows; ///< in the order of the list
    };

    /// A line of the list.
    struct Item
    {
        size_t group = 0;
        const DBTestResults *test = nullptr; ///< null of the group's heading
    };

    /// Of the tests of a group that have the figure; 0 where none has.
    struct Medians
    {
        double download = 0, upload = 0; ///< bit/s
        double rtt = 0;                  ///< ms
    };

    /// @p rows as the store gives them, in place of those before. Groups stay as open as they were.
    void setRows(Rows rows);
    void setFilter(const ResultFilter &filter);
    void setOrder(Order order);
    /// Closes an open group and opens a closed one.
    void toggle(size_t group);

    const ResultFilter &filter() const { return chosen; }
    Order order() const { return sorted; }
    const std::vector<Item> &items() const { return lines; }
    size_t groupCount() const { return groups.size(); }
    const Group &group(size_t index) const { return groups[index]; }
    Medians medians(size_t group) const;

    size_t total() const { return tests.size(); } ///< stored
    size_t matching() const { return matched; }   ///< those that the filter lets through
    /// Row ids of all that the filter lets through, in the order of the list, closed groups too.
    QList<qulonglong> ids() const;
    /// What there is to choose from, sorted, over all stored tests.
    QStringList servers() const;
    QStringList locations() const;

private:
    using Key = std::pair<qint64, qlonglong>; ///< day as a number, series
    static Key keyOf(const Group &group) { return {group.day.toJulianDay(), group.series}; }

    void arrange();
    void sort(std::vector<size_t> &order) const;
    void makeGroups(const std::vector<size_t> &order);
    void makeLines();

    Rows tests;
    ResultFilter chosen;
    Order sorted = Order::Newest;
    QHash<Key, bool> toggled; ///< open or closed by the user
    std::vector<Group> groups;
    std::vector<Item> lines;
    size_t matched = 0;
};

} // namespace velometer
