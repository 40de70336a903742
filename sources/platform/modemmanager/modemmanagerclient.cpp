#include "platform/modemmanager/modemmanagerclient.h"

#include "platform/bus/busvalue.h"
#include "utils/utils.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

const QString modemInterface = u"org.freedesktop.ModemManager1.Modem"_s;
const QString gppInterface = u"org.freedesktop.ModemManager1.Modem.Modem3gpp"_s;
const QString locationInterface = u"org.freedesktop.ModemManager1.Modem.Location"_s;
const QString signalInterface = u"org.freedesktop.ModemManager1.Modem.Signal"_s;
const QString simInterface = u"org.freedesktop.ModemManager1.Sim"_s;

/// A cell lasts for seconds even at train speed.
constexpr auto locationInterval = 2s;
/// How often the modem shall look at its reference signals, s: a few times in a test.
constexpr uint signalInterval = 3;
/// The source "cell and location area" among a modem's location sources.
constexpr uint cellSource = 1U << 0;

constexpr qint64 maxTac = 0xffffff;
constexpr int hexadecimal = 16;

constexpr qint64 stateConnected = 11;
constexpr qint64 stateEnabled = 6;
constexpr qint64 stateRegistered = 8;

struct Technology
{
    uint bits;
    NetworkMode mode;
};

constexpr uint lteBits = 1U << 14 | 1U << 16 | 1U << 17;

/// The best first: a phone on 5G without a core of its own reports LTE as well.
constexpr Technology technologies[] = {
    {1U << 15, NetworkMode::Nr},
    {lteBits, NetworkMode::Lte},
    {1U << 5 | 1U << 6 | 1U << 7 | 1U << 8 | 1U << 9, NetworkMode::Wcdma},
    {1U << 1 | 1U << 2 | 1U << 3 | 1U << 4, NetworkMode::Gsm},
    {1U << 10 | 1U << 11 | 1U << 12 | 1U << 13, NetworkMode::Cdma},
};

NetworkMode modeOf(qint64 mask)
{
    for (const Technology &each : technologies) {
        if (mask & each.bits) {
            return each.mode;
        }
    }
    return NetworkMode::Unknown;
}

NetworkStatus statusOf(qint64 registration)
{
    switch (registration) {
    case 0: return NetworkStatus::NoNetworkAvailable;
    case 1:
    case 6: // home, text messages alone
    case 9: // home, calls through another network
        return NetworkStatus::HomeNetwork;
    case 2: return NetworkStatus::Searching;
    case 3: return NetworkStatus::Denied;
    case 5:
    case 7:
    case 10: return NetworkStatus::Roaming;
    case 8:
    case 11: return NetworkStatus::EmergencyOnly;
    default: return NetworkStatus::Undefined;
    }
}

/// Country and network code of "MCCMNC".
void takeOperator(const QVariant &code, QString *mcc, QString *mnc)
{
    constexpr qsizetype mccDigits = 3;
    const QString both = BusValue::digits(code, mccDigits + 2, mccDigits + 3);
    *mcc = both.left(mccDigits);
    *mnc = both.mid(mccDigits);
}

void takeRadio(const QVariant &told, ModemState *state)
{
    const QVariantMap radio = BusValue::dictionary(told);
    state->radio.rsrp = BusValue::real(radio.value(u"rsrp"_s), -200, 0);
    state->radio.rsrq = BusValue::real(radio.value(u"rsrq"_s), -100, 50);
    state->radio.snr = BusValue::real(radio.value(u"snr"_s), -100, 100);
}

/// The band of a list of those the modem may use: which one serves it is known of a single one.
QString bandOf(const QVariant &allowed)
{
    constexpr quint64 beforeLte = 30;
    constexpr quint64 mostLte = 88;
    constexpr quint64 beforeNr = 300;
    constexpr quint64 mostNr = 511;
    const QList<quint64> bands = BusValue::numbers(allowed, 2);
    if (bands.size() != 1) {
        return {};
    }
    const quint64 band = bands.constFirst();
    if (band > beforeNr && band <= beforeNr + mostNr) {
        return u"n%1"_s.arg(band - beforeNr);
    }
    return band > beforeLte && band <= beforeLte + mostLte ? u"B%1"_s.arg(band - beforeLte)
                                                           : QString();
}

