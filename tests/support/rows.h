#pragma once

#include <QString>
#include <QTest>

#include <tuple>
#include <type_traits>
#include <vector>

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

/// Of the data-driven test that runs: its rows are made right before it.
inline std::vector<const char *> currentColumns;

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
        currentColumns = {names...};
    }

    void operator()(const char *hazard, const Cell<Columns> &...values) const
    {
        (QTest::newRow(hazard) << ... << static_cast<const Columns &>(values));
    }
};

/// The first columns of the row that is tested; other types than the rows have end the test.
///
///     const auto [text, number] = currentRow<QString, int>();
template <typename... Columns>
std::tuple<Columns...> currentRow()
{
    auto column = currentColumns.cbegin();
    const auto next = [&](int type) { return QTest::qData(*column++, type); };
    // Braces: from left to right.
    return {*static_cast<Columns *>(next(qMetaTypeId<Columns>()))...};
}

} // namespace velometer
