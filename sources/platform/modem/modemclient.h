#pragma once

#include "platform/bus/busservice.h"
#include "platform/modem/modemstate.h"

#include <QObject>

namespace velometer {

/// The modem as one service of the system shows it. Follows every change, modems that come and go,
/// and a restart of the service. Main thread only; nothing blocks and nothing fails: what is not
/// known is unknown.
class ModemClient : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual BusService::Presence presence() const = 0;
    /// Whether all first answers are there, or will never come. Then it stays true.
    virtual bool isComplete() const = 0;
    virtual const ModemState &state() const = 0;

Q_SIGNALS:
    /// state() or presence() is another than before.
    void changed();
    /// Once, when isComplete() becomes true; never when it was from the start.
    void completed();
};

} // namespace velometer
