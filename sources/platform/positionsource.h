#pragma once

#include "platform/position.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>
#include <utility>

namespace velometer {

/// Satellites by the numbers that the receiver gives them, of all systems together; a list that it
/// has not told is not there. A plain value.
struct Satellites
{
    std::optional<QList<int>> inUse; ///< the position is made of them
    std::optional<QList<int>> inView;

    bool operator==(const Satellites &other) const = default;
};

/// Where the device is, and which satellites tell it so. A device may have either, both or neither;
/// what is missing never signals, and problem() says why there are no positions. Main thread only;
/// nothing blocks.
class PositionSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Why there are no positions.
    enum class Problem {
        None,
        NoSource,    ///< nothing on this device tells positions
        Refused,     ///< the system does not allow them to this program or this user
        Unavailable, ///< the service, the receiver or the file cannot be reached
        NoFix,       ///< all is well but the receiver finds no position
    };

    /// What tells the positions, for people: "geoclue2", "gpsd localhost:2947"; empty when nothing
    /// does.
    virtual QString name() const = 0;
    /// As of now; a position ends every problem.
    Problem problem() const { return currentProblem; }

    virtual bool hasPosition() const = 0;
    virtual bool hasSatellites() const = 0;

    /// The last position the device remembers, also from before this source was made; without a
    /// place when there is none.
    virtual Position lastKnownPosition() const = 0;
    /// What the receiver told last to this source; nothing before that, and after a time-out.
    const std::optional<Position> &position() const { return told; }
    /// What the receiver told last to this source.
    const Satellites &satellites() const { return sky; }
    /// Shortest interval between updates the device can do, ms; 0 when it does not say.
    virtual int minimumUpdateInterval() const = 0;
    /// Asks for updates by all positioning methods, this often.
    virtual void setUpdateInterval(int ms) = 0;

    virtual void startPosition() = 0;
    virtual void stopPosition() = 0;
    virtual void startSatellites() = 0;
    virtual void stopSatellites() = 0;

Q_SIGNALS:
    /// The receiver has told a position, the same as before perhaps, or has found none within its
    /// own time-out: then position() is nothing.
    void positionUpdated();
    /// satellites() has been told, the same as before perhaps. What is told together is signalled
    /// once.
    void satellitesUpdated();
    void problemChanged();

protected:
    /// A position ends every problem.
    void setPosition(const QGeoPositionInfo &info)
    {
        told = Position::from(info);
        setProblem(Problem::None);
        Q_EMIT positionUpdated();
    }
    void setTimedOut()
    {
        told.reset();
        Q_EMIT positionUpdated();
    }
    void setSatellites(Satellites now)
    {
        sky = std::move(now);
        Q_EMIT satellitesUpdated();
    }
    void setProblem(Problem now)
    {
        if (now == currentProblem) {
            return;
        }
        currentProblem = now;
        Q_EMIT problemChanged();
    }

private:
    Problem currentProblem = Problem::None;
    std::optional<Position> told;
    Satellites sky;
};

} // namespace velometer
