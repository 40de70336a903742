#include "reports/tablecache.h"

#include "reports/testqueries.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Answers kept of one user; each has some thousand points at most.
constexpr qsizetype maxAnswers = 16;

} // namespace

std::any TableCache::Memo::find(const QString &question)
{
    const std::lock_guard lock(mutex);
    return answers.value(question);
}

void TableCache::Memo::keep(const QString &question, const std::any &value)
{
    const std::lock_guard lock(mutex);
    if (answers.size() >= maxAnswers) {
        answers.clear();
    }
    answers.insert(question, value);
}

TableCache::Tests TableCache::of(SqlConnection &connection, qint64 userId)
{
    auto query = connection.select(
        u"SELECT changes, (SELECT max(id) FROM reports WHERE userid = ?) FROM users WHERE id = ?"_s,
        {userId, userId});
    if (!query) {
        return {};
    }
    if (!query->next()) {
        return {.table = std::make_shared<const TestTable>(), .memo = std::make_shared<Memo>()};
    }
    const qint64 changes = query->value(0).toLongLong();
    const qint64 last = query->value(1).toLongLong();
    query.reset();
    Kept kept = find(userId);
    const bool same = kept.tests.table && kept.changes == changes;
    if (same && kept.tests.table->lastId() >= last) {
        return kept.tests;
    }
    const auto table =
        same ? std::make_shared<TestTable>(*kept.tests.table) : std::make_shared<TestTable>();
    if (!TestQueries::fill(connection, userId, *table)) {
        return {};
    }
    const Tests tests{.table = table, .memo = std::make_shared<Memo>()};
    keep(userId, {.tests = tests, .changes = changes});
    return tests;
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
            tests += user.tests.table->size() + 1;
        }
        return tests;
    };
    while (users.size() > 1 && size() > maxTests) {
        users.erase(std::ranges::min_element(users, {},
                                             [](const auto &user) { return user.second.lastUse; }));
    }
}

} // namespace velometer