std::optional<qint64> hexNumber(const QString &text, qint64 max)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok, hexadecimal);
    return ok && value >= 0 && value <= max ? std::optional(value) : std::nullopt;
}

bool isKept(const QString &interface)
{
    return interface == modemInterface || interface == gppInterface ||
           interface == locationInterface || interface == signalInterface;
}

} // namespace

ModemManagerClient::ModemManagerClient(const QDBusConnection &bus, QObject *parent)
    : BusModemClient(bus,
                     {.service = u"org.freedesktop.ModemManager1"_s,
                      .managerPath = u"/org/freedesktop/ModemManager1"_s,
                      .managerInterface = u"org.freedesktop.DBus.ObjectManager"_s,
                      .list = u"GetManagedObjects"_s,
                      .added = u"InterfacesAdded"_s,
                      .removed = u"InterfacesRemoved"_s,
                      .properties =
                          {
                              u"State"_s,        u"Sim"_s,
                              u"Manufacturer"_s, u"Model"_s,
                              u"OperatorCode"_s, u"EquipmentIdentifier"_s,
                              u"OperatorName"_s, u"AccessTechnologies"_s,
                              u"Enabled"_s,      u"SignalQuality"_s,
                              u"Capabilities"_s, u"RegistrationState"_s,
                              u"Location"_s,     u"SignalsLocation"_s,
                              u"Lte"_s,          u"Nr5g"_s,
                              u"Imsi"_s,         u"OperatorIdentifier"_s,
                              u"Imei"_s,         u"Rate"_s,
                              u"CurrentBands"_s,
                          },
                      .ownInterfaces = {}},
                     parent)
{
    connect(&locationTimer, &ClockTimer::timeout, this, &ModemManagerClient::readLocation);
}

ModemManagerClient::~ModemManagerClient()
{
    // Measuring its signal wakes the modem up again and again.
    for (auto each = asked.cbegin(); each != asked.cend(); ++each) {
        if (each.key().second == signalInterface && *each) {
            service.tell(each.key().first, signalInterface, u"Setup"_s, {0U});
        }
    }
}

void ModemManagerClient::forget()
{
    asked.clear();
}

void ModemManagerClient::takeModems(const QDBusMessage &reply)
{
    using Objects = QMap<QDBusObjectPath, Interfaces>;
    modems.clear();
    if (reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "a{oa{sa{sv}}}"_L1) {
        const auto objects = qdbus_cast<Objects>(reply.arguments().constFirst());
        for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
            if (!object->contains(modemInterface) || modems.size() >= maxModems) {
                continue;
            }
            Interfaces &kept = modems[object.key().path()];
            for (auto each = object->cbegin(); each != object->cend(); ++each) {
                if (isKept(each.key())) {
                    keep(each.value(), &kept[each.key()]);
                }
            }
        }
    }
}

void ModemManagerClient::takeProperties(const QString &path, const QString &interface,
                                        const QVariantMap &values, const QStringList &invalidated)
{
    if (path == simPath && interface == simInterface) {
        readSim();
        return;
    }
    const auto modem = modems.find(path);
    if (modem == modems.end() || !isKept(interface)) {
        return;
    }
    keep(values, &(*modem)[interface]);
    if (!invalidated.isEmpty()) {
        readModems();
    }
    refresh();
}

qint64 ModemManagerClient::stateOf(const Interfaces &modem)
{
    return BusValue::number(modem.value(modemInterface).value(u"State"_s), 0, stateConnected)
        .value_or(-1);
}

