#pragma once

#include "platform/networksession.h"

namespace velometer {

class ScriptState;

/// A session that opens, fails and gets lost as a script says. There is one configuration, named
/// after the network of the moment.
class ScriptedNetworkSession : public NetworkSession
{
    Q_OBJECT

public:
    /// @p scripted is borrowed and outlives the session.
    explicit ScriptedNetworkSession(const ScriptState &scripted, QObject *parent = nullptr);

    QList<NetworkConfiguration> allConfigurations() const override;
    NetworkConfiguration defaultConfiguration() const override;
    bool canStartAndStopInterfaces() const override;
    bool isOpen() const override;
    void open() override;

private:
    void answer();
    void sessionChanged();

    const ScriptState &state;
    bool sessionOpen = false;
};

} // namespace velometer
