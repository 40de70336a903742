#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QString>

namespace velometer {

/// Writes "text" with the database's and the driver's words in place of %1 and %2.
void logSqlError(const QString &text, const QSqlError &error);

/// Another program holds the store locked: the same statement may succeed later.
bool isLock(const QSqlError &error);
/// The error that was logged last was one.
bool failedOnLock();

/// A transaction that a failed statement does not end: what the others stored is kept by commit().
/// Without commit() all of it is undone.
class Transaction
{
public:
    /// @p connection is borrowed.
    explicit Transaction(QSqlDatabase &connection);
    ~Transaction();
    Q_DISABLE_COPY_MOVE(Transaction)

    bool isOpen() const { return open; }

    /// True once everything is on the disk.
    bool commit();

private:
    bool run(const QString &statement);

    QSqlDatabase &db;
    bool open;
};

} // namespace velometer
