#include "api/statisticsanswer.h"

#include "figures/csvformat.h"

#include <QJsonArray>
#include <QStringList>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer::StatisticsAnswer {

namespace {

constexpr std::array<std::pair<QLatin1StringView, StatisticsBy>, 5> names{{
    {"month"_L1, StatisticsBy::Month},
    {"type"_L1, StatisticsBy::Type},
    {"operator"_L1, StatisticsBy::Operator},
    {"server"_L1, StatisticsBy::Server},
    {"cell"_L1, StatisticsBy::Cell},
}};

QString nameOf(StatisticsBy by)
{
    return std::ranges::find(names, by, [](const auto &each) { return each.second; })->first;
}

QJsonValue figure(const std::optional<Statistics::Figure> &figure)
{
    if (!figure) {
        return QJsonValue::Null;
    }
    return QJsonObject{{u"count"_s, figure->count},
                       {u"p10"_s, figure->p10},
                       {u"median"_s, figure->median},
                       {u"p90"_s, figure->p90}};
}

QStringList cells(const std::optional<Statistics::Figure> &figure)
{
    QStringList list{QString(), QString(), QString(), QString()};
    if (figure) {
        list = {QString::number(figure->count), QString::number(figure->p10),
                QString::number(figure->median), QString::number(figure->p90)};
    }
    return list;
}

} // namespace

std::optional<StatisticsBy> by(const QString &name)
{
    const auto *const known =
        std::ranges::find_if(names, [&](const auto &each) { return name == each.first; });
    return known == names.end() ? std::nullopt : std::optional(known->second);
}

QJsonObject json(const Statistics &statistics, StatisticsBy by, const QString &licence)
{
    QJsonArray rows;
    for (const auto &row : statistics.rows) {
        const auto side = [&](double Statistics::Place::*member) {
            return row.place ? QJsonValue((*row.place).*member) : QJsonValue(QJsonValue::Null);
        };
        rows.append(QJsonObject{{u"key"_s, row.key},
                                {u"type"_s, row.type ? QJsonValue(ConnectionClasses::key(*row.type))
                                                     : QJsonValue(QJsonValue::Null)},
                                {u"latitude"_s, side(&Statistics::Place::latitude)},
                                {u"longitude"_s, side(&Statistics::Place::longitude)},
                                {u"height_deg"_s, side(&Statistics::Place::height)},
                                {u"width_deg"_s, side(&Statistics::Place::width)},
                                {u"download"_s, figure(row.download)},
                                {u"upload"_s, figure(row.upload)},
                                {u"rtt"_s, figure(row.rtt)},
                                {u"download_rtt"_s, figure(row.downloadRtt)},
                                {u"upload_rtt"_s, figure(row.uploadRtt)},
                                {u"rsrp"_s, figure(row.rsrp)}});
    }
    return {{u"licence"_s, licence},
            {u"updated_ms"_s, statistics.updated},
            {u"by"_s, nameOf(by)},
            {u"rows"_s, rows}};
}

QByteArray csv(const Statistics &statistics, StatisticsBy by, const QString &licence)
{
    QStringList header{nameOf(by),     u"type"_s,       u"latitude"_s,
                       u"longitude"_s, u"height_deg"_s, u"width_deg"_s};
    for (const auto &[name, unit] :
         {std::pair{u"download"_s, u"_bps"_s}, std::pair{u"upload"_s, u"_bps"_s},
          std::pair{u"rtt"_s, u"_ns"_s}, std::pair{u"rsrp"_s, u"_dbm"_s},
          std::pair{u"download_rtt"_s, u"_ns"_s}, std::pair{u"upload_rtt"_s, u"_ns"_s}}) {
        header += name + u"_count"_s;
        for (const auto &part : {u"_p10"_s, u"_median"_s, u"_p90"_s}) {
            header += name + part + unit;
        }
    }
    QByteArray text = CsvFormat::line(header + QStringList{u"licence"_s});
    for (const auto &row : statistics.rows) {
        QStringList line{CsvFormat::cell(row.key),
                         row.type ? ConnectionClasses::key(*row.type) : QString()};
        const auto place = row.place.value_or(Statistics::Place());
        for (const double side : {place.latitude, place.longitude, place.height, place.width}) {
            line += row.place ? QString::number(side, 'f', 6) : QString();
        }
        text += CsvFormat::line(line + cells(row.download) + cells(row.upload) + cells(row.rtt) +
                                cells(row.rsrp) + cells(row.downloadRtt) + cells(row.uploadRtt) +
                                QStringList{licence});
    }
    return text;
}

} // namespace velometer::StatisticsAnswer
