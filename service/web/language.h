#pragma once

#include <string_view>

namespace velometer {

/// The languages of the pages.
enum class Language { English, German };

/// A text in each of them, UTF-8. "%1", "%2" stand for what differs from case to case.
struct Phrase
{
    const char *english;
    const char *german;

    constexpr const char *in(Language language) const
    {
        return language == Language::German ? german : english;
    }
};

namespace Languages {

/// "en" or "de".
std::string_view code(Language language);

/// What @p parameter asks for ("de" or "en"), else what the browser prefers.
Language choose(std::string_view parameter, std::string_view acceptLanguage);

} // namespace Languages

} // namespace velometer
