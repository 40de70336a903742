#pragma once

#include "figures/mylocation.h"
#include "platform/positionsource.h"
#include "utils/clocktimer.h"

#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace velometer {

class DoubleLocation;
class Platform;

/// The latest position as display texts, and every position of the running test as a sample.
///
/// Positioning runs from startService() until 30 s after stopService(), so that tests in a row keep
/// a warm fix; construction starts it once for 30 s to get a first one early. Between tests
/// positions move the texts but add no samples. A device without positioning keeps the texts of "no
/// position": latitude and longitude "0.0", everything unknown "-1". Numbers are texts of six
/// significant digits. Main thread only; nothing blocks, nothing is reported; why there is no
/// position stands in the diagnostic log.
class LocationHelper : public QObject
{
    Q_OBJECT

public:
    /// Makes its own source from @p platform, which outlives the helper.
    LocationHelper(Platform &platform, QObject *parent);
    ~LocationHelper() override;

    /// A test begins: positions on, samples of the last test forgotten.
    void startService();
    /// The test is over: no more samples, positions off after 30 s.
    void stopService();

    /// Positions stay on between tests, without samples, until it is false again.
    void keepOn(bool wanted);

    /// The latest position; nothing before the first one, and after a time-out.
    const std::optional<Position> &position() const { return latest; }
    /// position() with the digits that the texts have, empty when there is none: what is computed
    /// of it is what a reader of the report computes of the texts in it.
    Position rounded() const;

    QString getCordValid() const; ///< "Valid", "Not valid" or "Timeout"
    QString getPosType() const;   ///< "3DCord", "2DCord" or "Invalid"
    QString getLatitude() const;  ///< degrees; "0.0" when there is none, "0" on the equator
    QString getLongitude() const;
    QString getAltitude() const;     ///< metres, "-1" when not known
    QString getAccuracyHor() const;  ///< metres, "-1" when not known
    QString getAccuracyVert() const; ///< metres, "-1" when not known
    QString getTimestamp() const;    ///< ms since the epoch; not a number after a time-out
    QString getGroundSpeed() const;  ///< m/s, "-1" when not known
    QString getVertSpeed() const;    ///< m/s, "-1" when not known
    QString getDirection() const;    ///< degrees from north
    QString getMagneticVar() const;  ///< degrees
    QString getSatInUse() const;     ///< satellite numbers, each followed by a blank
    QString getSatInView() const;    ///< satellite numbers, each followed by a blank

    /// 2 with a three-dimensional fix, 1 with another position, 0 with none.
    int getLocationStatus() const;
    bool hasGPSLock() const;

    /// rounded() with the numbers that stand for the unknown in the texts; never null.
    std::unique_ptr<DoubleLocation> getDoubleLocation() const;

    /// The samples since the last startService(), oldest first; changes as positions arrive.
    const QList<MyLocation> &getAllLocations() const;

    /// What tells the positions, for people; empty when nothing does.
    QString getSourceName() const;
    /// Why there are no positions, as of now.
    PositionSource::Problem getProblem() const;
    /// False where positions may come, but never satellites.
    bool hasSatelliteSource() const;

Q_SIGNALS:
    /// position() has been told, or getProblem() is another than before.
    void changed();

private Q_SLOTS:
    void positionUpdated();
    void timeoutDisableGPS();
    void satellitesUpdated();

private:
    void switchOn();
    void clearPosition();
    void keepSample(const Position &here);
    void logProblem() const;

    std::unique_ptr<PositionSource> source;
    ClockTimer timeoutTimer;

    std::optional<Position> latest;
    bool timedOut = false;
    QString timeWithoutFix; ///< stands for the time while there is no position
    Satellites sky;
    Satellites logged; ///< of this test

    bool servicestarted = false;     ///< a test wants positions now
    bool keptOn = false;             ///< somebody wants positions between tests too
    bool locationcollecting = false; ///< the sources are running
    QList<MyLocation> myLocations;
};

} // namespace velometer
