#pragma once

#include "ui/theme/theme.h"

#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <optional>

namespace velometer {

/// Which look the application wears, from what the user chose and what the desktop prefers, and how
/// large its texts are: as large as the desktop's, and larger where the user wants it.
///
/// Asks the desktop's settings portal for dark or light, without waiting: until it answers, and
/// where there is none, the brightness of the desktop's windows decides. Follows the desktop when
/// that changes. Main thread only.
class Appearance : public QObject
{
    Q_OBJECT

public:
    enum class Choice {
        Auto, ///< as the desktop is; the given look where @p givenByDefault
        Dark,
        Light,
        Given,
    };

    /// "auto", "dark", "light" or "given".
    static std::optional<Choice> fromName(const QString &name);
    static QString nameOf(Choice choice);

    /// What the user chose on the settings page.
    static Choice remembered();
    static void remember(Choice choice);
    static bool isTextLarger();
    static void rememberTextLarger(bool larger);

    /// To be made after the application and before its first window. @p forced stands above what
    /// was chosen, until the user chooses again.
    Appearance(bool givenByDefault, std::optional<Choice> forced);

    /// Wears what is chosen now.
    void apply();

public Q_SLOTS:
    void choose(const QString &name);
    void setTextLarger(bool larger);

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void askDesktop();
    void preferenceKnown(uint preference);
    Theme::Look look() const;

    const bool givenByDefault;
    std::optional<Choice> forced;
    bool desktopDark;
    const double desktopScale; ///< of texts
};

} // namespace velometer
