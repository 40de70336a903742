#include "reports/statistics.h"

#include "reports/shownfigures.h"

#include <QDateTime>
#include <QIODevice>
#include <QRegularExpression>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Two values in one bin differ by no more than this factor.
constexpr double binFactor = 1.03;

/// About 10 km on the ground.
constexpr double cellHeight = 0.09;
/// Nearer to the poles nobody lives, and cells would be endlessly wide.
constexpr double maxLatitude = 85;

/// What is counted in all; a client can invent servers, but not fill the memory with them.
constexpr std::size_t maxGroups = 100'000;

int binOf(qint64 value)
{
    return static_cast<int>(std::floor(std::log(static_cast<double>(value)) / std::log(binFactor)));
}

/// The middle of a bin, by ratio.
qint64 middleOf(int bin)
{
    return std::llround(std::pow(binFactor, bin + 0.5));
}

double widthAt(qint64 row)
{
    const double middle = (static_cast<double>(row) + 0.5) * cellHeight;
    return cellHeight / std::cos(middle * std::numbers::pi / 180);
}

QString cellKey(double latitude, double longitude)
{
    const auto row = static_cast<qint64>(std::floor(latitude / cellHeight));
    const auto column = static_cast<qint64>(std::floor(longitude / widthAt(row)));
    return u"%1,%2"_s.arg(row).arg(column);
}

Statistics::Place placeOf(const QString &key)
{
    const qint64 row = key.section(u',', 0, 0).toLongLong();
    const qint64 column = key.section(u',', 1).toLongLong();
    return {.latitude = static_cast<double>(row) * cellHeight,
            .longitude = static_cast<double>(column) * widthAt(row),
            .height = cellHeight,
            .width = widthAt(row)};
}

/// A name comes from clients: nothing but a host's is shown to everybody.
bool isHost(const QString &name)
{
    static const QRegularExpression host(u"\\A[A-Za-z0-9._:-]{1,253}\\z"_s);
    return host.match(name).hasMatch();
}

} // namespace

void StatisticsTable::Counts::add(qint64 user, int bin, qint64 times)
{
    bins[bin] += times;
    count += times;
    if (users.size() < Statistics::minUsers && std::ranges::find(users, user) == users.end()) {
        users.push_back(user);
    }
}

bool StatisticsTable::Counts::mayBeTold() const
{
    return count >= Statistics::minTests && users.size() >= Statistics::minUsers;
}

/// The bin of the value in the middle of that share.
int StatisticsTable::Counts::at(double share) const
{
    const auto wanted = static_cast<qint64>(std::llround(share * static_cast<double>(count - 1)));
    qint64 passed = 0;
    for (const auto &[bin, tests] : bins) {
        passed += tests;
        if (passed > wanted) {
            return bin;
        }
    }
    return 0;
}

void StatisticsTable::Histogram::add(qint64 user, const std::optional<qint64> &value)
{
    if (value && *value > 0) {
        Counts::add(user, binOf(*value), 1);
    }
}

std::optional<Statistics::Figure> StatisticsTable::Histogram::figure() const
{
    return mayBeTold() ? std::optional(Statistics::Figure{.count = count,
                                                          .p10 = middleOf(at(0.1)),
                                                          .median = middleOf(at(0.5)),
                                                          .p90 = middleOf(at(0.9))})
                       : std::nullopt;
}

std::optional<Statistics::Figure> StatisticsTable::Levels::figure() const
{
    return mayBeTold() ? std::optional(Statistics::Figure{
                             .count = count, .p10 = at(0.1), .median = at(0.5), .p90 = at(0.9)})
                       : std::nullopt;
}

StatisticsTable::Group *StatisticsTable::group(StatisticsBy by, const QString &key)
{
    const auto place = std::pair(by, key);
    if (groups.size() >= maxGroups && !groups.contains(place)) {
        return nullptr;
    }
    changed.insert(place);
    return &groups[place];
}

void StatisticsTable::write(QDataStream &stream, const Histograms &histograms)
{
    const auto &[download, upload, rtt, downloadRtt, uploadRtt, rsrp] = histograms;
    for (const Counts *counts :
         {static_cast<const Counts *>(&download), static_cast<const Counts *>(&upload),
          static_cast<const Counts *>(&rtt), static_cast<const Counts *>(&downloadRtt),
          static_cast<const Counts *>(&uploadRtt), static_cast<const Counts *>(&rsrp)}) {
        stream << quint32(counts->bins.size());
        for (const auto &[bin, times] : counts->bins) {
            stream << qint32(bin) << times;
        }
        stream << quint32(counts->users.size());
        for (const qint64 user : counts->users) {
            stream << user;
        }
    }
}

