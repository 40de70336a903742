#pragma once

#include <QString>
#include <QTest>

#include <type_traits>

namespace velometer {

/// A text that a row may give as a literal.
struct TextCell : QString
{
    TextCell() = default;
    TextCell(const QString &given)
        : QString(given)
    {}
    TextCell(const char *literal)
        : QString(QString::fromUtf8(literal))
    {}
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
        (QTest::newRow(hazard) << ... << static_cast<const Columns &>(values));
    }
};

} // namespace velometer
