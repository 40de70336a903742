#pragma once

#include "platform/platformfacts.h"

#include <QString>

#include <optional>

namespace velometer {

/// What NetworkManager tells of the connection that traffic leaves by. Texts are cleaned.
struct NetworkManagerState
{
    enum class Link { None, Wlan, Ethernet, Mobile, Bluetooth, Other };
    enum class Metered { Unknown, Yes, No, GuessYes, GuessNo };
    using Connectivity = PlatformFacts::Connectivity;

    Link link = Link::None;      ///< of the primary connection, or of what carries it
    bool activated = false;      ///< the primary connection is up
    bool connecting = false;     ///< one is being made
    QString ssid;                ///< of the WLAN, when the link is one
    std::optional<int> strength; ///< of the WLAN, percent
    Metered metered = Metered::Unknown;
    Connectivity connectivity = Connectivity::Unknown;

    bool operator==(const NetworkManagerState &other) const = default;
};

} // namespace velometer
