#include "web/statisticspage.h"

#include "web/figures.h"
#include "web/texts.h"
#include "web/typesigns.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Figure = std::optional<Statistics::Figure>;
using ToText = QString (*)(std::optional<qint64>, Language);

void writeCell(Html &html, const QString &kind, const Figure &figure, ToText toText)
{
    const auto language = html.getLanguage();
    html << "<td role=\"cell\" class=\"n " << kind << "\">";
    if (!figure) {
        html << "–</td>";
        return;
    }
    html << toText(figure->median, language) << " <span class=\"quiet\">("
         << Figures::range(toText(figure->p10, language), toText(figure->p90, language),
                           Texts::dash, language)
         << ")</span></td>";
}

qint64 countOf(const Statistics::Row &row)
{
    return std::max({row.download ? row.download->count : 0, row.upload ? row.upload->count : 0,
                     row.rtt ? row.rtt->count : 0});
}

/// Files of the same figures, for programs and spreadsheets.
void writeFiles(Html &html, const QString &by)
{
    const QString address = u"/velometer/api/v1/statistics?by="_s + by;
    html << "<p class=\"quiet small\"><a download href=\"" << address << "&format=csv"
         << "\">CSV</a> · <a download href=\"" << address << "\">JSON</a></p>";
}

void writeTable(Html &html, const Statistics &statistics, const QString &by, const Phrase &title,
                const Phrase &column)
{
    const auto language = html.getLanguage();
    html << "<section class=\"card\"><h2>" << title
         << "</h2><table role=\"table\" "
            "class=\"types\"><caption>"
         << Texts::mediansCaption << "</caption><thead role=\"rowgroup\"><tr role=\"row\">";
    for (const auto *name : {&column, &Texts::tests, &Texts::download, &Texts::upload, &Texts::rtt,
                             &Texts::rttDownload, &Texts::rttUpload}) {
        html << "<th role=\"columnheader\" scope=\"col\" class=\""
             << (name == &column ? u""_s : u"n"_s) << "\">" << *name << "</th>";
    }
    html << "</tr></thead><tbody role=\"rowgroup\">\n";
    auto rows = statistics.rows;
    std::ranges::stable_sort(rows, {}, [&](const Statistics::Row &row) {
        const auto type = ConnectionClasses::ofKey(row.key);
        return by == u"type" && type ? std::ranges::find(ConnectionClasses::all(), *type) -
                                           ConnectionClasses::all().begin()
                                     : 0;
    });
    for (const auto &row : std::as_const(rows)) {
        if (by != u"type" && row.type) {
            continue;
        }
        html << "<tr role=\"row\"><th role=\"rowheader\" scope=\"row\">";
        if (const auto type = ConnectionClasses::ofKey(row.key); by == u"type" && type) {
            TypeSigns::write(html, *type);
            html << TypeSigns::name(*type);
        } else {
            html << row.key;
        }
        html << "</th><td role=\"cell\" class=\"n\">" << Figures::number(countOf(row), language)
             << "</td>";
        writeCell(html, u"down"_s, row.download, Figures::rate);
        writeCell(html, u"up"_s, row.upload, Figures::rate);
        writeCell(html, u"rtt"_s, row.rtt, Figures::roundTrip);
        writeCell(html, u"rtt load-down"_s, row.downloadRtt, Figures::roundTrip);
        writeCell(html, u"rtt load-up"_s, row.uploadRtt, Figures::roundTrip);
        html << "</tr>\n";
    }
    html << "</tbody></table>";
    writeFiles(html, by);
    html << "</section>\n";
}

} // namespace

std::string StatisticsPage::toHtml(const TileSource &tiles) const
{
    Html html(language);
    html << "<div class=\"heading\"><div><h1>" << Texts::statisticsTitle
         << "</h1><p class=\"quiet\">" << Texts::statisticsHint << " ";
    html.phrase(Texts::statisticsLicence, {licence}) << "</p></div></div>\n";
    const bool known = !types.rows.isEmpty();
    if (!known) {
        html << "<p class=\"card empty\">" << Texts::statisticsNone << "</p>\n";
    } else {
        html << "<noscript><p class=\"card\">" << Texts::needsScript
             << "</p></noscript>\n<div class=\"two\"><section class=\"card scripted\" "
                "id=\"months\"><h2>"
             << Texts::byMonth << "</h2><div class=\"tools\"></div><figure><figcaption>"
             << Texts::download
             << "</figcaption><div class=\"plot\"></div></figure></section>\n<section class=\"card "
                "scripted mapcard\"><h2>"
             << Texts::map << "</h2><div class=\"tools\"></div><div id=\"map\"></div>";
        writeFiles(html, u"cell"_s);
        html << "</section></div>\n";
        writeTable(html, types, u"type"_s, Texts::byType, Texts::connection);
        writeTable(html, operators, u"operator"_s, Texts::byOperator, Texts::operatorName);
        writeTable(html, servers, u"server"_s, Texts::byServer, Texts::server);
        writeTable(html, months, u"month"_s, Texts::byMonth, Texts::month);
    }
    Viewer viewer;
    viewer.language = language;
    return Layout{.viewer = viewer,
                  .title = QString::fromUtf8(Texts::statisticsTitle.in(language)),
                  .otherLanguage = language == Language::German
                                       ? u"/velometer/statistics?language=en"_s
                                       : u"/velometer/statistics?language=de"_s,
                  .script = known ? u"statistics.js"_s : QString(),
                  .current = u"statistics"_s,
                  .tiles = tiles,
                  .libraries = known}
        .around(html);
}

} // namespace velometer
