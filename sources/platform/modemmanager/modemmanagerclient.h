#pragma once

#include "platform/modem/modemclient.h"

#include <QMap>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

#include <utility>

/// The modem as ModemManager shows it on the system bus. Of several modems it is the connected one,
/// else a registered one, else the first. Asks the modem for its cell and for the strength of its
/// reference signals where nobody has done so yet, which the system may refuse; the signals end
/// with the client.
class ModemManagerClient final : public ModemClient
{
    Q_OBJECT

public:
    explicit ModemManagerClient(const QDBusConnection &bus, QObject *parent = nullptr);
    ~ModemManagerClient() override;

    BusService::Presence presence() const override { return service.presence(); }
    bool isComplete() const override { return complete; }
    const ModemState &state() const override { return shown; }

private:
    /// One modem's properties, by interface. Only interfaces that are read are kept.
    using Interfaces = QMap<QString, QVariantMap>;

    void restart();
    void readModems();
    void takeModems(const QDBusMessage &reply);
    void takeProperties(const QString &path, const QString &interface, const QVariantMap &values,
                        const QStringList &invalidated);
    void modemsChanged();
    void readSim();
    /// An interface of a modem that something was asked of.
    using Setup = std::pair<QString, QString>;
    bool mayAsk(const QString &path, const QString &interface);
    /// @p refusal is logged, with the reason as %1.
    void ask(const Setup &request, const QVariantList &arguments, const QString &refusal);
    void locate();
    void askForSignal();
    void readLocation();
    QString primary() const;
    qint64 stateOf(const QString &path) const; ///< -1 when unknown
    ModemState describe(const QString &path) const;
    void refresh();
    void finish();

    BusService service;
    QMap<QString, Interfaces> modems; ///< by path
    bool reading = false;
    bool readAgain = false;
    QString simPath;
    QVariantMap sim;
    bool simKnown = false;   ///< the SIM at simPath has answered
    QMap<Setup, bool> asked; ///< and whether it was granted
    QTimer locationTimer;    ///< polls a modem that does not signal its cell
    QString polledLocation;  ///< of the primary modem
    ModemState shown;
    bool complete = false;
    bool modemsKnown = false;
};
