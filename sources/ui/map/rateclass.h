#pragma once

#include <QColor>
#include <QString>

namespace velometer {

/// How fast a download was, in a few classes that a map can tell apart by colour: from dark to
/// light, which every kind of eye sees.
enum class RateClass { NotMeasured, Slow, Modest, Fair, Fast, Fastest };

namespace RateClasses {

inline constexpr RateClass all[] = {RateClass::NotMeasured, RateClass::Slow, RateClass::Modest,
                                    RateClass::Fair,        RateClass::Fast, RateClass::Fastest};

/// 0 and below, and what is no number: not measured.
RateClass of(double bitsPerSecond);
QColor colour(RateClass rate);
/// "na", "below 1 Mbit/s", "1 to 5" ... translated.
QString name(RateClass rate);

} // namespace RateClasses

} // namespace velometer
