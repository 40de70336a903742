#pragma once

#include <QString>

namespace velometer {

/// A report document on its way to the service: as built, or as it waits in the queue.
struct XMLData
{
    QString xml;
    int identification = -1;  ///< row in the queue, -1 for a report that is not stored
    int numberofretries = -1; ///< delivery attempts that failed, -1 in a fresh record
    bool successfull = false; ///< set once the service has taken it
};

} // namespace velometer
