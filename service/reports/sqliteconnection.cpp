#include "reports/sqliteconnection.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

#include <atomic>
#include <memory>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Readers meet the writer for microseconds only; longer waits are the caller's, who knows what
/// else is to be done meanwhile.
constexpr int busyTimeoutMs = 100;

class SqliteRows : public SqlAnswer::Rows
{
public:
    explicit SqliteRows(QSqlQuery executed)
        : query(std::move(executed))
    {}
    bool next() override { return query.next(); }
    QVariant value(int column) const override { return query.value(column); }
    qint64 numRowsAffected() const override { return query.numRowsAffected(); }

private:
    QSqlQuery query;
};

class SqliteRow : public SqlRow
{
public:
    explicit SqliteRow(sqlite3_stmt *visited)
        : statement(visited)
    {}
    bool isNull(int column) const override
    {
        return sqlite3_column_type(statement, column) == SQLITE_NULL;
    }
    qint64 number(int column) const override { return sqlite3_column_int64(statement, column); }
    double real(int column) const override { return sqlite3_column_double(statement, column); }
    QString text(int column) const override
    {
        const auto *bytes = sqlite3_column_text(statement, column);
        return QString::fromUtf8(reinterpret_cast<const char *>(bytes),
                                 sqlite3_column_bytes(statement, column));
    }

private:
    sqlite3_stmt *statement;
};

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
        fail(u"its directory cannot be made"_s);
        return false;
    }
    database.setDatabaseName(file);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=%1"_s.arg(busyTimeoutMs));
    if (!database.open()) {
        fail(database.lastError().databaseText());
        return false;
    }
    return true;
}

std::optional<SqlAnswer> SqliteConnection::select(const QString &statement,
                                                  const QVariantList &values)
{
    const Timed timed(statement);
    QSqlQuery query(database);
    query.setForwardOnly(true);
    bool done = query.prepare(statement);
    for (const auto &value : values) {
        query.addBindValue(value);
    }
    done = done && query.exec();
    if (!done) {
        fail(query.lastError().databaseText());
        code = query.lastError().nativeErrorCode().toInt() & 0xff;
        return std::nullopt;
    }
    return SqlAnswer(std::make_unique<SqliteRows>(std::move(query)));
}

bool SqliteConnection::forEachRow(const QString &statement, const QVariantList &values,
                                  const std::function<void(const SqlRow &)> &visit)
{
    const Timed timed(statement);
    auto *const base = *static_cast<sqlite3 *const *>(database.driver()->handle().constData());
    const QByteArray text = statement.toUtf8();
    sqlite3_stmt *raw = nullptr;
    code = sqlite3_prepare_v2(base, text.constData(), -1, &raw, nullptr);
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> prepared(raw,
                                                                              &sqlite3_finalize);
    for (int i = 0; code == SQLITE_OK && i < values.size(); ++i) {
        code = sqlite3_bind_int64(raw, i + 1, values.at(i).toLongLong());
    }
    if (code == SQLITE_OK) {
        for (code = sqlite3_step(raw); code == SQLITE_ROW; code = sqlite3_step(raw)) {
            visit(SqliteRow(raw));
        }
    }
    const bool done = code == SQLITE_DONE;
    if (!done) {
        fail(QString::fromUtf8(sqlite3_errmsg(base)));
        code &= 0xff;
    }
    return done;
}

void SqliteConnection::rollBack()
{
    // Its own failure tells nothing: some errors have rolled back already.
    QSqlQuery(database).exec(u"ROLLBACK"_s);
}

/// The table report_ids has the greatest of those that were deleted.
QString SqliteConnection::nextReportId() const
{
    return u"(SELECT max(last, coalesce((SELECT max(id) FROM reports), 0)) + 1 FROM report_ids)"_s;
}

bool SqliteConnection::keepReportIds()
{
    return execute(
        u"UPDATE report_ids SET last = max(last, coalesce((SELECT max(id) FROM reports), 0))"_s);
}

QString SqliteConnection::byIndex(const QString &index) const
{
    return index.isEmpty() ? u" NOT INDEXED"_s : u" INDEXED BY "_s + index;
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
