#pragma once

#include <QMap>
#include <QString>

#include <optional>

namespace velometer {

/// How the device is connected right now. The numbers are fixed: they stand in log lines.
enum class NetworkMode {
    Unknown = 0,
    Gsm = 1,
    Cdma = 2,
    Wcdma = 3,
    Wlan = 4,
    Ethernet = 5,
    Bluetooth = 6,
    Wimax = 7,
    Lte = 8,
    Nr = 9,
};

/// A mode of the modem.
constexpr bool isMobile(NetworkMode mode)
{
    switch (mode) {
    case NetworkMode::Gsm:
    case NetworkMode::Cdma:
    case NetworkMode::Wcdma:
    case NetworkMode::Lte:
    case NetworkMode::Nr: return true;
    case NetworkMode::Unknown:
    case NetworkMode::Wlan:
    case NetworkMode::Ethernet:
    case NetworkMode::Bluetooth:
    case NetworkMode::Wimax: break;
    }
    return false;
}

enum class NetworkStatus {
    Undefined = 0,
    NoNetworkAvailable = 1,
    EmergencyOnly = 2,
    Searching = 3,
    Busy = 4,
    Connected = 5,
    HomeNetwork = 6,
    Denied = 7,
    Roaming = 8,
};

/// What a modem measures of the cell that serves it, as far as it tells. A plain value.
struct RadioSignal
{
    std::optional<double> rsrp; ///< reference signal received power, dBm
    std::optional<double> rsrq; ///< reference signal received quality, dB
    std::optional<double> snr;  ///< signal to noise, dB
    QString band;               ///< "B20", "n78"; empty when not known

    bool operator==(const RadioSignal &other) const = default;
};

/// The state of the cellular, WLAN and wired connection at one moment. A plain value; unknown texts
/// are empty.
struct NetworkState
{
    /// How one mode is connected.
    struct Link
    {
        NetworkStatus status = NetworkStatus::NoNetworkAvailable;
        std::optional<int> signal; ///< percent
        QString name;              ///< of the operator or the WLAN

        bool operator==(const Link &other) const = default;
    };

    /// That of the connection which traffic leaves by.
    NetworkMode mode = NetworkMode::Unknown;
    /// What each mode does; one that is not listed has no network. At most one is a mode of the
    /// modem, which keeps its link while traffic leaves by another.
    QMap<NetworkMode, Link> links;

    QString mcc; ///< of the network
    QString mnc;
    QString homeMcc; ///< of the SIM
    QString homeMnc;
    std::optional<qint64> cell; ///< up to 36 bits (5G)
    std::optional<int> lac;     ///< TAC with LTE and 5G

    /// The codes of the network are not known and may yet come: there is a modem, or nobody has
    /// answered yet whether there is one. A modem that finds no network never tells them, so
    /// whoever waits sets a limit.
    bool codesPending = false;

    /// Of the modem, whatever traffic leaves by.
    // NOLINTNEXTLINE(readability-redundant-member-init): a state may be written without it
    RadioSignal radio{};

    bool hasCodes() const { return !mcc.isEmpty() && !mnc.isEmpty(); }

    Link link(NetworkMode of) const { return links.value(of); }
    Link current() const { return link(mode); }
    /// The link of the modem; nothing without one.
    std::optional<Link> mobile() const
    {
        for (auto each = links.cbegin(); each != links.cend(); ++each) {
            if (isMobile(each.key())) {
                return each.value();
            }
        }
        return std::nullopt;
    }

    bool operator==(const NetworkState &other) const = default;
};

} // namespace velometer
