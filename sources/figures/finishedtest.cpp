#include "figures/finishedtest.h"

#include "utils/cleantext.h"
#include "utils/intervalrates.h"

#include <cmath>

namespace velometer {

namespace {

/// Bytes in 100 ms to bit/s.
constexpr qint64 bitsPerIntervalByte = 80;

} // namespace

FinishedTest::Number FinishedTest::Throughput::steadyRate() const
{
    const auto &perInterval = confirmedBytes ? confirmedBytes : intervalBytes;
    if (!perInterval) {
        return std::nullopt;
    }
    const auto mean = IntervalRates::steady(*perInterval);
    return mean ? Number(*mean * bitsPerIntervalByte) : std::nullopt;
}

FinishedTest::Text Known::text(const QString &value)
{
    const QString clean = cleanText(value);
    return clean.isEmpty() ? FinishedTest::Text() : FinishedTest::Text(clean);
}

FinishedTest::Number Known::number(const QString &value)
{
    bool ok = false;
    const qint64 result = value.toLongLong(&ok);
    return ok && result >= 0 ? FinishedTest::Number(result) : FinishedTest::Number();
}

FinishedTest::Number Known::atLeast(qint64 minimum, FinishedTest::Number value)
{
    return value && *value >= minimum ? value : FinishedTest::Number();
}

FinishedTest::Real Known::above(double minimum, double value)
{
    return std::isfinite(value) && value > minimum ? FinishedTest::Real(value)
                                                   : FinishedTest::Real();
}

} // namespace velometer