BusModemClient::Rank ModemManagerClient::rank(const Interfaces &modem) const
{
    const qint64 state = stateOf(modem);
    if (state < stateRegistered) {
        return Rank::Unregistered;
    }
    return state == stateConnected ? Rank::Connected : Rank::Registered;
}

void ModemManagerClient::takeLocation(const QString &location, ModemState *state)
{
    // "MCC,MNC,LAC,CI,TAC", the last three hexadecimal.
    const QStringList fields = location.split(u',');
    if (fields.size() < 4) {
        return;
    }
    const bool hasTac = state->mode == NetworkMode::Lte || state->mode == NetworkMode::Nr;
    // Modems in networks without location areas report the reserved ones.
    state->areaCode = areaCode(hexNumber(fields.at(2), maxLac));
    if (const auto tac = hexNumber(fields.value(4), maxTac); hasTac && tac.value_or(0) > 0) {
        state->areaCode = tac;
    }
    // No network numbers a cell 0 in an area it does not name: the modem has not read it yet.
    const auto cell = hexNumber(fields.at(3), maxCell);
    state->cellId = cell == 0 && !state->areaCode ? std::nullopt : cell;
}

ModemState ModemManagerClient::describe(const QString &path) const
{
    ModemState state;
    state.path = path;
    state.service = u"ModemManager"_s;
    const Interfaces interfaces = modems.value(path);

    const QVariantMap modem = interfaces.value(modemInterface);
    state.manufacturer = BusValue::text(modem.value(u"Manufacturer"_s));
    state.model = BusValue::text(modem.value(u"Model"_s));
    const auto mask =
        BusValue::number(modem.value(u"AccessTechnologies"_s), 0, 0xffffffffLL).value_or(0);
    // All bits set stand for "any", which says nothing.
    state.mode = mask == 0xffffffffLL ? NetworkMode::Unknown : modeOf(mask);
    state.signal = BusValue::firstOfPair(modem.value(u"SignalQuality"_s), 0, 100);

    const QVariantMap gpp = interfaces.value(gppInterface);
    // The general identifier is another number in networks that have no IMEI.
    state.imei = BusValue::digits(gpp.value(u"Imei"_s), 14, 16);
    if (state.imei.isEmpty()) {
        state.imei = BusValue::text(modem.value(u"EquipmentIdentifier"_s));
    }
    takeOperator(gpp.value(u"OperatorCode"_s), &state.mcc, &state.mnc);
    state.operatorName = BusValue::text(gpp.value(u"OperatorName"_s));
    state.status =
        statusOf(BusValue::number(gpp.value(u"RegistrationState"_s), 0, 255).value_or(-1));

    const QVariantMap location = interfaces.value(locationInterface);
    const QString signalled = BusValue::textUnder(location.value(u"Location"_s), cellSource);
    takeLocation(signalled.isEmpty() ? polledLocation : signalled, &state);

    const QVariantMap signal = interfaces.value(signalInterface);
    if (state.mode == NetworkMode::Nr) {
        takeRadio(signal.value(u"Nr5g"_s), &state);
    }
    // With both at a time the modem may measure but one of them.
    const bool hasLte =
        state.mode == NetworkMode::Lte || (state.mode == NetworkMode::Nr && (mask & lteBits) != 0);
    if (hasLte && !state.radio.rsrp && !state.radio.rsrq && !state.radio.snr) {
        takeRadio(signal.value(u"Lte"_s), &state);
    }
    state.radio.band = bandOf(modem.value(u"CurrentBands"_s));

    state.imsi = BusValue::digits(sim.value(u"Imsi"_s), 5, 15);
    takeOperator(sim.value(u"OperatorIdentifier"_s), &state.homeMcc, &state.homeMnc);
    return state;
}

void ModemManagerClient::follow(const QString &path)
{
    if (path != followed) {
        followed = path;
        locationRefused = false;
        polledLocation.clear();
    }
    const QString newSim = BusValue::path(modems.value(path).value(modemInterface).value(u"Sim"_s));
    if (newSim != simPath) {
        simPath = newSim;
        sim.clear();
        simKnown = simPath.isEmpty();
        readSim();
    }
    locate();
    askForSignal();
}

