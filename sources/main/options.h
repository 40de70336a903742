#pragma once

#include "platform/choice/platformchoice.h"
#include "ui/shell.h"
#include "ui/theme/appearance.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace velometer {

/// The command line of velometer, checked. A plain value.
struct Options
{
    QString configFile; ///< empty: where deployment files usually are
    QString dataDir;    ///< empty: the platform's data directory
    PlatformChoice platform;
    QString language;               ///< "de" or "en"; empty: as chosen before, else the system's
    std::optional<ShellKind> shell; ///< none: what fits the screen
    std::optional<Appearance::Choice> theme; ///< none: as chosen on the settings page
    bool verbose = false;
    QString answer; ///< print this instead of starting: the help page, the version, completions

    /// The options in @p arguments (without the program's name). When they make no sense, nothing
    /// comes back and @p error says in one sentence why.
    static std::optional<Options> parse(const QStringList &arguments, QString *error);
    /// One sentence for who starts the program where nothing can be shown.
    static QString noDisplay();
};

} // namespace velometer
