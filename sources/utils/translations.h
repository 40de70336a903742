#pragma once

#include <QString>

/// The catalogues compiled into the program, German and English.
namespace velometer::Translations {

/// "de" for a user of a German system, else "en".
QString systemLanguage();

/// What install() or choose() was last called with; the system's language before.
QString language();

/// The language of texts before there is an application; anything but "de" and "en" is the
/// system's.
void choose(const QString &language);

/// @p text of @p context in the language of all texts, also while there is no application that
/// could translate. As it is where there is no catalogue.
QString translate(const char *context, const char *text);

/// Shows all texts in @p language ("de" or "en") from now on, instead of the one before.
void install(const QString &language);

} // namespace velometer::Translations
