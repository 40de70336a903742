#include "platform/modem/busmodemclient.h"

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto retryInterval = 10s;

} // namespace

BusModemClient::BusModemClient(const QDBusConnection &bus, const Names &serviceNames,
                               QObject *parent)
    : ModemClient(parent)
    , service(bus, serviceNames.service, serviceNames.ownInterfaces)
    , names(serviceNames)
    , complete(service.presence() == BusService::Presence::NoBus)
{
    connect(&service, &BusService::presenceChanged, this, &BusModemClient::restart);
    connect(&service, &BusService::propertiesChanged, this, &BusModemClient::takeProperties);
    connect(&service, &BusService::received, this, &BusModemClient::takeSignal);
    connect(&retryTimer, &ClockTimer::timeout, this, &BusModemClient::readModems);
    if (complete) {
        return;
    }
    service.listen(names.managerInterface, names.added);
    service.listen(names.managerInterface, names.removed);
}

BusService::Presence BusModemClient::presence() const
{
    return silent ? BusService::Presence::Silent : service.presence();
}

void BusModemClient::restart()
{
    retryTimer.stop();
    silent = false;
    modems.clear();
    reading = false;
    readAgain = false;
    listed = false;
    forget();
    if (service.presence() == BusService::Presence::Present) {
        readModems();
    }
    refresh();
    Q_EMIT changed();
}

void BusModemClient::takeSignal(const QDBusMessage & /*message*/)
{
    readModems();
}

void BusModemClient::readModems()
{
    // One question at a time, however often the modems change.
    if (reading) {
        readAgain = true;
        return;
    }
    reading = true;
    service.call(names.managerPath, names.managerInterface, names.list, {},
                 [this](const QDBusMessage &reply) {
                     reading = false;
                     listed = true;
                     // What was known stays: a service that is slow has not lost its modems.
                     const bool failed = reply.type() == QDBusMessage::ErrorMessage;
                     if (failed) {
                         retryTimer.start(retryInterval);
                     } else {
                         takeModems(reply);
                     }
                     if (std::exchange(silent, failed) != failed) {
                         Q_EMIT changed();
                     }
                     if (std::exchange(readAgain, false)) {
                         readModems();
                     }
                     refresh();
                 });
}

void BusModemClient::keep(const QVariantMap &values, QVariantMap *kept) const
{
    for (auto each = values.cbegin(); each != values.cend(); ++each) {
        if (names.properties.contains(each.key())) {
            kept->insert(each.key(), each.value());
        }
    }
}

QString BusModemClient::primary() const
{
    QString best;
    Rank bestRank = Rank::Unregistered;
    for (auto each = modems.cbegin(); each != modems.cend(); ++each) {
        const QString &path = each.key();
        const Rank itsRank = rank(each.value());
        // Modem 2 stands before modem 10.
        const auto before = [&] {
            return path.size() != best.size() ? path.size() < best.size() : path < best;
        };
        if (best.isEmpty() || itsRank > bestRank || (itsRank == bestRank && before())) {
            best = path;
            bestRank = itsRank;
        }
    }
    return best;
}

void BusModemClient::refresh()
{
    const QString path = primary();
    follow(path);
    if (presence() != BusService::Presence::Absent && !(listed && hasAnswered())) {
        return;
    }
    ModemState state = path.isEmpty() ? ModemState() : describe(path);
    if (state != shown) {
        shown = std::move(state);
        Q_EMIT changed();
    }
    if (complete) {
        return;
    }
    complete = true;
    Q_EMIT completed();
}

std::optional<int> BusModemClient::areaCode(std::optional<qint64> told)
{
    constexpr qint64 reserved = 0xfffe;
    return told > 0 && told < reserved ? std::optional<int>(told) : std::nullopt;
}

} // namespace velometer
