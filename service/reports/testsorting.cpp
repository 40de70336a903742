// The list of a user's tests in each of its orders.
#include "reports/testtable.h"

#include <algorithm>
#include <compare>

namespace velometer {

/// Keys in ascending order are tests in the order that was asked for.
struct TestTable::SortKey
{
    bool isUnknown = false;
    qint64 value = 0;
    qint64 id = 0;

    auto operator<=>(const SortKey &) const = default;
};

class TestTable::Sorting
{
public:
    Sorting(const TestTable &sortedTable, const TestOrder &wanted)
        : table(sortedTable)
        , order(wanted)
    {
        if (order.by == TestOrder::By::Server) {
            rankServers();
        }
    }

    SortKey key(const Entry &entry) const { return key(value(entry), entry.id); }

    SortKey key(const Cursor &cursor) const
    {
        if (!cursor.value) {
            return key(none, cursor.id);
        }
        if (order.by != TestOrder::By::Server) {
            return key(cursor.value->toLongLong(), cursor.id);
        }
        const auto place = std::ranges::lower_bound(servers, *cursor.value);
        const auto rank = 2 * (place - servers.begin());
        return key(place != servers.end() && *place == *cursor.value ? rank : rank - 1, cursor.id);
    }

    Cursor cursor(const Entry &entry) const
    {
        Cursor cursor{.value = {}, .id = entry.id};
        if (order.by == TestOrder::By::Server) {
            cursor.value = table.servers.list.at(entry.server);
        } else if (const qint64 known = value(entry); canBe(known)) {
            cursor.value = QString::number(known);
        }
        return cursor;
    }

private:
    /// Times may be negative: a device's clock says what it likes.
    bool canBe(qint64 value) const { return value != none || order.by == TestOrder::By::Time; }

    SortKey key(qint64 value, qint64 id) const
    {
        // Not the negative: of the least number there is none.
        const auto directed = [this](qint64 number) { return order.ascending ? number : ~number; };
        const bool known = canBe(value);
        return {.isUnknown = !known, .value = known ? directed(value) : 0, .id = directed(id)};
    }

    qint64 value(const Entry &entry) const
    {
        switch (order.by) {
        case TestOrder::By::Time: return entry.time;
        case TestOrder::By::Download: return entry.download;
        case TestOrder::By::Upload: return entry.upload;
        case TestOrder::By::Rtt: return entry.rtt;
        case TestOrder::By::Type: return static_cast<qint64>(entry.type);
        case TestOrder::By::Server: break;
        }
        return ranks.at(entry.server);
    }

    /// Even ones, so that a server which a cursor names and nobody has any more finds its place.
    void rankServers()
    {
        servers = table.servers.list;
        std::ranges::sort(servers);
        for (const QString &server : table.servers.list) {
            ranks.push_back(2 * (std::ranges::lower_bound(servers, server) - servers.begin()));
        }
    }

    const TestTable &table;
    const TestOrder &order;
    QStringList servers; ///< sorted
    std::vector<qint64> ranks;
};

TestTable::Listed TestTable::list(const TestScope &scope, const TestOrder &order) const
{
    const Sorting sorting(*this, order);
    const auto after =
        order.after ? std::optional(sorting.key(*order.after)) : std::optional<SortKey>();
    struct Found
    {
        SortKey key;
        const Entry *entry;
    };
    // A heap of those shown and one more, the last of them on top.
    std::vector<Found> found;
    const auto limit = static_cast<std::size_t>(order.limit);
    Listed listed;
    forEach(scope, [&](const Entry &entry) {
        ++listed.count;
        const Found each{.key = sorting.key(entry), .entry = &entry};
        if ((after && each.key <= *after) ||
            (found.size() > limit && each.key > found.front().key)) {
            return;
        }
        if (found.size() > limit) {
            std::ranges::pop_heap(found, {}, &Found::key);
            found.pop_back();
        }
        found.push_back(each);
        std::ranges::push_heap(found, {}, &Found::key);
    });
    std::ranges::sort_heap(found, {}, &Found::key);
    if (found.size() > limit) {
        found.pop_back();
        listed.next = sorting.cursor(*found.back().entry).toText();
    }
    for (const Found &each : found) {
        listed.ids += each.entry->id;
    }
    return listed;
}

} // namespace velometer
