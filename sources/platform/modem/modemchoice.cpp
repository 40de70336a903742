#include "platform/modem/modemchoice.h"

#include <utility>

namespace velometer {

ModemChoice::ModemChoice(std::unique_ptr<ModemClient> firstService,
                         std::unique_ptr<ModemClient> secondService, QObject *parent)
    : ModemClient(parent)
    , first(std::move(firstService))
    , second(std::move(secondService))
{
    // Nobody listens yet: what is known from the start is not signalled.
    refresh();
    for (const ModemClient *each : {first.get(), second.get()}) {
        connect(each, &ModemClient::changed, this, &ModemChoice::refresh);
        connect(each, &ModemClient::completed, this, &ModemChoice::refresh);
    }
}

const ModemClient &ModemChoice::chosen() const
{
    if (!first->state().path.isEmpty()) {
        return *first;
    }
    const bool other = !second->state().path.isEmpty() || second->presence() > first->presence();
    return other ? *second : *first;
}

void ModemChoice::refresh()
{
    const ModemClient &choice = chosen();
    // Changes at the service that is not shown are not signalled.
    if (choice.state() != shown || choice.presence() != shownPresence) {
        shown = choice.state();
        shownPresence = choice.presence();
        Q_EMIT changed();
    }
    // A modem that has told all about itself need not wait for a service that is stuck; but one of
    // the second service may yet have to give way.
    const bool answered =
        first->isComplete() && (!first->state().path.isEmpty() || second->isComplete());
    if (complete || !answered) {
        return;
    }
    complete = true;
    Q_EMIT completed();
}

} // namespace velometer
