#pragma once

#include <QtGlobal>

namespace velometer {

/// One position sample of a test's path.
struct MyLocation
{
    qint64 datetime = 0; ///< ms since the epoch, in whole seconds
    double longitude = 0;
    double latitude = 0;
    double altitude = 0;     ///< metres; -1 when not known
    double accuracyhor = 0;  ///< metres; -1 when not known
    double accuracyvert = 0; ///< metres; -1 when not known
    bool lock = false;       ///< the fix was three-dimensional
};

} // namespace velometer
