#include "platform/ofono/ofonoclient.h"

#include "platform/bus/busvalue.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

const QString ofonoModem = u"org.ofono.Modem"_s;
const QString ofonoSim = u"org.ofono.SimManager"_s;
const QString registrationInterface = u"org.ofono.NetworkRegistration"_s;
const QString packetInterface = u"org.ofono.ConnectionManager"_s;
const QString monitorInterface = u"org.ofono.NetworkMonitor"_s;

/// Nobody signals the radio figures, and each question goes to the modem itself.
constexpr auto cellInterval = 5s;

constexpr qint64 ofonoMaxTac = 0xffffff;
/// Up to LTE; modems that do not know their cell give more.
constexpr qint64 maxShortCell = (1LL << 28) - 1;

NetworkMode modeOf(const QVariant &technology)
{
    const QString name = BusValue::text(technology);
    if (name == "gsm"_L1 || name == "edge"_L1) {
        return NetworkMode::Gsm;
    }
    if (name == "umts"_L1 || name == "hspa"_L1) {
        return NetworkMode::Wcdma;
    }
    if (name == "lte"_L1) {
        return NetworkMode::Lte;
    }
    if (name == "nr"_L1) {
        return NetworkMode::Nr;
    }
    return NetworkMode::Unknown;
}

NetworkStatus statusOf(const QVariantMap &registration)
{
    const QString name = BusValue::text(registration.value(u"Status"_s));
    if (name == "unregistered"_L1) {
        return NetworkStatus::NoNetworkAvailable;
    }
    if (name == "registered"_L1) {
        return NetworkStatus::HomeNetwork;
    }
    if (name == "searching"_L1) {
        return NetworkStatus::Searching;
    }
    if (name == "denied"_L1) {
        return NetworkStatus::Denied;
    }
    if (name == "roaming"_L1) {
        return NetworkStatus::Roaming;
    }
    return NetworkStatus::Undefined;
}

bool isRegistered(NetworkStatus status)
{
    return status == NetworkStatus::HomeNetwork || status == NetworkStatus::Roaming;
}

bool isOff(const QVariantMap &modem)
{
    return !BusValue::flag(modem.value(u"Powered"_s)).value_or(true) ||
           !BusValue::flag(modem.value(u"Online"_s)).value_or(true);
}

QString countryCode(const QVariant &value)
{
    return BusValue::digits(value, 3, 3);
}

QString networkCode(const QVariant &value)
{
    return BusValue::digits(value, 2, 3);
}

/// Power and quality of the reference signals.
void takeReference(const QVariantMap &cell, ModemState *state)
{
    const auto power = BusValue::number(cell.value(u"ReferenceSignalReceivedPower"_s), 0, 140);
    const auto quality = BusValue::number(cell.value(u"ReferenceSignalReceivedQuality"_s), 0, 140);
    // They come as the steps in which phones report to the network (3GPP TS 36.133).
    constexpr qint64 powerSteps = 97;
    constexpr qint64 qualitySteps = 34;
    // Back ends over Android's radio layer give dBm and dB without their sign, each in the other's
    // place. No step of quality is as high as the magnitude of a power.
    if (quality && *quality > qualitySteps) {
        state->radio.rsrp = -static_cast<double>(*quality);
        if (power && *power <= qualitySteps) {
            state->radio.rsrq = -static_cast<double>(*power);
        }
        return;
    }
    if (power && *power <= powerSteps) {
        state->radio.rsrp = static_cast<double>(*power) - 141;
    }
    if (quality) {
        state->radio.rsrq = static_cast<double>(*quality) / 2 - 20;
    }
}

/// The signal over the noise; it comes in tenths.
void takeRatio(const QVariantMap &cell, ModemState *state)
{
    // oFono misspells it.
    const QVariant misspelt = cell.value(u"SingalToNoiseRatio"_s);
    const auto ratio = BusValue::number(
        misspelt.isValid() ? misspelt : cell.value(u"SignalToNoiseRatio"_s), -200, 300);
    if (ratio) {
        state->radio.snr = static_cast<double>(*ratio) / 10;
    }
}

} // namespace

