#pragma once

#include "platform/networkstate.h"

#include <QObject>

#include <utility>

namespace velometer {

/// Follows the state of the cellular, WLAN and wired connection. Main thread only; nothing blocks.
class NetworkInfoSource : public QObject
{
    Q_OBJECT

public:
    /// As of now.
    const NetworkState &state() const { return current; }

Q_SIGNALS:
    /// state() is another than before. What changes together is told once.
    void changed();

protected:
    using QObject::QObject;

    void setState(NetworkState now)
    {
        if (now == current) {
            return;
        }
        current = std::move(now);
        Q_EMIT changed();
    }

private:
    NetworkState current;
};

} // namespace velometer
