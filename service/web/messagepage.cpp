#include "web/messagepage.h"

using namespace Qt::StringLiterals;

namespace velometer::MessagePage {

std::string make(Language language, const Phrase &text)
{
    Html html(language);
    html << "<h1>" << Texts::nothingTitle << "</h1>\n<p class=\"card empty\">" << text << "</p>\n";
    Viewer viewer;
    viewer.language = language;
    return Layout{.viewer = viewer,
                  .title = QString::fromUtf8(Texts::nothingTitle.in(language)),
                  .otherLanguage =
                      language == Language::German ? u"/?language=en"_s : u"/?language=de"_s,
                  .script = {},
                  .current = {},
                  .tiles = {}}
        .around(html);
}

} // namespace velometer::MessagePage
