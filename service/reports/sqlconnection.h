#pragma once

#include <QString>
#include <QVariant>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace velometer {

/// One row of a long answer, while it is being visited. Columns count from 0.
class SqlRow
{
public:
    SqlRow() = default;
    virtual ~SqlRow() = default;
    SqlRow(const SqlRow &) = delete;
    SqlRow &operator=(const SqlRow &) = delete;

    virtual bool isNull(int column) const = 0;
    virtual qint64 number(int column) const = 0;
    virtual double real(int column) const = 0;
    virtual QString text(int column) const = 0;

    std::optional<qint64> optionalNumber(int column) const
    {
        return isNull(column) ? std::nullopt : std::optional(number(column));
    }
    std::optional<double> optionalReal(int column) const
    {
        return isNull(column) ? std::nullopt : std::optional(real(column));
    }
};

/// What a statement answers; before its first row at first. It goes before its connection does.
class SqlAnswer
{
public:
    class Rows
    {
    public:
        Rows() = default;
        virtual ~Rows() = default;
        Rows(const Rows &) = delete;
        Rows &operator=(const Rows &) = delete;

        virtual bool next() = 0;
        virtual QVariant value(int column) const = 0; ///< null where the column is NULL
        virtual qint64 numRowsAffected() const = 0;
    };
    explicit SqlAnswer(std::unique_ptr<Rows> answered)
        : rows(std::move(answered))
    {}

    bool next() { return rows->next(); }
    QVariant value(int column) const { return rows->value(column); }
    /// Of a statement that changes rows.
    qint64 numRowsAffected() const { return rows->numRowsAffected(); }

private:
    std::unique_ptr<Rows> rows;
};

/// One connection to the store's data base, used by the thread that made it and by no other. What
/// fails says so by its result; problem() then has the data base's own words. The values of a
/// statement stand for its question marks.
class SqlConnection
{
public:
    SqlConnection() = default;
    virtual ~SqlConnection() = default;
    SqlConnection(const SqlConnection &) = delete;
    SqlConnection &operator=(const SqlConnection &) = delete;

    /// Nothing on failure.
    virtual std::optional<SqlAnswer> select(const QString &statement,
                                            const QVariantList &values = {}) = 0;
    /// Shows @p visit every row, none of which is kept: for long answers.
    virtual bool forEachRow(const QString &statement, const QVariantList &values,
                            const std::function<void(const SqlRow &)> &visit) = 0;

    bool execute(const QString &statement, const QVariantList &values = {})
    {
        return select(statement, values).has_value();
    }
    /// The number in the first column of the first row; nothing on failure or without a row.
    std::optional<qint64> number(const QString &statement, const QVariantList &values = {});

    /// Begins a transaction that writes. False at once, with isHeld(), while another program has
    /// what it needs.
    virtual bool beginWriting() = 0;
    virtual bool beginReading() = 0;
    /// In a transaction that reads: begins it anew, at a moment when nobody writes. Whoever has
    /// seen a report then has seen all with smaller ids.
    virtual bool settle() = 0;
    bool commit() { return execute(QStringLiteral("COMMIT")); }
    /// Its own failure tells nothing: some errors have rolled back already.
    virtual void rollBack() = 0;

    /// Makes others who write for @p userId wait for the end of this transaction: his reports get
    /// their ids in the order in which they are seen.
    virtual bool lockUser(qint64 userId) = 0;

    /// Why the latest failure was one: "database or disk is full".
    const QString &problem() const { return words; }
    virtual bool isHeld() const = 0;
    /// The data base has gone; the connection is of no use any more.
    virtual bool isLost() const = 0;

    // Where the data bases' languages differ.

    /// An expression for the id of the next report, which is never given again ...
    virtual QString nextReportId() const = 0;
    /// ... if this is called before reports are deleted.
    virtual bool keepReportIds() = 0;
    /// Behind the name of a table: reads it by the index @p name, or, when that is empty, by none.
    virtual QString byIndex(const QString &name) const = 0;

protected:
    void fail(const QString &reason) { words = reason; }

    /// Tells the log of a statement that took long, when it goes.
    class Timed
    {
    public:
        explicit Timed(const QString &watched)
            : statement(watched)
        {}
        ~Timed();
        Timed(const Timed &) = delete;
        Timed &operator=(const Timed &) = delete;

    private:
        const QString &statement;
        std::chrono::steady_clock::time_point begun = std::chrono::steady_clock::now();
    };

private:
    QString words;
};

} // namespace velometer
