#include "web/typesigns.h"

#include "web/texts.h"

using namespace Qt::StringLiterals;

namespace velometer::TypeSigns {

const Phrase &name(ConnectionClass type)
{
    switch (type) {
    case ConnectionClass::Wlan: return Texts::wlan;
    case ConnectionClass::Gsm: return Texts::gsm;
    case ConnectionClass::Umts: return Texts::umts;
    case ConnectionClass::Lte: return Texts::lte;
    case ConnectionClass::Nr: return Texts::nr;
    case ConnectionClass::Ethernet: return Texts::ethernet;
    case ConnectionClass::Cdma: return Texts::cdma;
    case ConnectionClass::Bluetooth: return Texts::bluetooth;
    case ConnectionClass::Wimax: return Texts::wimax;
    case ConnectionClass::Mixed: return Texts::mixed;
    case ConnectionClass::Other: break;
    }
    return Texts::otherType;
}

QString place(const QString &code, Language language)
{
    struct Place
    {
        QLatin1StringView code;
        const Phrase &name;
    };
    static const Place places[] = {{"Unknown"_L1, Texts::unknown}, {"Indoor"_L1, Texts::indoor},
                                   {"Outdoor"_L1, Texts::outdoor}, {"Train"_L1, Texts::train},
                                   {"Car"_L1, Texts::car},         {"Other"_L1, Texts::otherPlace}};
    for (const auto &each : places) {
        if (each.code == code) {
            return QString::fromUtf8(each.name.in(language));
        }
    }
    return code;
}

QString letters(ConnectionClass type)
{
    switch (type) {
    case ConnectionClass::Wlan: return u"W"_s;
    case ConnectionClass::Gsm: return u"2G"_s;
    case ConnectionClass::Umts: return u"3G"_s;
    case ConnectionClass::Lte: return u"4G"_s;
    case ConnectionClass::Nr: return u"5G"_s;
    case ConnectionClass::Ethernet: return u"E"_s;
    case ConnectionClass::Cdma: return u"C"_s;
    case ConnectionClass::Bluetooth: return u"B"_s;
    case ConnectionClass::Wimax: return u"X"_s;
    case ConnectionClass::Mixed: return u"M"_s;
    case ConnectionClass::Other: break;
    }
    return u"?"_s;
}

void write(Html &html, ConnectionClass type)
{
    html << "<span class=\"sign t-" << ConnectionClasses::key(type) << "\" aria-hidden=\"true\">"
         << letters(type) << "</span>";
}

} // namespace velometer::TypeSigns
