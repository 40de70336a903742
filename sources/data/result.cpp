#include "data/result.h"

#include "utils/intervalrates.h"
#include "utils/utils.h"

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace velometer {

Result::Result(QObject *parent)
    : QObject(parent)
{}

Result::Result(int port, int expected, qlonglong real, qint64 bytes, const IntervalTable &rates,
               const IntervalTable &byteCounts, qlonglong pause, qlonglong connectTime,
               qlonglong getTimeNs, int type, QObject *parent)
    : QObject(parent)
    , testport(port)
    , bytestransferd(bytes)
    , expectedduration(expected)
    , realduration(real)
    , time(Utils::getTimeInMs())
    , valuesrate(rates)
    , valuesbyte(byteCounts)
    , max_pause(pause)
    , gettime(getTimeNs)
    , connecttime(connectTime)
    , resulttype(type)
{
    if (realduration >= 1) {
        const double seconds = static_cast<double>(realduration) / 1000.0 / 1000.0 / 1000.0;
        rateavg = static_cast<qint64>(static_cast<double>(bytestransferd) * 8.0 / seconds);
    }
    calculateValues();
}

Result::Result(int port, const QHash<int, int> &times, QObject *parent)
    : QObject(parent)
    , testport(port)
    , time(Utils::getTimeInMs())
    , responsetimes(times)
    , resulttype(Rtt)
{
    qint64 sum = 0;
    int count = 0;
    for (const int value : std::as_const(responsetimes)) {
        if (value < 1) {
            continue;
        }
        ++count;
        sum += value;
        responsemax = qMax(responsemax, value);
        responsemin = responsemin == -1 ? value : qMin(responsemin, value);
    }
    if (count > 0) {
        valid = true;
        responseavg = static_cast<int>(sum / count);
    }
}

void Result::initialize()
{
    ratemin = ratemax = rateavg = -1;
    responsemin = responseavg = responsemax = -1;
    valuesavg = 0;
    valid = false;
    limited = false;
    resulttype = Empty;
}

void Result::calculateValues()
{
    std::vector<qint64> rates;
    rates.reserve(static_cast<std::size_t>(valuesrate.size()));
    for (int key = 0; key < valuesrate.size(); ++key) {
        rates.push_back(valuesrate.value(key));
    }
    valuesavg = IntervalRates::average(rates).value_or(0);
    valid = rates.size() > IntervalRates::rampUp &&
            std::any_of(rates.begin() + IntervalRates::rampUp, rates.end(),
                        [](qint64 rate) { return rate > 0; });
    if (const auto extremes = IntervalRates::extremes(rates)) {
        ratemin = extremes->min;
        ratemax = extremes->max;
    }
}

Delays Result::getResponseDelays() const
{
    QList<int> connects = responsetimes.keys();
    std::sort(connects.begin(), connects.end());
    Delays delays;
    for (const int connect : std::as_const(connects)) {
        const int took = responsetimes.value(connect);
        delays.append(took > 0 ? std::optional<qint64>(took) : std::nullopt);
    }
    return delays;
}

QString Result::toString() const
{
    const auto item = [](QLatin1StringView name, qint64 value) {
        return name + ": "_L1 + QString::number(value) + ", "_L1;
    };
    return item("Bytes"_L1, bytestransferd) + item("Duration"_L1, realduration) +
           item("Min"_L1, getRateMin()) + item("Avg time"_L1, getRateAvg()) +
           item("Avg values"_L1, valuesavg) + item("Max"_L1, getRateMax()) +
           item("Max Pause"_L1, max_pause);
}

} // namespace velometer
