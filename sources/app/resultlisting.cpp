#include "app/resultlisting.h"

#include "utils/utils.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace velometer {

namespace {

/// A longer group than this begins closed, unless it is the newest.
constexpr size_t longGroup = 5;

/// The local day of a time. Times come sorted: most fall on the day of the one before, and a
/// calendar is slow.
class DayOf
{
public:
    QDate operator()(double timestamp)
    {
        const auto time = shownTime(timestamp);
        if (!time) {
            return {};
        }
        if (*time < begin || *time >= end) {
            day = QDateTime::fromMSecsSinceEpoch(*time).date();
            begin = day.startOfDay().toMSecsSinceEpoch();
            end = day.addDays(1).startOfDay().toMSecsSinceEpoch();
        }
        return day;
    }

private:
    QDate day;
    qint64 begin = 0;
    qint64 end = 0;
};

/// The larger, the earlier in the list; what is none is last.
double rankOf(const DBTestResults &test, ResultListing::Order order)
{
    double rank = 0;
    switch (order) {
    case ResultListing::Order::Newest: rank = test.timestamp; break;
    case ResultListing::Order::Download: rank = test.downloadSpeed; break;
    case ResultListing::Order::Upload: rank = test.uploadSpeed; break;
    case ResultListing::Order::Rtt:
        rank = test.rtt > 0 ? 1.0 / static_cast<double>(test.rtt) : 0;
        break;
    }
    return std::isfinite(rank) ? rank : 0;
}

double medianOf(std::vector<double> &values)
{
    if (values.empty()) {
        return 0;
    }
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::nth_element(values.begin(), middle, values.end());
    const double upper = *middle;
    if (values.size() % 2 != 0) {
        return upper;
    }
    return (*std::max_element(values.begin(), middle) + upper) / 2;
}

} // namespace

void ResultListing::setRows(Rows rows)
{
    lines.clear(); // they point at the old ones
    tests = std::move(rows);
    arrange();
}

void ResultListing::setFilter(const ResultFilter &filter)
{
    chosen = filter;
    arrange();
}

void ResultListing::setOrder(Order order)
{
    sorted = order;
    arrange();
}

void ResultListing::toggle(size_t index)
{
    Group &group = groups[index];
    if (group.closable) {
        group.open = !group.open;
        toggled.insert(keyOf(group), group.open);
        makeLines();
    }
}

void ResultListing::arrange()
{
    const qint64 now = Utils::getTimeInMs();
    std::vector<size_t> order;
    order.reserve(tests.size());
    for (size_t row = 0; row < tests.size(); ++row) {
        if (chosen.matches(*tests[row], now)) {
            order.push_back(row);
        }
    }
    matched = order.size();
    sort(order);
    makeGroups(order);
    makeLines();
}

// Where two are equal the store's order stands: the newest test of the newest series first.
void ResultListing::sort(std::vector<size_t> &order) const
{
    std::vector<double> ranks(tests.size());
    for (const size_t row : order) {
        ranks[row] = rankOf(*tests[row], sorted);
    }
    const auto isEarlier = [&ranks](size_t a, size_t b) { return ranks[a] > ranks[b]; };
    if (!std::is_sorted(order.begin(), order.end(), isEarlier)) {
        std::stable_sort(order.begin(), order.end(), isEarlier);
    }
}

void ResultListing::makeGroups(const std::vector<size_t> &order)
{
    groups.clear();
    if (sorted != Order::Newest) {
        if (!order.empty()) {
            groups.push_back({.day = {}, .closable = false, .rows = order});
        }
        return;
    }
    DayOf dayOf;
    QHash<Key, size_t> known;
    for (const size_t row : order) {
        Group made{.day = dayOf(tests[row]->timestamp), .series = tests[row]->seriesId, .rows = {}};
        const auto found = known.constFind(keyOf(made));
        if (found != known.constEnd()) {
            groups[*found].rows.push_back(row);
            continue;
        }
        known.insert(keyOf(made), groups.size());
        made.rows.push_back(row);
        groups.push_back(std::move(made));
    }
    for (size_t index = 0; index < groups.size(); ++index) {
        Group &group = groups[index];
        group.open = toggled.value(keyOf(group), index == 0 || group.rows.size() <= longGroup);
    }
}

void ResultListing::makeLines()
{
    lines.clear();
    for (size_t index = 0; index < groups.size(); ++index) {
        lines.push_back({index, nullptr});
        if (!groups[index].open) {
            continue;
        }
        for (const size_t row : groups[index].rows) {
            lines.push_back({index, tests[row].get()});
        }
    }
}

ResultListing::Medians ResultListing::medians(size_t index) const
{
    std::vector<double> download;
    std::vector<double> upload;
    std::vector<double> rtt;
    const auto take = [](std::vector<double> &values, double value) {
        if (value > 0 && std::isfinite(value)) {
            values.push_back(value);
        }
    };
    for (const size_t row : groups[index].rows) {
        take(download, tests[row]->downloadSpeed);
        take(upload, tests[row]->uploadSpeed);
        take(rtt, static_cast<double>(tests[row]->rtt));
    }
    return {medianOf(download), medianOf(upload), medianOf(rtt)};
}

QList<qulonglong> ResultListing::ids() const
{
    QList<qulonglong> all;
    for (const Group &group : groups) {
        for (const size_t row : group.rows) {
            all.append(tests[row]->myTestId);
        }
    }
    return all;
}

QStringList ResultListing::servers() const
{
    QSet<QString> names;
    for (const auto &test : tests) {
        names.insert(test->testServer);
    }
    names.remove(QString());
    QStringList sortedNames(names.begin(), names.end());
    sortedNames.sort(Qt::CaseInsensitive);
    return sortedNames;
}

QStringList ResultListing::locations() const
{
    QSet<QString> codes;
    for (const auto &test : tests) {
        codes.insert(test->location);
    }
    codes.remove(QString());
    QStringList sortedCodes(codes.begin(), codes.end());
    sortedCodes.sort(Qt::CaseInsensitive);
    return sortedCodes;
}

} // namespace velometer
