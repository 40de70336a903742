#include "reports/statisticsreader.h"

#include "reports/nullable.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Rows between two looks at whether the store closes.
constexpr qint64 rowsPerLook = 1000;

} // namespace

std::optional<Statistics> StatisticsReader::figures(SqliteConnection &connection, StatisticsBy by,
                                                    const std::function<bool()> &stop)
{
    if ((!refreshed || Clock::now() - *refreshed >= refreshPeriod) && !refresh(connection, stop)) {
        return std::nullopt;
    }
    auto result = table.figures(by);
    result.updated = updated;
    return result;
}

bool StatisticsReader::refresh(SqliteConnection &connection, const std::function<bool()> &stop)
{
    const auto now = Clock::now();
    const auto changed = connection.number(u"SELECT ifnull(sum(changes), 0) FROM users"_s);
    const auto last = connection.number(u"SELECT ifnull(max(id), 0) FROM reports"_s);
    if (!changed || !last) {
        return false;
    }
    const bool whole = !rebuilt || (*changed != changes && now - *rebuilt >= rebuildPeriod);
    // The whole is read from the index alone; what is new is found by its ids.
    auto query = connection.select(
        u"SELECT userid, client_time, type, operator, test_server, latitude, longitude, "
        "download_rate, upload_rate, rtt FROM reports %1 WHERE id > ? AND verified"_s.arg(
            whole ? u"INDEXED BY reports_figures"_s : u"NOT INDEXED"_s),
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
        filled.add({.user = query->value(0).toLongLong(),
                    .time = query->value(1).toLongLong(),
                    .type = ConnectionClasses::ofNumber(query->value(2).toInt()),
                    .operatorCode = query->value(3).toString(),
                    .server = query->value(4).toString(),
                    .latitude = optionalReal(query->value(5)),
                    .longitude = optionalReal(query->value(6)),
                    .download = optionalNumber(query->value(7)),
                    .upload = optionalNumber(query->value(8)),
                    .rtt = optionalNumber(query->value(9))});
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
