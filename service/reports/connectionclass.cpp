#include "reports/connectionclass.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer::ConnectionClasses {

namespace {

struct Row
{
    ConnectionClass type;
    QLatin1StringView key;
    QLatin1StringView code; ///< of the platform's table; empty where there is none
    bool isMobile = false;
};

constexpr std::array rows{
    Row{ConnectionClass::Wlan, "wlan"_L1, "WlanMode"_L1},
    Row{ConnectionClass::Gsm, "2g"_L1, "GsmMode"_L1, true},
    Row{ConnectionClass::Umts, "3g"_L1, "WcdmaMode"_L1, true},
    Row{ConnectionClass::Lte, "lte"_L1, "LteMode"_L1, true},
    Row{ConnectionClass::Nr, "5g"_L1, "NrMode"_L1, true},
    Row{ConnectionClass::Ethernet, "ethernet"_L1, "EthernetMode"_L1},
    Row{ConnectionClass::Cdma, "cdma"_L1, "CdmaMode"_L1, true},
    Row{ConnectionClass::Bluetooth, "bluetooth"_L1, "BluetoothMode"_L1},
    Row{ConnectionClass::Wimax, "wimax"_L1, "WimaxMode"_L1},
    Row{ConnectionClass::Mixed, "mixed"_L1, {}},
    Row{ConnectionClass::Other, "other"_L1, {}},
};

} // namespace

std::span<const ConnectionClass> all()
{
    static const auto types = [] {
        std::array<ConnectionClass, rows.size()> list{};
        std::ranges::transform(rows, list.begin(), &Row::type);
        return list;
    }();
    return types;
}

QString key(ConnectionClass type)
{
    return std::ranges::find(rows, type, &Row::type)->key;
}

bool isMobile(ConnectionClass type)
{
    return std::ranges::find(rows, type, &Row::type)->isMobile;
}

std::optional<ConnectionClass> ofKey(QStringView key)
{
    const auto *const row =
        std::ranges::find_if(rows, [&](const Row &each) { return key == each.key; });
    return row == rows.end() ? std::nullopt : std::optional(row->type);
}

ConnectionClass ofReport(const QString &connectionType)
{
    // "Mixed(WLAN,Mobile)", "Mobile(mixed)"
    if (connectionType.contains("mixed"_L1, Qt::CaseInsensitive)) {
        return ConnectionClass::Mixed;
    }
    const auto *const row = std::ranges::find_if(
        rows, [&](const Row &each) { return !each.code.isEmpty() && connectionType == each.code; });
    return row == rows.end() ? ConnectionClass::Other : row->type;
}

ConnectionClass ofNumber(int number)
{
    const auto type = static_cast<ConnectionClass>(number);
    return std::ranges::find(rows, type, &Row::type) == rows.end() ? ConnectionClass::Other : type;
}

} // namespace velometer::ConnectionClasses
