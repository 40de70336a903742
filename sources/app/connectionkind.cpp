#include "app/connectionkind.h"

using namespace Qt::StringLiterals;

namespace velometer {

ConnectionKind ConnectionKinds::of(const QString &stored)
{
    if (stored == "WLAN"_L1) {
        return ConnectionKind::Wlan;
    }
    if (stored == "Mobile(LTE)"_L1) {
        return ConnectionKind::Lte;
    }
    if (stored == "Mobile(5G)"_L1) {
        return ConnectionKind::Nr;
    }
    if (stored == "Mobile(UMTS)"_L1) {
        return ConnectionKind::Umts;
    }
    if (stored == "Mobile(GSM)"_L1) {
        return ConnectionKind::Gsm;
    }
    return ConnectionKind::Other;
}

ConnectionKind ConnectionKinds::ofMode(const QString &mode)
{
    if (mode == "WlanMode"_L1) {
        return ConnectionKind::Wlan;
    }
    if (mode == "LteMode"_L1) {
        return ConnectionKind::Lte;
    }
    if (mode == "NrMode"_L1) {
        return ConnectionKind::Nr;
    }
    if (mode == "WcdmaMode"_L1) {
        return ConnectionKind::Umts;
    }
    return mode == "GsmMode"_L1 ? ConnectionKind::Gsm : ConnectionKind::Other;
}

QString ConnectionKinds::sign(ConnectionKind kind)
{
    switch (kind) {
    case ConnectionKind::Gsm: return u"2G"_s;
    case ConnectionKind::Umts: return u"3G"_s;
    case ConnectionKind::Lte: return u"4G"_s;
    case ConnectionKind::Nr: return u"5G"_s;
    case ConnectionKind::Wlan: return u"W"_s;
    case ConnectionKind::Other: break;
    }
    return u"?"_s;
}

} // namespace velometer
