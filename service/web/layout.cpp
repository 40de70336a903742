#include "web/layout.h"

#include "web/assets.h"
#include "web/scripttexts.h"
#include "web/texts.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString asset(std::string_view name)
{
    return QString::fromStdString(Assets::address(name));
}

void writeHead(Html &html, const Layout &layout)
{
    html << "<!DOCTYPE html>\n<html lang=\""
         << QString::fromLatin1(Languages::code(layout.viewer.language).data())
         << "\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
            "<meta name=\"robots\" content=\"noindex\">\n"
            "<meta name=\"color-scheme\" content=\"light dark\">\n<title>"
         << layout.title << " – Velometer</title>\n<link rel=\"icon\" href=\"" << asset("icon.svg")
         << "\">\n";
    if (layout.libraries) {
        html << "<link rel=\"stylesheet\" href=\"" << asset("leaflet.css") << "\">\n";
    }
    html << "<link rel=\"stylesheet\" href=\"" << asset("site.css") << "\">\n";
    if (layout.libraries) {
        html << "<script defer src=\"" << asset("leaflet.js") << "\"></script>\n";
    }
    if (!layout.script.isEmpty()) {
        html << "<script type=\"module\" src=\"" << asset(layout.script.toStdString())
             << "\"></script>\n";
    }
    html << "</head>\n";
}

void writeLink(Html &html, const Layout &layout, const QString &address, const QString &name,
               const Phrase &text)
{
    html << "<a href=\"" << address << "\"";
    if (layout.current == name) {
        html << " aria-current=\"page\"";
    }
    html << ">" << text << "</a>";
}

void writeHeader(Html &html, const Layout &layout)
{
    const auto &viewer = layout.viewer;
    html << "<a class=\"skip\" href=\"#main\">" << Texts::skip
         << "</a>\n<header class=\"top\"><a class=\"brand\" href=\"/\"><img src=\""
         << asset("icon.svg")
         << "\" alt=\"\" width=\"28\" height=\"28\">Velometer</a><nav aria-label=\""
         << Texts::navigation << "\">";
    if (viewer.isOwner()) {
        writeLink(html, layout, viewer.address(u"UserReport"_s), u"UserReport"_s, Texts::yours);
        writeLink(html, layout, viewer.address(u"Compare"_s), u"Compare"_s, Texts::compare);
    }
    writeLink(html, layout,
              viewer.language == Language::German ? u"/velometer/statistics?language=de"_s
                                                  : u"/velometer/statistics?language=en"_s,
              u"statistics"_s, Texts::statistics);
    const bool german = viewer.language == Language::German;
    html << "</nav><a class=\"pill language\" hreflang=\"" << (german ? u"en"_s : u"de"_s)
         << "\" lang=\"" << (german ? u"en"_s : u"de"_s) << "\" href=\"" << layout.otherLanguage
         << "\">" << Texts::otherLanguage << "</a></header>\n";
}

} // namespace

std::string TileSource::origin() const
{
    const QUrl url(QString(address).remove(u"{s}."_s).remove(u'{').remove(u'}'));
    if (!url.isValid() || url.host().isEmpty()) {
        return {};
    }
    // Several hosts of one name share the work.
    const QString host = address.contains(u"{s}."_s) ? u"*."_s + url.host() : url.host();
    return (url.scheme() + u"://"_s + host +
            (url.port() > 0 ? u':' + QString::number(url.port()) : QString()))
        .toStdString();
}

std::string Layout::around(const Html &body) const
{
    Html html(viewer.language);
    writeHead(html, *this);
    html << "<body data-credential=\"" << viewer.credential() << "\" data-owner=\""
         << (viewer.isOwner() ? QString::number(viewer.userId) : QString()) << "\" data-tiles=\""
         << tiles.address << "\" data-thanks=\"" << tiles.attribution << "\">\n";
    writeHeader(html, *this);
    html << "<main id=\"main\" tabindex=\"-1\">\n"
         << body << "</main>\n<footer><p>" << Texts::privacy << "</p><p>Velometer "
         << QStringLiteral(VELOMETER_VERSION) << " · <a href=\"" << asset("licences.txt") << "\">"
         << Texts::licences << "</a></p></footer>\n";
    if (!script.isEmpty()) {
        html << "<script type=\"application/json\" id=\"texts\">";
        html.json(ScriptTexts::json(viewer.language)) << "</script>\n";
    }
    html << "</body>\n</html>\n";
    return html.take();
}

std::string Layout::headers(const TileSource &tiles)
{
    const std::string origin = tiles.origin();
    return "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; "
           "img-src 'self' data:" +
           (origin.empty() ? origin : ' ' + origin) +
           "; connect-src 'self'; form-action 'self'; base-uri 'none'; frame-ancestors 'none'\r\n"
           "Cross-Origin-Opener-Policy: same-origin\r\n";
}

} // namespace velometer
