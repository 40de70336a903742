#pragma once

#include "reports/connectionclass.h"
#include "web/html.h"

namespace velometer::TypeSigns {

/// "Mobile (LTE)", and of a report's place code "Outdoor"; codes that are not known as they came.
const Phrase &name(ConnectionClass type);
QString place(const QString &code, Language language);

/// Two letters, so that colour is never the only sign: "4G", "W".
QString letters(ConnectionClass type);

/// The sign in its colour, which tells a screen reader nothing: the name stands beside it.
void write(Html &html, ConnectionClass type);

} // namespace velometer::TypeSigns
