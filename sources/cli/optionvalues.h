#pragma once

#include "cli/commandline.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the values of the command line's options mean; nothing for what makes no sense.
namespace velometer::OptionValues {

/// A number of bytes, also with k, M or G (decimal); 0 is no limit, less than DataBudget::minimum
/// makes no sense.
std::optional<DataBudget> budget(const QString &text);

/// A congestion control that this device's kernel has ready.
std::optional<QString> congestionControl(const QString &text);

/// The location codes, and the one that is meant, in any letter case.
QStringList locations();
std::optional<QString> location(const QString &text);

/// "10m": metres from 1 to 1,000,000.
std::optional<double> metres(const QString &text);
/// "17" or "17s": seconds from 1 to @p most.
std::optional<std::chrono::seconds> seconds(const QString &text, int most);

/// "17", or "3/12" for a test of a series.
std::optional<CommandLine::StoredTest> storedTest(const QString &text);

} // namespace velometer::OptionValues
