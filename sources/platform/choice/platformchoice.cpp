#include "platform/choice/platformchoice.h"

#include "utils/quoted.h"
#include "utils/translations.h"

using namespace Qt::StringLiterals;

namespace velometer {

bool PlatformChoice::setDevice(const QString &text, QString *error)
{
    constexpr auto scripted = "scripted:"_L1;
    const bool isScript = text.startsWith(scripted) && text.size() > scripted.size();
    if (!isScript && text != "system"_L1 && text != "none"_L1) {
        *error = Translations::translate("PlatformChoice",
                                         "--platform takes system, scripted:FILE or none, not %1.")
                     .arg(quoted(text));
        return false;
    }
    script = isScript ? text.mid(scripted.size()) : QString();
    device = isScript ? Device::Scripted : text == "none"_L1 ? Device::None : Device::System;
    return true;
}

} // namespace velometer
