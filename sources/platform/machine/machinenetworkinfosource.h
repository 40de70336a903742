#pragma once

#include "platform/machine/machinenetwork.h"
#include "platform/networkinfosource.h"
#include "utils/clocktimer.h"

namespace velometer {

/// WLAN or Ethernet by the interface that traffic leaves by, looked up every two seconds. A mobile
/// interface shows as connected in an unknown mode: which radio, operator and cell it uses is known
/// to the modem alone. No signal strengths and no names.
class MachineNetworkInfoSource final : public NetworkInfoSource
{
    Q_OBJECT

public:
    explicit MachineNetworkInfoSource(MachineNetworkLookUp lookUpNow = lookUpMachineNetwork,
                                      QObject *parent = nullptr);

private:
    void refresh();

    const MachineNetworkLookUp lookUp;
    ClockTimer timer;
};

} // namespace velometer
