#pragma once

#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

struct sqlite3_stmt;

namespace velometer {

/// One row of a long answer, while it is being visited. Columns count from 0.
class SqliteRow
{
public:
    explicit SqliteRow(sqlite3_stmt *visited)
        : statement(visited)
    {}

    qint64 number(int column) const;
    std::optional<qint64> optionalNumber(int column) const;
    std::optional<double> optionalReal(int column) const;
    QString text(int column) const;

private:
    bool isNull(int column) const;

    sqlite3_stmt *statement;
};

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

    /// Shows @p visit every row. For long answers: without a QVariant of each value this takes a
    /// third of the time that select() takes.
    bool forEachRow(const QString &statement, const QList<qint64> &values,
                    const std::function<void(const SqliteRow &)> &visit);

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
