#include "platform/modem/modemchoice.h"

#include <utility>

ModemChoice::ModemChoice(std::unique_ptr<ModemClient> firstService,
                         std::unique_ptr<ModemClient> secondService, QObject *parent)
    : ModemClient(parent)
    , first(std::move(firstService))
    , second(std::move(secondService))
{
    complete = isComplete();
    for (const ModemClient *each : {first.get(), second.get()}) {
        connect(each, &ModemClient::changed, this, [this] {
            Q_EMIT changed();
            finish();
        });
        connect(each, &ModemClient::completed, this, &ModemChoice::finish);
    }
}

const ModemClient &ModemChoice::chosen() const
{
    if (!first->state().path.isEmpty())
        return *first;
    const bool other =
        !second->state().path.isEmpty() || (first->presence() != BusService::Presence::Present &&
                                            second->presence() == BusService::Presence::Present);
    return other ? *second : *first;
}

BusService::Presence ModemChoice::presence() const
{
    return chosen().presence();
}

bool ModemChoice::isComplete() const
{
    // A modem that has told all about itself need not wait for a service that is stuck.
    const auto hasModem = [](const ModemClient &client) {
        return client.isComplete() && !client.state().path.isEmpty();
    };
    return complete || hasModem(*first) || (first->isComplete() && second->isComplete());
}

const ModemState &ModemChoice::state() const
{
    return chosen().state();
}

void ModemChoice::finish()
{
    if (complete || !isComplete())
        return;
    complete = true;
    Q_EMIT completed();
}