bool StatisticsTable::read(QDataStream &stream, Histograms &histograms)
{
    auto &[download, upload, rtt, downloadRtt, uploadRtt, rsrp] = histograms;
    for (Counts *counts : {static_cast<Counts *>(&download), static_cast<Counts *>(&upload),
                           static_cast<Counts *>(&rtt), static_cast<Counts *>(&downloadRtt),
                           static_cast<Counts *>(&uploadRtt), static_cast<Counts *>(&rsrp)}) {
        quint32 size = 0;
        stream >> size;
        for (quint32 i = 0; i < size && stream.status() == QDataStream::Ok; ++i) {
            qint32 bin = 0;
            qint64 times = 0;
            stream >> bin >> times;
            counts->bins[bin] = times;
            counts->count += times;
        }
        stream >> size;
        for (quint32 i = 0; i < size && stream.status() == QDataStream::Ok; ++i) {
            qint64 user = 0;
            stream >> user;
            counts->users.push_back(user);
        }
    }
    return stream.status() == QDataStream::Ok;
}

QList<StatisticsTable::Rolled> StatisticsTable::takeChanged()
{
    QList<Rolled> list;
    for (const auto &place : std::exchange(changed, {})) {
        const Group &group = groups.at(place);
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_6_4);
        write(stream, group.all);
        stream << quint32(group.types.size());
        for (const auto &[type, histograms] : group.types) {
            stream << qint32(type);
            write(stream, histograms);
        }
        list += {.by = place.first, .key = place.second, .counts = qCompress(bytes)};
    }
    return list;
}

bool StatisticsTable::load(const Rolled &rolled)
{
    const QByteArray bytes = qUncompress(rolled.counts);
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    Group group;
    quint32 types = 0;
    bool whole = read(stream, group.all);
    stream >> types;
    for (quint32 i = 0; i < types && whole; ++i) {
        qint32 type = 0;
        stream >> type;
        whole = read(stream, group.types[ConnectionClasses::ofNumber(type)]);
    }
    if (whole) {
        groups[{rolled.by, rolled.key}] = std::move(group);
    }
    return whole;
}

void StatisticsTable::count(StatisticsBy by, const QString &key, const Test &test)
{
    Group *const found = group(by, key);
    if (!found) {
        return;
    }
    for (Histograms *histograms : {&found->all, &found->types[test.type]}) {
        histograms->download.add(test.user, test.download);
        histograms->upload.add(test.user, test.upload);
        histograms->rtt.add(test.user, test.rtt);
        histograms->downloadRtt.add(test.user, test.downloadRtt);
        histograms->uploadRtt.add(test.user, test.uploadRtt);
    }
}

void StatisticsTable::add(const Test &test)
{
    if (!ShownFigures::isTime(test.time)) {
        return;
    }
    const auto time = QDateTime::fromMSecsSinceEpoch(test.time, QTimeZone::utc());
    count(StatisticsBy::Month, time.toString(u"yyyy-MM"_s), test);
    count(StatisticsBy::Type, ConnectionClasses::key(test.type), test);
    if (!test.operatorCode.isEmpty() && ConnectionClasses::isMobile(test.type)) {
        count(StatisticsBy::Operator, test.operatorCode, test);
    }
    if (isHost(test.server)) {
        count(StatisticsBy::Server, test.server, test);
    }
    const QString cell =
        test.latitude && test.longitude ? cellOf(*test.latitude, *test.longitude) : QString();
    if (!cell.isEmpty()) {
        count(StatisticsBy::Cell, cell, test);
    }
}

QString StatisticsTable::cellOf(double latitude, double longitude)
{
    return std::abs(latitude) < maxLatitude ? cellKey(latitude, longitude) : QString();
}

void StatisticsTable::add(const Signal &heard)
{
    const QString cell = cellOf(heard.latitude, heard.longitude);
    Group *const found = cell.isEmpty() ? nullptr : group(StatisticsBy::Cell, cell);
    if (found) {
        found->all.rsrp.add(heard.user, heard.rsrp, heard.points);
        found->types[heard.type].rsrp.add(heard.user, heard.rsrp, heard.points);
    }
}

Statistics StatisticsTable::figures(StatisticsBy by) const
{
    Statistics result;
    for (auto group = groups.lower_bound({by, QString()});
         group != groups.end() && group->first.first == by; ++group) {
        const QString &key = group->first.second;
        const auto add = [&](const Histograms &histograms, std::optional<ConnectionClass> type) {
            Statistics::Row row{.key = key,
                                .type = type,
                                .place = {},
                                .download = histograms.download.figure(),
                                .upload = histograms.upload.figure(),
                                .rtt = histograms.rtt.figure(),
                                .downloadRtt = histograms.downloadRtt.figure(),
                                .uploadRtt = histograms.uploadRtt.figure(),
                                .rsrp = histograms.rsrp.figure()};
            if (by == StatisticsBy::Cell) {
                row.place = placeOf(key);
            }
            if (row.download || row.upload || row.rtt || row.downloadRtt || row.uploadRtt ||
                row.rsrp) {
                result.rows += row;
            }
        };
        add(group->second.all, std::nullopt);
        if (by != StatisticsBy::Type) {
            for (const auto type : ConnectionClasses::all()) {
                if (const auto own = group->second.types.find(type);
                    own != group->second.types.end()) {
                    add(own->second, type);
                }
            }
        }
    }
    return result;
}

} // namespace velometer
