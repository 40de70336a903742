#pragma once

#include "web/language.h"

#include <QString>

#include <optional>

/// Figures as people read them, in the numbers of their language. Unknown ones are a dash.
namespace velometer::Figures {

QString rate(std::optional<qint64> bitsPerSecond, Language language);    ///< "38.41 Mbit/s"
QString roundTrip(std::optional<qint64> nanoseconds, Language language); ///< "31.0 ms"
/// "12.1 to 201 Mbit/s" by @p phrase, the unit once where both have the same.
QString range(const QString &least, const QString &greatest, const Phrase &phrase,
              Language language);
QString bytes(qint64 count, Language language);                   ///< "312 GB"
QString number(qint64 value, Language language);                  ///< "1,004"
QString decimal(double value, int decimals, Language language);   ///< "47.2266"
QString percent(std::optional<double> change, Language language); ///< "+12 %"

/// "2026-11-23 16:11" UTC; a dash for times before 2000 or after 2100, which no clock shows.
QString time(qint64 ms);
QString day(qint64 ms);    ///< "2026-11-23"
QString moment(qint64 ms); ///< with seconds

} // namespace velometer::Figures
