#pragma once

#include "figures/finishedtest.h"

#include <QByteArray>
#include <QJsonObject>

/// The program's JSON: never translated, every field always there, null where nothing is known.
/// Names carry the units. Series, test, user and queue ids are texts, so that no reader rounds
/// them.
namespace velometer::JsonFormat {

/// Version of test()'s fields.
inline constexpr int schemaVersion = 1;

/// Made from the table of fields; see docs/json-schema.json.
QJsonObject test(const FinishedTest &test);

/// @p object on one line, with its line end.
QByteArray line(const QJsonObject &object);

/// A moment as ISO 8601 in UTC with milliseconds.
QString timestamp(qint64 ms);

} // namespace velometer::JsonFormat
