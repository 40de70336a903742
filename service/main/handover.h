#pragma once

#include "http/serveroptions.h"

#include <QStringList>

#include <string>
#include <vector>

/// A new process of this program, perhaps of a newer version, takes the place of this one, which
/// ends when its streams have. Both have the listening sockets meanwhile; no connection is lost.
namespace velometer::Handover {

/// What the old process has left for this one. To be called once, before there are threads.
struct Legacy
{
    int storeLock = -1; ///< the descriptor that holds the SQLite file
    int ready = -1;     ///< where the old one waits to hear that this one serves
};
Legacy takeLegacy();

/// Tells the old process that this one serves.
void tellReady(const Legacy &legacy);

/// Starts @p program with @p arguments (the program's name first), and hands it @p sockets and the
/// lock. Returns when it serves; what is told is a sentence when it does not come to that, and the
/// caller goes on as before.
QString begin(const QString &program, const QStringList &arguments,
              const std::vector<Inherited> &sockets, int storeLock);

} // namespace velometer::Handover
