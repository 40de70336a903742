#pragma once

#include "reports/testquery.h"
#include "web/html.h"

namespace velometer::SummaryTable {

/// The medians as cards: download, upload, RTT, and what was moved.
void writeCards(Html &html, const Summary &summary);

/// The medians of each connection class as a table.
void writeTypes(Html &html, const Summary &summary);

} // namespace velometer::SummaryTable
