#include "web/homepage.h"

#include "web/figures.h"
#include "web/texts.h"

using namespace Qt::StringLiterals;

namespace velometer {

std::string HomePage::toHtml() const
{
    Html html(language);
    html << "<div class=\"hero\"><h1>" << Texts::homeTitle << "</h1><p>" << Texts::homeText
         << "</p></div>\n<div class=\"two even\">\n<section class=\"card\"><h2>"
         << Texts::homeClient << "</h2><p>" << Texts::homeClientText
         << "</p></section>\n<section class=\"card\"><h2>" << Texts::homeFigures << "</h2><p>"
         << Texts::homeFiguresText
         << "</p><p><a class=\"filled\" href=\"/velometer/statistics?language="
         << QString::fromLatin1(Languages::code(language).data()) << "\">" << Texts::statistics
         << "</a></p></section>\n</div>\n<section class=\"card\"><h2>" << Texts::serverState
         << "</h2>\n<table role=\"table\" class=\"states\"><caption>" << Texts::serverStateCaption
         << "</caption><thead><tr><th scope=\"col\">" << Texts::server << "</th><th scope=\"col\">"
         << Texts::state << "</th><th scope=\"col\" class=\"n\">" << Texts::running
         << "</th></tr></thead>\n<tbody><tr><th scope=\"row\">" << Texts::thisServer
         << "</th><td class=\""
         << (!stores            ? u"bad"_s
             : running < places ? u"good"_s
                                : u"full"_s)
         << "\">"
         << (!stores            ? Texts::stateBad
             : running < places ? Texts::stateGood
                                : Texts::stateFull)
         << "</td><td class=\"n\">" << running << " / " << places << "</td></tr>\n";
    for (std::size_t i = 0; i < servers.size(); ++i) {
        const auto &[name, endpoint] = servers.at(i);
        const auto state = states.at(i);
        html << "<tr><th scope=\"row\">" << name << " <span class=\"quiet\">"
             << Endpoint::bracketed(endpoint.host) << ":" << endpoint.port
             << "</span></th><td class=\""
             << (state == Neighbours::State::Good ? u"good"_s : u"bad"_s) << "\">"
             << (state == Neighbours::State::Good  ? Texts::stateGood
                 : state == Neighbours::State::Ill ? Texts::stateBad
                                                   : Texts::stateSilent)
             << "</td><td></td></tr>\n";
    }
    html << "</tbody></table></section>\n";
    Viewer viewer;
    viewer.language = language;
    return Layout{.viewer = viewer,
                  .title = QString::fromUtf8(Texts::homeTitle.in(language)),
                  .otherLanguage =
                      language == Language::German ? u"/?language=en"_s : u"/?language=de"_s,
                  .script = {},
                  .current = {},
                  .tiles = {}}
        .around(html);
}

} // namespace velometer
