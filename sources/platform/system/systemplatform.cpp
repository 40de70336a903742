#include "platform/system/systemplatform.h"

#include "platform/machine/machinedeviceinfosource.h"
#include "platform/modem/modemchoice.h"
#include "platform/modemmanager/modemmanagerclient.h"
#include "platform/networkmanager/networkmanagersession.h"
#include "platform/ofono/ofonoclient.h"
#include "platform/position/systempositionsource.h"
#include "platform/system/devicenetworkinfosource.h"

#include <utility>

namespace velometer {

namespace {

using Missing = PlatformFacts::Missing;
using Metered = NetworkManagerState::Metered;
using Presence = BusService::Presence;

void takeMetered(Metered metered, PlatformFacts *facts)
{
    switch (metered) {
    case Metered::Unknown: return;
    case Metered::Yes:
    case Metered::No: break;
    case Metered::GuessYes:
    case Metered::GuessNo: facts->meteredGuessed = true; break;
    }
    facts->metered = metered == Metered::Yes || metered == Metered::GuessYes;
}

} // namespace

SystemPlatform::SystemPlatform(const QDBusConnection &bus, MachineNetworkLookUp lookUpNow)
    : lookUp(std::move(lookUpNow))
    , modem(std::make_unique<ModemChoice>(std::make_unique<ModemManagerClient>(bus),
                                          std::make_unique<OfonoClient>(bus)))
    , network(bus)
{
    connect(modem.get(), &ModemClient::completed, this, &SystemPlatform::tellCompletion);
    connect(&network, &NetworkManagerClient::completed, this, &SystemPlatform::tellCompletion);
}

SystemPlatform::~SystemPlatform() = default;

std::unique_ptr<PositionSource> SystemPlatform::createPositionSource()
{
    return std::make_unique<SystemPositionSource>();
}

std::unique_ptr<NetworkInfoSource> SystemPlatform::createNetworkInfoSource()
{
    return std::make_unique<DeviceNetworkInfoSource>(*modem, network, lookUp);
}

std::unique_ptr<DeviceInfoSource> SystemPlatform::createDeviceInfoSource()
{
    return std::make_unique<MachineDeviceInfoSource>(modem.get());
}

std::unique_ptr<NetworkSession> SystemPlatform::createNetworkSession()
{
    return std::make_unique<NetworkManagerSession>(network, *modem, lookUp);
}

bool SystemPlatform::isComplete() const
{
    return modem->isComplete() && network.isComplete();
}

PlatformFacts SystemPlatform::facts() const
{
    PlatformFacts facts;
    facts.modemService = modem->state().service;
    facts.rsrp = modem->state().radio.rsrp;
    facts.rsrq = modem->state().radio.rsrq;
    facts.snr = modem->state().radio.snr;
    const NetworkManagerState &state = network.state();
    takeMetered(state.metered, &facts);
    facts.connectivity = state.connectivity;
    facts.ssid = state.ssid;

    if (modem->presence() == Presence::NoBus) {
        facts.missing.append(Missing::SystemBus);
    } else if (!modem->isComplete() || modem->presence() == Presence::Silent) {
        facts.missing.append(Missing::ModemServiceAnswer);
    } else if (modem->presence() == Presence::Absent) {
        facts.missing.append(Missing::ModemService);
    } else if (modem->state().path.isEmpty()) {
        facts.missing.append(Missing::Modem);
    }

    if (network.presence() != Presence::NoBus) {
        if (!network.isComplete() || network.presence() == Presence::Silent) {
            facts.missing.append(Missing::NetworkManagerAnswer);
        } else if (network.presence() == Presence::Absent) {
            facts.missing.append(Missing::NetworkManager);
        } else if (!state.activated) {
            facts.missing.append(Missing::PrimaryConnection);
        }
    }
    return facts;
}

} // namespace velometer
