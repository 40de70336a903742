#include "web/html.h"

#include <algorithm>
#include <iterator>

namespace velometer {

namespace {

/// Text from a client without what would rule the text around it.
QString printable(const QString &text)
{
    QString kept;
    kept.reserve(text.size());
    std::ranges::copy_if(text, std::back_inserter(kept), [](QChar c) {
        const auto category = c.category();
        return c == u'\n' ||
               (category != QChar::Other_Control && category != QChar::Other_Format &&
                category != QChar::Separator_Line && category != QChar::Separator_Paragraph);
    });
    return kept;
}

} // namespace

Html &Html::operator<<(const QString &text)
{
    for (const char c : printable(text).toUtf8()) {
        switch (c) {
        case '<': page += "&lt;"; break;
        case '>': page += "&gt;"; break;
        case '&': page += "&amp;"; break;
        case '"': page += "&quot;"; break;
        case '\'': page += "&#39;"; break;
        default: page += c;
        }
    }
    return *this;
}

Html &Html::operator<<(const Phrase &phrase)
{
    return *this << QString::fromUtf8(phrase.in(language));
}

Html &Html::operator<<(qint64 number)
{
    page += std::to_string(number);
    return *this;
}

Html &Html::phrase(const Phrase &phrase, std::initializer_list<QString> values)
{
    // What is put in is not looked at again.
    const std::string_view text = phrase.in(language);
    std::size_t from = 0;
    for (auto at = text.find('%'); at != std::string_view::npos; at = text.find('%', from)) {
        const auto which = at + 1 < text.size() ? std::size_t(text[at + 1] - '1') : values.size();
        const bool known = which < values.size();
        const auto plain = text.substr(from, at + (known ? 0 : 1) - from);
        *this << QString::fromUtf8(plain.data(), qsizetype(plain.size()));
        if (known) {
            *this << *(values.begin() + which);
        }
        from = at + (known ? 2 : 1);
    }
    const auto rest = text.substr(from);
    return *this << QString::fromUtf8(rest.data(), qsizetype(rest.size()));
}

Html &Html::json(std::string_view text)
{
    for (const char c : text) {
        // The one thing that could end the element.
        if (c == '<') {
            page += "\\u003c";
        } else {
            page += c;
        }
    }
    return *this;
}

} // namespace velometer
