#pragma once

#include <QString>
#include <QTest>

#include <type_traits>

namespace velometer {

/// A text that a row may give as a literal.
struct TextCell
{
    TextCell() = default;
    TextCell(const QString &given)
        : text(given)
    {}
    TextCell(const char *literal)
        : text(QString::fromUtf8(literal))
    {}
    QString text;
};

/// The rows of a data-driven test with columns of these types:
///
///     const Rows<QString, int> row("text", "number");
///     row("what could go wrong", "one", 1);
template <typename... Columns>
class Rows
{
    template <typename Column>
    using Cell = std::conditional_t<std::is_same_v<Column, QString>, TextCell, Column>;

public:
    template <typename... Names>
    explicit Rows(Names... names)
    {
        (QTest::addColumn<Columns>(names), ...);
    }

    void operator()(const char *hazard, const Cell<Columns> &...values) const
    {
        (QTest::newRow(hazard) << ... << plain(values));
    }

private:
    static const QString &plain(const TextCell &cell) { return cell.text; }
    template <typename Value>
    static const Value &plain(const Value &value)
    {
        return value;
    }
};

} // namespace velometer
