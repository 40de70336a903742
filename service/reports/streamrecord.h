#pragma once

#include "limits/streamkey.h"

#include <QString>

namespace velometer {

/// What this service saw of one measurement stream: the word against which a report's figures are
/// held.
struct StreamRecord
{
    StreamKey test;
    Direction direction = Direction::Download;
    qint64 ended = 0;  ///< ms since 1970
    qint64 bytes = 0;  ///< payload sent to the kernel, or received from it
    qint64 lasted = 0; ///< ms
    qint64 min = 0;    ///< bit/s, of an upload
    qint64 avg = 0;    ///< bit/s
    qint64 max = 0;    ///< bit/s, of an upload
    // NOLINTNEXTLINE(readability-redundant-member-init): lets it be left out
    QString kernel{};  ///< KernelFacts, as text; empty of streams from before they were asked for
    bool late = false; ///< the service itself was too busy to keep up
};

} // namespace velometer
