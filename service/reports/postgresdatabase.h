#pragma once

#include "reports/sqldatabase.h"

namespace velometer {

/// A PostgreSQL data base, which several services share.
class PostgresDatabase : public SqlDatabase
{
public:
    /// "postgresql://..." or "postgres://...".
    static bool isAddress(const QString &name);

    explicit PostgresDatabase(const QString &address);

    QString prepare() override;
    std::unique_ptr<SqlConnection> connect(bool writes, QString *problem) override;
    bool isCurrent(SqlConnection &connection) const override;
    QString shownName() const override;
    int writers() const override { return mostWriters; }
    QString shortage() const override { return {}; }
    bool tryWriting(SqlConnection &connection) const override;

private:
    const QString address;
};

} // namespace velometer
