#pragma once

#include "data/finishedtest.h"

#include <QByteArray>
#include <QStringList>

namespace velometer {

class TestServer;

/// Tables for spreadsheets, of a test made from the table of fields: a header line, then one line a
/// row, ended by CR LF. Never translated. A cell that nothing is known about is empty.
namespace CsvFormat {

QByteArray testHeader();
QByteArray test(const FinishedTest &test);

QByteArray serverHeader();
QByteArray server(const TestServer &server, bool selected);

/// A text cell. A text that a spreadsheet would run as a formula gets a leading apostrophe; quotes
/// go around what would break the table.
QString cell(const QString &text);

/// A line of cells that are ready.
QByteArray line(const QStringList &cells);

} // namespace CsvFormat

} // namespace velometer
