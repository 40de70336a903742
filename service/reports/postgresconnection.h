#pragma once

#include "reports/sqlconnection.h"

#include <QHash>

using PGconn = struct pg_conn;
using PGresult = struct pg_result;

namespace velometer {

/// A connection to a PostgreSQL data base. Statements are prepared once. A statement that takes a
/// minute, or waits five seconds for a lock, fails.
class PostgresConnection : public SqlConnection
{
public:
    PostgresConnection() = default;
    ~PostgresConnection() override;

    /// @p address as "postgresql://USER@HOST/DATABASE"; gives up after some seconds.
    bool open(const QString &address);

    std::optional<SqlAnswer> select(const QString &statement,
                                    const QVariantList &values = {}) override;
    bool forEachRow(const QString &statement, const QVariantList &values,
                    const std::function<void(const SqlRow &)> &visit) override;
    bool beginWriting() override;
    /// What it reads is of one moment.
    bool beginReading() override
    {
        return execute(QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"));
    }
    bool settle() override;
    void rollBack() override;
    bool isHeld() const override { return false; } ///< nobody has a whole data base
    bool isLost() const override;
    bool lockUser(qint64 userId) override;
    QString nextReportId() const override;
    bool keepReportIds() override { return true; } ///< a sequence does
    QString byIndex(const QString &) const override { return {}; }

private:
    /// The name of the prepared @p statement; nothing on failure, empty when it is not worth it.
    std::optional<QByteArray> prepared(const QString &statement);
    bool isGood(PGresult *result);

    PGconn *connection = nullptr;
    QHash<QString, QByteArray> names; ///< of prepared statements
};

} // namespace velometer
