#include "web/summarytable.h"

#include "web/figures.h"
#include "web/texts.h"
#include "web/typesigns.h"

using namespace Qt::StringLiterals;

namespace velometer::SummaryTable {

namespace {

using ToText = QString (*)(std::optional<qint64>, Language);

/// A figure with its unit smaller beside it.
void writeValue(Html &html, const QString &text)
{
    const auto unit = text.lastIndexOf(u' ');
    html << "<strong>" << (unit < 0 ? text : text.left(unit)) << "</strong>";
    if (unit >= 0) {
        html << " <span class=\"unit\">" << text.sliced(unit + 1) << "</span>";
    }
}

void writeCard(Html &html, const QString &kind, const Phrase &title, const Spread &spread,
               ToText toText)
{
    const auto language = html.getLanguage();
    html << "<div class=\"card figure " << kind << "\"><h2>" << title << "</h2><p>";
    writeValue(html, toText(spread.median, language));
    html << "</p><p class=\"quiet\">";
    html.phrase(Texts::middle,
                {Figures::range(toText(spread.p10, language), toText(spread.p90, language),
                                Texts::between, language)});
    html << "</p></div>\n";
}

void writeCell(Html &html, const QString &kind, const Spread &spread, ToText toText)
{
    const auto language = html.getLanguage();
    html << "<td role=\"cell\" class=\"n " << kind << "\">" << toText(spread.median, language);
    if (spread.p10 && spread.p90) {
        html << " <span class=\"quiet\">("
             << Figures::range(toText(spread.p10, language), toText(spread.p90, language),
                               Texts::dash, language)
             << ")</span>";
    }
    html << "</td>";
}

} // namespace

void writeCards(Html &html, const Summary &summary)
{
    const auto language = html.getLanguage();
    const auto &figures = summary.figures;
    html << "<section class=\"cards\" aria-label=\"" << Texts::summary << "\">\n";
    writeCard(html, u"down"_s, Texts::downloadMedian, figures.download, Figures::rate);
    writeCard(html, u"up"_s, Texts::uploadMedian, figures.upload, Figures::rate);
    writeCard(html, u"rtt"_s, Texts::rttMedian, figures.rtt, Figures::roundTrip);
    html << "<div class=\"card figure\"><h2>" << Texts::dataMoved << "</h2><p>";
    writeValue(html, Figures::bytes(summary.bytes, language));
    html << "</p><p class=\"quiet\">";
    html.phrase(Texts::manyTests, {Figures::number(summary.tests, language)});
    html << "</p></div>\n</section>\n";
}

void writeTypes(Html &html, const Summary &summary)
{
    const auto language = html.getLanguage();
    html << "<section class=\"card\"><h2>" << Texts::byType
         << "</h2>\n<table role=\"table\" class=\"types\"><caption>" << Texts::byTypeCaption
         << "</caption>\n<thead role=\"rowgroup\"><tr role=\"row\">";
    for (const auto *title :
         {&Texts::connection, &Texts::tests, &Texts::download, &Texts::upload, &Texts::rtt}) {
        html << "<th role=\"columnheader\" scope=\"col\" class=\""
             << (title == &Texts::connection ? u""_s : u"n"_s) << "\">" << *title << "</th>";
    }
    html << "</tr></thead>\n<tbody role=\"rowgroup\">\n";
    for (const auto &type : summary.types) {
        html << "<tr role=\"row\"><th role=\"rowheader\" scope=\"row\">";
        TypeSigns::write(html, type.type);
        html << TypeSigns::name(type.type) << "</th><td role=\"cell\" class=\"n\">"
             << Figures::number(type.tests, language) << "</td>";
        writeCell(html, u"down"_s, type.figures.download, Figures::rate);
        writeCell(html, u"up"_s, type.figures.upload, Figures::rate);
        writeCell(html, u"rtt"_s, type.figures.rtt, Figures::roundTrip);
        html << "</tr>\n";
    }
    html << "</tbody></table></section>\n";
}

} // namespace velometer::SummaryTable
