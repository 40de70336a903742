#pragma once

#include "app/connectionkind.h"

#include <QString>

#include <optional>

namespace velometer {

class DBTestResults;

/// Which of the stored tests a list or a chart shows. Everything that is set has to hold. A plain
/// value.
struct ResultFilter
{
    /// Back from now, in rolling days.
    enum class Period { All, Day, Week, Month, Year };

    bool mobileOnly = false;            ///< of whatever kind, also several in one test
    std::optional<ConnectionKind> kind; ///< stands above mobileOnly
    QString server;                     ///< host name; empty: any
    QString location;                   ///< code; empty: any
    Period period = Period::All;
    /// Words, each of which is in what the list shows of the test, whatever their case: ids, date,
    /// time, place, connection or server.
    QString text;

    bool operator==(const ResultFilter &) const = default;
    bool isEmpty() const { return *this == ResultFilter(); }

    /// @p nowMs by the wall clock. A test whose time cannot be one is in no period but All.
    bool matches(const DBTestResults &test, qint64 nowMs) const;

    /// How far a period reaches back, ms; 0 of All.
    static qint64 lengthOf(Period period);
};

/// A stored time as one: not below 0 and with a year of four digits.
std::optional<qint64> shownTime(double timestamp);

} // namespace velometer
