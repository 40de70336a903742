#pragma once

#include "platform/modem/modemclient.h"

#include <memory>

namespace velometer {

/// The modem of whichever service has one: the first service's, else the second's. Two services
/// that fight over one modem are a mistake of the installation; then the first one is believed.
class ModemChoice final : public ModemClient
{
    Q_OBJECT

public:
    ModemChoice(std::unique_ptr<ModemClient> firstService,
                std::unique_ptr<ModemClient> secondService, QObject *parent = nullptr);

    /// That of the service whose modem it is; without a modem that of the first service, unless
    /// only the second one is there.
    BusService::Presence presence() const override { return shownPresence; }
    bool isComplete() const override { return complete; }
    const ModemState &state() const override { return shown; }

private:
    const ModemClient &chosen() const;
    void refresh();

    const std::unique_ptr<ModemClient> first;
    const std::unique_ptr<ModemClient> second;
    ModemState shown;
    BusService::Presence shownPresence = BusService::Presence::Asking;
    bool complete = false;
};

} // namespace velometer
