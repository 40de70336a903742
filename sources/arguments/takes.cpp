#include "arguments/takes.h"

#include "utils/quoted.h"
#include "utils/translations.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velometer {

QString Takes::wrong(const QString &name, const QString &allowed, const QString &value)
{
    return Translations::translate("Takes", "%1 takes %2, not %3.")
        .arg(name, allowed, quoted(value));
}

QString Takes::contradiction(const QString &one, const QString &other)
{
    return Translations::translate("Takes", "%1 and %2 contradict each other.").arg(one, other);
}

Syntax::Take Takes::flag(bool *to)
{
    return [to](const QString & /*name*/, const QString & /*value*/) {
        *to = true;
        return QString();
    };
}

Syntax::Take Takes::text(QString *to)
{
    return [to](const QString & /*name*/, const QString &value) {
        *to = value;
        return QString();
    };
}

Syntax::Take Takes::number(int min, int max, int *to)
{
    const auto parse = [min, max](const QString &text) -> std::optional<int> {
        const auto number = wholeNumber(text);
        const bool fits = number && *number >= min && *number <= max;
        return fits ? std::optional(static_cast<int>(*number)) : std::nullopt;
    };
    const QString allowed =
        Translations::translate("Takes", "a whole number from %1 to %2").arg(min).arg(max);
    return parsed(parse, allowed, to);
}

std::optional<qint64> Takes::wholeNumber(const QString &text)
{
    static const QRegularExpression digits(u"\\A-?[0-9]+\\z"_s);
    bool ok = false;
    const qint64 value = digits.match(text).hasMatch() ? text.toLongLong(&ok) : 0;
    return ok ? std::optional(value) : std::nullopt;
}

} // namespace velometer
