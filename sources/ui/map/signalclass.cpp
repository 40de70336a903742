#include "ui/map/signalclass.h"

#include "ui/map/geomaptab.h"

namespace velometer {

namespace {

struct Step
{
    SignalClass strength;
    double dBm;
    int percent;
};

constexpr Step steps[] = {
    {SignalClass::Strong, -85, 75}, {SignalClass::Good, -95, 50}, {SignalClass::Modest, -105, 25}};

} // namespace

SignalClass SignalClasses::of(const TrackPoint &point)
{
    if (!point.rsrp && !point.signal) {
        return SignalClass::Unknown;
    }
    for (const Step &step : steps) {
        if (point.rsrp ? *point.rsrp >= step.dBm : *point.signal >= step.percent) {
            return step.strength;
        }
    }
    return SignalClass::Weak;
}

QColor SignalClasses::colour(SignalClass strength)
{
    switch (strength) {
    case SignalClass::Strong: return {0x2e, 0xa0, 0x5a};
    case SignalClass::Good: return {0x9c, 0xb8, 0x2c};
    case SignalClass::Modest: return {0xf0, 0x9a, 0x20};
    case SignalClass::Weak: return {0xd6, 0x3a, 0x30};
    case SignalClass::Unknown: break;
    }
    return {0x8a, 0x96, 0x9e};
}

QString SignalClasses::name(SignalClass strength)
{
    switch (strength) {
    case SignalClass::Strong: return GeoMapTab::tr("from %1 dBm").arg(-85);
    case SignalClass::Good: return GeoMapTab::tr("from %1 dBm").arg(-95);
    case SignalClass::Modest: return GeoMapTab::tr("from %1 dBm").arg(-105);
    case SignalClass::Weak: return GeoMapTab::tr("below");
    case SignalClass::Unknown: break;
    }
    return GeoMapTab::tr("signal not known");
}

} // namespace velometer
