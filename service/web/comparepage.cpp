#include "web/comparepage.h"

#include "web/figures.h"
#include "web/filterform.h"
#include "web/texts.h"

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qint64 dayMs = 86'400'000;

/// What a side can be told apart by.
const QStringList &names()
{
    static const QStringList all{u"from"_s,   u"to"_s,       u"type"_s,
                                 u"server"_s, u"location"_s, u"operator"_s};
    return all;
}

QList<std::pair<QString, QString>> parameters(const TestFilter &filter, const QString &prefix)
{
    QList<std::pair<QString, QString>> result;
    const auto query = UrlQuery::parse(filter.toQuery().toStdString()).value_or(UrlQuery());
    for (const QString &name : names()) {
        if (const auto value = query.value(name)) {
            result.append({prefix + name, *value});
        }
    }
    return result;
}

QString addressOf(const Viewer &viewer, const TestFilter &left, const TestFilter &right)
{
    UrlQuery query;
    for (const auto &[name, value] : parameters(left, u"l_"_s) + parameters(right, u"r_"_s)) {
        query.add(name, value);
    }
    const QString text = query.toString();
    return viewer.address(u"Compare"_s) + (text.isEmpty() ? text : u'&' + text);
}

void writePreset(Html &html, const Viewer &viewer, const TestFilter &left, const TestFilter &right,
                 const QString &text)
{
    html << "<li><a class=\"chip\" href=\"" << addressOf(viewer, left, right) << "\">" << text
         << "</a></li>";
}

/// What most want to compare, one tap away.
void writePresets(Html &html, const ComparePage &page)
{
    const auto language = page.viewer.language;
    const qint64 tomorrow = (page.today / dayMs + 1) * dayMs;
    constexpr qint64 month = 30 * dayMs;
    TestFilter left;
    TestFilter right;
    left.from = tomorrow - 2 * month;
    left.to = tomorrow - month;
    right.from = tomorrow - month;
    right.to = tomorrow;
    html << "<ul class=\"chips\">";
    writePreset(html, page.viewer, left, right,
                QString::fromUtf8(Texts::presetMonths.in(language)));
    left = right = TestFilter();
    const auto both = [](const auto &a, const auto &b) { return a + u" – "_s + b; };
    Facets frequent = page.facets;
    std::ranges::stable_sort(frequent.types, std::greater(), &Facets::Value::count);
    if (const auto types = FilterForm::types(frequent, language); types.size() > 1) {
        left.types = {ConnectionClasses::ofKey(types.at(0).first).value_or(ConnectionClass::Other)};
        right.types = {
            ConnectionClasses::ofKey(types.at(1).first).value_or(ConnectionClass::Other)};
        writePreset(html, page.viewer, left, right, both(types.at(0).second, types.at(1).second));
    }
    left = right = TestFilter();
    if (const auto &servers = page.facets.servers; servers.size() > 1) {
        left.servers = {servers.at(0).key};
        right.servers = {servers.at(1).key};
        writePreset(html, page.viewer, left, right, both(servers.at(0).key, servers.at(1).key));
    }
    left = right = TestFilter();
    if (const auto operators = FilterForm::operators(page.facets); operators.size() > 1) {
        left.operators = {operators.at(0).first};
        right.operators = {operators.at(1).first};
        writePreset(html, page.viewer, left, right,
                    both(operators.at(0).second, operators.at(1).second));
    }
    html << "</ul>\n";
}

void writeSide(Html &html, const ComparePage &page, const ComparePage::Side &side,
               const Phrase &title, const QString &prefix)
{
    const auto language = page.viewer.language;
    const auto &filter = side.filter;
    html << "<fieldset><legend>" << title << "</legend>";
    for (const auto &[name, label, day] :
         {std::tuple{u"from"_s, &Texts::from, filter.from},
          {u"to"_s, &Texts::to, filter.to ? std::optional(*filter.to - 1) : std::nullopt}}) {
        html << "<label class=\"day\"><span>" << *label << "</span><input type=\"date\" name=\""
             << prefix + name << "\" value=\"" << (day ? Figures::day(*day) : QString())
             << "\"></label>";
    }
    FilterForm::writeChoice(html, prefix + u"type"_s, Texts::connection, Texts::anyType,
                            FilterForm::types(page.facets, language),
                            FilterForm::typesText(filter));
    FilterForm::writeChoice(html, prefix + u"operator"_s, Texts::operatorName, Texts::anyOperator,
                            FilterForm::operators(page.facets), filter.operators.join(u','));
    FilterForm::writeChoice(html, prefix + u"server"_s, Texts::server, Texts::anyServer,
                            FilterForm::plain(page.facets.servers), filter.servers.join(u','));
    FilterForm::writeChoice(html, prefix + u"location"_s, Texts::place, Texts::anyPlace,
                            FilterForm::places(page.facets, language), filter.locations.join(u','));
    html << "</fieldset>\n";
}

using ToText = QString (*)(std::optional<qint64>, Language);

