#pragma once

#include "platform/modem/modemclient.h"

#include <QMap>
#include <QSet>
#include <QTimer>
#include <QVariantMap>

/// The modem as ModemManager shows it on the system bus. Of several modems it is the connected one,
/// else a registered one, else the first. Asks the modem for its cell and for the strength of its
/// reference signals where nobody has done so yet, which the system may refuse, and takes that back
/// at the end.
class ModemManagerClient final : public ModemClient
{
    Q_OBJECT

public:
    explicit ModemManagerClient(const QDBusConnection &bus, QObject *parent = nullptr);

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
    void locate();
    void readLocation();
    QString primary() const;
    ModemState describe(const QString &path) const;
    void refresh();
    void finish();

    BusService service;
    QMap<QString, Interfaces> modems; ///< by path
    bool reading = false;
    bool readAgain = false;
    QString simPath;
    QVariantMap sim;
    bool simKnown = false;  ///< the SIM at simPath has answered
    QSet<QString> located;  ///< modems whose location was asked for
    QTimer locationTimer;   ///< polls a modem that does not signal its cell
    QString polledLocation; ///< of the primary modem
    ModemState shown;
    bool complete = false;
    bool modemsKnown = false;
};
