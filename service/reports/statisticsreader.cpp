#include "reports/statisticsreader.h"

#include "reports/nullable.h"
#include "reports/storesettings.h"

#include <QDateTime>
#include <QRandomGenerator>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Rows between two looks at whether the store closes.
constexpr qint64 rowsPerLook = 1000;

/// "figu": whoever saves them.
constexpr qint64 figuresLock = 0x66696775;

// What the saved figures were made of.
constexpr QLatin1StringView savedVersion{"figures_version"};
constexpr QLatin1StringView savedReport{"figures_report"};
constexpr QLatin1StringView savedCell{"figures_cell"};
constexpr QLatin1StringView savedChanges{"figures_changes"};

} // namespace

std::optional<Statistics> StatisticsReader::figures(SqlConnection &connection, StatisticsBy by,
                                                    const std::function<bool()> &stop,
                                                    const Keep &keep)
{
    if ((!refreshed || Clock::now() - *refreshed >= refreshPeriod) &&
        !refresh(connection, stop, keep)) {
        return std::nullopt;
    }
    auto result = table.figures(by);
    result.updated = updated;
    return result;
}

/// What was saved last, where this table is not that.
bool StatisticsReader::loadSaved(SqlConnection &connection)
{
    const auto saved = StoreSettings::number(connection, savedVersion);
    if (!saved || *saved == version) {
        return saved.has_value();
    }
    const auto report = StoreSettings::number(connection, savedReport);
    const auto cell = StoreSettings::number(connection, savedCell);
    const auto changed = StoreSettings::number(connection, savedChanges);
    auto query = connection.select(u"SELECT dimension, key, counts FROM figures"_s);
    if (!report || !cell || !changed || !query) {
        return false;
    }
    StatisticsTable loaded;
    bool whole = true;
    while (query->next() && whole) {
        const int by = query->value(0).toInt();
        whole = by >= 0 && by <= static_cast<int>(StatisticsBy::Cell) &&
                loaded.load({.by = static_cast<StatisticsBy>(by),
                             .key = query->value(1).toString(),
                             .counts = query->value(2).toByteArray()});
    }
    version = *saved;
    if (!whole) {
        // Read everything; what is damaged is written over.
        rebuilt.reset();
        return true;
    }
    table = std::move(loaded);
    lastId = *report;
    lastCell = *cell;
    changes = *changed;
    rebuilt = Clock::now();
    return true;
}

bool StatisticsReader::save(SqlConnection &connection, const News &news)
{
    const auto saved = connection.lockUser(figuresLock)
                           ? StoreSettings::number(connection, savedVersion)
                           : std::nullopt;
    if (!saved || *saved != news.version) {
        return saved.has_value();
    }
    const auto set = [&](QLatin1StringView name, qint64 value) {
        return StoreSettings::set(connection, name, QString::number(value));
    };
    return (!news.isWhole || connection.execute(u"DELETE FROM figures"_s)) &&
           std::ranges::all_of(news.groups,
                               [&](const auto &each) {
                                   return connection.execute(
                                       u"INSERT INTO figures(dimension, key, counts) VALUES(?, ?, "
                                       "?) ON CONFLICT(dimension, key) DO UPDATE SET counts = "
                                       "excluded.counts"_s,
                                       {static_cast<int>(each.by), each.key, each.counts});
                               }) &&
           set(savedVersion, news.next) && set(savedReport, news.lastId) &&
           set(savedCell, news.lastCell) && set(savedChanges, news.changes);
}

bool StatisticsReader::refresh(SqlConnection &connection, const std::function<bool()> &stop,
                               const Keep &keep)
{
    const auto now = Clock::now();
    if (!connection.settle() || !loadSaved(connection)) {
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
    QList<StatisticsTable::Rolled> groups = table.takeChanged();
    if (whole || !groups.isEmpty()) {
        const auto next = static_cast<qint64>(QRandomGenerator::global()->generate64() >> 1);
        keep({.version = std::exchange(version, next),
              .next = next,
              .isWhole = whole,
              .lastId = lastId,
              .lastCell = lastCell,
              .changes = changes,
              .groups = std::move(groups)});
    }
    return true;
}

} // namespace velometer
