#pragma once

#include "reports/statistics.h"

#include <QByteArray>
#include <QJsonObject>

/// The public figures for programs and spreadsheets.
namespace velometer::StatisticsAnswer {

/// The terms on which everybody may use them: none.
inline constexpr auto licence = "CC0-1.0";

std::optional<StatisticsBy> by(const QString &name);
QJsonObject json(const Statistics &statistics, StatisticsBy by);
QByteArray csv(const Statistics &statistics, StatisticsBy by);

} // namespace velometer::StatisticsAnswer
