#include "ui/map/rateclass.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(RateClasses)
};

} // namespace

RateClass RateClasses::of(double bitsPerSecond)
{
    if (!(bitsPerSecond > 0)) {
        return RateClass::NotMeasured;
    }
    const double megabits = bitsPerSecond / 1e6;
    if (megabits < 1) {
        return RateClass::Slow;
    }
    if (megabits < 5) {
        return RateClass::Modest;
    }
    if (megabits < 20) {
        return RateClass::Fair;
    }
    return megabits < 100 ? RateClass::Fast : RateClass::Fastest;
}

// Steps of the viridis scale, even in lightness.
QColor RateClasses::colour(RateClass rate)
{
    switch (rate) {
    case RateClass::NotMeasured: break;
    case RateClass::Slow: return {0x44, 0x01, 0x54};
    case RateClass::Modest: return {0x3b, 0x52, 0x8b};
    case RateClass::Fair: return {0x21, 0x91, 0x8c};
    case RateClass::Fast: return {0x5e, 0xc9, 0x62};
    case RateClass::Fastest: return {0xfd, 0xe7, 0x25};
    }
    return {0x8a, 0x92, 0x9a};
}

QString RateClasses::name(RateClass rate)
{
    switch (rate) {
    case RateClass::NotMeasured: break;
    case RateClass::Slow: return Texts::tr("below 1 Mbit/s");
    case RateClass::Modest: return Texts::tr("1 to 5");
    case RateClass::Fair: return Texts::tr("5 to 20");
    case RateClass::Fast: return Texts::tr("20 to 100");
    case RateClass::Fastest: return Texts::tr("100 and more");
    }
    return Texts::tr("na");
}

} // namespace velometer
