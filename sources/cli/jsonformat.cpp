#include "cli/jsonformat.h"

#include "data/testserver.h"
#include "utils/cleantext.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

template <typename Value>
QJsonValue orNull(const std::optional<Value> &value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

QJsonValue idOrNull(const TestSummary::Number &id)
{
    return id ? QJsonValue(QString::number(*id)) : QJsonValue(QJsonValue::Null);
}

QJsonValue timestampOrNull(const TestSummary::Number &ms)
{
    return ms ? QJsonValue(JsonFormat::timestamp(*ms)) : QJsonValue(QJsonValue::Null);
}

QJsonValue toJson(qint64 value)
{
    return value;
}

QJsonValue toJson(const TestSummary::Number &value)
{
    return orNull(value);
}

template <typename Value>
QJsonValue arrayOrNull(const std::optional<QList<Value>> &list)
{
    if (!list) {
        return QJsonValue::Null;
    }
    QJsonArray array;
    for (const Value &value : *list) {
        array.append(toJson(value));
    }
    return array;
}

QJsonObject server(const TestSummary::Server &server)
{
    return {{u"name"_s, orNull(server.name)},   {u"host"_s, orNull(server.host)},
            {u"port"_s, orNull(server.port)},   {u"city"_s, orNull(server.city)},
            {u"state"_s, orNull(server.state)}, {u"country"_s, orNull(server.country)},
            {u"ip"_s, orNull(server.ip)}};
}

QJsonObject throughput(const TestSummary::Throughput &phase)
{
    return {{u"avg_bps"_s, orNull(phase.averageRate)},
            {u"min_bps"_s, orNull(phase.minimumRate)},
            {u"max_bps"_s, orNull(phase.maximumRate)},
            {u"bytes"_s, orNull(phase.bytes)},
            {u"duration_ns"_s, orNull(phase.duration)},
            {u"connect_ns"_s, orNull(phase.connectTime)},
            {u"first_byte_ns"_s, orNull(phase.firstByteTime)},
            {u"max_pause_ns"_s, orNull(phase.longestPause)},
            {u"valid"_s, orNull(phase.valid)},
            {u"interval_bytes"_s, arrayOrNull(phase.intervalBytes)}};
}

QJsonObject upload(const TestSummary &summary)
{
    QJsonObject object = throughput(summary.upload);
    object.insert("server_min_bps"_L1, orNull(summary.serverMinimumRate));
    object.insert("server_avg_bps"_L1, orNull(summary.serverAverageRate));
    object.insert("server_max_bps"_L1, orNull(summary.serverMaximumRate));
    return object;
}

QJsonObject roundTrip(const TestSummary::RoundTrip &phase)
{
    return {{u"min_ns"_s, orNull(phase.minimum)},
            {u"avg_ns"_s, orNull(phase.average)},
            {u"max_ns"_s, orNull(phase.maximum)},
            {u"samples_ns"_s, arrayOrNull(phase.samples)},
            {u"valid"_s, orNull(phase.valid)}};
}

QJsonObject tcp(const TestSummary::Tcp &facts)
{
    return {{u"mss"_s, orNull(facts.mss)},
            {u"rwin"_s, orNull(facts.receiveWindow)},
            {u"wscale"_s, orNull(facts.windowScale)},
            {u"sack"_s, orNull(facts.sack)},
            {u"timestamps"_s, orNull(facts.timestamps)},
            {u"congestion"_s, orNull(facts.congestion)},
            {u"public_ip"_s, orNull(facts.publicIp)},
            {u"device_ip"_s, orNull(facts.deviceIp)},
            {u"client_hostname"_s, orNull(facts.clientHostname)}};
}

QJsonObject report(const TestSummary::Report &report)
{
    return {{u"delivered"_s, orNull(report.delivered)},
            {u"queue_id"_s, idOrNull(report.queueId)},
            {u"resent"_s, orNull(report.resent)}};
}

QJsonObject event(QLatin1StringView name)
{
    return {{u"event"_s, name}};
}

} // namespace

