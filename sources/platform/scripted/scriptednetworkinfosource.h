#pragma once

#include "platform/networkinfosource.h"

namespace velometer {

class ScriptState;

/// The network of the moment in a script.
class ScriptedNetworkInfoSource : public NetworkInfoSource
{
    Q_OBJECT

public:
    /// @p scripted is borrowed and outlives the source.
    explicit ScriptedNetworkInfoSource(const ScriptState &scripted, QObject *parent = nullptr);

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
    const ScriptState &state;
};

} // namespace velometer
