#pragma once

#include "reports/sqlconnection.h"

#include <QSqlDatabase>

namespace velometer {

/// A connection to one SQLite file.
class SqliteConnection : public SqlConnection
{
public:
    SqliteConnection();
    ~SqliteConnection() override;

    /// Opens @p file for reading and writing and makes it, with its directory, when it is missing.
    bool open(const QString &file);

    std::optional<SqlAnswer> select(const QString &statement,
                                    const QVariantList &values = {}) override;
    /// Without a QVariant of each value this takes a third of the time that select() takes.
    bool forEachRow(const QString &statement, const QVariantList &values,
                    const std::function<void(const SqlRow &)> &visit) override;
    bool beginWriting() override { return execute(QStringLiteral("BEGIN IMMEDIATE")); }
    bool beginReading() override { return execute(QStringLiteral("BEGIN")); }
    bool settle() override { return true; } ///< ids are given in the order of the commits
    void rollBack() override;
    bool isHeld() const override; ///< by another program
    bool isLost() const override { return false; }
    bool lockUser(qint64) override { return true; } ///< there is one who writes
    bool isNoDatabase() const;                      ///< the file is something else
    QString nextReportId() const override;
    bool keepReportIds() override;
    QString byIndex(const QString &name) const override;

private:
    QString name;
    QSqlDatabase database;
    int code = 0; ///< SQLite's, of the latest failure
};

} // namespace velometer
