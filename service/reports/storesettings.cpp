#include "reports/storesettings.h"

#include <QList>

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer::StoreSettings {

namespace {

/// "keys": whoever looks for the data base's key.
constexpr qint64 keyLock = 0x6b657973;

/// One device may be there twice, when an older program ran beside this one: its later id stays
/// with whoever has it.
bool hashDevices(SqlConnection &connection, const DeviceKey &key)
{
    auto query = connection.select(u"SELECT id, uuid FROM users WHERE uuid IS NOT NULL AND uuid "
                                   "NOT LIKE 'h:%' ORDER BY created"_s);
    if (!query) {
        return false;
    }
    QList<std::pair<qint64, QString>> users;
    while (query->next()) {
        users.emplaceBack(query->value(0).toLongLong(), query->value(1).toString());
    }
    query.reset();
    for (const auto &[user, device] : std::as_const(users)) {
        const QString hash = key.hash(device);
        if (!connection.execute(u"UPDATE users SET uuid = CASE WHEN EXISTS (SELECT 1 FROM users "
                                "WHERE uuid = ?) THEN NULL ELSE ? END WHERE id = ?"_s,
                                {hash, hash, user})) {
            return false;
        }
    }
    return true;
}

bool tryToAdopt(SqlConnection &connection, const QString &file, DeviceKey *key, QString *problem)
{
    const bool locked = connection.beginWriting() && connection.lockUser(keyLock);
    const auto known = locked ? value(connection, deviceKey) : std::nullopt;
    const auto isMoving = known ? value(connection, moving) : std::nullopt;
    if (!isMoving) {
        return false;
    }
    if (*isMoving == "1"_L1) {
        *problem = u"a move into it has not come to its end; run velometer-service migrate again"_s;
        return false;
    }
    *key = DeviceKey::load(file, known->isEmpty(), problem);
    if (key->isNull()) {
        return false;
    }
    if (!known->isEmpty() && *known != key->fingerprint()) {
        *problem = u"%1 is not the device key it was made with"_s.arg(file);
        return false;
    }
    return !known->isEmpty()
               ? set(connection, served, u"1"_s) && connection.commit()
               : hashDevices(connection, *key) && set(connection, deviceKey, key->fingerprint()) &&
                     set(connection, served, u"1"_s) && connection.commit();
}

} // namespace

std::optional<QString> value(SqlConnection &connection, QLatin1StringView name)
{
    auto query = connection.select(u"SELECT value FROM settings WHERE name = ?"_s, {QString(name)});
    if (!query) {
        return std::nullopt;
    }
    return query->next() ? query->value(0).toString() : u""_s;
}

std::optional<qint64> number(SqlConnection &connection, QLatin1StringView name)
{
    const auto text = value(connection, name);
    return text ? std::optional(text->toLongLong()) : std::nullopt;
}

bool set(SqlConnection &connection, QLatin1StringView name, const QString &value)
{
    return connection.execute(u"INSERT INTO settings(name, value) VALUES(?, ?) ON CONFLICT(name) "
                              "DO UPDATE SET value = excluded.value"_s,
                              {QString(name), value});
}

std::optional<DeviceKey> adoptKey(SqlConnection &connection, const QString &file, QString *problem)
{
    DeviceKey key;
    if (tryToAdopt(connection, file, &key, problem)) {
        return key;
    }
    if (problem->isEmpty()) {
        *problem = connection.problem();
    }
    connection.rollBack();
    return std::nullopt;
}

} // namespace velometer::StoreSettings
