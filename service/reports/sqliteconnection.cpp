#include "reports/sqliteconnection.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>

#include <atomic>
#include <memory>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Readers meet the writer for microseconds only; longer waits are the caller's, who knows what
/// else is to be done meanwhile.
constexpr int busyTimeoutMs = 100;

} // namespace

qint64 SqliteRow::number(int column) const
{
    return sqlite3_column_int64(statement, column);
}

bool SqliteRow::isNull(int column) const
{
    return sqlite3_column_type(statement, column) == SQLITE_NULL;
}

std::optional<qint64> SqliteRow::optionalNumber(int column) const
{
    return isNull(column) ? std::nullopt : std::optional(number(column));
}

std::optional<double> SqliteRow::optionalReal(int column) const
{
    return isNull(column) ? std::nullopt : std::optional(sqlite3_column_double(statement, column));
}

QString SqliteRow::text(int column) const
{
    const auto *bytes = sqlite3_column_text(statement, column);
    return QString::fromUtf8(reinterpret_cast<const char *>(bytes),
                             sqlite3_column_bytes(statement, column));
}

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

bool SqliteConnection::forEachRow(const QString &statement, const QList<qint64> &values,
                                  const std::function<void(const SqliteRow &)> &visit)
{
    auto *const base = *static_cast<sqlite3 *const *>(database.driver()->handle().constData());
    const QByteArray text = statement.toUtf8();
    sqlite3_stmt *raw = nullptr;
    code = sqlite3_prepare_v2(base, text.constData(), -1, &raw, nullptr);
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> prepared(raw,
                                                                              &sqlite3_finalize);
    for (int i = 0; code == SQLITE_OK && i < values.size(); ++i) {
        code = sqlite3_bind_int64(raw, i + 1, values.at(i));
    }
    if (code == SQLITE_OK) {
        for (code = sqlite3_step(raw); code == SQLITE_ROW; code = sqlite3_step(raw)) {
            visit(SqliteRow(raw));
        }
    }
    const bool done = code == SQLITE_DONE;
    if (!done) {
        words = QString::fromUtf8(sqlite3_errmsg(base));
        code &= 0xff;
    }
    return done;
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
    return code == SQLITE_BUSY;
}

bool SqliteConnection::isNoDatabase() const
{
    return code == SQLITE_NOTADB;
}

} // namespace velometer
