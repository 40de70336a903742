#pragma once

#include "reports/sqldatabase.h"

namespace velometer {

/// One file, with its directory made when missing; one store at a time.
class SqliteDatabase : public SqlDatabase
{
public:
    /// @p inheritedLock is the lock of the process whose place this one takes, or -1.
    explicit SqliteDatabase(const QString &databaseFile, int inheritedLock = -1);
    ~SqliteDatabase() override; ///< gives the file back

    QString prepare() override;
    std::unique_ptr<SqlConnection> connect(bool writes, QString *problem) override;
    bool isCurrent(SqlConnection &connection) const override;
    QString shownName() const override { return file; }
    int writers() const override { return 1; }
    int lockDescriptor() const override { return lockHeld; }
    QString shortage() const override;
    std::optional<qint64> freeBytes() const override;
    bool tryWriting(SqlConnection &connection) const override;

private:
    bool lock();

    const QString file;
    const int inherited;
    int lockHeld = -1;
};

} // namespace velometer
