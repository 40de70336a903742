#pragma once

#include "platform/networkstate.h"

#include <QString>

#include <optional>

namespace velometer {

/// What a modem tells, cleaned and in range. Unknown texts are empty, unknown numbers not set.
struct ModemState
{
    QString path;    ///< which modem; empty when there is none
    QString service; ///< whose modem it is: "ModemManager", "oFono"

    QString imei;
    QString manufacturer;
    QString model;
    QString imsi;
    QString homeMcc;
    QString homeMnc;

    QString mcc;
    QString mnc;
    QString operatorName;
    NetworkStatus status = NetworkStatus::Undefined;
    NetworkMode mode = NetworkMode::Unknown;
    std::optional<int> signal;    ///< percent
    std::optional<qint64> cellId; ///< up to 36 bits
    std::optional<int> areaCode;  ///< TAC with LTE and 5G, else LAC

    RadioSignal radio;

    bool operator==(const ModemState &other) const = default;
};

} // namespace velometer
