#include "platform/scripted/scriptednetworkinfosource.h"

#include "platform/scripted/scriptstate.h"

namespace velometer {

ScriptedNetworkInfoSource::ScriptedNetworkInfoSource(const ScriptState &scripted, QObject *parent)
    : NetworkInfoSource(parent)
{
    const auto take = [this, &scripted] { setState(scripted.network); };
    take();
    connect(&scripted, &ScriptState::networkChanged, this, take);
}

} // namespace velometer
