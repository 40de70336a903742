#pragma once

#include "platform/positionsource.h"
#include "utils/clocktimer.h"

#include <QGeoPositionInfoSource>

class QGeoSatelliteInfoSource;

namespace velometer {

/// Qt's default sources of positions and satellites; what they cannot do simply never signals.
/// Where that is the system's location service, it is asked whether it is there first, for two
/// seconds at most: Qt's plug-in would wait for its answers. Their plug-ins' complaints about
/// missing receivers and services and about refusals are normal on most machines; problem() tells
/// them, so they are kept from the console, unless debug output of "qt.positioning" is switched on.
class SystemPositionSource : public PositionSource
{
    Q_OBJECT

public:
    explicit SystemPositionSource(QObject *parent = nullptr);

    /// Name of the plug-in that tells the position; empty when there is none.
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
    void takeError(QGeoPositionInfoSource::Error error);
    void askLocationService();
    void startUpdates();

    bool wanted = false;   ///< the user of this source wants positions
    bool running = false;  ///< and Qt's source looks for them
    int interval = 0;      ///< ms
    ClockTimer retryTimer; ///< asks a service again that has not answered
    // Children; null where the platform has none.
    QGeoPositionInfoSource *positionReader = nullptr;
    QGeoSatelliteInfoSource *satelliteReader = nullptr;
};

} // namespace velometer
