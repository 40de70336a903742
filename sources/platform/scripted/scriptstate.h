#pragma once

#include "platform/positionsource.h"
#include "platform/scripted/platformscript.h"
#include "utils/clocktimer.h"

#include <QObject>

namespace velometer {

/// The device that a script describes, at the present moment of the script. What happens at 0 ms
/// holds from construction on; the rest follows by the clock. The sources of the scripted platform
/// show it.
class ScriptState : public QObject
{
    Q_OBJECT

public:
    explicit ScriptState(PlatformScript toPlay, QObject *parent = nullptr);

    const PlatformScript &script() const { return playing; }

    // As the last applied lines left it. A script tells of the current mode alone.
    QGeoPositionInfo position;
    Satellites satellites;
    NetworkState network;
    ScriptEvent::Metered metered;
    ScriptEvent::Session session;

Q_SIGNALS:
    void positionUpdated(const QGeoPositionInfo &info);
    void updateTimeout();
    void satellitesUpdated(const Satellites &now);
    void networkChanged();
    void sessionChanged();

private:
    /// Applies every line whose time has come and that was not applied yet.
    void playOn();
    void apply(const ScriptEvent &event);
    void applyPosition(const ScriptEvent &event);
    void applyNetwork(const ScriptEvent &event);
    bool willTellCodes() const;

    const PlatformScript playing;
    const qint64 begunUs; ///< by Clock::steadyUs
    ClockTimer timer;
    qsizetype next = 0; ///< the first line not yet applied
};

} // namespace velometer
