#pragma once

#include "platform/bus/busservice.h"

#include <QObject>

namespace velometer {

/// Tells through the desktop's notifications what ended while the user was elsewhere. Where nobody
/// shows notifications nothing happens. Main thread only.
class BackgroundNotice : public QObject
{
    Q_OBJECT

public:
    BackgroundNotice(const QDBusConnection &sessionBus, QObject *parent);

    /// Says nothing while a window of the application has the user's attention. Plain texts.
    void tell(const QString &title, const QString &text);

private:
    BusService notifications;
    uint last = 0; ///< the notification that a further one replaces
};

} // namespace velometer