OfonoClient::OfonoClient(const QDBusConnection &bus, QObject *parent)
    : BusModemClient(
          bus,
          {
              .service = u"org.ofono"_s,
              .managerPath = u"/"_s,
              .managerInterface = u"org.ofono.Manager"_s,
              .list = u"GetModems"_s,
              .added = u"ModemAdded"_s,
              .removed = u"ModemRemoved"_s,
              .properties =
                  {
                      u"Powered"_s,
                      u"Online"_s,
                      u"Manufacturer"_s,
                      u"Model"_s,
                      u"Serial"_s,
                      u"Present"_s,
                      u"SubscriberIdentity"_s,
                      u"MobileCountryCode"_s,
                      u"MobileNetworkCode"_s,
                      u"Status"_s,
                      u"Name"_s,
                      u"Technology"_s,
                      u"CellId"_s,
                      u"LocationAreaCode"_s,
                      u"Strength"_s,
                      u"Attached"_s,
                      u"TrackingAreaCode"_s,
                      u"ReferenceSignalReceivedPower"_s,
                      u"ReferenceSignalReceivedQuality"_s,
                      u"SingalToNoiseRatio"_s,
                      u"SignalToNoiseRatio"_s,
                  },
              .ownInterfaces = {ofonoModem, ofonoSim, registrationInterface, packetInterface},
          },
          parent)
{
    connect(&cellTimer, &ClockTimer::timeout, this, &OfonoClient::readCell);
}

void OfonoClient::forget()
{
    readings.clear();
}

void OfonoClient::takeModems(const QDBusMessage &reply)
{
    const QMap<QString, Interfaces> known = std::exchange(modems, {});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "a(oa{sv})"_L1) {
        return;
    }
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd() && modems.size() < maxModems) {
        QDBusObjectPath path;
        QVariantMap values;
        list.beginStructure();
        list >> path >> values;
        list.endStructure();
        if (BusValue::text(values.value(u"Type"_s)) == "hfp"_L1) {
            continue;
        }
        Interfaces &modem = modems[path.path()];
        modem = known.value(path.path());
        modem[ofonoModem].clear();
        keep(values, &modem[ofonoModem]);
        takeInterfaces(path.path(), BusValue::names(values.value(u"Interfaces"_s)));
    }
    // Without it Qt keeps what it needs for reading on.
    list.endArray();
}

void OfonoClient::takeSignal(const QDBusMessage &message)
{
    // A modem that comes back is another one, whatever was known of its path.
    modems.remove(BusValue::path(message.arguments().value(0)));
    readModems();
    refresh();
}

void OfonoClient::takeInterfaces(const QString &path, const QStringList &offered)
{
    Interfaces &modem = modems[path];
    for (const QString &each :
         {ofonoSim, registrationInterface, packetInterface, monitorInterface}) {
        if (!offered.contains(each)) {
            modem.remove(each);
        } else if (!modem.contains(each)) {
            modem.insert(each, {});
            // The monitor has nothing but its method.
            if (each != monitorInterface) {
                read({path, each}, true);
            }
        }
    }
}

void OfonoClient::read(const Place &place, bool first)
{
    if (const auto busy = readings.find(place); busy != readings.end()) {
        *busy = {busy->first || first, true};
        return;
    }
    readings.insert(place, {first, false});
    service.readProperties(place.first, place.second,
                           [this, place](const QVariantMap &values) { takeAnswer(place, values); });
}

void OfonoClient::takeAnswer(const Place &place, const QVariantMap &values)
{
    const Reading done = readings.take(place);
    const auto modem = modems.find(place.first);
    if (modem != modems.end() && modem->contains(place.second)) {
        // Without an answer what the signals told stays.
        if (!values.isEmpty()) {
            QVariantMap &kept = (*modem)[place.second];
            kept.clear();
            keep(values, &kept);
        }
        if (done.again) {
            read(place, done.first);
        }
    }
    refresh();
}

bool OfonoClient::hasAnswered() const
{
    return std::none_of(readings.cbegin(), readings.cend(),
                        [](const Reading &each) { return each.first; });
}

void OfonoClient::takeProperties(const QString &path, const QString &interface,
                                 const QVariantMap &values, const QStringList & /*invalidated*/)
{
    const auto modem = modems.find(path);
    if (modem == modems.end() || !modem->contains(interface)) {
        return;
    }
    keep(values, &(*modem)[interface]);
    if (interface == ofonoModem && values.contains(u"Interfaces"_s)) {
        takeInterfaces(path, BusValue::names(values.value(u"Interfaces"_s)));
    }
    // No signal tells that a property is gone: the cell of the last network, the number of the last
    // SIM.
    if (values.contains(u"Status"_s) || values.contains(u"Technology"_s) ||
        values.contains(u"Present"_s)) {
        read({path, interface}, false);
    }
    if (path == cellPath && values.contains(u"Technology"_s)) {
        readCell();
    }
    refresh();
}

