#include "context/networkinfohelper.h"

#include "platform/platform.h"
#include "utils/cleantext.h"
#include "utils/utils.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

// A 2G cell id fits in 16 bits, which is at most five digits.
constexpr qint64 maxGsmCell = 99'999;

QString modeName(NetworkMode mode)
{
    switch (mode) {
    case NetworkMode::Unknown: return u"Unknown"_s;
    case NetworkMode::Gsm: return u"GsmMode"_s;
    case NetworkMode::Cdma: return u"CdmaMode"_s;
    case NetworkMode::Wcdma: return u"WcdmaMode"_s;
    case NetworkMode::Wlan: return u"WlanMode"_s;
    case NetworkMode::Ethernet: return u"EthernetMode"_s;
    case NetworkMode::Bluetooth: return u"BluetoothMode"_s;
    case NetworkMode::Wimax: return u"WimaxMode"_s;
    case NetworkMode::Lte: return u"LteMode"_s;
    case NetworkMode::Nr: return u"NrMode"_s;
    }
    return u"Unknown"_s;
}

QString statusName(NetworkStatus status)
{
    switch (status) {
    case NetworkStatus::Undefined: return u"UndefinedStatus"_s;
    case NetworkStatus::NoNetworkAvailable: return u"NoNetworkAvailable"_s;
    case NetworkStatus::EmergencyOnly: return u"EmergencyOnly"_s;
    case NetworkStatus::Searching: return u"Searching"_s;
    case NetworkStatus::Busy: return u"Busy"_s;
    case NetworkStatus::Connected: return u"Connected"_s;
    case NetworkStatus::HomeNetwork: return u"HomeNetwork"_s;
    case NetworkStatus::Denied: return u"Denied"_s;
    case NetworkStatus::Roaming: return u"Roaming"_s;
    }
    return u"UndefinedStatus"_s;
}

QString signalText(const std::optional<int> &percent)
{
    return QString::number(percent.value_or(-1));
}

template <typename Id>
QString idText(const std::optional<Id> &id)
{
    return id ? QString::number(*id) : QString();
}

bool onWlan(const NetworkState &state)
{
    return state.link(NetworkMode::Wlan).status == NetworkStatus::Connected;
}

NetworkState cleaned(NetworkState state)
{
    for (QString *text :
         {&state.mcc, &state.mnc, &state.homeMcc, &state.homeMnc, &state.radio.band}) {
        *text = cleanText(*text);
    }
    for (NetworkState::Link &link : state.links) {
        link.name = cleanText(link.name);
    }
    return state;
}

} // namespace

NetworkInfoHelper::NetworkInfoHelper(Platform &platform, QObject *parent)
    : QObject(parent)
    , source(platform.createNetworkInfoSource())
    , current(cleaned(source->state()))
{
    log({}, true);
    connect(source.get(), &NetworkInfoSource::changed, this, &NetworkInfoHelper::take);
}

NetworkInfoHelper::~NetworkInfoHelper() = default;

void NetworkInfoHelper::take()
{
    const NetworkState before = std::exchange(current, cleaned(source->state()));
    log(before, false);
    Q_EMIT changed();
}

void NetworkInfoHelper::log(const NetworkState &before, bool first) const
{
    const auto logIf = [](bool changed, const QString &what, const QString &now) {
        if (changed) {
            Utils::addLogEntry(what + u' ' + now);
        }
    };
    const NetworkState::Link link = current.current();
    const bool otherMode = first || current.mode != before.mode;
    logIf(!first && current.mcc != before.mcc, u"networkMCCChanged"_s, current.mcc);
    logIf(!first && current.mnc != before.mnc, u"networkMNCChanged"_s, current.mnc);
    logIf(otherMode, u"networkModeChanged"_s, modeName(current.mode));
    if (onWlan(current) && (first || !onWlan(before))) {
        Utils::addLogEntry(u"WLAN mode detected"_s);
    }
    if (otherMode) {
        Utils::addLogEntry(u"Network status change: mode %1 : status %2"_s.arg(
            QString::number(static_cast<int>(current.mode)),
            QString::number(static_cast<int>(link.status))));
    }
    logIf(otherMode || link.status != before.current().status, u"networkStatusChanged"_s,
          statusName(link.status));
    logIf(otherMode || link.name != before.current().name, u"networkNameChanged"_s, link.name);
    logIf(!first && current.cell && current.cell != before.cell, u"networkCellChanged"_s,
          getNetworkcell());
    logIf(!first && current.lac != before.lac, u"networkLACChanged"_s, getNetworklac());
}

QString NetworkInfoHelper::getNetworkcell() const
{
    return idText(current.cell);
}

QString NetworkInfoHelper::getNetworklac() const
{
    return idText(current.lac);
}

QString NetworkInfoHelper::getNetworkstatus() const
{
    return statusName(current.current().status);
}

std::optional<int> NetworkInfoHelper::signal() const
{
    if (const auto mobile = current.mobile()) {
        return mobile->signal;
    }
    return current.mode == NetworkMode::Wlan ? std::nullopt : current.current().signal;
}

QString NetworkInfoHelper::getNetworksignal() const
{
    const bool hasNone = current.mode == NetworkMode::Wlan && !current.mobile();
    return hasNone ? QString() : signalText(signal());
}

QString NetworkInfoHelper::getWlansignal() const
{
    return current.links.contains(NetworkMode::Wlan)
               ? signalText(current.link(NetworkMode::Wlan).signal)
               : QString();
}

QString NetworkInfoHelper::getNetworkmode() const
{
    if (onWlan(current)) {
        return modeName(NetworkMode::Wlan);
    }
    const bool isOld = current.mode == NetworkMode::Wcdma || current.mode == NetworkMode::Gsm;
    // Modems that may not tell their cell, or have not read it yet, tell none or number 0.
    const auto cell = current.cell.value_or(0);
    if (isOld && cell > 0) {
        return modeName(cell <= maxGsmCell ? NetworkMode::Gsm : NetworkMode::Wcdma);
    }
    return modeName(current.mode);
}

bool NetworkInfoHelper::roaming() const
{
    Utils::addLogEntry(u"RoamingCheck: HomeMNC: %1 MNC: %2"_s.arg(current.homeMnc, current.mnc));
    Utils::addLogEntry(u"RoamingCheck: HomeMCC: %1 MCC: %2"_s.arg(current.homeMcc, current.mcc));
    return current.current().status == NetworkStatus::Roaming;
}

} // namespace velometer
