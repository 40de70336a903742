#include "cli/commandline.h"

#include "arguments/takes.h"
#include "cli/commandsyntax.h"

namespace velometer {

std::optional<CommandLine> CommandLine::parse(const QStringList &arguments, QString *error)
{
    CommandSyntax syntax;
    *error = syntax.read(arguments);
    return error->isEmpty() ? std::optional(syntax.line()) : std::nullopt;
}

} // namespace velometer
