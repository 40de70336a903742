#include "cli/csvformat.h"

#include "cli/jsonformat.h"
#include "data/testserver.h"
#include "utils/cleantext.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString cellOf(const TestSummary::Text &text)
{
    return text ? CsvFormat::cell(*text) : QString();
}

QString cellOf(const TestSummary::Number &number)
{
    return number ? QString::number(*number) : QString();
}

QString cellOf(const TestSummary::Real &number)
{
    return number ? QString::number(*number, 'g', 12) : QString();
}

QString cellOf(const TestSummary::Flag &flag)
{
    return flag ? (*flag ? u"true"_s : u"false"_s) : QString();
}

/// Column and cell side by side, so that header and rows cannot drift apart.
QList<std::pair<QString, QString>> columns(const TestSummary &summary)
{
    const TestSummary::Real none;
    const auto &where = summary.position;
    const auto time = summary.timestamp ? JsonFormat::timestamp(*summary.timestamp) : QString();
    return {
        {u"id"_s, cellOf(summary.storedId)},
        {u"test_id"_s, cellOf(summary.testId)},
        {u"series_id"_s, cellOf(summary.seriesId)},
        {u"user_id"_s, cellOf(summary.userId)},
        {u"timestamp"_s, time},
        {u"schedule"_s, cellOf(summary.schedule)},
        {u"location"_s, cellOf(summary.location)},
        {u"server_name"_s, cellOf(summary.server.name)},
        {u"server_host"_s, cellOf(summary.server.host)},
        {u"server_port"_s, cellOf(summary.server.port)},
        {u"download_avg_bps"_s, cellOf(summary.download.averageRate)},
        {u"download_max_bps"_s, cellOf(summary.download.maximumRate)},
        {u"download_bytes"_s, cellOf(summary.download.bytes)},
        {u"download_valid"_s, cellOf(summary.download.valid)},
        {u"upload_avg_bps"_s, cellOf(summary.upload.averageRate)},
        {u"upload_max_bps"_s, cellOf(summary.upload.maximumRate)},
        {u"upload_server_avg_bps"_s, cellOf(summary.serverAverageRate)},
        {u"upload_bytes"_s, cellOf(summary.upload.bytes)},
        {u"upload_valid"_s, cellOf(summary.upload.valid)},
        {u"rtt_min_ns"_s, cellOf(summary.rtt.minimum)},
        {u"rtt_avg_ns"_s, cellOf(summary.rtt.average)},
        {u"rtt_max_ns"_s, cellOf(summary.rtt.maximum)},
        {u"rtt_valid"_s, cellOf(summary.rtt.valid)},
        {u"network_type"_s, cellOf(summary.network.type)},
        {u"network_name"_s, cellOf(summary.network.name)},
        {u"mcc"_s, cellOf(summary.network.mcc)},
        {u"mnc"_s, cellOf(summary.network.mnc)},
        {u"lac"_s, cellOf(summary.network.lac)},
        {u"cell"_s, cellOf(summary.network.cell)},
        {u"signal"_s, cellOf(summary.network.signal)},
        {u"roaming"_s, cellOf(summary.network.roaming)},
        {u"latitude"_s, cellOf(where ? TestSummary::Real(where->latitude) : none)},
        {u"longitude"_s, cellOf(where ? TestSummary::Real(where->longitude) : none)},
        {u"altitude_m"_s, cellOf(where ? where->altitude : none)},
        {u"accuracy_h_m"_s, cellOf(where ? where->horizontalAccuracy : none)},
        {u"velocity_kmh"_s, cellOf(where ? where->velocity : none)},
        {u"public_ip"_s, cellOf(summary.tcp.publicIp)},
        {u"report_delivered"_s, cellOf(summary.report.delivered)},
    };
}

} // namespace

namespace CsvFormat {

QByteArray testHeader()
{
    QStringList names;
    for (const auto &[name, value] : columns(TestSummary())) {
        names.append(name);
    }
    return line(names);
}

QByteArray test(const TestSummary &summary)
{
    QStringList values;
    for (const auto &[name, value] : columns(summary)) {
        values.append(value);
    }
    return line(values);
}

QByteArray serverHeader()
{
    return line(
        {u"name"_s, u"host"_s, u"port"_s, u"city"_s, u"state"_s, u"country"_s, u"selected"_s});
}

QByteArray server(const TestServer &server, bool selected)
{
    return line({cell(server.getName()), cell(server.getHostname()),
                 QString::number(server.getPort()), cell(server.getCity()), cell(server.getState()),
                 cell(server.getCountry()), selected ? u"true"_s : u"false"_s});
}

QString cell(const QString &text)
{
    QString value = cleanText(text);
    if (!value.isEmpty() && u"=+-@"_s.contains(value.front())) {
        value.prepend(u'\'');
    }
    if (!value.contains(u'"') && !value.contains(u',')) {
        return value;
    }
    return u'"' + value.replace(u'"', "\"\""_L1) + u'"';
}

QByteArray line(const QStringList &cells)
{
    return cells.join(u',').toUtf8() + "\r\n";
}

} // namespace CsvFormat

} // namespace velometer
