#pragma once

#include "figures/finishedtest.h"

#include <QString>

/// A test in a few lines of the user's language, for a message to somebody.
namespace velometer::ShareText {

/// "12 / 4", "2026-11-23 16:11", "38412 kBit/s" ...; "na" where nothing was measured. Times are
/// this machine's.
QString name(const FinishedTest &test);
QString time(const FinishedTest &test);
QString rate(const FinishedTest::Number &bitsPerSecond);
QString roundTrip(const FinishedTest &test);
/// Place, connection and server, as far as they are known: "Outdoor · Mobile(LTE) · Swisscom".
QString where(const FinishedTest &test);

QString of(const FinishedTest &test);

} // namespace velometer::ShareText
