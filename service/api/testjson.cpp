#include "api/testjson.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace velometer::TestJson {

namespace {

template <typename Value>
QJsonValue orNull(const std::optional<Value> &value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

QJsonValue orNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
}

QString id(qint64 number)
{
    return QString::number(number);
}

QJsonObject spread(const Spread &spread)
{
    return {{u"count"_s, spread.count},
            {u"p10"_s, orNull(spread.p10)},
            {u"median"_s, orNull(spread.median)},
            {u"p90"_s, orNull(spread.p90)}};
}

void insertFigures(QJsonObject &object, const Summary::Figures &figures)
{
    object.insert("download"_L1, spread(figures.download));
    object.insert("upload"_L1, spread(figures.upload));
    object.insert("rtt"_L1, spread(figures.rtt));
}

QString name(Metric metric)
{
    switch (metric) {
    case Metric::Download: return u"download"_s;
    case Metric::Upload: return u"upload"_s;
    case Metric::Rtt: break;
    }
    return u"rtt"_s;
}

QString unit(Metric metric)
{
    return metric == Metric::Rtt ? u"ns"_s : u"bit/s"_s;
}

QJsonArray values(const QList<Facets::Value> &list, bool named)
{
    QJsonArray array;
    for (const auto &value : list) {
        QJsonObject object{{named ? u"code"_s : u"key"_s, value.key}, {u"count"_s, value.count}};
        if (named) {
            object.insert("name"_L1, orNull(value.name));
        }
        array.append(object);
    }
    return array;
}

} // namespace

QJsonObject row(const TestRow &row)
{
    return {{u"id"_s, id(row.id)},
            {u"test_id"_s, id(row.testId)},
            {u"series_id"_s, id(row.seriesId)},
            {u"time_ms"_s, row.time},
            {u"server"_s, row.server},
            {u"type"_s, ConnectionClasses::key(row.type)},
            {u"network"_s, orNull(row.network)},
            {u"operator"_s, orNull(row.operatorCode)},
            {u"location"_s, orNull(row.location)},
            {u"download_bps"_s, orNull(row.download)},
            {u"upload_bps"_s, orNull(row.upload)},
            {u"rtt_ns"_s, orNull(row.rtt)},
            {u"latitude"_s, orNull(row.latitude)},
            {u"longitude"_s, orNull(row.longitude)},
            {u"accuracy_m"_s, orNull(row.accuracy)},
            {u"verified"_s, row.verified},
            {u"contradicting"_s, row.contradicting},
            {u"service_late"_s, row.serviceLate},
            {u"note"_s, orNull(row.note)}};
}

QJsonObject page(const TestPage &page)
{
    QJsonArray tests;
    for (const auto &test : page.rows) {
        tests.append(row(test));
    }
    return {{u"tests"_s, tests}, {u"count"_s, page.count}, {u"next"_s, orNull(page.next)}};
}

QJsonObject summary(const Summary &summary)
{
    QJsonArray types;
    for (const auto &each : summary.types) {
        QJsonObject type{{u"type"_s, ConnectionClasses::key(each.type)}, {u"tests"_s, each.tests}};
        insertFigures(type, each.figures);
        types.append(type);
    }
    QJsonObject object{{u"tests"_s, summary.tests},
                       {u"first_ms"_s, orNull(summary.first)},
                       {u"last_ms"_s, orNull(summary.last)},
                       {u"bytes"_s, summary.bytes},
                       {u"by_type"_s, types}};
    insertFigures(object, summary.figures);
    return object;
}

QJsonObject buckets(const Buckets &buckets, Metric metric)
{
    QJsonArray all;
    for (const auto &each : buckets.series) {
        QJsonArray points;
        for (const auto &point : each.points) {
            points.append(QJsonObject{{u"time_ms"_s, point.time},
                                      {u"count"_s, point.count},
                                      {u"min"_s, point.min},
                                      {u"median"_s, point.median},
                                      {u"max"_s, point.max}});
        }
        all.append(
            QJsonObject{{u"type"_s, ConnectionClasses::key(each.type)}, {u"points"_s, points}});
    }
    const bool known = !buckets.series.isEmpty();
    return {{u"metric"_s, name(metric)},
            {u"unit"_s, unit(metric)},
            {u"from_ms"_s, known ? QJsonValue(buckets.from) : QJsonValue(QJsonValue::Null)},
            {u"to_ms"_s, known ? QJsonValue(buckets.to) : QJsonValue(QJsonValue::Null)},
            {u"series"_s, all}};
}

QJsonObject distribution(const Distribution &distribution, const DistributionQuery &query)
{
    QJsonArray groups;
    for (const auto &group : distribution.groups) {
        const bool byHour = query.by == DistributionQuery::By::Hour;
        groups.append(QJsonObject{
            {u"key"_s, byHour ? QString::number(group.hour) : ConnectionClasses::key(group.type)},
            {u"count"_s, group.count},
            {u"min"_s, group.min},
            {u"p25"_s, group.p25},
            {u"median"_s, group.median},
            {u"p75"_s, group.p75},
            {u"max"_s, group.max}});
    }
    return {
        {u"metric"_s, name(query.metric)}, {u"unit"_s, unit(query.metric)}, {u"groups"_s, groups}};
}

QJsonObject map(const MapData &map)
{
    QJsonArray points;
    QJsonArray cells;
    for (const auto &point : map.points) {
        points.append(QJsonObject{{u"id"_s, id(point.id)},
                                  {u"time_ms"_s, point.time},
                                  {u"latitude"_s, point.latitude},
                                  {u"longitude"_s, point.longitude},
                                  {u"accuracy_m"_s, orNull(point.accuracy)},
                                  {u"type"_s, ConnectionClasses::key(point.type)},
                                  {u"download_bps"_s, orNull(point.download)},
                                  {u"series_id"_s, id(point.seriesId)}});
    }
    for (const auto &cell : map.cells) {
        cells.append(QJsonObject{{u"latitude"_s, cell.latitude},
                                 {u"longitude"_s, cell.longitude},
                                 {u"size_deg"_s, cell.size},
                                 {u"count"_s, cell.count},
                                 {u"median_bps"_s, orNull(cell.median)}});
    }
    return {{u"points"_s, points}, {u"cells"_s, cells}};
}

QJsonObject facets(const Facets &facets)
{
    return {{u"types"_s, values(facets.types, false)},
            {u"servers"_s, values(facets.servers, false)},
            {u"series"_s, values(facets.series, false)},
            {u"locations"_s, values(facets.locations, false)},
            {u"operators"_s, values(facets.operators, true)}};
}

QJsonObject share(const Share &share)
{
    TestFilter rest = share.bounds;
    rest.test.reset();
    return {{u"key"_s, share.key},
            {u"test"_s,
             share.bounds.test ? QJsonValue(id(*share.bounds.test)) : QJsonValue(QJsonValue::Null)},
            {u"filter"_s, rest.toQuery()},
            {u"positions"_s, share.showsPositions},
            {u"created_ms"_s, share.created},
            {u"expires_ms"_s, share.expires},
            {u"address"_s, u"/velometer/Controller?page=Shared&share="_s + share.key}};
}

QJsonObject shares(const QList<Share> &shares)
{
    QJsonArray list;
    for (const auto &each : shares) {
        list.append(share(each));
    }
    return {{u"shares"_s, list}};
}

} // namespace velometer::TestJson
