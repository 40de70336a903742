#include "platform/scripted/scriptstate.h"

#include "utils/utils.h"

#include <utility>

namespace velometer {

namespace {

QList<QGeoSatelliteInfo> satellites(const QList<int> &ids)
{
    QList<QGeoSatelliteInfo> list;
    for (int id : ids) {
        QGeoSatelliteInfo satellite;
        satellite.setSatelliteIdentifier(id);
        list.append(satellite);
    }
    return list;
}

} // namespace

ScriptState::ScriptState(PlatformScript toPlay, QObject *parent)
    : QObject(parent)
    , playing(std::move(toPlay))
{
    elapsed.start();
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, &ScriptState::playOn);
    playOn();
}

void ScriptState::playOn()
{
    advanceTo(std::chrono::milliseconds(elapsed.elapsed()));
}

void ScriptState::advanceTo(std::chrono::milliseconds now)
{
    // A slot may run an event loop of its own: the next line waits until this one is done.
    timer.stop();
    while (next < playing.events.size() && playing.events.at(next).at <= now) {
        apply(playing.events.at(next++));
    }
    if (next < playing.events.size()) {
        const std::chrono::milliseconds due(playing.events.at(next).at.count() - elapsed.elapsed());
        timer.start(qMax(due, std::chrono::milliseconds(0)));
    }
}

NetworkStatus ScriptState::statusOf(NetworkMode of) const
{
    return of == mode ? status : NetworkStatus::NoNetworkAvailable;
}

void ScriptState::apply(const ScriptEvent &event)
{
    applyPosition(event);
    applyNetwork(event);
    if (event.session) {
        session = *event.session;
        Q_EMIT sessionChanged();
    }
}

void ScriptState::applyPosition(const ScriptEvent &event)
{
    if (event.position) {
        position = *event.position;
        if (!position.timestamp().isValid()) {
            position.setTimestamp(QDateTime::fromMSecsSinceEpoch(Utils::getTimeInMs()));
        }
        Q_EMIT positionUpdated(position);
    }
    if (event.positionTimeout) {
        Q_EMIT updateTimeout();
    }
    if (event.satellitesInUse) {
        Q_EMIT satellitesInUseUpdated(satellites(*event.satellitesInUse));
    }
    if (event.satellitesInView) {
        Q_EMIT satellitesInViewUpdated(satellites(*event.satellitesInView));
    }
}

void ScriptState::applyNetwork(const ScriptEvent &event)
{
    // All values first: who is told of one change may ask for the others.
    const NetworkMode oldMode = mode;
    mode = event.mode.value_or(mode);
    const bool otherMode = mode != oldMode;
    if (otherMode) {
        status = NetworkStatus::Undefined;
        signal = -1;
        name.clear();
    }
    status = event.status.value_or(status);
    signal = event.signal.value_or(signal);
    name = event.name.value_or(name);
    mcc = event.mcc.value_or(mcc);
    mnc = event.mnc.value_or(mnc);
    homeMcc = event.homeMcc.value_or(homeMcc);
    homeMnc = event.homeMnc.value_or(homeMnc);
    cell = event.cell.value_or(cell);
    lac = event.lac.value_or(lac);
    metered = event.metered.value_or(metered);

    if (otherMode) {
        Q_EMIT modeChanged(mode);
        Q_EMIT statusChanged(oldMode, statusOf(oldMode));
    }
    if (otherMode || event.status) {
        Q_EMIT statusChanged(mode, status);
    }
    if (otherMode || event.signal) {
        Q_EMIT signalChanged(mode, signal);
    }
    if (otherMode || event.name) {
        Q_EMIT nameChanged(mode, name);
    }
    if (event.mcc) {
        Q_EMIT mccChanged(mcc);
    }
    if (event.mnc) {
        Q_EMIT mncChanged(mnc);
    }
}

} // namespace velometer
