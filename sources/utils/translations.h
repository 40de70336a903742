#pragma once

#include <QString>

/// The catalogues compiled into the program, German and English.
namespace Translations {

/// "de" for a user of a German system, else "en".
QString systemLanguage();

/// What install() was last called with; the system's language before.
QString language();

/// Shows all texts in @p language ("de" or "en") from now on, instead of the one before.
void install(const QString &language);

} // namespace Translations
