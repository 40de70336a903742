#pragma once

#include "reports/sqldatabase.h"

namespace velometer {

/// One file, with its directory made when missing; one store at a time.
class SqliteDatabase : public SqlDatabase
{
public:
    explicit SqliteDatabase(const QString &databaseFile);
    ~SqliteDatabase() override; ///< gives the file back

    QString prepare() override;
    std::unique_ptr<SqlConnection> connect(bool writes, QString *problem) override;
    bool isCurrent(SqlConnection &connection) const override;
    QString shownName() const override { return file; }
    int writers() const override { return 1; }
    QString shortage() const override;
    bool tryWriting(SqlConnection &connection) const override;

private:
    bool lock();

    const QString file;
    int lockDescriptor = -1;
};

} // namespace velometer
