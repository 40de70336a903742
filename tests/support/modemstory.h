#pragma once

#include "platform/modem/modemstate.h"

#include <QStringList>

namespace velometer {

/// What @p state tells otherwise than @p before: "mode 9, cell 2af102, radio -97 -11.5 8".
inline QString told(const ModemState &state, const ModemState &before = {})
{
    using namespace Qt::StringLiterals;
    const auto fields = [](const ModemState &of) {
        QString radio = u"radio"_s;
        for (const auto &figure : {of.radio.rsrp, of.radio.rsrq, of.radio.snr}) {
            radio += figure ? u" %1"_s.arg(*figure) : QString();
        }
        return QStringList{u"mode %1"_s.arg(int(of.mode)),
                           u"status %1"_s.arg(int(of.status)),
                           u"signal %1"_s.arg(of.signal.value_or(-1)),
                           u"network "_s + of.mcc + of.mnc,
                           u"home "_s + of.homeMcc + of.homeMnc,
                           u"cell "_s + QString::number(of.cellId.value_or(-1), 16),
                           u"area "_s + QString::number(of.areaCode.value_or(-1), 16),
                           u"imei "_s + of.imei,
                           u"imsi "_s + of.imsi,
                           radio};
    };
    QStringList news = fields(state);
    for (const QString &old : fields(before)) {
        news.removeOne(old);
    }
    return news.join(u", "_s);
}

} // namespace velometer
