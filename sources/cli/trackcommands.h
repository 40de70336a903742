#pragma once

#include "cli/commandline.h"

#include <QCoreApplication>

namespace velometer {

class Output;

/// What the program does with the tracks in the store. gDB is open.
class TrackCommands
{
    Q_DECLARE_TR_FUNCTIONS(TrackCommands)

public:
    /// Prints all of them, the newest first.
    static void list(CommandLine::Format format, Output &out);
    /// Prints one as a document; false when there is none of that row.
    static bool print(qulonglong row, CommandLine::Format format, Output &out);

    static QString missing(qulonglong row);
};

} // namespace velometer
