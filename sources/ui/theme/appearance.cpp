#include "ui/theme/appearance.h"

#include "utils/utils.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFont>
#include <QPalette>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop"_L1;
constexpr auto path = "/org/freedesktop/portal/desktop"_L1;
constexpr auto settings = "org.freedesktop.portal.Settings"_L1;
constexpr auto group = "org.freedesktop.appearance"_L1;
constexpr auto key = "color-scheme"_L1;
/// What the portal says; 0 is no preference.
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

constexpr int middleBrightness = 128;
/// What desktops give their texts as they come, in points: larger is what somebody chose.
constexpr double usualPoints = 11;
constexpr double largestDesktopScale = 2;
constexpr double largerText = 1.2;

struct Named
{
    QLatin1StringView name;
    Appearance::Choice choice;
};
constexpr std::array<Named, 4> choices{{{"auto"_L1, Appearance::Choice::Auto},
                                        {"dark"_L1, Appearance::Choice::Dark},
                                        {"light"_L1, Appearance::Choice::Light},
                                        {"given"_L1, Appearance::Choice::Given}}};

} // namespace

std::optional<Appearance::Choice> Appearance::fromName(const QString &name)
{
    for (const Named &each : choices) {
        if (each.name == name) {
            return each.choice;
        }
    }
    return std::nullopt;
}

QString Appearance::nameOf(Choice choice)
{
    const auto *const found = std::find_if(
        choices.begin(), choices.end(), [&](const Named &each) { return each.choice == choice; });
    return found->name;
}

Appearance::Choice Appearance::remembered()
{
    return fromName(Utils::getSettingsValue(u"Theme"_s)).value_or(Choice::Auto);
}

void Appearance::remember(Choice choice)
{
    Utils::setSettingsValue(u"Theme"_s, nameOf(choice));
}

bool Appearance::isTextLarger()
{
    return Utils::getSettingsValue(u"LargerText"_s) == "set"_L1;
}

void Appearance::rememberTextLarger(bool larger)
{
    Utils::setSettingsValue(u"LargerText"_s, larger ? u"set"_s : u"notset"_s);
}

Appearance::Appearance(bool given, std::optional<Choice> forcedChoice)
    : givenByDefault(given)
    , forced(forcedChoice)
    , desktopDark(QApplication::palette().color(QPalette::Window).lightness() < middleBrightness)
    , desktopScale(
          std::clamp(QApplication::font().pointSizeF() / usualPoints, 1.0, largestDesktopScale))
{
    apply();
    askDesktop();
}

void Appearance::askDesktop()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    bus.connect(service, path, settings, u"SettingChanged"_s, this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, settings, u"Read"_s);
    question << QString(group) << QString(key);
    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid()) {
            settingChanged(group, key, reply.value());
        }
    });
}

void Appearance::settingChanged(const QString &changedGroup, const QString &changedKey,
                                const QDBusVariant &value)
{
    if (changedGroup != group || changedKey != key) {
        return;
    }
    // The answer to a question comes wrapped once more than what the signal brings.
    QVariant preference = value.variant();
    if (preference.canConvert<QDBusVariant>()) {
        preference = preference.value<QDBusVariant>().variant();
    }
    preferenceKnown(preference.toUInt());
}

void Appearance::preferenceKnown(uint preference)
{
    const bool dark = preference == preferDark || (preference != preferLight && desktopDark);
    if (dark != desktopDark) {
        desktopDark = dark;
        apply();
    }
}

Theme::Look Appearance::look() const
{
    switch (forced.value_or(remembered())) {
    case Choice::Dark: return Theme::Look::Dark;
    case Choice::Light: return Theme::Look::Light;
    case Choice::Given: return Theme::Look::Given;
    case Choice::Auto: break;
    }
    if (givenByDefault) {
        return Theme::Look::Given;
    }
    return desktopDark ? Theme::Look::Dark : Theme::Look::Light;
}

void Appearance::apply()
{
    Theme::wear(look(), desktopScale * (isTextLarger() ? largerText : 1));
}

void Appearance::choose(const QString &name)
{
    if (const auto choice = fromName(name)) {
        forced.reset();
        remember(*choice);
        apply();
    }
}

void Appearance::setTextLarger(bool larger)
{
    rememberTextLarger(larger);
    apply();
}

} // namespace velometer
