#include "reports/testtable.h"

#include "reports/shownfigures.h"
#include "reports/spread.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Values = std::vector<qint64>;

constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();

constexpr qsizetype maxFacets = 200;
constexpr qint64 msPerMinute = 60'000;
constexpr qint64 msPerHour = 60 * msPerMinute;

/// Connection classes as indices.
constexpr std::size_t classCount = 16;

std::size_t indexOf(ConnectionClass type)
{
    return static_cast<std::size_t>(type);
}

/// A set that an empty list leaves open.
class IndexSet
{
public:
    IndexSet(const QStringList &wanted, const QHash<QString, quint32> &numbers, qsizetype size)
    {
        if (!wanted.isEmpty()) {
            chosen.resize(static_cast<std::size_t>(size));
            for (const QString &text : wanted) {
                if (const auto number = numbers.constFind(text); number != numbers.cend()) {
                    chosen.at(*number) = true;
                }
            }
            open = false;
        }
    }
    bool contains(quint32 index) const { return open || chosen.at(index); }

private:
    bool open = true;
    std::vector<bool> chosen;
};

QList<Facets::Value> mostFrequent(QList<Facets::Value> values)
{
    std::ranges::sort(values, [](const auto &a, const auto &b) {
        return std::tie(b.count, a.key) < std::tie(a.count, b.key);
    });
    values.resize(std::min(values.size(), maxFacets));
    return values;
}

} // namespace

/// One filter over the entries of one table.
class TestTable::Selection
{
public:
    Selection(const TestTable &table, const TestFilter &chosen)
        : filter(chosen)
        , isOpen(chosen == TestFilter())
        , servers(chosen.servers, table.servers.numbers, table.servers.list.size())
        , locations(chosen.locations, table.locations.numbers, table.locations.list.size())
        , operators(chosen.operators, table.operators.numbers, table.operators.list.size())
    {
        types.fill(filter.types.isEmpty());
        for (const auto type : filter.types) {
            types.at(indexOf(type)) = true;
        }
    }

    bool contains(const Entry &entry) const
    {
        return isOpen ||
               ((!filter.from || entry.time >= *filter.from) &&
                (!filter.to || entry.time < *filter.to) && types[indexOf(entry.type)] &&
                (!filter.verified || entry.verified) && servers.contains(entry.server) &&
                locations.contains(entry.location) && operators.contains(entry.operatorCode) &&
                (filter.series.isEmpty() || filter.series.contains(entry.series)) &&
                (!filter.test || entry.id == *filter.test));
    }

private:
    const TestFilter &filter;
    bool isOpen; ///< to all: most often it is, and the whole table is asked
    std::array<bool, classCount> types{};
    IndexSet servers, locations, operators;
};

quint32 TestTable::Texts::number(const QString &text)
{
    const auto known = numbers.constFind(text);
    if (known != numbers.cend()) {
        return *known;
    }
    const auto next = static_cast<quint32>(list.size());
    list += text;
    numbers.insert(text, next);
    return next;
}

void TestTable::add(const Row &row)
{
    Entry entry{.id = row.id,
                .time = row.time,
                .series = row.series,
                .download = row.download.value_or(none),
                .upload = row.upload.value_or(none),
                .rtt = row.rtt.value_or(none),
                .bytes = row.bytes,
                .latitude = row.latitude.value_or(nowhere),
                .longitude = row.longitude.value_or(nowhere),
                .accuracy = static_cast<float>(row.accuracy.value_or(nowhere)),
                .server = servers.number(row.server),
                .location = locations.number(row.location),
                .operatorCode = operators.number(row.operatorCode),
                .type = row.type,
                .verified = row.verified};
    if (ConnectionClasses::isMobile(row.type) && !row.network.isEmpty()) {
        Name &name = operatorNames[entry.operatorCode];
        if (row.id > name.id) {
            name = {.id = row.id, .text = row.network};
        }
    }
    greatestId = std::max(greatestId, row.id);
    entries.push_back(entry);
}

qint64 TestTable::figure(const Entry &entry, Metric metric)
{
    switch (metric) {
    case Metric::Download: return entry.download;
    case Metric::Upload: return entry.upload;
    case Metric::Rtt: break;
    }
    return entry.verified ? entry.rtt : none;
}

void TestTable::forEach(const TestScope &scope,
                        const std::function<void(const Entry &)> &visit) const
{
    const Selection wanted(*this, scope.filter);
    const Selection bounds(*this, scope.bounds);
    for (const Entry &entry : entries) {
        if (wanted.contains(entry) && bounds.contains(entry)) {
            visit(entry);
        }
    }
}

