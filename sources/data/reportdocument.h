#pragma once

#include <QString>

/// Building blocks of the report's XML text. The document is written by hand because its exact
/// bytes are fixed; every value from outside goes through one of these.
namespace velometer::ReportDocument {

/// <name>value</name> with the value escaped for element content.
QString element(QLatin1StringView name, const QString &value);
QString element(QLatin1StringView name, qint64 value);

/// <name><![CDATA[value]]></name>. What would end the section, and an apostrophe, which the report
/// queue cannot hold, leave the section and enter it again; a reader sees the same text.
QString cdataElement(QLatin1StringView name, const QString &value);

/// @p document without the characters that XML does not allow at all, such as most control
/// characters.
QString withoutForbiddenCharacters(const QString &document);

/// Base64 of the MD5 of @p parts joined with "|", preceded and followed by the salt.
QString hash(const QString &salt, const QStringList &parts);

/// Lower-case German umlauts written as two letters, as the service has them.
QString withoutUmlauts(QString document);

} // namespace velometer::ReportDocument
