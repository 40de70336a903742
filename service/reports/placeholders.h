#pragma once

#include <QHash>
#include <QString>

/// The places in a report that the service fills in, "###SERVER_NAME###".
namespace velometer::Placeholders {

/// @p document with the value of each NAME known in @p values put in its place. What is put in is
/// not looked at again, and is stripped of everything that would mean something in XML, also inside
/// CDATA; a value is cut to 128 Ki characters, all of them together to twice as many. Unknown names
/// stay.
QString fill(const QString &document, const QHash<QString, QString> &values);

} // namespace velometer::Placeholders