Summary TestTable::summary(const TestScope &scope) const
{
    struct Lists
    {
        qint64 tests = 0;
        std::array<Values, 3> values;
    };
    constexpr std::array metrics{Metric::Download, Metric::Upload, Metric::Rtt};
    std::array<Lists, classCount> byType;
    Summary result;
    forEach(scope, [&](const Entry &entry) {
        ++result.tests;
        result.bytes += entry.bytes;
        if (ShownFigures::isTime(entry.time)) {
            result.first = std::min(result.first.value_or(entry.time), entry.time);
            result.last = std::max(result.last.value_or(entry.time), entry.time);
        }
        Lists &lists = byType.at(indexOf(entry.type));
        ++lists.tests;
        for (std::size_t i = 0; i < metrics.size(); ++i) {
            if (const qint64 value = figure(entry, metrics.at(i)); value != none) {
                lists.values.at(i).push_back(value);
            }
        }
    });
    const auto figures = [](std::array<Values, 3> &values) {
        return Summary::Figures{.download = spreadOf(values[0]),
                                .upload = spreadOf(values[1]),
                                .rtt = spreadOf(values[2])};
    };
    std::array<Values, 3> all;
    for (const auto type : ConnectionClasses::all()) {
        Lists &lists = byType.at(indexOf(type));
        if (lists.tests > 0) {
            for (std::size_t i = 0; i < all.size(); ++i) {
                const auto &values = lists.values.at(i);
                all.at(i).insert(all.at(i).end(), values.begin(), values.end());
            }
            result.types += {.type = type, .tests = lists.tests, .figures = figures(lists.values)};
        }
    }
    result.figures = figures(all);
    return result;
}

Buckets TestTable::buckets(const TestScope &scope, const BucketQuery &query) const
{
    struct Found
    {
        qint64 time;
        qint64 value;
    };
    std::array<std::vector<Found>, classCount> byType;
    qint64 first = std::numeric_limits<qint64>::max();
    qint64 last = 0;
    forEach(scope, [&](const Entry &entry) {
        const qint64 value = figure(entry, query.metric);
        if (value != none && ShownFigures::isTime(entry.time)) {
            byType.at(indexOf(entry.type)).push_back({.time = entry.time, .value = value});
            first = std::min(first, entry.time);
            last = std::max(last, entry.time);
        }
    });
    Buckets result;
    if (first > last) {
        return result;
    }
    result.from = scope.filter.from.value_or(first);
    result.to = scope.filter.to.value_or(last + 1);
    const auto shown =
        std::ranges::count_if(byType, [](const auto &found) { return !found.empty(); });
    const qint64 count =
        std::clamp<qint64>(query.buckets, 1, BucketQuery::maxBuckets / qint64(shown));
    // Whole ones, so that the last test is in the last bucket.
    const qint64 width = (std::max(last + 1, result.to) - std::min(first, result.from)) / count + 1;
    const qint64 begin = std::min(first, result.from);
    for (const auto type : ConnectionClasses::all()) {
        auto &found = byType.at(indexOf(type));
        std::ranges::sort(found, {}, &Found::time);
        Buckets::Series series{.type = type, .points = {}};
        Values values;
        for (auto at = found.begin(); at != found.end();) {
            const qint64 bucket = (at->time - begin) / width;
            values.clear();
            // Relative to the bucket's start: the sum of many moments does not fit.
            qint64 offsets = 0;
            for (; at != found.end() && (at->time - begin) / width == bucket; ++at) {
                values.push_back(at->value);
                offsets += at->time - begin - bucket * width;
            }
            const auto size = static_cast<qint64>(values.size());
            Ordered ordered(values);
            Buckets::Point point{.time = begin + bucket * width + offsets / size, .count = size};
            point.min = ordered.at(0);
            point.median = ordered.at(0.5);
            point.max = ordered.at(1);
            series.points += point;
        }
        if (!series.points.isEmpty()) {
            result.series += series;
        }
    }
    return result;
}

Distribution TestTable::distribution(const TestScope &scope, const DistributionQuery &query) const
{
    const bool byHour = query.by == DistributionQuery::By::Hour;
    constexpr int hours = 24;
    std::map<int, Values> groups;
    forEach(scope, [&](const Entry &entry) {
        const qint64 value = figure(entry, query.metric);
        if (value == none || (byHour && !ShownFigures::isTime(entry.time))) {
            return;
        }
        const qint64 local = entry.time + query.offsetMinutes * msPerMinute;
        const int key =
            byHour ? static_cast<int>(local / msPerHour % hours) : static_cast<int>(entry.type);
        groups[key].push_back(value);
    });
    Distribution result;
    const auto add = [&](int key) {
        const auto group = groups.find(key);
        if (group == groups.end()) {
            return;
        }
        Ordered ordered(group->second);
        Distribution::Group entry;
        entry.count = static_cast<qint64>(group->second.size());
        if (byHour) {
            entry.hour = key;
        } else {
            entry.type = static_cast<ConnectionClass>(key);
        }
        entry.min = ordered.at(0);
        entry.p25 = ordered.at(0.25);
        entry.median = ordered.at(0.5);
        entry.p75 = ordered.at(0.75);
        entry.max = ordered.at(1);
        result.groups += entry;
    };
    if (byHour) {
        for (int hour = 0; hour < hours; ++hour) {
            add(hour);
        }
    } else {
        for (const auto type : ConnectionClasses::all()) {
            add(static_cast<int>(type));
        }
    }
    return result;
}

