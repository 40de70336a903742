#pragma once

#include "reports/statistics.h"

#include <QByteArray>
#include <QJsonObject>

/// The public figures for programs and spreadsheets, with the terms on which these may use them.
namespace velometer::StatisticsAnswer {

std::optional<StatisticsBy> by(const QString &name);
QJsonObject json(const Statistics &statistics, StatisticsBy by, const QString &licence);
QByteArray csv(const Statistics &statistics, StatisticsBy by, const QString &licence);

} // namespace velometer::StatisticsAnswer
