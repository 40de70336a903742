#pragma once

#include "platform/networkinfosource.h"
#include "platform/system/systeminterfaces.h"

#include <QTimer>

namespace velometer {

/// WLAN or Ethernet by the interface that traffic leaves by, looked up every two seconds. A mobile
/// interface shows as connected in an unknown mode: which radio, operator and cell it uses is known
/// to the modem alone. No signal strengths and no names.
class SystemNetworkInfoSource final : public NetworkInfoSource
{
    Q_OBJECT

public:
    explicit SystemNetworkInfoSource(SystemNetworkLookUp lookUpNow = lookUpSystemNetwork,
                                     QObject *parent = nullptr);

    qint64 cellId() const override;
    int locationAreaCode() const override;
    QString homeMobileCountryCode() const override;
    QString homeMobileNetworkCode() const override;
    QString currentMobileCountryCode() const override;
    QString currentMobileNetworkCode() const override;
    NetworkMode currentMode() const override;
    NetworkStatus networkStatus(NetworkMode mode) const override;
    int networkSignalStrength(NetworkMode mode) const override;
    QString networkName(NetworkMode mode) const override;

private:
    void refresh();

    const SystemNetworkLookUp lookUp;
    QTimer timer{this};
    NetworkMode mode = NetworkMode::Unknown;
    bool connected = false;
};

} // namespace velometer
