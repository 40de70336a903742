#include "cli/devicecontext.h"

#include "cli/textformat.h"
#include "context/deviceinfohelper.h"
#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/surroundings.h"
#include "figures/csvformat.h"
#include "figures/jsonformat.h"
#include "platform/platform.h"
#include "utils/cleantext.h"

#include <QJsonArray>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto pollInterval = 100ms;
/// A modem answers within a second; a first position may take minutes and is not waited for.
constexpr int maxPolls = 3s / pollInterval;
constexpr int radioPolls = 2s / pollInterval;
/// Cell and location area are known once a second.
constexpr auto watchInterval = 1s;

FinishedTest::Text known(const QString &value)
{
    const QString clean = cleanText(value).trimmed();
    return clean.isEmpty() || clean == "-1"_L1 ? FinishedTest::Text() : FinishedTest::Text(clean);
}

QJsonValue orNull(const FinishedTest::Text &value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

QJsonValue orNull(const std::optional<double> &value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

QJsonValue orNull(const std::optional<int> &value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

/// Nothing when @p text is none, or the unknown -1.
std::optional<int> wholeSignal(const QString &text)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok && value >= 0 ? std::optional(value) : std::nullopt;
}

FinishedTest::Text number(const std::optional<double> &value)
{
    return value ? FinishedTest::Text(QString::number(*value, 'f', 1)) : FinishedTest::Text();
}

/// Fixed names: what programs read is not translated.
FinishedTest::Text meteredName(const PlatformFacts &facts)
{
    if (!facts.metered) {
        return {};
    }
    const QString name = *facts.metered ? u"yes"_s : u"no"_s;
    return facts.meteredGuessed ? name + "-guessed"_L1 : name;
}

FinishedTest::Text connectivityName(PlatformFacts::Connectivity connectivity)
{
    switch (connectivity) {
    case PlatformFacts::Connectivity::Unknown: break;
    case PlatformFacts::Connectivity::None: return u"none"_s;
    case PlatformFacts::Connectivity::Portal: return u"portal"_s;
    case PlatformFacts::Connectivity::Limited: return u"limited"_s;
    case PlatformFacts::Connectivity::Full: return u"full"_s;
    }
    return {};
}

QString sentence(PlatformFacts::Missing missing)
{
    using Missing = PlatformFacts::Missing;
    switch (missing) {
    case Missing::SystemBus:
        return DeviceContext::tr(
            "There is no system bus, as in a container: modem and connection are unknown.");
    case Missing::ModemService:
        return DeviceContext::tr("Neither ModemManager nor oFono is running: start one of them if "
                                 "this device has a modem.");
    case Missing::ModemServiceAnswer:
        return DeviceContext::tr("The modem service does not answer: restart it.");
    case Missing::Modem:
        return DeviceContext::tr(
            "The modem service knows of no modem: check that it is plugged in and switched on.");
    case Missing::NetworkManager:
        return DeviceContext::tr(
            "NetworkManager is not running: whether the connection is metered is unknown.");
    case Missing::NetworkManagerAnswer:
        return DeviceContext::tr("NetworkManager does not answer: restart it.");
    case Missing::PrimaryConnection:
        return DeviceContext::tr("NetworkManager has no active connection: connect the device, "
                                 "unless another program does.");
    }
    Q_UNREACHABLE();
}

/// What is the matter and what to do about it.
QString sentence(PositionSource::Problem problem, const QString &source)
{
    using Problem = PositionSource::Problem;
    switch (problem) {
    case Problem::None: break;
    case Problem::NoSource:
        return DeviceContext::tr("There is no source of positions: install a location service "
                                 "(GeoClue), or name a receiver with --position.");
    case Problem::Refused:
        return DeviceContext::tr("The system's location service (%1) refuses to tell the position: "
                                 "allow it to Velometer in the system's settings.")
            .arg(source);
    case Problem::Unavailable:
        return DeviceContext::tr("The source of positions (%1) cannot be reached: check that it is "
                                 "there, that it runs and that you may read it.")
            .arg(source);
    case Problem::NoFix:
        return DeviceContext::tr(
                   "The source of positions (%1) knows none so far: a receiver needs a "
                   "view of the sky and up to some minutes.")
            .arg(source);
    }
    return {};
}

/// Without a modem, what is known of the network is known at once.
bool hasNoModemService(const PlatformFacts &facts)
{
    return facts.missing.contains(PlatformFacts::Missing::SystemBus) ||
           facts.missing.contains(PlatformFacts::Missing::ModemService);
}

} // namespace

DeviceContext::DeviceContext(Platform &devicePlatform)
    : platform(devicePlatform)
    , location(std::make_unique<LocationHelper>(platform, nullptr))
    , network(std::make_unique<NetworkInfoHelper>(platform, nullptr))
    , device(std::make_unique<DeviceInfoHelper>(platform, nullptr))
{
    connect(&timer, &QTimer::timeout, this, &DeviceContext::poll);
}

DeviceContext::~DeviceContext() = default;

void DeviceContext::look(Until end)
{
    until = end;
    // Else positions end half a minute after the start.
    if (until == Until::Interrupted) {
        location->startService();
    }
    timer.start(pollInterval);
}

void DeviceContext::poll()
{
    using Problem = PositionSource::Problem;
    const PlatformFacts facts = platform.facts();
    const QString mode = network->getNetworkmode();
    const bool modeSettled = (!mode.isEmpty() && mode != "Unknown"_L1) || hasNoModemService(facts);
    const Problem problem = location->getProblem();
    const bool positionSettled = location->getLocationStatus() != 0 ||
                                 (problem != Problem::None && problem != Problem::NoFix);
    // A modem measures its reference signals once it is asked to; not every one can.
    const bool radioSettled = facts.modemService.isEmpty() || facts.rsrp || polls >= radioPolls;
    const bool complete = platform.isComplete() && modeSettled && positionSettled && radioSettled;
    if (++polls < maxPolls && !complete) {
        return;
    }
    timer.stop();
    if (until == Until::Interrupted) {
        timer.disconnect(this);
        connect(&timer, &QTimer::timeout, this, &DeviceContext::watch);
        timer.start(watchInterval);
        lastText = text();
    }
    Q_EMIT ready();
}

void DeviceContext::watch()
{
    const QString now = text();
    if (now == lastText) {
        return;
    }
    lastText = now;
    Q_EMIT ready();
}

QStringList DeviceContext::missing() const
{
    QStringList sentences;
    for (const PlatformFacts::Missing each : platform.facts().missing) {
        sentences.append(sentence(each));
    }
    using Problem = PositionSource::Problem;
    Problem problem = location->getProblem();
    // A receiver that has had no time yet has told nothing all the same.
    if (problem == Problem::None && location->getLocationStatus() == 0) {
        problem = Problem::NoFix;
    }
    if (problem != Problem::None) {
        sentences.append(sentence(problem, cleanText(location->getSourceName()).simplified()));
    }
    if (problem != Problem::NoSource && !location->hasSatelliteSource()) {
        sentences.append(tr("There is no source of satellites."));
    }
    return sentences;
}

QList<DeviceContext::Fact> DeviceContext::facts() const
{
    const PlatformFacts extra = platform.facts();
    const bool located = location->getLocationStatus() != 0;
    const auto ofPosition = [&](const QString &value) {
        return located ? known(value) : FinishedTest::Text();
    };
    return {
        {u"version"_s, tr("Version"), QStringLiteral(VELOMETER_VERSION)},
        {u"network_mode"_s, tr("Network mode"), known(network->getNetworkmode())},
        {u"network_status"_s, tr("Network status"), known(network->getNetworkstatus())},
        {u"network_name"_s, tr("Network name"), known(network->getNetworkname())},
        {u"signal"_s, tr("Signal, %"), known(network->getNetworksignal())},
        {u"wlan_signal"_s, tr("WLAN signal, %"), known(network->getWlansignal())},
        {u"modem_service"_s, tr("Modem service"), known(extra.modemService)},
        {u"rsrp_dbm"_s, tr("RSRP, dBm"), number(extra.rsrp)},
        {u"rsrq_db"_s, tr("RSRQ, dB"), number(extra.rsrq)},
        {u"snr_db"_s, tr("SNR, dB"), number(extra.snr)},
        {u"ssid"_s, tr("WLAN name"), known(extra.ssid)},
        {u"metered"_s, tr("Metered"), meteredName(extra)},
        {u"connectivity"_s, tr("Connectivity"), connectivityName(extra.connectivity)},
        {u"mcc"_s, tr("Country code"), known(network->getMcc())},
        {u"mnc"_s, tr("Operator code"), known(network->getMnc())},
        {u"home_mcc"_s, tr("Home country code"), known(network->getHomemcc())},
        {u"home_mnc"_s, tr("Home operator code"), known(network->getHomemnc())},
        {u"lac"_s, tr("Location area"), known(network->getNetworklac())},
        {u"cell"_s, tr("Cell"), known(network->getNetworkcell())},
        {u"position_source"_s, tr("Position source"), known(location->getSourceName())},
        {u"position_valid"_s, tr("Position"), known(location->getCordValid())},
        {u"position_type"_s, tr("Kind of position"), ofPosition(location->getPosType())},
        {u"latitude"_s, tr("Latitude"), ofPosition(location->getLatitude())},
        {u"longitude"_s, tr("Longitude"), ofPosition(location->getLongitude())},
        {u"altitude_m"_s, tr("Altitude, m"), ofPosition(location->getAltitude())},
        {u"accuracy_h_m"_s, tr("Horizontal accuracy, m"), ofPosition(location->getAccuracyHor())},
        {u"accuracy_v_m"_s, tr("Vertical accuracy, m"), ofPosition(location->getAccuracyVert())},
        {u"ground_speed_mps"_s, tr("Speed, m/s"), ofPosition(location->getGroundSpeed())},
        {u"direction_deg"_s, tr("Direction, degrees"), ofPosition(location->getDirection())},
        {u"satellites_in_use"_s, tr("Satellites in use"), known(location->getSatInUse())},
        {u"satellites_in_view"_s, tr("Satellites in view"), known(location->getSatInView())},
        {u"manufacturer"_s, tr("Manufacturer"), known(device->getManufacturer())},
        {u"product"_s, tr("Product"), known(device->getProductName())},
        {u"model"_s, tr("Model"), known(device->getModel())},
        {u"platform"_s, tr("Platform"), known(device->getPlattform())},
        {u"imei"_s, tr("Device id"), known(device->getImei())},
        {u"imsi"_s, tr("Subscriber id"), known(device->getImsi())},
    };
}

QString DeviceContext::text() const
{
    QList<std::pair<QString, FinishedTest::Text>> rows;
    for (const Fact &fact : facts()) {
        rows.append({fact.label, fact.value});
    }
    QString page = TextFormat::facts(rows);
    if (const QStringList sentences = missing(); !sentences.isEmpty()) {
        page += u'\n' + sentences.join(u'\n') + u'\n';
    }
    return page;
}

QByteArray DeviceContext::json() const
{
    FinishedTest here;
    here.network = Surroundings::network(*network);
    here.position = Surroundings::position(*location);
    here.device = Surroundings::device(*device);
    const QJsonObject ofTest = JsonFormat::test(here);
    QJsonObject net = ofTest.value("network"_L1).toObject();
    net.insert("status"_L1, orNull(known(network->getNetworkstatus())));
    net.insert("wlan_signal"_L1, orNull(wholeSignal(network->getWlansignal())));
    const PlatformFacts extra = platform.facts();
    net.insert("modem_service"_L1, orNull(known(extra.modemService)));
    net.insert("rsrp_dbm"_L1, orNull(extra.rsrp));
    net.insert("rsrq_db"_L1, orNull(extra.rsrq));
    net.insert("snr_db"_L1, orNull(extra.snr));
    net.insert("ssid"_L1, orNull(known(extra.ssid)));
    net.insert("metered"_L1, orNull(meteredName(extra)));
    net.insert("connectivity"_L1, orNull(connectivityName(extra.connectivity)));
    QJsonObject dev = ofTest.value("device"_L1).toObject();
    dev.insert("imei"_L1, orNull(known(device->getImei())));
    dev.insert("imsi"_L1, orNull(known(device->getImsi())));
    const QJsonObject satellites{
        {u"in_use"_s, orNull(known(location->getSatInUse()))},
        {u"in_view"_s, orNull(known(location->getSatInView()))},
    };
    return JsonFormat::line({{u"version"_s, QStringLiteral(VELOMETER_VERSION)},
                             {u"network"_s, net},
                             {u"position"_s, ofTest.value("position"_L1)},
                             {u"position_source"_s, orNull(known(location->getSourceName()))},
                             {u"satellites"_s, satellites},
                             {u"device"_s, dev},
                             {u"missing"_s, QJsonArray::fromStringList(missing())}});
}

QByteArray DeviceContext::csv() const
{
    QByteArray table = CsvFormat::line({u"name"_s, u"value"_s});
    for (const Fact &fact : facts()) {
        table += CsvFormat::line({fact.name, CsvFormat::cell(fact.value.value_or(QString()))});
    }
    for (const QString &each : missing()) {
        table += CsvFormat::line({u"missing"_s, CsvFormat::cell(each)});
    }
    return table;
}

} // namespace velometer
