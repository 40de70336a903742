#include "platform/scripted/scriptstate.h"

#include "utils/clock.h"
#include "utils/utils.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace velometer {

ScriptState::ScriptState(PlatformScript toPlay, QObject *parent)
    : QObject(parent)
    , playing(std::move(toPlay))
    , begunUs(Clock::current().steadyUs())
{
    network.links[network.mode].status = NetworkStatus::Undefined;
    network.codesPending = willTellCodes();
    connect(&timer, &ClockTimer::timeout, this, &ScriptState::playOn);
    playOn();
}

void ScriptState::playOn()
{
    using std::chrono::milliseconds;
    const auto played = [this] {
        const std::chrono::microseconds since(Clock::current().steadyUs() - begunUs);
        return std::chrono::floor<milliseconds>(since);
    };
    // A slot may run an event loop of its own: the next line waits until this one is done.
    timer.stop();
    const milliseconds now = played();
    while (next < playing.events.size() && playing.events.at(next).at <= now) {
        apply(playing.events.at(next++));
    }
    if (next < playing.events.size()) {
        timer.start(std::max(playing.events.at(next).at - played(), milliseconds(0)));
    }
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
    if (event.satellitesInUse || event.satellitesInView) {
        satellites.inUse = event.satellitesInUse ? event.satellitesInUse : satellites.inUse;
        satellites.inView = event.satellitesInView ? event.satellitesInView : satellites.inView;
        Q_EMIT satellitesUpdated(satellites);
    }
}

void ScriptState::applyNetwork(const ScriptEvent &event)
{
    const auto take = [](auto &kept, const auto &told) { kept = told.value_or(kept); };
    const auto takeNumber = [](auto &kept, const auto &told) {
        if (told) {
            kept = told;
            if (*told < 0) {
                kept.reset();
            }
        }
    };
    NetworkState::Link link = network.links.take(network.mode);
    if (event.mode && *event.mode != network.mode) {
        network.mode = *event.mode;
        link = {NetworkStatus::Undefined, {}, {}};
    }
    take(link.status, event.status);
    takeNumber(link.signal, event.signal);
    take(link.name, event.name);
    network.links[network.mode] = link;
    take(network.mcc, event.mcc);
    take(network.mnc, event.mnc);
    take(network.homeMcc, event.homeMcc);
    take(network.homeMnc, event.homeMnc);
    takeNumber(network.cell, event.cell);
    takeNumber(network.lac, event.lac);
    take(network.radio.rsrp, event.rsrp);
    take(network.radio.rsrq, event.rsrq);
    take(network.radio.snr, event.snr);
    take(network.radio.band, event.band);
    network.codesPending = !network.hasCodes() && willTellCodes();
    take(metered, event.metered);
    Q_EMIT networkChanged();
}

// A script whose modem tells its codes late.
bool ScriptState::willTellCodes() const
{
    return std::any_of(playing.events.cbegin() + next, playing.events.cend(),
                       [](const ScriptEvent &event) { return event.mcc || event.mnc; });
}

} // namespace velometer
