#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace velometer {

/// A report document on its way to the service: as built, or as it waits in the queue.
struct XMLData
{
    QString xml;
    std::optional<qint64> identification; ///< row in the queue; none: it is not stored
    int numberofretries = -1;             ///< attempts that failed, -1 in a fresh record
    bool successfull = false;             ///< set once the service has taken it
};

} // namespace velometer
