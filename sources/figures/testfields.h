#pragma once

#include "figures/finishedtest.h"

#include <QLatin1StringView>
#include <QVariant>

#include <span>

namespace velometer {

/// What a figure is measured in; decides how it is stored and written.
enum class Unit {
    None,
    Identity, ///< a text where a program reads it, so that none rounds it
    Moment,   ///< ms since the epoch; ISO 8601 in UTC where a program reads it
    BitsPerSecond,
    Bytes,
    Nanoseconds,
    Percent,
    Degrees,
    Metres,
    KilometresPerHour,
    Decibels, ///< of whatever the key names
};

/// One figure of a finished test: what it is called and where it is found.
struct TestField
{
    /// Dotted as its place in JSON ("download.avg_bps"), with the unit in the name. Empty for what
    /// is only stored: figures that others follow from.
    QLatin1StringView key;
    /// The detail that keeps it in the store. Empty for what only the running program knows, what
    /// the row has, and what follows from others.
    QLatin1StringView stored;
    Unit unit = Unit::None;
    /// A text, bool, qint64, double or QVariantList of those; invalid when it is not known.
    QVariant (*get)(const FinishedTest &) = nullptr;
    /// Takes the kinds that the store has. What cannot be such a figure leaves it unknown. Null for
    /// what follows from others.
    void (*set)(FinishedTest &, const QVariant &) = nullptr;
    /// Its column in a table where that is not the key with underscores.
    QLatin1StringView shortColumn;
    /// Of a list: the number under which the store keeps it beside the details.
    enum List {
        NoList = 0,
        DownloadIntervals = 1,
        UploadIntervals = 2,
        RttSamples = 3,
        IdleDelays = 4,
        DownloadDelays = 5,
        DownloadDelayTimes = 6,
        UploadDelays = 7,
        UploadDelayTimes = 8,
        ExtraDownloadDelays = 9,
        ExtraDownloadDelayTimes = 10,
        ExtraUploadDelays = 11,
        ExtraUploadDelayTimes = 12,
        UploadConfirmed = 13,
    };
    List list = NoList;

    QString column() const;
};

/// The one table of what a test's figures are called. JSON, CSV, exports, stored details and the
/// formats of the details window are made from it; a new figure is one line of it, one member of
/// FinishedTest and one place where it is measured.
namespace TestFields {

/// In the order of the columns of a table.
std::span<const TestField> all();

/// The field that is stored under @p detail; null for a key of nobody.
const TestField *ofDetail(const QString &detail);

} // namespace TestFields

} // namespace velometer
