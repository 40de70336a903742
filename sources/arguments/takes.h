#pragma once

#include "arguments/syntax.h"

#include <optional>
#include <type_traits>
#include <utility>

/// What usually happens to the value of an option, and the sentences about values that make no
/// sense. What is pointed to outlives the Syntax.
namespace velometer::Takes {

/// "--count takes a whole number, not "x"."
QString wrong(const QString &name, const QString &allowed, const QString &value);

/// "--json and --csv contradict each other."
QString contradiction(const QString &one, const QString &other);

Syntax::Take flag(bool *to);
Syntax::Take text(QString *to);
/// A whole number in plain digits from @p min to @p max.
Syntax::Take number(int min, int max, int *to);

/// A whole number in plain digits, of at most 64 bits.
std::optional<qint64> wholeNumber(const QString &text);

/// What @p parse makes of the value, which is nothing for a value that makes no sense; @p allowed
/// says which do.
template <typename Parse, typename Target>
Syntax::Take parsed(Parse parse, const QString &allowed, Target *to)
{
    return [parse, allowed, to](const QString &name, const QString &value) {
        const auto meant = parse(value);
        if (!meant) {
            return wrong(name, allowed, value);
        }
        if constexpr (std::is_assignable_v<Target &, decltype(meant)>) {
            *to = meant;
        } else {
            *to = *meant;
        }
        return QString();
    };
}

/// One of @p choices, pairs of a name and what it means.
template <typename Value>
Syntax::Take choice(const QList<std::pair<QString, Value>> &choices, Value *to)
{
    QStringList names;
    for (const auto &each : choices) {
        names.append(each.first);
    }
    const auto find = [choices](const QString &text) -> std::optional<Value> {
        for (const auto &each : choices) {
            if (each.first == text) {
                return each.second;
            }
        }
        return std::nullopt;
    };
    return parsed(find, Syntax::listed(names), to);
}

} // namespace velometer::Takes
