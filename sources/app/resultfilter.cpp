#include "app/resultfilter.h"

#include "db/dbtestresults.h"
#include "utils/utils.h"

#include <QDateTime>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qint64 dayMs = 86'400'000;
/// Where years begin to have more than four digits; the store may hold anything.
constexpr double latestShownTime = 253'402'300'800'000.0;
/// More of a stored text is not shown, so it is not searched.
constexpr qsizetype searchedLength = 120;

bool holdsWords(const DBTestResults &test, const QString &text)
{
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    if (words.isEmpty()) {
        return true;
    }
    QString shown =
        u"%1 / %2 %1/%2 "_s.arg(QString::number(test.seriesId), QString::number(test.testId)) +
        test.testServer.left(searchedLength) + u' ' + test.connectionType.left(searchedLength) +
        u' ' + Utils::trLocationShort(test.location);
    if (const auto time = shownTime(test.timestamp)) {
        shown += QDateTime::fromMSecsSinceEpoch(*time).toString(u" yyyy-MM-dd hh:mm"_s);
    }
    return std::all_of(words.begin(), words.end(), [&shown](const QString &word) {
        return shown.contains(word, Qt::CaseInsensitive);
    });
}

} // namespace

std::optional<qint64> shownTime(double timestamp)
{
    if (timestamp >= 0 && timestamp < latestShownTime) {
        return static_cast<qint64>(timestamp);
    }
    return std::nullopt;
}

qint64 ResultFilter::lengthOf(Period period)
{
    switch (period) {
    case Period::All: break;
    case Period::Day: return dayMs;
    case Period::Week: return 7 * dayMs;
    case Period::Month: return 30 * dayMs;
    case Period::Year: return 365 * dayMs;
    }
    return 0;
}

bool ResultFilter::matches(const DBTestResults &test, qint64 nowMs) const
{
    if (kind ? ConnectionKinds::of(test.connectionType) != *kind
             : mobileOnly && !Utils::connectionTypeIsMobile(test.connectionType)) {
        return false;
    }
    if ((!server.isEmpty() && test.testServer != server) ||
        (!location.isEmpty() && test.location != location)) {
        return false;
    }
    if (period != Period::All) {
        const auto time = shownTime(test.timestamp);
        if (!time || *time < nowMs - lengthOf(period)) {
            return false;
        }
    }
    return holdsWords(test, text);
}

} // namespace velometer
