#include "web/testlist.h"

#include "web/figures.h"
#include "web/texts.h"
#include "web/typesigns.h"

#include <array>

using namespace Qt::StringLiterals;

namespace velometer::TestList {

namespace {

struct Column
{
    const Phrase &title;
    std::optional<TestOrder::By> sort;
    QLatin1StringView key; ///< as the address names it
    bool figure = false;   ///< stands to the right
};
constexpr std::array columns{
    Column{Texts::time, TestOrder::By::Time, "time"_L1},
    Column{Texts::seriesTest, std::nullopt, {}},
    Column{Texts::connectionPlace, TestOrder::By::Type, "type"_L1},
    Column{Texts::server, TestOrder::By::Server, "server"_L1},
    Column{Texts::download, TestOrder::By::Download, "download"_L1, true},
    Column{Texts::upload, TestOrder::By::Upload, "upload"_L1, true},
    Column{Texts::rtt, TestOrder::By::Rtt, "rtt"_L1, true},
    Column{Texts::checked, std::nullopt, {}},
};

QString sortKey(TestOrder::By by)
{
    for (const auto &column : columns) {
        if (column.sort == by) {
            return column.key;
        }
    }
    return {};
}

void writeHead(Html &html, const Viewer &viewer, const TestFilter &filter, const TestOrder &order)
{
    html << "<thead role=\"rowgroup\"><tr role=\"row\">";
    for (const auto &column : columns) {
        const bool current = column.sort == order.by;
        html << "<th role=\"columnheader\" scope=\"col\"";
        if (column.figure) {
            html << " class=\"n\"";
        }
        if (current) {
            html << " aria-sort=\"" << (order.ascending ? u"ascending"_s : u"descending"_s) << "\"";
        }
        html << ">";
        if (column.sort) {
            const QString other = current != order.ascending ? u"asc"_s : u"desc"_s;
            html << "<a href=\""
                 << viewer.address(
                        viewer.listPage(), filter,
                        {{u"sort"_s, column.key}, {u"order"_s, current ? other : u"desc"_s}}) +
                        u"#tests"_s
                 << "\">" << column.title;
            if (current) {
                html << "<span aria-hidden=\"true\"> " << (order.ascending ? u"▴"_s : u"▾"_s)
                     << "</span>";
            }
            html << "</a>";
        } else {
            html << column.title;
        }
        html << "</th>";
    }
    html << "</tr></thead>\n";
}

void writeFigure(Html &html, const QString &kind, const QString &text)
{
    html << "<td role=\"cell\" class=\"n " << kind << "\">" << text << "</td>";
}

void writeRow(Html &html, const Viewer &viewer, const TestRow &row)
{
    const auto language = viewer.language;
    html << "<tr role=\"row\"><td role=\"cell\" class=\"when\"><a href=\""
         << viewer.address(u"Test"_s, {}, {{u"test"_s, QString::number(row.id)}}) << "\">"
         << Figures::time(row.time) << "</a></td><td role=\"cell\" class=\"ids n\">" << row.seriesId
         << " / " << row.testId << "</td><td role=\"cell\" class=\"what\">";
    TypeSigns::write(html, row.type);
    QStringList words{QString::fromUtf8(TypeSigns::name(row.type).in(language))};
    const QString place = TypeSigns::place(row.location, language);
    for (const QString &word : {place, row.network}) {
        if (!word.isEmpty()) {
            words += word;
        }
    }
    html << words.join(u" · "_s);
    if (viewer.isOwner() && !row.note.isEmpty()) {
        html << "<span class=\"note\">" << row.note << "</span>";
    }
    html << "</td><td role=\"cell\" class=\"server\">" << row.server << "</td>";
    writeFigure(html, u"down"_s, Figures::rate(row.download, language));
    writeFigure(html, u"up"_s, Figures::rate(row.upload, language));
    writeFigure(html, u"rtt"_s, Figures::roundTrip(row.rtt, language));
    html << "<td role=\"cell\" class=\"seen\">" << seenWords(row);
    if (row.serviceLate) {
        html << " <abbr title=\"" << Texts::lateMark << "\">*</abbr>";
    }
    html << "</td></tr>\n";
}

} // namespace

const Phrase &seenWords(const TestRow &row)
{
    if (row.contradicting) {
        return Texts::contradicting;
    }
    return row.verified ? Texts::bothEnds : Texts::notVerified;
}

void write(Html &html, const Viewer &viewer, const TestFilter &filter, const TestOrder &order,
           const TestPage &page, qint64 start)
{
    const auto language = viewer.language;
    const auto shown = page.rows.size();
    html << "<table role=\"table\" class=\"tests\"><caption>";
    if (start > 0) {
        html.phrase(Texts::listCaption,
                    {Figures::number(start, language), Figures::number(start + shown - 1, language),
                     Figures::number(page.count, language)});
    } else {
        html.phrase(Texts::listCaptionOpen,
                    {Figures::number(shown, language), Figures::number(page.count, language)});
    }
    html << "</caption>\n";
    writeHead(html, viewer, filter, order);
    html << "<tbody role=\"rowgroup\">\n";
    for (const TestRow &row : page.rows) {
        writeRow(html, viewer, row);
    }
    html << "</tbody></table>\n";
    if (page.next.isEmpty() && !order.after) {
        return;
    }
    const QString by = sortKey(order.by);
    const QString direction = order.ascending ? u"asc"_s : u"desc"_s;
    html << "<nav class=\"pager\" aria-label=\"" << Texts::pageLinks << "\">";
    if (order.after.has_value()) {
        html << "<a class=\"pill\" href=\""
             << viewer.address(viewer.listPage(), filter,
                               {{u"sort"_s, by}, {u"order"_s, direction}}) +
                    u"#tests"_s
             << "\">" << Texts::firstPage << "</a>";
    }
    if (!page.next.isEmpty()) {
        html << "<a class=\"pill\" rel=\"next\" href=\""
             << viewer.address(viewer.listPage(), filter,
                               {{u"sort"_s, by},
                                {u"order"_s, direction},
                                {u"after"_s, page.next},
                                {u"start"_s, QString::number(start > 0 ? start + shown : 0)}}) +
                    u"#tests"_s
             << "\">" << Texts::nextPage << "</a>";
    }
    html << "</nav>\n";
}

} // namespace velometer::TestList