MapData TestTable::map(const TestScope &scope, const MapQuery &query) const
{
    // Cells of 32 pixels, and not more of them than can be told apart.
    constexpr int cellsPerTile = 8;
    constexpr std::size_t maxCells = 2000;
    double size = 360.0 / (std::exp2(std::clamp(query.zoom, 0, 22)) * cellsPerTile);

    std::vector<const Entry *> found;
    forEach(scope, [&](const Entry &entry) {
        const bool across = query.west > query.east;
        const bool afterWest = entry.longitude >= query.west;
        const bool beforeEast = entry.longitude <= query.east;
        const bool within = across ? afterWest || beforeEast : afterWest && beforeEast;
        if (within && entry.latitude >= query.south && entry.latitude <= query.north) {
            found.push_back(&entry);
        }
    });
    MapData result;
    if (found.size() <= MapData::maxPoints) {
        std::ranges::sort(found, {},
                          [](const Entry *entry) { return std::pair(entry->time, entry->id); });
        for (const Entry *entry : found) {
            const auto known = [](qint64 value) {
                return value == none ? std::nullopt : std::optional(value);
            };
            result.points +=
                {.id = entry->id,
                 .time = entry->time,
                 .seriesId = entry->series,
                 .latitude = entry->latitude,
                 .longitude = entry->longitude,
                 .accuracy = std::isnan(entry->accuracy) ? std::nullopt
                                                         : std::optional<double>(entry->accuracy),
                 .type = entry->type,
                 .download = known(entry->download)};
        }
    }
    struct Cell
    {
        qint64 count = 0;
        Values downloads;
    };
    std::map<std::pair<qint64, qint64>, Cell> cells;
    do {
        cells.clear();
        for (const Entry *entry : found) {
            Cell &cell = cells[{static_cast<qint64>(std::floor(entry->latitude / size)),
                                static_cast<qint64>(std::floor(entry->longitude / size))}];
            ++cell.count;
            if (entry->download != none) {
                cell.downloads.push_back(entry->download);
            }
            if (cells.size() > maxCells) {
                break;
            }
        }
        size *= 2;
    } while (cells.size() > maxCells);
    size /= 2;
    for (auto &[place, cell] : cells) {
        result.cells += {.latitude = static_cast<double>(place.first) * size,
                         .longitude = static_cast<double>(place.second) * size,
                         .size = size,
                         .count = cell.count,
                         .median = spreadOf(cell.downloads).median};
    }
    return result;
}

Facets TestTable::facets(const TestScope &scope) const
{
    std::array<qint64, classCount> types{};
    QHash<qint64, qint64> series;
    const auto counters = [](const Texts &texts) {
        return Values(static_cast<std::size_t>(texts.list.size()), 0);
    };
    Values ofServer = counters(servers);
    Values ofLocation = counters(locations);
    Values ofOperator = counters(operators);
    forEach(scope, [&](const Entry &entry) {
        ++types.at(indexOf(entry.type));
        ++series[entry.series];
        ++ofServer[entry.server];
        ++ofLocation[entry.location];
        ++ofOperator[entry.operatorCode];
    });
    Facets result;
    for (const auto type : ConnectionClasses::all()) {
        if (const qint64 count = types.at(indexOf(type)); count > 0) {
            result.types += {.key = ConnectionClasses::key(type), .name = {}, .count = count};
        }
    }
    for (auto each = series.cbegin(); each != series.cend(); ++each) {
        result.series += {.key = QString::number(each.key()), .name = {}, .count = each.value()};
    }
    const auto values = [](const Texts &texts, const Values &counts) {
        QList<Facets::Value> list;
        for (qsizetype i = 0; i < texts.list.size(); ++i) {
            const qint64 count = counts.at(static_cast<std::size_t>(i));
            if (count > 0 && !texts.list.at(i).isEmpty()) {
                list += {.key = texts.list.at(i), .name = {}, .count = count};
            }
        }
        return mostFrequent(list);
    };
    result.series = mostFrequent(result.series);
    result.servers = values(servers, ofServer);
    result.locations = values(locations, ofLocation);
    result.operators = values(operators, ofOperator);
    for (auto &each : result.operators) {
        each.name = operatorNames.value(operators.numbers.value(each.key)).text;
    }
    return result;
}

} // namespace velometer
