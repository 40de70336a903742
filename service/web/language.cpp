#include "web/language.h"

namespace velometer::Languages {

std::string_view code(Language language)
{
    return language == Language::German ? "de" : "en";
}

Language choose(std::string_view parameter, std::string_view acceptLanguage)
{
    if (parameter == "de") {
        return Language::German;
    }
    if (parameter == "en") {
        return Language::English;
    }
    // The first language we have wins: browsers list them by preference.
    const auto german = acceptLanguage.find("de");
    const auto english = acceptLanguage.find("en");
    return german < english ? Language::German : Language::English;
}

} // namespace velometer::Languages
