#include "context/networkinfohelper.h"

#include "platform/platform.h"
#include "utils/cleantext.h"
#include "utils/utils.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

// A cell lasts for seconds even at train speed.
constexpr auto pollInterval = 1000ms;

// A 2G cell id fits in 16 bits, which is at most five digits.
constexpr qsizetype maxGsmCellDigits = 5;

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

QString idText(qint64 id)
{
    return id < 0 ? QString() : QString::number(id);
}

} // namespace

NetworkInfoHelper::NetworkInfoHelper(Platform &platform, QObject *parent)
    : QObject(parent)
    , netinfo(platform.createNetworkInfoSource())
    , networkcell(idText(netinfo->cellId()))
    , networklac(idText(netinfo->locationAreaCode()))
    , homemcc(cleanText(netinfo->homeMobileCountryCode()))
    , homemnc(cleanText(netinfo->homeMobileNetworkCode()))
    , mcc(cleanText(netinfo->currentMobileCountryCode()))
    , mnc(cleanText(netinfo->currentMobileNetworkCode()))
{
    const NetworkMode mode = netinfo->currentMode();
    networkModeChanged(mode);
    networkStatusChanged(mode, netinfo->networkStatus(mode));
    networkSignalStrengthChanged(mode, netinfo->networkSignalStrength(mode));
    networkNameChanged(mode, netinfo->networkName(mode));

    const NetworkInfoSource *info = netinfo.get();
    connect(info, &NetworkInfoSource::currentMobileCountryCodeChanged, this,
            &NetworkInfoHelper::currentMobileCountryCodeChanged);
    connect(info, &NetworkInfoSource::currentMobileNetworkCodeChanged, this,
            &NetworkInfoHelper::currentMobileNetworkCodeChanged);
    connect(info, &NetworkInfoSource::homeOperatorChanged, this, [this] {
        homemcc = cleanText(netinfo->homeMobileCountryCode());
        homemnc = cleanText(netinfo->homeMobileNetworkCode());
    });
    connect(info, &NetworkInfoSource::cellFound, this, qOverload<>(&NetworkInfoHelper::timerEvent));
    connect(info, &NetworkInfoSource::networkModeChanged, this,
            &NetworkInfoHelper::networkModeChanged);
    connect(info, &NetworkInfoSource::networkStatusChanged, this,
            &NetworkInfoHelper::networkStatusChanged);
    connect(info, &NetworkInfoSource::networkSignalStrengthChanged, this,
            &NetworkInfoHelper::networkSignalStrengthChanged);
    connect(info, &NetworkInfoSource::networkNameChanged, this,
            &NetworkInfoHelper::networkNameChanged);
    connect(&timer, &QTimer::timeout, this, qOverload<>(&NetworkInfoHelper::timerEvent));

    wlanconnectiondetected = netinfo->networkStatus(NetworkMode::Wlan) == NetworkStatus::Connected;
    if (wlanconnectiondetected) {
        Utils::addLogEntry(u"WLAN mode detected"_s);
    }
    timer.start(pollInterval);
}

NetworkInfoHelper::~NetworkInfoHelper() = default;

void NetworkInfoHelper::startService()
{
    servicestarted = true;
}

void NetworkInfoHelper::stopService()
{
    servicestarted = false;
}

QString NetworkInfoHelper::getNetworkcell() const
{
    return networkcell;
}

QString NetworkInfoHelper::getNetworklac() const
{
    return networklac;
}

QString NetworkInfoHelper::getHomemcc() const
{
    return homemcc;
}

QString NetworkInfoHelper::getHomemnc() const
{
    return homemnc;
}

QString NetworkInfoHelper::getMcc() const
{
    return mcc;
}

QString NetworkInfoHelper::getMnc() const
{
    return mnc;
}

QString NetworkInfoHelper::getNetworkstatus() const
{
    return networkstatus;
}

QString NetworkInfoHelper::getNetworksignal() const
{
    return networksignal;
}

QString NetworkInfoHelper::getWlansignal() const
{
    return wlansignal;
}

QString NetworkInfoHelper::getNetworkname() const
{
    return networkname;
}

QString NetworkInfoHelper::getNetworkmode() const
{
    if (wlanconnectiondetected) {
        return modeName(NetworkMode::Wlan);
    }
    if (currentmode == NetworkMode::Wcdma || currentmode == NetworkMode::Gsm) {
        return modeName(networkcell.size() <= maxGsmCellDigits ? NetworkMode::Gsm
                                                               : NetworkMode::Wcdma);
    }
    return networkmode;
}

bool NetworkInfoHelper::roaming() const
{
    Utils::addLogEntry(u"RoamingCheck: HomeMNC: %1 MNC: %2"_s.arg(homemnc, mnc));
    Utils::addLogEntry(u"RoamingCheck: HomeMCC: %1 MCC: %2"_s.arg(homemcc, mcc));
    return networkstatus == statusName(NetworkStatus::Roaming);
}

void NetworkInfoHelper::currentMobileCountryCodeChanged(const QString &code)
{
    mcc = cleanText(code);
    Utils::addLogEntry(u"networkMCCChanged %1"_s.arg(mcc));
}

void NetworkInfoHelper::currentMobileNetworkCodeChanged(const QString &code)
{
    mnc = cleanText(code);
    Utils::addLogEntry(u"networkMNCChanged %1"_s.arg(mnc));
}

void NetworkInfoHelper::networkModeChanged(NetworkMode mode)
{
    currentmode = mode;
    networkmode = modeName(mode);
    Utils::addLogEntry(u"networkModeChanged %1"_s.arg(networkmode));
}

void NetworkInfoHelper::networkStatusChanged(NetworkMode mode, NetworkStatus status)
{
    if (mode == NetworkMode::Wlan) {
        const bool connected = status == NetworkStatus::Connected;
        if (connected && !wlanconnectiondetected) {
            Utils::addLogEntry(u"WLAN mode detected"_s);
        }
        wlanconnectiondetected = connected;
    }
    if (mode != oldmode) {
        Utils::addLogEntry(u"Network status change: mode %1 : status %2"_s.arg(
            QString::number(static_cast<int>(mode)), QString::number(static_cast<int>(status))));
        oldmode = mode;
        oldstatus = status;
    }
    if (mode == currentmode) {
        networkstatus = statusName(status);
        Utils::addLogEntry(u"networkStatusChanged %1"_s.arg(networkstatus));
    }
}

void NetworkInfoHelper::networkSignalStrengthChanged(NetworkMode mode, int strength)
{
    if (mode == NetworkMode::Wlan) {
        wlansignal = QString::number(strength);
    } else if (isMobile(mode) || mode == currentmode) {
        networksignal = QString::number(strength);
    }
}

void NetworkInfoHelper::networkNameChanged(NetworkMode mode, const QString &name)
{
    if (mode != currentmode) {
        return;
    }
    networkname = cleanText(name);
    Utils::addLogEntry(u"networkNameChanged %1"_s.arg(networkname));
}

void NetworkInfoHelper::timerEvent()
{
    const QString cell = idText(netinfo->cellId());
    if (cell != networkcell) {
        networkcell = cell;
        if (!networkcell.isEmpty()) {
            Utils::addLogEntry(u"networkCellChanged %1"_s.arg(networkcell));
        }
    }
    const QString lac = idText(netinfo->locationAreaCode());
    if (lac != networklac) {
        networklac = lac;
        Utils::addLogEntry(u"networkLACChanged %1"_s.arg(networklac));
    }
}

} // namespace velometer
