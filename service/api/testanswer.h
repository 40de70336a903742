#pragma once

#include "api/testjson.h"
#include "reports/reporttest.h"

namespace velometer::TestJson {

/// @p test without what @p view must not see: who measured, on which device and from which address,
/// rates of a share that nothing backs, and, without positions, what tells where.
FinishedTest shown(FinishedTest test, const TestRow &row, const View &view);

/// All that is kept of one test: its JSON object, what the service saw itself and how far both
/// agree, where each phase ran, the log. Null figures where the report cannot be read.
QJsonObject test(const ReportStore::StoredTest &stored, const View &view);

} // namespace velometer::TestJson
