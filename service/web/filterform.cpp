#include "web/filterform.h"

#include "web/figures.h"
#include "web/texts.h"
#include "web/typesigns.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer::FilterForm {

namespace {

constexpr qint64 dayMs = 86'400'000;

struct Range
{
    const Phrase &name;
    int days; ///< 0: all
};
constexpr std::array ranges{Range{Texts::day, 1}, Range{Texts::week, 7}, Range{Texts::month, 30},
                            Range{Texts::year, 365}, Range{Texts::all, 0}};

void writeRanges(Html &html, const Viewer &viewer, const TestFilter &filter, qint64 today)
{
    html << "<nav class=\"segments\" aria-label=\"" << Texts::ranges << "\">";
    for (const auto &range : ranges) {
        TestFilter chosen = filter;
        chosen.to.reset();
        chosen.from.reset();
        if (range.days > 0) {
            chosen.from = (today / dayMs + 1 - range.days) * dayMs;
        }
        html << "<a href=\"" << viewer.address(viewer.listPage(), chosen) << "\"";
        if (chosen.from == filter.from && !filter.to) {
            html << " aria-current=\"true\"";
        }
        html << ">" << range.name << "</a>";
    }
    html << "</nav>\n";
}

void writeDay(Html &html, const QString &name, const Phrase &label, std::optional<qint64> day)
{
    html << "<label class=\"day\"><span>" << label << "</span><input type=\"date\" name=\"" << name
         << "\" value=\"" << (day ? Figures::day(*day) : QString()) << "\"></label>\n";
}

void writeChip(Html &html, const Viewer &viewer, const TestFilter &without, const QString &text)
{
    html << "<li><a class=\"chip\" href=\"" << viewer.address(viewer.listPage(), without) << "\">"
         << text << " <span aria-hidden=\"true\">×</span><span class=\"unseen\">" << Texts::remove
         << "</span></a></li>";
}

/// What is filtered, each with the address without it.
void writeChips(Html &html, const Viewer &viewer, const TestFilter &filter, const Facets &facets)
{
    if (filter == TestFilter()) {
        return;
    }
    const auto language = viewer.language;
    html << "<ul class=\"chips\">";
    TestFilter without = filter;
    if (filter.from || filter.to) {
        without.from.reset();
        without.to.reset();
        writeChip(html, viewer, without,
                  (filter.from ? Figures::day(*filter.from) : u"…"_s) + u" – "_s +
                      (filter.to ? Figures::day(*filter.to - 1) : u"…"_s));
    }
    for (const auto type : filter.types) {
        without = filter;
        without.types.removeAll(type);
        writeChip(html, viewer, without, QString::fromUtf8(TypeSigns::name(type).in(language)));
    }
    const auto each = [&](QStringList TestFilter::*list, auto toText) {
        for (const QString &value : filter.*list) {
            without = filter;
            (without.*list).removeAll(value);
            writeChip(html, viewer, without, toText(value));
        }
    };
    const auto same = [](const QString &value) { return value; };
    each(&TestFilter::servers, same);
    each(&TestFilter::locations,
         [&](const QString &code) { return TypeSigns::place(code, language); });
    each(&TestFilter::operators, [names = operators(facets)](const QString &code) {
        const auto named =
            std::ranges::find(names, code, [](const auto &pair) { return pair.first; });
        return named == names.end() ? code : named->second;
    });
    for (const qint64 series : filter.series) {
        without = filter;
        without.series.removeAll(series);
        writeChip(html, viewer, without,
                  QString::fromUtf8(Texts::seriesNumber.in(language)).arg(series));
    }
    if (filter.verified) {
        without = filter;
        without.verified = false;
        writeChip(html, viewer, without, QString::fromUtf8(Texts::verifiedOnly.in(language)));
    }
    html << "<li><a class=\"clear\" href=\"" << viewer.address(viewer.listPage()) << "\">"
         << Texts::clear << "</a></li></ul>\n";
}

QString seriesText(const TestFilter &filter)
{
    QStringList numbers;
    for (const qint64 series : filter.series) {
        numbers += QString::number(series);
    }
    return numbers.join(u',');
}

} // namespace

QString typesText(const TestFilter &filter)
{
    QStringList keys;
    for (const auto type : filter.types) {
        keys += ConnectionClasses::key(type);
    }
    return keys.join(u',');
}

