#pragma once

#include "platform/networkinfosource.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace velometer {

class Platform;

/// The current state of the cellular network and of WLAN, as texts and as a value; unknown texts
/// are empty. Texts of the platform are cut to 256 characters and lose their control characters.
/// Main thread only; nothing blocks, nothing fails.
class NetworkInfoHelper : public QObject
{
    Q_OBJECT

public:
    /// Makes its own source from @p platform, which outlives the helper.
    NetworkInfoHelper(Platform &platform, QObject *parent);
    ~NetworkInfoHelper() override;

    // The test's start and end change nothing here.
    void startService() {}
    void stopService() {}

    /// As of now, with clean texts.
    const NetworkState &state() const { return current; }

    QString getNetworkcell() const; ///< cell id in decimal
    QString getNetworklac() const;  ///< location area code in decimal
    QString getHomemcc() const { return current.homeMcc; }
    QString getHomemnc() const { return current.homeMnc; }
    QString getMcc() const { return current.mcc; }
    QString getMnc() const { return current.mnc; }
    QString getNetworkstatus() const; ///< "HomeNetwork", "Roaming", "Connected" ...
    /// Percent: of the modem, else of whatever else is connected but a WLAN.
    std::optional<int> signal() const;
    /// signal(), "-1" when not known; empty on a WLAN without a modem.
    QString getNetworksignal() const;
    QString getWlansignal() const; ///< WLAN signal, percent; empty or "-1" when not known
    QString getNetworkname() const { return current.current().name; }
    /// "WlanMode" while a WLAN is connected, else the mobile mode. GSM and WCDMA are told apart by
    /// the length of the cell id, where there is one: it is more reliable than what modems say.
    QString getNetworkmode() const;

    /// Whether the network says so; the operator codes are only logged. Writes two log lines.
    bool roaming() const;

Q_SIGNALS:
    /// state() is another than before.
    void changed();

private:
    void take();
    void log(const NetworkState &before, bool first) const;

    std::unique_ptr<NetworkInfoSource> source;
    NetworkState current;
};

} // namespace velometer
