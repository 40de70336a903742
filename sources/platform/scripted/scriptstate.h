#pragma once

#include "platform/scripted/platformscript.h"

#include <QElapsedTimer>
#include <QGeoSatelliteInfo>
#include <QObject>
#include <QTimer>

namespace velometer {

/// The device that a script describes, at the present moment of the script. What happens at 0 ms
/// holds from construction on; the rest follows in real time. The sources of the scripted platform
/// show it.
class ScriptState : public QObject
{
    Q_OBJECT

public:
    explicit ScriptState(PlatformScript toPlay, QObject *parent = nullptr);

    /// Applies every line up to and including @p now that was not applied yet.
    void advanceTo(std::chrono::milliseconds now);

    const PlatformScript &script() const { return playing; }

    // As the last applied lines left it. Status, signal and name belong to the current mode.
    QGeoPositionInfo position;
    NetworkMode mode = NetworkMode::Unknown;
    NetworkStatus status = NetworkStatus::Undefined;
    int signal = -1;
    QString name;
    QString mcc;
    QString mnc;
    QString homeMcc;
    QString homeMnc;
    int cell = -1;
    int lac = -1;
    ScriptEvent::Metered metered;
    ScriptEvent::Session session;

    NetworkStatus statusOf(NetworkMode of) const;

Q_SIGNALS:
    void positionUpdated(const QGeoPositionInfo &info);
    void updateTimeout();
    void satellitesInUseUpdated(const QList<QGeoSatelliteInfo> &satellites);
    void satellitesInViewUpdated(const QList<QGeoSatelliteInfo> &satellites);
    void mccChanged(const QString &code);
    void mncChanged(const QString &code);
    void modeChanged(NetworkMode newMode);
    void statusChanged(NetworkMode of, NetworkStatus newStatus);
    void signalChanged(NetworkMode of, int strength);
    void nameChanged(NetworkMode of, const QString &newName);
    void sessionChanged();

private:
    void playOn();
    void apply(const ScriptEvent &event);
    void applyPosition(const ScriptEvent &event);
    void applyNetwork(const ScriptEvent &event);

    const PlatformScript playing;
    QElapsedTimer elapsed;
    QTimer timer;
    qsizetype next = 0; ///< the first line not yet applied
};

} // namespace velometer
