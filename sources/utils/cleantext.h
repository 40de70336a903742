#pragma once

#include <QString>

namespace velometer {

/// What the platform says, made fit for logs, screens and reports: at most @p maxLength UTF-16
/// units, without control characters and without what no XML document may hold. Blanks stay as they
/// are.
QString cleanText(const QString &text, qsizetype maxLength = 256);

} // namespace velometer
