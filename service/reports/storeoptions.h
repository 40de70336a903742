#pragma once

#include <QString>

#include <optional>

namespace velometer {

/// How a store is opened.
struct StoreOptions
{
    /// Where a data base lies: the name of an SQLite file, or "postgresql://...".
    QString database;
    /// Of the DeviceKey. Empty: beside the SQLite file; a PostgreSQL data base needs one.
    // NOLINTNEXTLINE(readability-redundant-member-init): lets it be left out
    QString keyFile{};
    /// What is older goes; without a number nothing does. A document is a report as its client
    /// wrote it, of which the figures stay.
    // NOLINTNEXTLINE(readability-redundant-member-init): likewise
    std::optional<int> reportDays{}, documentDays{};

    /// The lock of the process whose place this one takes; -1: none.
    int inheritedLock = -1;

    QString shownKeyFile() const
    {
        return keyFile.isEmpty() ? database + QStringLiteral(".key") : keyFile;
    }
};

} // namespace velometer
