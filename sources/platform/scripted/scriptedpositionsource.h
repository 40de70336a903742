#pragma once

#include "platform/positionsource.h"

namespace velometer {

class ScriptState;

/// The positions and satellites of a script, as they come, while started; the update interval
/// changes nothing.
class ScriptedPositionSource : public PositionSource
{
    Q_OBJECT

public:
    /// @p scripted is borrowed and outlives the source.
    explicit ScriptedPositionSource(const ScriptState &scripted, QObject *parent = nullptr);

    QString name() const override;
    bool hasPosition() const override;
    bool hasSatellites() const override;
    Position lastKnownPosition() const override;
    int minimumUpdateInterval() const override;
    void setUpdateInterval(int ms) override;
    void startPosition() override;
    void stopPosition() override;
    void startSatellites() override;
    void stopSatellites() override;

private:
    const ScriptState &state;
    bool positionRunning = false;
    bool satellitesRunning = false;
};

} // namespace velometer
