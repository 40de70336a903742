#include "web/userpage.h"

#include "web/figures.h"
#include "web/filterform.h"
#include "web/summarytable.h"
#include "web/testlist.h"
#include "web/texts.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

void writeHeading(Html &html, const UserPage &page)
{
    const auto language = page.viewer.language;
    const auto &summary = page.summary;
    html << "<div class=\"heading\"><div><h1>"
         << (page.viewer.isOwner() ? Texts::yours : Texts::sharedTitle)
         << "</h1><p class=\"quiet\">";
    if (summary.tests == 1) {
        html << Texts::oneTest;
    } else {
        html.phrase(Texts::manyTests, {Figures::number(summary.tests, language)});
    }
    if (summary.first && summary.last) {
        html << " · ";
        html.phrase(Texts::period, {Figures::day(*summary.first), Figures::day(*summary.last)});
    }
    html << " · ";
    html.phrase(Texts::moved, {Figures::bytes(summary.bytes, language)}) << "</p></div>\n";
}

void writeExport(Html &html, const UserPage &page)
{
    const auto language = page.viewer.language;
    html << "<details class=\"menu\"><summary class=\"pill\">" << Texts::exportAs
         << "</summary><div class=\"sheet\"><p class=\"quiet\">";
    html.phrase(Texts::exportHint, {QString::fromUtf8(Texts::manyTests.in(language))
                                        .arg(Figures::number(page.summary.tests, language))});
    html << "</p><ul>";
    for (const auto &[format, name] : {std::pair{u"csv"_s, u"CSV"_s},
                                       {u"json"_s, u"JSON"_s},
                                       {u"geojson"_s, u"GeoJSON"_s},
                                       {u"gpx"_s, u"GPX"_s}}) {
        QString address =
            u"/velometer/api/v1/export?"_s + page.viewer.credential() + u"&format="_s + format;
        if (const QString filter = page.filter.toQuery(); !filter.isEmpty()) {
            address += u'&' + filter;
        }
        html << "<li><a download href=\"" << address << "\">" << name << "</a></li>";
    }
    html << "</ul></div></details>\n";
}

void writeActions(Html &html, const UserPage &page)
{
    const auto language = page.viewer.language;
    html << "<div class=\"actions\">\n";
    writeExport(html, page);
    if (page.viewer.isOwner()) {
        html << "<details class=\"menu\"><summary class=\"pill\">" << Texts::share
             << "</summary><form class=\"sheet\" id=\"share\" data-filter=\""
             << page.filter.toQuery() << "\"><p class=\"quiet\">" << Texts::shareHint
             << "</p><label class=\"check\"><input type=\"checkbox\" name=\"positions\">"
             << Texts::sharePositions << "</label><label><span>" << Texts::shareDays
             << "</span><input type=\"number\" name=\"days\" min=\"1\" max=\"365\" value=\"30\" "
                "required></label><button class=\"filled\">"
             << Texts::shareMake << "</button><output></output><h3>" << Texts::shareList
             << "</h3><ul class=\"shares\"></ul></form></details>\n"
             << "<details class=\"menu\"><summary class=\"pill danger\">" << Texts::remove
             << "</summary><div class=\"sheet\"><form id=\"delete-filtered\" data-filter=\""
             << page.filter.toQuery() << "\"><h3>" << Texts::removeFiltered << "</h3><p>";
        html.phrase(Texts::removeFilteredHint,
                    {QString::fromUtf8(Texts::manyTests.in(language))
                         .arg(Figures::number(page.summary.tests, language)),
                     u"DELETE"_s});
        html << "</p><label><span>" << Texts::confirmation
             << "</span><input name=\"confirm\" autocomplete=\"off\" required></label>"
                "<button class=\"pill danger\">"
             << Texts::removeFiltered
             << "</button><output></output></form>\n<form id=\"delete-all\"><h3>"
             << Texts::removeAll << "</h3><p>";
        html.phrase(Texts::removeAllHint, {QString::number(page.viewer.userId)});
        html
            << "</p><label><span>" << Texts::confirmation
            << "</span><input name=\"confirm\" autocomplete=\"off\" inputmode=\"numeric\" required>"
               "</label><button class=\"pill danger\">"
            << Texts::removeAll << "</button><output></output></form></div></details>\n";
    }
    html << "</div></div>\n";
}

