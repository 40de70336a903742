#pragma once

#include <QGeoPositionInfo>
#include <QGeoSatelliteInfo>
#include <QList>
#include <QObject>

/// Where the device is, and which satellites tell it so. A device may have either, both or neither;
/// what is missing simply never signals. Main thread only; nothing blocks.
class PositionSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual bool hasPosition() const = 0;
    virtual bool hasSatellites() const = 0;

    /// The last position the device remembers from before; invalid when there is none.
    virtual QGeoPositionInfo lastKnownPosition() const = 0;
    /// Shortest interval between updates the device can do, ms; 0 when it does not say.
    virtual int minimumUpdateInterval() const = 0;
    /// Asks for updates by all positioning methods, this often.
    virtual void setUpdateInterval(int ms) = 0;

    virtual void startPosition() = 0;
    virtual void stopPosition() = 0;
    virtual void startSatellites() = 0;
    virtual void stopSatellites() = 0;

Q_SIGNALS:
    void positionUpdated(const QGeoPositionInfo &info);
    /// No fix within the source's own time-out.
    void updateTimeout();
    void satellitesInUseUpdated(const QList<QGeoSatelliteInfo> &satellites);
    void satellitesInViewUpdated(const QList<QGeoSatelliteInfo> &satellites);
};