void writeSpread(Html &html, const Spread &spread, ToText toText)
{
    const auto language = html.getLanguage();
    html << "<td class=\"n\">" << toText(spread.median, language);
    if (spread.p10 && spread.p90) {
        html << " <span class=\"quiet\">("
             << Figures::range(toText(spread.p10, language), toText(spread.p90, language),
                               Texts::dash, language)
             << ")</span>";
    }
    html << "</td>";
}

/// @p moreIsBetter: of rates, not of round trips.
void writeRow(Html &html, const QString &kind, const Phrase &title, const Spread &left,
              const Spread &right, ToText toText, bool moreIsBetter)
{
    std::optional<double> change;
    if (left.median && right.median && *left.median > 0) {
        change = 100.0 * static_cast<double>(*right.median - *left.median) /
                 static_cast<double>(*left.median);
    }
    const bool better = change && (*change > 0) == moreIsBetter;
    html << "<tr><th scope=\"row\" class=\"" << kind << "\">" << title << "</th>";
    writeSpread(html, left, toText);
    writeSpread(html, right, toText);
    html << "<td class=\"n "
         << (!change || *change == 0 ? u""_s
             : better                ? u"good"_s
                                     : u"bad"_s)
         << "\">" << Figures::percent(change, html.getLanguage());
    if (change && *change != 0) {
        html << " " << (better ? Texts::better : Texts::worse);
    }
    html << "</td></tr>\n";
}

void writeTable(Html &html, const ComparePage &page)
{
    const auto language = page.viewer.language;
    const auto &left = page.left.summary;
    const auto &right = page.right.summary;
    html << "<section class=\"card\"><h2>" << Texts::summary
         << "</h2><div class=\"wide\" tabindex=\"0\" role=\"region\" aria-label=\""
         << Texts::compareCaption << "\"><table class=\"compare\"><caption>"
         << Texts::compareCaption << "</caption><thead><tr><td></td><th scope=\"col\" class=\"n\">"
         << Texts::left << "</th><th scope=\"col\" class=\"n\">" << Texts::right
         << "</th><th scope=\"col\" class=\"n\">" << Texts::difference
         << "</th></tr></thead>\n<tbody><tr><th scope=\"row\">" << Texts::tests << "</th>";
    for (const auto *side : {&left, &right}) {
        html << "<td class=\"n\">" << Figures::number(side->tests, language);
        if (side->first && side->last) {
            html << " <span class=\"quiet\">(" << Figures::day(*side->first) << " – "
                 << Figures::day(*side->last) << ")</span>";
        }
        html << "</td>";
    }
    html << "<td></td></tr>\n";
    writeRow(html, u"down"_s, Texts::download, left.figures.download, right.figures.download,
             Figures::rate, true);
    writeRow(html, u"up"_s, Texts::upload, left.figures.upload, right.figures.upload, Figures::rate,
             true);
    writeRow(html, u"rtt"_s, Texts::rtt, left.figures.rtt, right.figures.rtt, Figures::roundTrip,
             false);
    html << "</tbody></table></div></section>\n";
}

} // namespace

std::variant<TestFilter, QString> ComparePage::parse(const UrlQuery &query, const QString &prefix)
{
    UrlQuery side;
    for (const QString &name : names()) {
        if (const auto value = query.value(prefix + name); value && !value->isEmpty()) {
            side.add(name, *value);
        }
    }
    return TestFilter::parse(side);
}

std::string ComparePage::toHtml(const TileSource &tiles) const
{
    Html html(viewer.language);
    html << "<div class=\"heading\"><div><h1>" << Texts::compareTitle << "</h1><p class=\"quiet\">"
         << Texts::compareHint << "</p></div></div>\n";
    writePresets(html, *this);
    html
        << "<form class=\"compare\" method=\"get\" action=\"/velometer/Controller\"><input "
           "type=\"hidden\" name=\"page\" value=\"Compare\"><input type=\"hidden\" name=\"userid\" "
           "value=\""
        << viewer.userId << "\"><input type=\"hidden\" name=\"language\" value=\""
        << QString::fromLatin1(Languages::code(viewer.language).data())
        << "\">\n<div class=\"sides\">\n";
    writeSide(html, *this, left, Texts::left, u"l_"_s);
    writeSide(html, *this, right, Texts::right, u"r_"_s);
    html << "</div><button class=\"filled\">" << Texts::compare << "</button></form>\n";
    writeTable(html, *this);
    html << "<section class=\"card scripted\" id=\"compared\" data-left=\"" << left.filter.toQuery()
         << "\" data-right=\"" << right.filter.toQuery() << "\"><h2>" << Texts::byHour
         << "</h2><div class=\"tools\"></div><figure data-chart=\"hour\"><figcaption>"
         << Texts::download << "</figcaption><div class=\"plot\"></div></figure></section>\n";
    Viewer other = viewer;
    other.language = viewer.language == Language::German ? Language::English : Language::German;
    return Layout{.viewer = viewer,
                  .title = QString::fromUtf8(Texts::compareTitle.in(viewer.language)),
                  .otherLanguage = addressOf(other, left.filter, right.filter),
                  .script = u"compare.js"_s,
                  .current = u"Compare"_s,
                  .tiles = tiles,
                  .libraries = true}
        .around(html);
}

} // namespace velometer
