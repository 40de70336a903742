#pragma once

#include <QString>

#include <optional>
#include <span>

namespace velometer {

/// What kind of connection a test ran over, for filters and figures: coarser than the mode codes of
/// reports, and never a text from outside. The numbers are those in the database.
enum class ConnectionClass {
    Other = 0,
    Wlan = 1,
    Gsm = 2,
    Umts = 3,
    Lte = 4,
    Nr = 5,
    Ethernet = 6,
    Cdma = 7,
    Bluetooth = 8,
    Wimax = 9,
    Mixed = 10, ///< more than one in one test
};

namespace ConnectionClasses {

/// In the order in which they are listed.
std::span<const ConnectionClass> all();

/// "wlan", "2g", "3g", "lte", "5g", "ethernet", "cdma", "bluetooth", "wimax", "mixed", "other".
QString key(ConnectionClass type);
std::optional<ConnectionClass> ofKey(QStringView key);

/// Over one kind of cellular network, whose name is its operator's.
bool isMobile(ConnectionClass type);

/// Of a report's element: a mode code, or a text for several. Other for what is unknown.
ConnectionClass ofReport(const QString &connectionType);

/// Of a number in the database; Other for one that is none of them.
ConnectionClass ofNumber(int number);

} // namespace ConnectionClasses

} // namespace velometer
