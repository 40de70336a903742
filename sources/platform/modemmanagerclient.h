#pragma once

#include "platform/busservice.h"
#include "platform/modemstate.h"

#include <QMap>
#include <QSet>
#include <QTimer>
#include <QVariantMap>

/// The modem as ModemManager shows it on the system bus. Of several modems it is the connected one,
/// else a registered one, else the first. Follows every change, modems that come and go, and a
/// restart of the service. Asks the modem for its cell where nobody has done so yet, which the
/// system may refuse. Main thread only; nothing blocks and nothing fails: what is not known is
/// unknown.
class ModemManagerClient : public QObject
{
    Q_OBJECT

public:
    explicit ModemManagerClient(const QDBusConnection &bus, QObject *parent = nullptr);

    BusService::Presence presence() const { return service.presence(); }
    /// Whether all first answers are there, or will never come. Then it stays true.
    bool isComplete() const { return complete; }
    const ModemState &state() const { return shown; }

Q_SIGNALS:
    /// state() or presence() is another than before.
    void changed();
    /// Once, when isComplete() becomes true; never when it was from the start.
    void completed();

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
