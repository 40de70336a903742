#pragma once

#include "reports/devicekey.h"
#include "reports/sqlconnection.h"

/// What a data base knows about itself, and what the services that share it agree about. Nothing
/// and false on failure.
namespace velometer::StoreSettings {

inline constexpr QLatin1StringView deviceKey{"device_key"}; ///< a key's fingerprint
inline constexpr QLatin1StringView served{"served"};        ///< by a service
inline constexpr QLatin1StringView moving{"moving"};        ///< into it: "1", and "done" at the end

/// Empty when it was never set.
std::optional<QString> value(SqlConnection &connection, QLatin1StringView name);
std::optional<qint64> number(SqlConnection &connection, QLatin1StringView name); ///< 0 likewise
bool set(SqlConnection &connection, QLatin1StringView name, const QString &value);

/// Takes the data base for a service with the key in @p file, which is drawn for a data base that
/// has none yet, and puts hashes in place of the devices' texts that are still there. In a
/// transaction of its own. Nothing on failure; @p problem then says why.
std::optional<DeviceKey> adoptKey(SqlConnection &connection, const QString &file, QString *problem);

} // namespace velometer::StoreSettings
