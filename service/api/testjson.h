#pragma once

#include "reports/reportstore.h"

#include <QJsonObject>

/// Answers about tests as JSON: names are those of docs/openapi.json, ids are texts, what is not
/// known is null. Pure functions, callable from every thread.
namespace velometer::TestJson {

/// What a visitor may see of a test.
struct View
{
    bool isShare = false; ///< neither notes nor what tells who measured
    bool positions = true;
};

QJsonObject row(const TestRow &row, const View &view);
QJsonObject page(const TestPage &page, const View &view);
QJsonObject summary(const Summary &summary);
QJsonObject buckets(const Buckets &buckets, Metric metric);
QJsonObject distribution(const Distribution &distribution, const DistributionQuery &query);
/// Without positions nothing is on the map.
QJsonObject map(const MapData &map, const View &view);
QJsonObject facets(const Facets &facets);
QJsonObject share(const Share &share);
QJsonObject shares(const QList<Share> &shares);

} // namespace velometer::TestJson
