#pragma once

#include <QObject>
#include <QString>

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

/// The state of the cellular, WLAN and wired connection. Values are as of now and cheap to ask;
/// unknown texts are empty, unknown numbers -1. Main thread only; nothing blocks.
class NetworkInfoSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual qint64 cellId() const = 0;        ///< up to 36 bits (5G), -1 when unknown
    virtual int locationAreaCode() const = 0; ///< LAC or TAC, -1 when unknown
    virtual QString homeMobileCountryCode() const = 0;
    virtual QString homeMobileNetworkCode() const = 0;
    virtual QString currentMobileCountryCode() const = 0;
    virtual QString currentMobileNetworkCode() const = 0;
    virtual NetworkMode currentMode() const = 0;
    virtual NetworkStatus networkStatus(NetworkMode mode) const = 0;
    virtual int networkSignalStrength(NetworkMode mode) const = 0; ///< percent, -1 when unknown
    virtual QString networkName(NetworkMode mode) const = 0;

Q_SIGNALS:
    /// The home codes are others: a modem may answer late, or get another SIM.
    void homeOperatorChanged();
    /// Cell or location area are known now and were not: whoever looks at times need not wait.
    void cellFound();
    void currentMobileCountryCodeChanged(const QString &code);
    void currentMobileNetworkCodeChanged(const QString &code);
    void networkModeChanged(NetworkMode mode);
    void networkStatusChanged(NetworkMode mode, NetworkStatus status);
    void networkSignalStrengthChanged(NetworkMode mode, int strength);
    void networkNameChanged(NetworkMode mode, const QString &name);
};

} // namespace velometer
