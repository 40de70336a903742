#include "reports/postgresconnection.h"

#include <QByteArrayList>

#include <array>
#include <vector>

#include <libpq-fe.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Statements kept by a connection; those with lists in them come in some lengths.
constexpr qsizetype mostPrepared = 300;

/// "writ": whoever writes shares it.
constexpr qint64 writersLock = 0x77726974;

// Types of columns, as the server numbers them.
constexpr Oid byteaType = 17;
constexpr Oid int8Type = 20;
constexpr Oid int2Type = 21;
constexpr Oid int4Type = 23;
constexpr Oid float4Type = 700;
constexpr Oid float8Type = 701;

using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

Result owned(PGresult *result)
{
    return {result, &PQclear};
}

/// "a = ?" as "a = $1". No statement of ours has a question mark in a text.
QByteArray numbered(const QString &statement)
{
    QByteArray text;
    int number = 0;
    for (const char c : statement.toUtf8()) {
        if (c == '?') {
            text += '$' + QByteArray::number(++number);
        } else {
            text += c;
        }
    }
    return text;
}

/// The values of a statement as the library takes them.
class StatementValues
{
public:
    explicit StatementValues(const QVariantList &list)
    {
        for (const QVariant &each : list) {
            const bool isBytes = each.typeId() == QMetaType::QByteArray;
            texts.append(isBytes ? each.toByteArray() : textOf(each));
            formats.push_back(isBytes ? 1 : 0);
            lengths.push_back(static_cast<int>(texts.constLast().size()));
        }
        for (qsizetype i = 0; i < list.size(); ++i) {
            pointers.push_back(list.at(i).isNull() ? nullptr : texts.at(i).constData());
        }
    }

    int count() const { return static_cast<int>(pointers.size()); }
    const char *const *data() const { return pointers.data(); }
    const int *sizes() const { return lengths.data(); }
    const int *kinds() const { return formats.data(); }

private:
    static QByteArray textOf(const QVariant &value)
    {
        switch (value.typeId()) {
        case QMetaType::Bool: return value.toBool() ? "1" : "0";
        case QMetaType::Double:
        case QMetaType::Float: return QByteArray::number(value.toDouble(), 'g', 17);
        default: break;
        }
        // The server's texts know no NUL.
        return value.toString().replace(QChar(u'\0'), QChar(QChar::ReplacementCharacter)).toUtf8();
    }

    QByteArrayList texts;
    std::vector<const char *> pointers;
    std::vector<int> lengths;
    std::vector<int> formats;
};

class PostgresRow : public SqlRow
{
public:
    explicit PostgresRow(const PGresult *visited, int rowNumber = 0)
        : result(visited)
        , number_(rowNumber)
    {}
    bool isNull(int column) const override { return PQgetisnull(result, number_, column) != 0; }
    qint64 number(int column) const override { return bytes(column).toLongLong(); }
    double real(int column) const override { return bytes(column).toDouble(); }
    QString text(int column) const override { return QString::fromUtf8(bytes(column)); }

    QByteArray bytes(int column) const
    {
        return QByteArray::fromRawData(PQgetvalue(result, number_, column),
                                       PQgetlength(result, number_, column));
    }

private:
    const PGresult *result;
    int number_;
};

QByteArray unescaped(const QByteArray &text)
{
    return text.startsWith("\\x") ? QByteArray::fromHex(text.sliced(2)) : text;
}

class PostgresRows : public SqlAnswer::Rows
{
public:
    explicit PostgresRows(Result answered)
        : result(std::move(answered))
    {}
    bool next() override { return ++row < PQntuples(result.get()); }
    QVariant value(int column) const override
    {
        const PostgresRow current(result.get(), row);
        if (current.isNull(column)) {
            return {};
        }
        switch (PQftype(result.get(), column)) {
        case int8Type:
        case int4Type:
        case int2Type: return current.number(column);
        case float4Type:
        case float8Type: return current.real(column);
        case byteaType: return unescaped(current.bytes(column));
        default: return current.text(column);
        }
    }
    qint64 numRowsAffected() const override
    {
        return QByteArray(PQcmdTuples(result.get())).toLongLong();
    }

private:
    Result result;
    int row = -1;
};

} // namespace

PostgresConnection::~PostgresConnection()
{
    PQfinish(connection);
}

