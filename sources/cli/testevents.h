#pragma once

#include "figures/finishedtest.h"

#include <QJsonObject>

/// The events of --json-stream.
namespace velometer::TestEvents {

QJsonObject phase(const QString &phase, int test, int count);
/// @p value of @p max: ms while data flows, connects in the round-trip phase.
QJsonObject progress(int value, int max);
QJsonObject result(const FinishedTest &test);
QJsonObject error(const QString &message, int status);

} // namespace velometer::TestEvents