namespace JsonFormat {

QJsonObject test(const TestSummary &summary)
{
    return {{u"schema_version"_s, schemaVersion},
            {u"test_id"_s, idOrNull(summary.testId)},
            {u"series_id"_s, idOrNull(summary.seriesId)},
            {u"user_id"_s, idOrNull(summary.userId)},
            {u"timestamp"_s, timestampOrNull(summary.timestamp)},
            {u"schedule"_s, orNull(summary.schedule)},
            {u"server"_s, velometer::server(summary.server)},
            {u"download"_s, throughput(summary.download)},
            {u"upload"_s, upload(summary)},
            {u"rtt"_s, roundTrip(summary.rtt)},
            {u"tcp"_s, tcp(summary.tcp)},
            {u"network"_s, network(summary.network)},
            {u"position"_s, position(summary.position)},
            {u"device"_s, device(summary.device)},
            {u"location"_s, orNull(summary.location)},
            {u"report"_s, report(summary.report)}};
}

QJsonObject network(const TestSummary::Network &network)
{
    return {{u"type"_s, orNull(network.type)},        {u"mode"_s, orNull(network.mode)},
            {u"name"_s, orNull(network.name)},        {u"mcc"_s, orNull(network.mcc)},
            {u"mnc"_s, orNull(network.mnc)},          {u"home_mcc"_s, orNull(network.homeMcc)},
            {u"home_mnc"_s, orNull(network.homeMnc)}, {u"lac"_s, orNull(network.lac)},
            {u"cell"_s, orNull(network.cell)},        {u"signal"_s, orNull(network.signal)},
            {u"roaming"_s, orNull(network.roaming)}};
}

QJsonValue position(const std::optional<TestSummary::Position> &position)
{
    if (!position) {
        return QJsonValue::Null;
    }
    return QJsonObject{{u"latitude"_s, position->latitude},
                       {u"longitude"_s, position->longitude},
                       {u"altitude_m"_s, orNull(position->altitude)},
                       {u"accuracy_h_m"_s, orNull(position->horizontalAccuracy)},
                       {u"accuracy_v_m"_s, orNull(position->verticalAccuracy)},
                       {u"velocity_kmh"_s, orNull(position->velocity)},
                       {u"distance_m"_s, orNull(position->distance)}};
}

QJsonObject device(const TestSummary::Device &device)
{
    return {{u"manufacturer"_s, orNull(device.manufacturer)},
            {u"product"_s, orNull(device.product)},
            {u"model"_s, orNull(device.model)},
            {u"platform"_s, orNull(device.platform)}};
}

QJsonObject server(const TestServer &server, bool selected)
{
    return {{u"name"_s, cleanText(server.getName())},
            {u"host"_s, cleanText(server.getHostname())},
            {u"port"_s, server.getPort()},
            {u"city"_s, cleanText(server.getCity())},
            {u"state"_s, cleanText(server.getState())},
            {u"country"_s, cleanText(server.getCountry())},
            {u"selected"_s, selected}};
}

QJsonObject phaseEvent(const QString &phase, int test, int count)
{
    QJsonObject object = event("phase"_L1);
    object.insert("phase"_L1, phase);
    object.insert("test"_L1, test);
    object.insert("count"_L1, count);
    return object;
}

QJsonObject progressEvent(int value, int max)
{
    QJsonObject object = event("progress"_L1);
    object.insert("value"_L1, value);
    object.insert("max"_L1, max);
    return object;
}

QJsonObject resultEvent(const TestSummary &summary)
{
    QJsonObject object = event("result"_L1);
    object.insert("result"_L1, test(summary));
    return object;
}

QJsonObject errorEvent(const QString &message, int status)
{
    QJsonObject object = event("error"_L1);
    object.insert("message"_L1, message);
    object.insert("status"_L1, status);
    return object;
}

QByteArray line(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QString timestamp(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms).toUTC().toString(Qt::ISODateWithMs);
}

} // namespace JsonFormat

} // namespace velometer
