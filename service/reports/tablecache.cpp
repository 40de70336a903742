#include "reports/tablecache.h"

#include "reports/testqueries.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

std::shared_ptr<const TestTable> TableCache::of(SqliteConnection &connection, qint64 userId)
{
    auto query = connection.select(
        u"SELECT changes, (SELECT max(id) FROM reports WHERE userid = ?) FROM users WHERE id = ?"_s,
        {userId, userId});
    if (!query) {
        return nullptr;
    }
    if (!query->next()) {
        return std::make_shared<const TestTable>();
    }
    const qint64 changes = query->value(0).toLongLong();
    const qint64 last = query->value(1).toLongLong();
    query.reset();
    Kept kept = find(userId);
    const bool same = kept.table && kept.changes == changes;
    if (same && kept.table->lastId() >= last) {
        return kept.table;
    }
    const auto table =
        same ? std::make_shared<TestTable>(*kept.table) : std::make_shared<TestTable>();
    if (!TestQueries::fill(connection, userId, *table)) {
        return nullptr;
    }
    keep(userId, {.table = table, .changes = changes});
    return table;
}

TableCache::Kept TableCache::find(qint64 userId)
{
    const std::lock_guard lock(mutex);
    const auto user = users.find(userId);
    if (user == users.end()) {
        return {};
    }
    user->second.lastUse = ++uses;
    return user->second;
}

void TableCache::keep(qint64 userId, const Kept &kept)
{
    const std::lock_guard lock(mutex);
    users[userId] = kept;
    users[userId].lastUse = ++uses;
    const auto size = [&] {
        qint64 tests = 0;
        for (const auto &[id, user] : users) {
            tests += user.table->size() + 1;
        }
        return tests;
    };
    while (users.size() > 1 && size() > maxTests) {
        users.erase(std::ranges::min_element(users, {},
                                             [](const auto &user) { return user.second.lastUse; }));
    }
}

} // namespace velometer