void writeChart(Html &html, const QString &kind, const QString &metric, const Phrase &title)
{
    html << "<figure data-chart=\"" << kind << "\" data-metric=\"" << metric << "\"><figcaption>"
         << title << "</figcaption><div class=\"plot\"></div></figure>\n";
}

void writeCharts(Html &html, const UserPage &page)
{
    html << "<noscript><p class=\"card\">" << Texts::needsScript << "</p></noscript>\n"
         << "<div class=\"two\">\n<section class=\"card scripted\" id=\"time\"><h2>"
         << Texts::overTime << "</h2><div class=\"tools\"></div>\n";
    writeChart(html, u"time"_s, u"download"_s, Texts::download);
    writeChart(html, u"time"_s, u"upload"_s, Texts::upload);
    writeChart(html, u"time"_s, u"rtt"_s, Texts::rtt);
    html << "<p class=\"quiet small\">" << Texts::overTimeHint
         << "</p></section>\n<div class=\"column\">\n";
    if (page.viewer.showsPositions) {
        html << "<section class=\"card scripted mapcard\"><h2>" << Texts::map
             << "</h2><div class=\"tools\"></div><div id=\"map\"></div><p class=\"quiet small\">"
             << Texts::mapHint << "</p></section>\n";
    }
    html << "<section class=\"card scripted\" id=\"types\"><h2>" << Texts::spread
         << "</h2><div class=\"tools\"></div>\n";
    writeChart(html, u"type"_s, u"download"_s, Texts::download);
    html << "<p class=\"quiet small\">" << Texts::spreadHint
         << "</p></section>\n</div>\n</div>\n<div class=\"two\">\n";
    SummaryTable::writeTypes(html, page.summary);
    html << "<section class=\"card scripted\" id=\"hours\"><h2>" << Texts::byHour
         << "</h2><div class=\"tools\"></div>\n";
    writeChart(html, u"hour"_s, u"download"_s, Texts::download);
    html << "<p class=\"quiet small\">" << Texts::byHourHint << "</p></section>\n</div>\n";
}

} // namespace

std::string UserPage::toHtml(const TileSource &tiles) const
{
    Html html(viewer.language);
    writeHeading(html, *this);
    writeActions(html, *this);
    if (!viewer.isOwner()) {
        html << "<p class=\"hint\">" << Texts::sharedHint << "</p>\n";
    }
    FilterForm::write(html, viewer, filter, facets, today);
    if (summary.tests == 0) {
        html << "<p class=\"card empty\">"
             << (filter == TestFilter() ? Texts::none : Texts::noneFiltered) << "</p>\n";
    } else {
        SummaryTable::writeCards(html, summary);
        writeCharts(html, *this);
        if (viewer.isOwner()) {
            html << "<section class=\"card\" id=\"tracks\" hidden><h2>" << Texts::tracks
                 << "</h2><ul class=\"tracks\"></ul><p class=\"quiet small\">" << Texts::tracksHint
                 << "</p></section>\n";
        }
        html << "<section class=\"card\" id=\"tests\"><h2>" << Texts::list << "</h2>\n";
        TestList::write(html, viewer, filter, order, tests, start);
        html << "</section>\n";
    }
    Viewer other = viewer;
    other.language = viewer.language == Language::German ? Language::English : Language::German;
    return Layout{.viewer = viewer,
                  .title = QString::fromUtf8(
                      (viewer.isOwner() ? Texts::yours : Texts::sharedTitle).in(viewer.language)),
                  .otherLanguage = other.address(viewer.listPage(), filter),
                  .script = u"user.js"_s,
                  .current = viewer.listPage(),
                  .tiles = tiles,
                  .libraries = summary.tests > 0}
        .around(html);
}

} // namespace velometer
