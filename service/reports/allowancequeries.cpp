#include "reports/allowancequeries.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer::AllowanceQueries {

namespace {

constexpr auto mostRead = 1'000'000;

const Allowances::Limit &limitOf(const Allowances::Limits &limits, Spent kind)
{
    return limits.at(static_cast<std::size_t>(kind));
}

} // namespace

std::optional<std::vector<Allowances::Level>> all(SqlConnection &connection,
                                                  const Allowances::Limits &limits, qint64 now)
{
    std::vector<Allowances::Level> levels;
    const bool done = connection.forEachRow(
        u"SELECT payer, kind, level, at FROM allowances ORDER BY at DESC LIMIT %1"_s.arg(mostRead),
        {}, [&](const SqlRow &row) {
            const auto kind = row.number(1);
            if (kind < 0 || kind >= static_cast<qint64>(Allowances::kinds)) {
                return;
            }
            const Allowances::Level level{.payer = row.text(0).toStdString(),
                                          .kind = static_cast<Spent>(kind),
                                          .level = row.real(2),
                                          .at = row.number(3)};
            const double back = limitOf(limits, level.kind).perMs() *
                                static_cast<double>(std::max(now - level.at, 0LL));
            if (level.level > back) {
                levels.push_back(level);
            }
        });
    return done ? std::optional(std::move(levels)) : std::nullopt;
}

std::optional<std::vector<Allowances::Level>> add(SqlConnection &connection,
                                                  const Allowances::Limits &limits,
                                                  const std::vector<Allowances::Level> &news)
{
    std::vector<Allowances::Level> sorted = news;
    // Services that add at the same time lock rows in one order.
    std::ranges::sort(sorted, {}, [](const auto &each) { return std::tie(each.payer, each.kind); });
    for (Allowances::Level &each : sorted) {
        const double perMs = limitOf(limits, each.kind).perMs();
        auto query = connection.select(
            u"INSERT INTO allowances(payer, kind, level, at) VALUES(?, ?, CAST(? AS double "
            "precision), ?) ON CONFLICT(payer, kind) DO UPDATE SET level = excluded.level + CASE "
            "WHEN excluded.at <= allowances.at THEN allowances.level WHEN allowances.level > "
            "CAST(? AS double precision) * (excluded.at - allowances.at) THEN allowances.level - "
            "CAST(? AS double precision) * (excluded.at - allowances.at) ELSE 0 END, at = CASE "
            "WHEN excluded.at > allowances.at THEN excluded.at ELSE allowances.at END RETURNING "
            "level, at"_s,
            {QString::fromStdString(each.payer), static_cast<int>(each.kind), each.level,
             qlonglong(each.at), perMs, perMs});
        if (!query || !query->next()) {
            return std::nullopt;
        }
        each.level = query->value(0).toDouble();
        each.at = query->value(1).toLongLong();
    }
    return sorted;
}

std::optional<qint64> forget(SqlConnection &connection, qint64 oldest)
{
    auto query = connection.select(
        u"DELETE FROM allowances WHERE (payer, kind) IN (SELECT payer, kind FROM allowances WHERE "
        "at < ? LIMIT 500)"_s,
        {oldest});
    return query ? std::optional(query->numRowsAffected()) : std::nullopt;
}

} // namespace velometer::AllowanceQueries
