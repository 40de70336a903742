#pragma once

#include "platform/modem/modemclient.h"
#include "utils/clocktimer.h"

#include <QMap>
#include <QSet>
#include <QStringList>
#include <QVariantMap>

namespace velometer {

/// What services that show modems on a bus have in common: a list of modems that is read anew when
/// one comes or goes, properties by interface, and one modem of several that is shown: the
/// connected one, else a registered one, else the first. Until all that belongs together has been
/// answered, what was shown before stays: half an answer looks like a lost network.
class BusModemClient : public ModemClient
{
    Q_OBJECT

public:
    BusService::Presence presence() const final;
    bool isComplete() const final { return complete; }
    const ModemState &state() const final { return shown; }

protected:
    /// More modems than this are in no device that measures its connection.
    static constexpr qsizetype maxModems = 16;
    static constexpr qint64 maxLac = 0xffff;
    static constexpr qint64 maxCell = (1LL << 36) - 1;

    /// How a service names what it has.
    struct Names
    {
        QString service;
        QString managerPath;
        QString managerInterface;
        QString list;  ///< the method that tells all modems
        QString added; ///< the signals after which they are others
        QString removed;
        QSet<QString> properties;  ///< those that are read; others may be of any size
        QStringList ownInterfaces; ///< see BusService
    };
    enum class Rank { Unregistered, Registered, Connected };
    /// One modem's properties, by interface. Only interfaces that are read are kept.
    using Interfaces = QMap<QString, QVariantMap>;

    BusModemClient(const QDBusConnection &bus, const Names &serviceNames, QObject *parent);

    /// The service is another one: what was asked of the old one will not be answered.
    virtual void forget() = 0;
    /// Puts the answer to the list method into modems.
    virtual void takeModems(const QDBusMessage &reply) = 0;
    /// A modem has come or gone; then the list is read anew.
    virtual void takeSignal(const QDBusMessage &message);
    virtual void takeProperties(const QString &path, const QString &interface,
                                const QVariantMap &values, const QStringList &invalidated) = 0;
    virtual Rank rank(const Interfaces &modem) const = 0;
    /// @p path is the modem to show, empty for none. Asks for what the list does not tell.
    virtual void follow(const QString &path) = 0;
    /// Whether all that was asked for is there, or will never come.
    virtual bool hasAnswered() const = 0;
    /// @p path is in modems.
    virtual ModemState describe(const QString &path) const = 0;

    void readModems();
    /// Puts those of @p values that are read into @p kept.
    void keep(const QVariantMap &values, QVariantMap *kept) const;
    /// The modem to show; empty when there is none.
    QString primary() const;
    /// To be called after each change.
    void refresh();
    /// The code of a location area; nothing for those that stand for none.
    static std::optional<int> areaCode(std::optional<qint64> told);

    BusService service;
    QMap<QString, Interfaces> modems; ///< by path

private:
    void restart();

    const Names names;
    ModemState shown;
    bool complete = false;
    bool listed = false;   ///< the service has told its modems, or has not answered
    bool silent = false;   ///< it has not answered
    ClockTimer retryTimer; ///< asks a service again that has not answered
    bool reading = false;
    bool readAgain = false;
};

} // namespace velometer
