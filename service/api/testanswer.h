#pragma once

#include "reports/reportstore.h"

#include <QJsonObject>

namespace velometer::TestJson {

/// All that is kept of one test and that @p access lets one see: its JSON object, what the service
/// saw itself and how far both agree, where each phase ran, the log. Null figures where the report
/// cannot be read.
QJsonObject test(const ReportStore::StoredTest &stored, const Access &access);

} // namespace velometer::TestJson
