#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace velometer {

/// A SQLite file of other programs, used beside them. One at a time.
class SqliteFile
{
public:
    explicit SqliteFile(const QString &file)
    {
        auto database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name());
        database.setDatabaseName(file);
        database.open();
    }
    ~SqliteFile() { QSqlDatabase::removeDatabase(name()); }
    Q_DISABLE_COPY_MOVE(SqliteFile)

    /// The rows of a statement, which should not fail.
    QList<QVariantList> rows(const QString &statement) const
    {
        QSqlQuery query(QSqlDatabase::database(name()));
        if (!query.exec(statement)) {
            qWarning("%s: %s", qUtf8Printable(statement), qUtf8Printable(query.lastError().text()));
        }
        QList<QVariantList> all;
        while (query.next()) {
            QVariantList row;
            for (int i = 0; query.value(i).isValid(); ++i) {
                row.append(query.value(i));
            }
            all.append(row);
        }
        return all;
    }

private:
    static QString name() { return QStringLiteral("beside"); }
};

/// Another program that is writing to a SQLite file, as long as it lives.
struct HeldFile : SqliteFile
{
    explicit HeldFile(const QString &file)
        : SqliteFile(file)
    {
        rows(QStringLiteral("BEGIN IMMEDIATE"));
    }
};

} // namespace velometer
