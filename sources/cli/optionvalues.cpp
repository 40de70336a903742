#include "cli/optionvalues.h"

#include "arguments/takes.h"
#include "utils/sockets.h"

#include <QRegularExpression>

#include <limits>

using namespace Qt::StringLiterals;

namespace velometer {

std::optional<DataBudget> OptionValues::budget(const QString &text)
{
    static const QRegularExpression size(u"^([0-9]+)([kMG]?)$"_s);
    const auto match = size.match(text);
    const QString unit = match.captured(2);
    const qint64 factor = unit == "G"_L1   ? 1'000'000'000
                          : unit == "M"_L1 ? 1'000'000
                          : unit == "k"_L1 ? 1000
                                           : 1;
    const auto number = Takes::wholeNumber(match.captured(1));
    if (!number || *number > std::numeric_limits<qint64>::max() / factor) {
        return std::nullopt;
    }
    const qint64 bytes = *number * factor;
    const bool possible = bytes == 0 || bytes >= DataBudget::minimum;
    return possible ? std::optional(DataBudget(bytes)) : std::nullopt;
}

std::optional<QString> OptionValues::congestionControl(const QString &text)
{
    return Sockets::congestionControls().contains(text) ? std::optional(text) : std::nullopt;
}

std::optional<double> OptionValues::metres(const QString &text)
{
    constexpr qint64 most = 1'000'000;
    const auto number = text.endsWith(u'm') ? Takes::wholeNumber(text.chopped(1)) : std::nullopt;
    return number && *number >= 1 && *number <= most ? std::optional(static_cast<double>(*number))
                                                     : std::nullopt;
}

std::optional<std::chrono::seconds> OptionValues::seconds(const QString &text, int most)
{
    const auto number = Takes::wholeNumber(text.endsWith(u's') ? text.chopped(1) : text);
    return number && *number >= 1 && *number <= most ? std::optional(std::chrono::seconds(*number))
                                                     : std::nullopt;
}

QStringList OptionValues::locations()
{
    return {u"Unknown"_s, u"Indoor"_s, u"Outdoor"_s, u"Train"_s, u"Car"_s, u"Other"_s};
}

std::optional<QString> OptionValues::location(const QString &text)
{
    const QStringList codes = locations();
    for (const QString &code : codes) {
        if (code.compare(text, Qt::CaseInsensitive) == 0) {
            return code;
        }
    }
    return std::nullopt;
}

std::optional<CommandLine::StoredTest> OptionValues::storedTest(const QString &text)
{
    const QStringList parts = text.split(u'/');
    const auto first = Takes::wholeNumber(parts.first());
    const auto second = Takes::wholeNumber(parts.last());
    if (parts.size() > 2 || !first || !second || *first < 1 || *second < 1) {
        return std::nullopt;
    }
    if (parts.size() == 1) {
        return CommandLine::StoredTest{static_cast<qulonglong>(*first), 0, 0};
    }
    return CommandLine::StoredTest{0, *first, *second};
}

} // namespace velometer
