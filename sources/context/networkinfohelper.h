#pragma once

#include "platform/networkinfosource.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace velometer {

class Platform;

/// The current state of the cellular network and of WLAN as texts; unknown values are empty.
/// Follows the platform's signals and asks for cell and location area once a second, from
/// construction on. Texts of the platform are cut to 256 characters and lose their control
/// characters. Main thread only; nothing blocks, nothing fails.
class NetworkInfoHelper : public QObject
{
    Q_OBJECT

public:
    /// Makes its own source from @p platform, which outlives the helper.
    NetworkInfoHelper(Platform &platform, QObject *parent);
    ~NetworkInfoHelper() override;

    void startService();
    void stopService();

    QString getNetworkcell() const; ///< cell id in decimal
    QString getNetworklac() const;  ///< location area code in decimal
    QString getHomemcc() const;
    QString getHomemnc() const;
    QString getMcc() const;
    QString getMnc() const;
    QString getNetworkstatus() const; ///< "HomeNetwork", "Roaming", "Connected" ...
    QString getNetworksignal() const; ///< cellular signal, percent; "-1" when not known
    QString getWlansignal() const;    ///< WLAN signal, percent; empty or "-1" when not known
    QString getNetworkname() const;

    /// "WlanMode" while a WLAN is connected, else the mobile mode. GSM and WCDMA are told apart by
    /// the length of the cell id, which is more reliable than the mode that platforms report.
    QString getNetworkmode() const;

    /// Whether the network says so; the operator codes are only logged. Writes two log lines.
    bool roaming() const;

private Q_SLOTS:
    void currentMobileCountryCodeChanged(const QString &code);
    void currentMobileNetworkCodeChanged(const QString &code);
    void networkModeChanged(NetworkMode mode);
    void networkStatusChanged(NetworkMode mode, NetworkStatus status);
    void networkSignalStrengthChanged(NetworkMode mode, int strength);
    void networkNameChanged(NetworkMode mode, const QString &name);
    void timerEvent();

private:
    using QObject::timerEvent;

    std::unique_ptr<NetworkInfoSource> netinfo;
    NetworkMode currentmode = NetworkMode::Unknown;
    QTimer timer{this}; ///< polls cell id and location area code

    // Of the last logged status change.
    NetworkMode oldmode = NetworkMode::Unknown;
    NetworkStatus oldstatus = NetworkStatus::Undefined;

    QString networkcell;
    QString networklac;
    QString homemcc;
    QString homemnc;
    QString mcc;
    QString mnc;
    QString networkmode;
    QString networkstatus;
    QString networksignal;
    QString wlansignal;
    QString networkname;
    bool wlanconnectiondetected = false;
    bool servicestarted = false;
};

} // namespace velometer
