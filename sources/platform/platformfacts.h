#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace velometer {

/// What no test records, for whoever looks for the cause of a problem. Unknown texts are empty.
struct PlatformFacts
{
    enum class Connectivity { Unknown, None, Portal, Limited, Full };

    /// What could be there and is not.
    enum class Missing {
        SystemBus,
        ModemService,       ///< neither ModemManager nor oFono
        ModemServiceAnswer, ///< one is there and has not answered yet
        Modem,
        NetworkManager,
        NetworkManagerAnswer,
        PrimaryConnection,
    };

    QString modemService;       ///< whose modem it is: "ModemManager", "oFono"
    std::optional<double> rsrp; ///< dBm
    std::optional<double> rsrq; ///< dB
    std::optional<double> snr;  ///< dB
    std::optional<bool> metered;
    bool meteredGuessed = false; ///< nobody said it; it follows from the kind of connection
    Connectivity connectivity = Connectivity::Unknown;
    QString ssid;
    QList<Missing> missing;
};

} // namespace velometer
