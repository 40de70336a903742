#pragma once

#include "web/html.h"
#include "web/texts.h"
#include "web/viewer.h"

namespace velometer::TestList {

/// A page of tests as a table whose columns sort and whose times lead to the tests. @p start is the
/// number of its first row, 1 on the first page, 0 when nobody knows.
void write(Html &html, const Viewer &viewer, const TestFilter &filter, const TestOrder &order,
           const TestPage &page, qint64 start);

/// Who says what a test's figures are.
const Phrase &seenWords(const TestRow &row);

} // namespace velometer::TestList
