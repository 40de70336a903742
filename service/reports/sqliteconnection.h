#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <optional>

namespace velometer {

/// One connection to the store's file, used by the thread that made it and by no other. What fails
/// says so by its result; problem() then has SQLite's own words.
class SqliteConnection
{
public:
    SqliteConnection();
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection &) = delete;
    SqliteConnection &operator=(const SqliteConnection &) = delete;

    /// Opens @p file for reading and writing and makes it, with its directory, when it is missing.
    bool open(const QString &file);

    bool execute(const QString &statement, const QVariantList &values = {});

    /// The query after its execution, before its first row; nothing on failure.
    std::optional<QSqlQuery> select(const QString &statement, const QVariantList &values = {});

    /// The number in the first column of the first row; nothing on failure or without a row.
    std::optional<qint64> number(const QString &statement, const QVariantList &values = {});

    /// Begins a transaction that writes. False at once, with isHeld(), while another program has
    /// the file.
    bool beginWriting() { return execute(QStringLiteral("BEGIN IMMEDIATE")); }
    bool commit() { return execute(QStringLiteral("COMMIT")); }
    void rollBack();

    /// Why the latest failure was one: "database or disk is full".
    const QString &problem() const { return words; }
    bool isHeld() const;       ///< by another program
    bool isNoDatabase() const; ///< the file is something else

private:
    QString name;
    QSqlDatabase database;
    QString words;
    int code = 0; ///< SQLite's, of the latest failure
};

} // namespace velometer
