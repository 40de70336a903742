#include "ui/backgroundnotice.h"

#include "utils/utils.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace velometer {

BackgroundNotice::BackgroundNotice(const QDBusConnection &sessionBus, QObject *parent)
    : QObject(parent)
    , notifications(sessionBus, u"org.freedesktop.Notifications"_s)
{}

void BackgroundNotice::tell(const QString &title, const QString &text)
{
    if (QGuiApplication::applicationState() == Qt::ApplicationActive) {
        return;
    }
    constexpr int desktopsChoice = -1; // how long it is shown
    notifications.call(
        u"/org/freedesktop/Notifications"_s, u"org.freedesktop.Notifications"_s, u"Notify"_s,
        {Utils::getAppTitle(), last, u"velometer"_s, title, text.toHtmlEscaped(), QStringList(),
         QVariantMap{{u"desktop-entry"_s, u"velometer"_s}}, desktopsChoice},
        [this](const QDBusMessage &reply) { last = reply.arguments().value(0).toUInt(); });
}

} // namespace velometer
