#pragma once

#include <QString>

namespace velometer {

/// The kinds of connection that lists and charts tell apart, each with a sign, so that colour is
/// never what tells it alone.
enum class ConnectionKind { Gsm, Umts, Lte, Nr, Wlan, Other };

namespace ConnectionKinds {

inline constexpr ConnectionKind all[] = {ConnectionKind::Gsm,  ConnectionKind::Umts,
                                         ConnectionKind::Lte,  ConnectionKind::Nr,
                                         ConnectionKind::Wlan, ConnectionKind::Other};

/// Of a stored connection type; a mixed one is Other.
ConnectionKind of(const QString &stored);
/// Of a mode as tracks have it: "LteMode", "WlanMode".
ConnectionKind ofMode(const QString &mode);
/// "2G", "3G", "4G", "5G", "W", or "?" of any other; not translated.
QString sign(ConnectionKind kind);

} // namespace ConnectionKinds

} // namespace velometer
