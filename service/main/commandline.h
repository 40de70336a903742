#pragma once

#include "http/serveroptions.h"
#include "ops/log.h"

#include <QStringList>

#include <variant>

namespace velometer {

/// The command line of velometer-service.
class CommandLine
{
public:
    struct Start
    {
        ServerOptions options;
        Log::Level logLevel = Log::Level::Info;
    };

    /// The program has said what was asked of it, or cannot understand it.
    struct End
    {
        int status = 0; ///< 0: text goes to standard output; 2: wrong usage, text to standard error
        QString text;
    };

    /// @p arguments begin with the program's name. Reads the deployment file for the salt.
    static std::variant<Start, End> parse(const QStringList &arguments);
};

} // namespace velometer
