#include "reports/storemove.h"

#include "reports/storesettings.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// What one transaction of the target holds: commits cost most of the time where users are many.
constexpr qint64 usersAtOnce = 200;
constexpr qint64 rowsAtOnce = 500;

/// A document is a hundred times longer than the rest of its row, and does not change.
constexpr auto document = "document"_L1;

QStringList comparedColumns(const StoreTables::Table &table)
{
    QStringList names = table.key + table.columns;
    if (table.name == u"reports"_s) {
        names.removeAll(document);
    }
    return names;
}

QStringList conditions(const QStringList &names)
{
    QStringList list;
    for (const QString &name : names) {
        list += name + u" = ?"_s;
    }
    return list;
}

QString marks(qsizetype count)
{
    return QStringList(count, u"?"_s).join(u", "_s);
}

bool isSame(const QVariantList &one, const QVariantList &other)
{
    return std::ranges::equal(one, other, [](const QVariant &a, const QVariant &b) {
        return a.isNull() == b.isNull() && (a.isNull() || a == b);
    });
}

} // namespace

QString StoreMove::run(const Progress &progress)
{
    if (QString reason = begin(); !reason.isEmpty()) {
        return reason;
    }
    if (!moveAll(progress) || !finish()) {
        QString reason = problem();
        from.rollBack();
        to.rollBack();
        return reason;
    }
    return {};
}

QString StoreMove::problem() const
{
    return to.problem().isEmpty() ? from.problem() : to.problem();
}

QString StoreMove::begin()
{
    const auto key = StoreSettings::value(from, StoreSettings::deviceKey);
    const auto served = StoreSettings::value(to, StoreSettings::served);
    const auto begun = StoreSettings::value(to, StoreSettings::moving);
    const auto users = to.number(u"SELECT count(*) FROM users"_s);
    if (!key || !served || !begun || !users) {
        return problem();
    }
    if (key->isEmpty()) {
        return u"no service of this version has used the source yet; start one"_s;
    }
    if (!served->isEmpty() || (*users > 0 && begun->isEmpty())) {
        return u"the target has users of its own, who would be lost"_s;
    }
    const bool noted = StoreSettings::set(to, StoreSettings::moving, u"1"_s) &&
                       StoreSettings::set(to, StoreSettings::deviceKey, *key);
    return noted ? QString() : problem();
}

bool StoreMove::moveAll(const Progress &progress)
{
    qint64 after = -1;
    qint64 count = 0;
    while (true) {
        // Streams may come before their user's first report.
        auto query = from.select(u"SELECT id FROM users WHERE id > ? UNION SELECT userid FROM "
                                 "streams WHERE userid > ? ORDER BY 1 LIMIT %1"_s.arg(usersAtOnce),
                                 {after, after});
        if (!query) {
            return false;
        }
        QList<qint64> users;
        while (query->next()) {
            users += query->value(0).toLongLong();
        }
        query.reset();
        if (users.isEmpty()) {
            return true;
        }
        if (!to.beginWriting()) {
            return false;
        }
        for (const qint64 user : std::as_const(users)) {
            if (!moveUser(user)) {
                return false;
            }
        }
        if (!to.commit()) {
            return false;
        }
        after = users.constLast();
        count += users.size();
        progress(count, changed);
    }
}

bool StoreMove::moveUser(qint64 user)
{
    // One moment of the source, whatever its service does meanwhile.
    const bool done =
        from.beginReading() && std::ranges::all_of(StoreTables::all(), [&](const auto &table) {
            return moveTable(table, user);
        });
    from.rollBack();
    return done;
}

std::optional<StoreMove::Rows> StoreMove::rowsOf(SqlConnection &connection,
                                                 const StoreTables::Table &table, qint64 user)
{
    const QStringList names = comparedColumns(table);
    auto query = connection.select(
        u"SELECT %1 FROM %2 WHERE %3 = ?"_s.arg(names.join(u", "_s), table.name, table.user),
        {user});
    if (!query) {
        return std::nullopt;
    }
    Rows rows;
    while (query->next()) {
        QVariantList row;
        for (int column = 0; column < names.size(); ++column) {
            row += query->value(column);
        }
        QString name;
        for (int column = 0; column < table.key.size(); ++column) {
            name += row.at(column).toString() + u' ';
        }
        rows.emplace(name, row);
    }
    return rows;
}

bool StoreMove::moveTable(const StoreTables::Table &table, qint64 user)
{
    const auto wanted = rowsOf(from, table, user);
    const auto there = rowsOf(to, table, user);
    if (!wanted || !there) {
        return false;
    }
    const QStringList names = comparedColumns(table);
    const QString whose =
        u" WHERE %1 = ? AND "_s.arg(table.user) + conditions(table.key).join(u" AND "_s);
    for (const auto &[name, row] : *wanted) {
        const auto known = there->find(name);
        if (known != there->end() && isSame(known->second, row)) {
            continue;
        }
        // A device that was deleted may have come back as another user.
        const bool freed = table.name != u"users"_s || row.at(1).isNull() ||
                           to.execute(u"UPDATE users SET uuid = NULL WHERE uuid = ? AND id <> ?"_s,
                                      {row.at(1), user});
        const bool done =
            freed && (known == there->end()
                          ? insert(table, row)
                          : to.execute(u"UPDATE %1 SET %2"_s.arg(table.name,
                                                                 conditions(names).join(u", "_s)) +
                                           whose,
                                       row + QVariantList{user} + row.first(table.key.size())));
        if (!done) {
            return false;
        }
        // A user of a million tests is no single transaction.
        if (++changed % rowsAtOnce == 0 && !(to.commit() && to.beginWriting())) {
            return false;
        }
    }
    for (const auto &[name, row] : *there) {
        if (!wanted->contains(name)) {
            ++changed;
            if (!to.execute(u"DELETE FROM "_s + table.name + whose,
                            QVariantList{user} + row.first(table.key.size()))) {
                return false;
            }
        }
    }
    return true;
}

bool StoreMove::insert(const StoreTables::Table &table, const QVariantList &row)
{
    QStringList names = comparedColumns(table);
    QVariantList values = row;
    if (table.name == u"reports"_s) {
        auto query = from.select(u"SELECT document FROM reports WHERE id = ?"_s, {row.first()});
        if (!query || !query->next()) {
            return false;
        }
        names += document;
        values += query->value(0);
    }
    return to.execute(u"INSERT INTO %1(%2) VALUES(%3)"_s.arg(table.name, names.join(u", "_s),
                                                             marks(names.size())),
                      values);
}

bool StoreMove::finish()
{
    // What is drawn from now on comes after what was moved.
    const QString next = u"SELECT setval(%1, (SELECT coalesce(max(id), 0) + 1 FROM %2), false)"_s;
    return to.select(next.arg(u"'report_ids'"_s, u"reports"_s)) &&
           to.select(next.arg(u"pg_get_serial_sequence('tracks', 'id')"_s, u"tracks"_s)) &&
           to.select(next.arg(u"pg_get_serial_sequence('trackcells', 'id')"_s, u"trackcells"_s)) &&
           StoreSettings::set(to, StoreSettings::moving, u"done"_s);
}

} // namespace velometer