void ModemManagerClient::readSim()
{
    if (simPath.isEmpty()) {
        return;
    }
    service.readProperties(simPath, simInterface,
                           [this, asked = simPath](const QVariantMap &values) {
                               if (asked != simPath) {
                                   return;
                               }
                               sim.clear();
                               keep(values, &sim);
                               simKnown = true;
                               refresh();
                           });
}

bool ModemManagerClient::mayAsk(const QString &path, const QString &interface)
{
    // A modem that is off refuses; it is asked again when it comes on.
    const Setup request{path, interface};
    if (stateOf(modems.value(path)) < stateEnabled) {
        asked.remove(request);
        return false;
    }
    return !asked.contains(request);
}

void ModemManagerClient::ask(const Setup &request, const QVariantList &arguments,
                             const QString &refusal)
{
    asked.insert(request, true);
    service.call(request.first, request.second, u"Setup"_s, arguments,
                 [this, request, refusal](const QDBusMessage &reply) {
                     if (reply.type() != QDBusMessage::ErrorMessage) {
                         return;
                     }
                     Utils::addLogEntry(refusal.arg(BusValue::cleanText(reply.errorMessage())));
                     // Who does not answer in time may do it all the same.
                     const bool refused = QDBusError(reply).type() != QDBusError::NoReply;
                     if (const auto done = asked.find(request); done != asked.end() && refused) {
                         *done = false;
                     }
                 });
}

void ModemManagerClient::locate()
{
    const QString path = primary();
    const QVariantMap location = modems.value(path).value(locationInterface);
    const auto bits = [&](const QString &name) {
        return static_cast<uint>(
            BusValue::number(location.value(name), 0, 0xffffffffLL).value_or(0));
    };
    const uint enabled = bits(u"Enabled"_s);
    // Whoever enabled it may not want it signalled: it is polled then, rather than changed.
    const bool isOn = (bits(u"Capabilities"_s) & enabled & cellSource) != 0;
    const bool signalled = location.value(u"SignalsLocation"_s).toBool();
    if (!isOn) {
        // A modem that is off is in no cell, and may be asked anew when it is on.
        polledLocation.clear();
        locationRefused = false;
    }
    if (!isOn || signalled || locationRefused) {
        locationTimer.stop();
    } else if (!locationTimer.isActive()) {
        readLocation();
    }
    if (!isOn && (bits(u"Capabilities"_s) & cellSource) != 0 && mayAsk(path, locationInterface)) {
        ask({path, locationInterface}, {enabled | cellSource, signalled},
            u"The modem does not tell its cell: %1"_s);
    }
}

void ModemManagerClient::askForSignal()
{
    const QString path = primary();
    const auto rate = BusValue::number(modems.value(path).value(signalInterface).value(u"Rate"_s),
                                       0, 0xffffffffLL);
    if (rate == 0 && mayAsk(path, signalInterface)) {
        ask({path, signalInterface}, {signalInterval},
            u"The modem does not tell its reference signals: %1"_s);
    }
}

void ModemManagerClient::readLocation()
{
    locationTimer.start(locationInterval);
    const QString path = primary();
    service.call(
        path, locationInterface, u"GetLocation"_s, {}, [this, path](const QDBusMessage &reply) {
            if (path != primary()) {
                return;
            }
            if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
                // Asking on might open a dialogue for a password every time.
                locationRefused = reply.errorName().contains("Unauthorized"_L1) ||
                                  reply.errorName().contains("AccessDenied"_L1);
                if (locationRefused) {
                    // What it told before may be of another network by now.
                    locationTimer.stop();
                    polledLocation.clear();
                    refresh();
                }
                return;
            }
            polledLocation = BusValue::textUnder(reply.arguments().constFirst(), cellSource);
            refresh();
        });
}

} // namespace velometer
