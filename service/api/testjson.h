#pragma once

#include "reports/reportstore.h"

#include <QJsonObject>

/// Answers about tests as JSON: names are those of docs/openapi.json, ids are texts, what is not
/// known is null. Pure functions, callable from every thread.
namespace velometer::TestJson {

QJsonObject row(const TestRow &row);
QJsonObject page(const TestPage &page);
QJsonObject summary(const Summary &summary);
QJsonObject buckets(const Buckets &buckets, Metric metric);
QJsonObject distribution(const Distribution &distribution, const DistributionQuery &query);
QJsonObject map(const MapData &map);
QJsonObject facets(const Facets &facets);
QJsonObject share(const Share &share);
QJsonObject shares(const QList<Share> &shares);

} // namespace velometer::TestJson
