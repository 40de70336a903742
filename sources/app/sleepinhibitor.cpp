#include "app/sleepinhibitor.h"

#include "utils/utils.h"

using namespace Qt::StringLiterals;

namespace velometer {

SleepInhibitor::SleepInhibitor(const QDBusConnection &systemBus, QObject *parent)
    : QObject(parent)
    , logind(systemBus, u"org.freedesktop.login1"_s)
{
    connect(&logind, &BusService::presenceChanged, this, [this] {
        held.reset();
        asked = false;
        ask();
    });
}

void SleepInhibitor::hold()
{
    wanted = true;
    ask();
}

void SleepInhibitor::release()
{
    wanted = false;
    held.reset();
}

void SleepInhibitor::ask()
{
    if (!wanted || held || asked || logind.presence() != BusService::Presence::Present) {
        return;
    }
    asked = true;
    logind.call(u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"Inhibit"_s,
                {u"sleep:idle"_s, Utils::getAppTitle(), tr("A measurement runs."), u"block"_s},
                [this](const QDBusMessage &reply) {
                    asked = false;
                    const auto descriptor =
                        reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
                    if (reply.type() == QDBusMessage::ErrorMessage || !descriptor.isValid()) {
                        Utils::addLogEntry(u"The device may sleep: %1"_s.arg(reply.errorMessage()));
                    } else if (wanted) {
                        held = descriptor;
                    }
                });
}

} // namespace velometer
