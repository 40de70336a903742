#pragma once

#include "web/language.h"

#include <QString>

#include <initializer_list>
#include <string>
#include <string_view>

namespace velometer {

/// Writes a page in UTF-8. Literals are markup; every QString is text, escaped for element content
/// and for attributes in double quotes, and freed of control characters and those that turn the
/// direction of writing. So what a client sent can only ever be shown.
class Html
{
public:
    explicit Html(Language pageLanguage)
        : language(pageLanguage)
    {}

    template <std::size_t Size>
    Html &operator<<(const char (&markup)[Size])
    {
        page.append(markup, Size - 1);
        return *this;
    }
    Html &operator<<(const QString &text);
    Html &operator<<(const Phrase &phrase);
    Html &operator<<(qint64 number);
    Html &operator<<(const Html &part)
    {
        page += part.page;
        return *this;
    }

    /// @p phrase with @p values, escaped, in the places of "%1", "%2".
    Html &phrase(const Phrase &phrase, std::initializer_list<QString> values);

    /// A JSON text as the content of a script element that no browser runs.
    Html &json(std::string_view text);

    Language getLanguage() const { return language; }
    std::string take() { return std::move(page); }

private:
    Language language;
    std::string page;
};

} // namespace velometer
