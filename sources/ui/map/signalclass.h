#pragma once

#include "track/track.h"

#include <QColor>
#include <QString>

namespace velometer {

/// How strong a cell was received, in a few classes: by the power of its reference signals, or,
/// where no modem tells it, by the modem's percentage.
enum class SignalClass { Unknown, Weak, Modest, Good, Strong };

namespace SignalClasses {

inline constexpr SignalClass all[] = {SignalClass::Unknown, SignalClass::Weak, SignalClass::Modest,
                                      SignalClass::Good, SignalClass::Strong};

/// Strong from -85 dBm or 75 %, good from -95 or 50, modest from -105 or 25: the steps that the
/// service's pages have.
SignalClass of(const TrackPoint &point);
QColor colour(SignalClass strength);
/// "from -85 dBm" ... translated.
QString name(SignalClass strength);

} // namespace SignalClasses

} // namespace velometer