Values plain(const QList<Facets::Value> &values)
{
    Values result;
    for (const auto &value : values) {
        result.append({value.key, value.key});
    }
    return result;
}

Values types(const Facets &facets, Language language)
{
    Values result;
    for (const auto &value : facets.types) {
        const auto type = ConnectionClasses::ofKey(value.key).value_or(ConnectionClass::Other);
        result.append({value.key, QString::fromUtf8(TypeSigns::name(type).in(language))});
    }
    return result;
}

Values places(const Facets &facets, Language language)
{
    Values result;
    for (const auto &value : facets.locations) {
        result.append({value.key, TypeSigns::place(value.key, language)});
    }
    return result;
}

Values operators(const Facets &facets)
{
    Values result;
    for (const auto &value : facets.operators) {
        result.append({value.key, value.name.isEmpty() ? value.key : value.name});
    }
    return result;
}

void writeChoice(Html &html, const QString &name, const Phrase &label, const Phrase &any,
                 const Values &values, const QString &chosen)
{
    html << "<label><span class=\"unseen\">" << label << "</span><select name=\"" << name
         << "\"><option value=\"\">" << any << "</option>";
    bool found = chosen.isEmpty();
    for (const auto &[value, text] : values) {
        html << "<option value=\"" << value << "\"";
        if (value == chosen) {
            html << " selected";
            found = true;
        }
        html << ">" << text << "</option>";
    }
    if (!found) {
        html << "<option value=\"" << chosen << "\" selected>" << chosen << "</option>";
    }
    html << "</select></label>\n";
}

void write(Html &html, const Viewer &viewer, const TestFilter &filter, const Facets &facets,
           qint64 today)
{
    const auto language = viewer.language;
    writeRanges(html, viewer, filter, today);
    html << "<details class=\"filterbox\" open><summary class=\"pill\">" << Texts::filters
         << "</summary>\n<form class=\"filters\" method=\"get\" action=\"/velometer/Controller\" "
            "role=\"search\" "
            "aria-label=\""
         << Texts::filters << "\">\n<input type=\"hidden\" name=\"page\" value=\""
         << viewer.listPage() << "\"><input type=\"hidden\" name=\"language\" value=\""
         << QString::fromLatin1(Languages::code(language).data()) << "\">";
    if (viewer.isOwner()) {
        html << "<input type=\"hidden\" name=\"userid\" value=\"" << viewer.userId << "\">\n";
    } else {
        html << "<input type=\"hidden\" name=\"share\" value=\"" << viewer.share << "\">\n";
    }
    auto kinds = types(facets, language);
    QStringList names;
    for (const auto type : filter.types) {
        names += QString::fromUtf8(TypeSigns::name(type).in(language));
    }
    // Several at once, or one that nobody has measured over, stand in an address alone.
    if (const std::pair chosen{typesText(filter), names.join(u", "_s)};
        !names.isEmpty() && !kinds.contains(chosen)) {
        kinds.append(chosen);
    }
    writeChoice(html, u"type"_s, Texts::connection, Texts::anyType, kinds, typesText(filter));
    writeChoice(html, u"operator"_s, Texts::operatorName, Texts::anyOperator, operators(facets),
                filter.operators.join(u','));
    writeChoice(html, u"server"_s, Texts::server, Texts::anyServer, plain(facets.servers),
                filter.servers.join(u','));
    writeChoice(html, u"location"_s, Texts::place, Texts::anyPlace, places(facets, language),
                filter.locations.join(u','));
    Values numbers;
    for (const auto &value : facets.series) {
        numbers.append(
            {value.key, QString::fromUtf8(Texts::seriesNumber.in(language)).arg(value.key)});
    }
    writeChoice(html, u"series"_s, Texts::series, Texts::anySeries, numbers, seriesText(filter));
    writeDay(html, u"from"_s, Texts::from, filter.from);
    writeDay(html, u"to"_s, Texts::to, filter.to ? std::optional(*filter.to - 1) : std::nullopt);
    html << "<label class=\"check\"><input type=\"checkbox\" name=\"verified\" value=\"1\"";
    if (filter.verified) {
        html << " checked";
    }
    html << ">" << Texts::verifiedOnly << "</label>\n<button class=\"pill\">" << Texts::apply
         << "</button>\n</form></details>\n";
    writeChips(html, viewer, filter, facets);
}

} // namespace velometer::FilterForm
