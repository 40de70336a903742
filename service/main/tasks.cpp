#include "main/tasks.h"

#include "main/openstore.h"
#include "reports/postgresdatabase.h"
#include "reports/storemove.h"
#include "reports/storetables.h"
#include "reports/userqueries.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer::Tasks {

namespace {

int fail(const QString &sentence)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(sentence));
    return 1;
}

int failRead(const SqlConnection &connection)
{
    return fail(u"The database cannot be read: %1."_s.arg(connection.problem()));
}

bool print(const QString &line)
{
    return std::fprintf(stdout, "%s\n", qUtf8Printable(line)) >= 0;
}

QJsonValue jsonOf(const QVariant &value)
{
    return value.typeId() == QMetaType::QByteArray
               ? QJsonValue(QString::fromUtf8(qUncompress(value.toByteArray())))
               : QJsonValue::fromVariant(value);
}

/// Runs @p step in transactions of its own until it answers 0; how much it answered in all. The
/// service, where one runs, has its turn between them.
template <typename Step>
std::optional<qint64> inSteps(SqlConnection &connection, Step step)
{
    // Another program may have what a transaction needs for so long.
    constexpr auto patience = 10s;
    qint64 all = 0;
    auto deadline = std::chrono::steady_clock::now() + patience;
    while (true) {
        if (!connection.beginWriting()) {
            if (!connection.isHeld() || std::chrono::steady_clock::now() > deadline) {
                return std::nullopt;
            }
            continue;
        }
        const std::optional<qint64> count = step();
        if (!count || !connection.commit()) {
            connection.rollBack();
            return std::nullopt;
        }
        if (*count == 0) {
            return all;
        }
        all += *count;
        deadline = std::chrono::steady_clock::now() + patience;
        std::this_thread::sleep_for(1ms);
    }
}

} // namespace

int migrate(const QString &from, const QString &to)
{
    if (PostgresDatabase::isAddress(from) || !PostgresDatabase::isAddress(to)) {
        return fail(u"A store is moved from sqlite:FILE to postgresql://USER@HOST/DATABASE."_s);
    }
    QString problem;
    const OpenStore source(from, false, &problem);
    if (!source.connection) {
        return fail(problem);
    }
    PostgresDatabase target(to);
    problem = target.prepare();
    const auto connection = problem.isEmpty() ? target.connect(true, &problem) : nullptr;
    if (!connection) {
        return fail(u"The database %1 cannot be used: %2."_s.arg(target.shownName(), problem));
    }
    qint64 told = 0;
    const auto begun = std::chrono::steady_clock::now();
    auto next = begun + 1s;
    problem = StoreMove(*source.connection, *connection).run([&](qint64 users, qint64 rows) {
        told = rows;
        if (std::chrono::steady_clock::now() >= next) {
            next += 1s;
            std::fprintf(stderr, "%lld users, %lld rows changed\n", static_cast<long long>(users),
                         static_cast<long long>(rows));
        }
    });
    if (!problem.isEmpty()) {
        return fail(u"Moving has not come to its end: %1. Run it again to go on."_s.arg(problem));
    }
    print(u"%1 rows changed; %2 has all of %3."_s.arg(told).arg(target.shownName(), from));
    return 0;
}

int forget(const StoreOptions &store, qint64 user)
{
    QString problem;
    const OpenStore open(store.database, true, &problem);
    if (!open.connection) {
        return fail(problem);
    }
    SqlConnection &connection = *open.connection;
    const auto access = UserQueries::access(connection, user);
    if (!access) {
        return failRead(connection);
    }
    if (access->state == Access::State::Unknown) {
        return fail(u"There is no user %1."_s.arg(user));
    }
    bool marked = false;
    const auto rows = inSteps(connection, [&]() -> std::optional<qint64> {
        if (!marked) {
            marked =
                UserQueries::markDeleted(connection, user, QDateTime::currentMSecsSinceEpoch());
            return marked ? std::optional<qint64>(1) : std::nullopt;
        }
        return UserQueries::eraseSome(connection, user);
    });
    if (!rows) {
        return fail(
            u"Forgetting user %1 has not come to its end: %2. Run it again to go on."_s.arg(user)
                .arg(connection.problem()));
    }
    print(u"Deleted %1 rows of user %2; his reports are refused from now on."_s.arg(*rows - 1).arg(
        user));
    return 0;
}

int exportUser(const StoreOptions &store, qint64 user)
{
    QString problem;
    const OpenStore open(store.database, false, &problem);
    if (!open.connection) {
        return fail(problem);
    }
    SqlConnection &connection = *open.connection;
    bool done = connection.beginReading();
    qint64 count = 0;
    for (const auto &table : StoreTables::all()) {
        const QStringList names = table.key + table.columns;
        auto query = done ? connection.select(u"SELECT %1 FROM %2 WHERE %3 = ?"_s.arg(
                                                  names.join(u", "_s), table.name, table.user),
                                              {user})
                          : std::nullopt;
        done = query.has_value();
        while (query && query->next()) {
            QJsonObject row{{u"table"_s, table.name}};
            for (int column = 0; column < names.size(); ++column) {
                row.insert(names.at(column), jsonOf(query->value(column)));
            }
            ++count;
            if (!print(QString::fromUtf8(QJsonDocument(row).toJson(QJsonDocument::Compact)))) {
                return fail(u"Standard output takes no more."_s);
            }
        }
    }
    if (!done) {
        return failRead(connection);
    }
    return count > 0 ? 0 : fail(u"There is no user %1."_s.arg(user));
}

int stats(const StoreOptions &store)
{
    QString problem;
    const OpenStore open(store.database, false, &problem);
    if (!open.connection) {
        return fail(problem);
    }
    SqlConnection &connection = *open.connection;
    const qint64 day = QDateTime::currentMSecsSinceEpoch() - qint64{24} * 3600 * 1000;
    const QList<std::pair<QString, QString>> questions{
        {u"users"_s, u"SELECT count(*) FROM users WHERE deleted IS NULL"_s},
        {u"deleted users"_s, u"SELECT count(*) FROM users WHERE deleted IS NOT NULL"_s},
        {u"reports"_s, u"SELECT count(*) FROM reports"_s},
        {u"verified reports"_s, u"SELECT count(*) FROM reports WHERE verified = 1"_s},
        {u"reports of the last day"_s,
         u"SELECT count(*) FROM reports WHERE server_time >= %1"_s.arg(day)},
        {u"streams without a report"_s, u"SELECT count(*) FROM streams WHERE reported = 0"_s},
        {u"shares"_s, u"SELECT count(*) FROM shares"_s},
        {u"tracks"_s, u"SELECT count(*) FROM tracks"_s}};
    for (const auto &[name, question] : questions) {
        const auto count = connection.number(question);
        if (!count) {
            return failRead(connection);
        }
        print(u"%1 %2"_s.arg(*count, 12).arg(name));
    }
    return 0;
}

} // namespace velometer::Tasks