bool PostgresConnection::open(const QString &address)
{
    const QByteArray text = address.toUtf8();
    // What stands in the address comes after these, and overrides them.
    const std::array<const char *, 7> keys{"connect_timeout",
                                           "tcp_user_timeout",
                                           "application_name",
                                           "options",
                                           "client_encoding",
                                           "dbname",
                                           nullptr};
    const std::array<const char *, 7> values{
        "5",
        "10000",
        "velometer-service",
        "-c statement_timeout=60s -c lock_timeout=5s -c idle_in_transaction_session_timeout=60s",
        "UTF8",
        text.constData(),
        nullptr};
    connection = PQconnectdbParams(keys.data(), values.data(), 1);
    if (PQstatus(connection) != CONNECTION_OK) {
        fail(QString::fromUtf8(PQerrorMessage(connection)).simplified());
        return false;
    }
    PQsetNoticeProcessor(connection, [](void *, const char *) {}, nullptr);
    return true;
}

bool PostgresConnection::isGood(PGresult *result)
{
    const auto status = PQresultStatus(result);
    if (status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK || status == PGRES_SINGLE_TUPLE) {
        return true;
    }
    const char *const message = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
    fail(QString::fromUtf8(message ? message : PQerrorMessage(connection)).simplified());
    return false;
}

std::optional<QByteArray> PostgresConnection::prepared(const QString &statement)
{
    if (const auto known = names.constFind(statement); known != names.cend()) {
        return *known;
    }
    if (names.size() >= mostPrepared) {
        return QByteArray();
    }
    QByteArray name = "s" + QByteArray::number(names.size());
    const auto result =
        owned(PQprepare(connection, name.constData(), numbered(statement).constData(), 0, nullptr));
    if (!isGood(result.get())) {
        return std::nullopt;
    }
    names.insert(statement, name);
    return name;
}

std::optional<SqlAnswer> PostgresConnection::select(const QString &statement,
                                                    const QVariantList &list)
{
    const Timed timed(statement);
    // What has no values has its own in the text.
    const auto name = list.isEmpty() ? QByteArray() : prepared(statement);
    if (!name) {
        return std::nullopt;
    }
    const StatementValues values(list);
    auto result = owned(
        name->isEmpty() ? PQexecParams(connection, numbered(statement).constData(), values.count(),
                                       nullptr, values.data(), values.sizes(), values.kinds(), 0)
                        : PQexecPrepared(connection, name->constData(), values.count(),
                                         values.data(), values.sizes(), values.kinds(), 0));
    if (!isGood(result.get())) {
        return std::nullopt;
    }
    return SqlAnswer(std::make_unique<PostgresRows>(std::move(result)));
}

bool PostgresConnection::forEachRow(const QString &statement, const QVariantList &list,
                                    const std::function<void(const SqlRow &)> &visit)
{
    const Timed timed(statement);
    const StatementValues values(list);
    if (PQsendQueryParams(connection, numbered(statement).constData(), values.count(), nullptr,
                          values.data(), values.sizes(), values.kinds(), 0) == 0) {
        fail(QString::fromUtf8(PQerrorMessage(connection)).simplified());
        return false;
    }
    PQsetSingleRowMode(connection);
    bool done = true;
    for (auto result = owned(PQgetResult(connection)); result;
         result = owned(PQgetResult(connection))) {
        done = isGood(result.get()) && done;
        if (PQresultStatus(result.get()) == PGRES_SINGLE_TUPLE) {
            visit(PostgresRow(result.get()));
        }
    }
    return done;
}

bool PostgresConnection::beginWriting()
{
    return execute(u"BEGIN"_s) &&
           execute(u"SELECT pg_advisory_xact_lock_shared(?)"_s, {writersLock});
}

bool PostgresConnection::settle()
{
    rollBack();
    // What a transaction sees is decided by its first statement.
    const bool locked = execute(u"SELECT pg_advisory_lock(?)"_s, {writersLock});
    const bool begun = locked && beginReading() && execute(u"SELECT 1"_s);
    return locked && execute(u"SELECT pg_advisory_unlock(?)"_s, {writersLock}) && begun;
}

void PostgresConnection::rollBack()
{
    if (PQtransactionStatus(connection) != PQTRANS_IDLE) {
        owned(PQexec(connection, "ROLLBACK"));
    }
}

bool PostgresConnection::isLost() const
{
    return PQstatus(connection) != CONNECTION_OK;
}

bool PostgresConnection::lockUser(qint64 userId)
{
    return execute(u"SELECT pg_advisory_xact_lock(?)"_s, {userId});
}

QString PostgresConnection::nextReportId() const
{
    return u"nextval('report_ids')"_s;
}

} // namespace velometer
