#pragma once

#include "cli/output.h"

#include <QString>

/// The address of a page for whoever sits at the terminal.
namespace velometer::PagePrinter {

/// The address on a line of its own and, where a person looks, its QR code below: two modules a
/// character, black on white whatever the terminal's colours are.
void print(const QString &address, Output &out);

} // namespace velometer::PagePrinter
