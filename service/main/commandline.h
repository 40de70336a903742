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
        Log::Format logFormat = Log::Format::Json; ///< unless told: a person's on a terminal
        bool listenGiven = false; ///< sockets that are passed do not take its place
    };

    /// Something else than serving.
    struct Task
    {
        enum class Kind { Migrate, Forget, Export, Stats, Check };
        Kind kind = Kind::Check;
        ServerOptions options;
        QString from, to; ///< data bases of a move
        qint64 user = 0;
    };

    /// The program has said what was asked of it, or cannot understand it.
    struct End
    {
        int status = 0; ///< 0: text goes to standard output; 2: wrong usage, text to standard error
        QString text;
    };

    /// @p arguments begin with the program's name. Reads the deployment file for the salt.
    static std::variant<Start, Task, End> parse(const QStringList &arguments);
};

} // namespace velometer
