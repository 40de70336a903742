#pragma once

#include "platform/modem/busmodemclient.h"
#include "utils/clocktimer.h"

#include <QMap>
#include <QVariantList>
#include <QVariantMap>

#include <utility>

namespace velometer {

/// The modem as ModemManager shows it on the system bus. Of several modems it is the connected one,
/// else a registered one, else the first. Asks the modem for its cell and for the strength of its
/// reference signals where nobody has done so yet, which the system may refuse; the signals end
/// with the client.
class ModemManagerClient final : public BusModemClient
{
    Q_OBJECT

public:
    explicit ModemManagerClient(const QDBusConnection &bus, QObject *parent = nullptr);
    ~ModemManagerClient() override;

private:
    void forget() override;
    void takeModems(const QDBusMessage &reply) override;
    void takeProperties(const QString &path, const QString &interface, const QVariantMap &values,
                        const QStringList &invalidated) override;
    static qint64 stateOf(const Interfaces &modem); ///< -1 when unknown
    Rank rank(const Interfaces &modem) const override;
    void follow(const QString &path) override;
    bool hasAnswered() const override { return simPath.isEmpty() || simKnown; }
    ModemState describe(const QString &path) const override;

    void readSim();
    /// An interface of a modem that something was asked of.
    using Setup = std::pair<QString, QString>;
    bool mayAsk(const QString &path, const QString &interface);
    /// @p refusal is logged, with the reason as %1.
    void ask(const Setup &request, const QVariantList &arguments, const QString &refusal);
    void locate();
    void askForSignal();
    void readLocation();
    static void takeLocation(const QString &location, ModemState *state);

    QString followed; ///< the modem that is shown
    QString simPath;
    QVariantMap sim;
    bool simKnown = false;        ///< the SIM at simPath has answered
    QMap<Setup, bool> asked;      ///< and whether that may have had an effect
    bool locationRefused = false; ///< the modem that is shown may not be asked for its cell
    ClockTimer locationTimer;     ///< polls a modem that does not signal its cell
    QString polledLocation;       ///< of the modem that is shown
};

} // namespace velometer
