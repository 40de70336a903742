#pragma once

#include "platform/modem/busmodemclient.h"
#include "utils/clocktimer.h"

#include <utility>

namespace velometer {

/// The modem as oFono shows it on the system bus. Of several modems it is the registered one that
/// is attached to the packet service, else a registered one, else the first. The phone at the other
/// end of a hands-free link is none of them: traffic does not leave by its modem.
/// While it is registered, a modem that can tell its serving cell is asked for it every five
/// seconds.
class OfonoClient final : public BusModemClient
{
    Q_OBJECT

public:
    explicit OfonoClient(const QDBusConnection &bus, QObject *parent = nullptr);

private:
    /// Path and interface.
    using Place = std::pair<QString, QString>;
    struct Reading
    {
        bool first = false; ///< nothing is known yet
        bool again = false; ///< out of date before it was answered
    };

    void forget() override;
    void takeModems(const QDBusMessage &reply) override;
    void takeSignal(const QDBusMessage &message) override;
    void takeProperties(const QString &path, const QString &interface, const QVariantMap &values,
                        const QStringList &invalidated) override;
    Rank rank(const Interfaces &modem) const override;
    void follow(const QString &path) override;
    bool hasAnswered() const override;
    ModemState describe(const QString &path) const override;

    void takeInterfaces(const QString &path, const QStringList &offered);
    void read(const Place &place, bool first);
    void takeAnswer(const Place &place, const QVariantMap &values);
    void readCell();
    void describeCell(const QVariantMap &registration, ModemState *state) const;

    QMap<Place, Reading> readings;
    QString cellPath; ///< the modem that is asked for its serving cell, empty for none
    QVariantMap cell; ///< its last answer
    ClockTimer cellTimer;
};

} // namespace velometer