BusModemClient::Rank OfonoClient::rank(const Interfaces &modem) const
{
    if (isOff(modem.value(ofonoModem)) ||
        !isRegistered(statusOf(modem.value(registrationInterface)))) {
        return Rank::Unregistered;
    }
    const bool attached =
        BusValue::flag(modem.value(packetInterface).value(u"Attached"_s)).value_or(false);
    return attached ? Rank::Connected : Rank::Registered;
}

void OfonoClient::follow(const QString &path)
{
    const Interfaces modem = modems.value(path);
    const bool asks = modem.contains(monitorInterface) && rank(modem) != Rank::Unregistered;
    const QString wanted = asks ? path : QString();
    if (wanted == cellPath) {
        return;
    }
    cellPath = wanted;
    cell.clear();
    if (cellPath.isEmpty()) {
        cellTimer.stop();
        return;
    }
    readCell();
}

void OfonoClient::readCell()
{
    cellTimer.start(cellInterval);
    service.callForMap(cellPath, monitorInterface, u"GetServingCellInformation"_s, {},
                       [this, asked = cellPath](const QVariantMap &values) {
                           if (asked != cellPath) {
                               return;
                           }
                           // No answer is no news.
                           if (!values.isEmpty()) {
                               cell.clear();
                               keep(values, &cell);
                           }
                           refresh();
                       });
}

ModemState OfonoClient::describe(const QString &path) const
{
    const Interfaces interfaces = modems.value(path);
    ModemState state;
    state.path = path;
    state.service = u"oFono"_s;

    const QVariantMap modem = interfaces.value(ofonoModem);
    state.imei = BusValue::text(modem.value(u"Serial"_s));
    state.manufacturer = BusValue::text(modem.value(u"Manufacturer"_s));
    state.model = BusValue::text(modem.value(u"Model"_s));

    const QVariantMap sim = interfaces.value(ofonoSim);
    if (BusValue::flag(sim.value(u"Present"_s)).value_or(true)) {
        state.imsi = BusValue::digits(sim.value(u"SubscriberIdentity"_s), 5, 15);
        state.homeMcc = countryCode(sim.value(u"MobileCountryCode"_s));
        state.homeMnc = networkCode(sim.value(u"MobileNetworkCode"_s));
    }

    const QVariantMap registration = interfaces.value(registrationInterface);
    state.status = isOff(modem) ? NetworkStatus::NoNetworkAvailable : statusOf(registration);
    // Else all that follows is the last network's.
    if (!isRegistered(state.status)) {
        return state;
    }
    state.mcc = countryCode(registration.value(u"MobileCountryCode"_s));
    state.mnc = networkCode(registration.value(u"MobileNetworkCode"_s));
    state.operatorName = BusValue::text(registration.value(u"Name"_s));
    state.mode = modeOf(registration.value(u"Technology"_s));
    state.signal = BusValue::number(registration.value(u"Strength"_s), 0, 100);
    describeCell(registration, &state);
    return state;
}

void OfonoClient::describeCell(const QVariantMap &registration, ModemState *state) const
{
    // The answer may be of before a change of the network; but 5G and LTE may serve together.
    const NetworkMode measured = modeOf(cell.value(u"Technology"_s));
    const auto hasTac = [](NetworkMode mode) {
        return mode == NetworkMode::Lte || mode == NetworkMode::Nr;
    };
    const bool current = measured == state->mode || (hasTac(measured) && hasTac(state->mode));
    const auto value = [&](const QString &name, qint64 min, qint64 max) {
        const auto told = BusValue::number(registration.value(name), min, max);
        return told || !current ? told : BusValue::number(cell.value(name), min, max);
    };
    const bool isNr = state->mode == NetworkMode::Nr;
    state->cellId = value(u"CellId"_s, 0, isNr ? maxCell : maxShortCell);
    // With LTE the location area is the tracking area's code, where there is no name for that.
    state->areaCode = areaCode(value(u"LocationAreaCode"_s, 0, maxLac));
    if (!current || !hasTac(state->mode)) {
        return;
    }
    const auto tac = BusValue::number(cell.value(u"TrackingAreaCode"_s), 1, ofonoMaxTac);
    if (tac) {
        state->areaCode = static_cast<int>(*tac);
    }
    takeReference(cell, state);
    takeRatio(cell, state);
}

} // namespace velometer
