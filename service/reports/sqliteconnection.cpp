#include "reports/sqliteconnection.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>

#include <atomic>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int sqliteBusy = 5;
constexpr int sqliteNotADatabase = 26;

/// Readers meet the writer for microseconds only; longer waits are the caller's, who knows what
/// else is to be done meanwhile.
constexpr int busyTimeoutMs = 100;

} // namespace

SqliteConnection::SqliteConnection()
{
    // A connection's name belongs to the whole program.
    static std::atomic<int> lastNumber{0};
    name = u"velometer-service-%1"_s.arg(++lastNumber);
    database = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
}

SqliteConnection::~SqliteConnection()
{
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

bool SqliteConnection::open(const QString &file)
{
    if (!QDir().mkpath(QFileInfo(file).absolutePath())) {
        words = u"its directory cannot be made"_s;
        return false;
    }
    database.setDatabaseName(file);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=%1"_s.arg(busyTimeoutMs));
    if (!database.open()) {
        words = database.lastError().databaseText();
        return false;
    }
    return true;
}

bool SqliteConnection::execute(const QString &statement, const QVariantList &values)
{
    return select(statement, values).has_value();
}

std::optional<QSqlQuery> SqliteConnection::select(const QString &statement,
                                                  const QVariantList &values)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    bool done = query.prepare(statement);
    for (const auto &value : values) {
        query.addBindValue(value);
    }
    done = done && query.exec();
    if (!done) {
        words = query.lastError().databaseText();
        code = query.lastError().nativeErrorCode().toInt() & 0xff;
        return std::nullopt;
    }
    return query;
}

std::optional<qint64> SqliteConnection::number(const QString &statement, const QVariantList &values)
{
    auto query = select(statement, values);
    return query && query->next() ? std::optional(query->value(0).toLongLong()) : std::nullopt;
}

void SqliteConnection::rollBack()
{
    // Its own failure tells nothing: some errors have rolled back already.
    QSqlQuery(database).exec(u"ROLLBACK"_s);
}

bool SqliteConnection::isHeld() const
{
    return code == sqliteBusy;
}

bool SqliteConnection::isNoDatabase() const
{
    return code == sqliteNotADatabase;
}

} // namespace velometer
