#pragma once

#include "figures/finishedtest.h"

#include <QByteArray>
#include <QStringList>

/// Tables for spreadsheets, of a test made from the table of fields: a header line, then one line a
/// row, ended by CR LF. Never translated. A cell that nothing is known about is empty.
namespace velometer::CsvFormat {

QByteArray testHeader();
QByteArray test(const FinishedTest &test);

/// A text cell. A text that a spreadsheet would run as a formula gets a leading apostrophe; quotes
/// go around what would break the table.
QString cell(const QString &text);

/// A line of cells that are ready.
QByteArray line(const QStringList &cells);

} // namespace velometer::CsvFormat
