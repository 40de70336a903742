#pragma once

#include "platform/networkinfosource.h"

namespace velometer {

class ScriptState;

/// The network of the moment in a script.
class ScriptedNetworkInfoSource : public NetworkInfoSource
{
    Q_OBJECT

public:
    /// @p scripted is borrowed and outlives the source.
    explicit ScriptedNetworkInfoSource(const ScriptState &scripted, QObject *parent = nullptr);
};

} // namespace velometer
