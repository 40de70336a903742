#include "reports/statisticsreader.h"

#include "reports/nullable.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Rows between two looks at whether the store closes.
constexpr qint64 rowsPerLook = 1000;

} // namespace

std::optional<Statistics> StatisticsReader::figures(SqlConnection &connection, StatisticsBy by,
                                                    const std::function<bool()> &stop)
{
    if ((!refreshed || Clock::now() - *refreshed >= refreshPeriod) && !refresh(connection, stop)) {
        return std::nullopt;
    }
    auto result = table.figures(by);
    result.updated = updated;
    return result;
}

bool StatisticsReader::refresh(SqlConnection &connection, const std::function<bool()> &stop)
{
    const auto now = Clock::now();
    if (!connection.settle()) {
        return false;
    }
    const auto changed = connection.number(u"SELECT coalesce(sum(changes), 0) FROM users"_s);
    const auto last = connection.number(u"SELECT coalesce(max(id), 0) FROM reports"_s);
    if (!changed || !last) {
        return false;
    }
    const bool whole = !rebuilt || (*changed != changes && now - *rebuilt >= rebuildPeriod);
    // The whole is read from the index alone; what is new is found by its ids.
    auto query = connection.select(
        u"SELECT userid, client_time, type, operator, test_server, latitude, longitude, "
        "download_rate, upload_rate, rtt, download_rtt, upload_rtt FROM reports%1 WHERE id > ? AND "
        "verified = 1"_s.arg(connection.byIndex(whole ? u"reports_figures"_s : QString())),
        {whole ? 0 : lastId});
    if (!query) {
        return false;
    }
    StatisticsTable fresh;
    StatisticsTable &filled = whole ? fresh : table;
    for (qint64 count = 1; query->next(); ++count) {
        if (count % rowsPerLook == 0 && stop()) {
            // What was added to the old table would be added again.
            rebuilt.reset();
            return false;
        }
        filled.add(
            StatisticsTable::Test{.user = query->value(0).toLongLong(),
                                  .time = query->value(1).toLongLong(),
                                  .type = ConnectionClasses::ofNumber(query->value(2).toInt()),
                                  .operatorCode = query->value(3).toString(),
                                  .server = query->value(4).toString(),
                                  .latitude = optionalReal(query->value(5)),
                                  .longitude = optionalReal(query->value(6)),
                                  .download = optionalNumber(query->value(7)),
                                  .upload = optionalNumber(query->value(8)),
                                  .rtt = optionalNumber(query->value(9)),
                                  .downloadRtt = optionalNumber(query->value(10)),
                                  .uploadRtt = optionalNumber(query->value(11))});
    }
    // Of cells, a few hundred a track.
    auto heard = connection.select(
        u"SELECT userid, type, latitude, longitude, rsrp, points, id FROM trackcells WHERE id > ? "
        "ORDER BY id"_s,
        {whole ? 0 : lastCell});
    if (!heard) {
        rebuilt.reset();
        return false;
    }
    while (heard->next()) {
        filled.add(
            StatisticsTable::Signal{.user = heard->value(0).toLongLong(),
                                    .type = ConnectionClasses::ofNumber(heard->value(1).toInt()),
                                    .latitude = heard->value(2).toDouble(),
                                    .longitude = heard->value(3).toDouble(),
                                    .rsrp = heard->value(4).toInt(),
                                    .points = heard->value(5).toLongLong()});
        lastCell = heard->value(6).toLongLong();
    }
    if (whole) {
        table = std::move(fresh);
        rebuilt = now;
        changes = *changed;
    }
    refreshed = now;
    lastId = *last;
    updated = QDateTime::currentMSecsSinceEpoch();
    return true;
}

} // namespace velometer
