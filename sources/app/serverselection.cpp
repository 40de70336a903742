#include "app/serverselection.h"

#include "platform/networkinfosource.h"
#include "platform/platform.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

const QString hostKey = u"TestServer.Hostname"_s;
const QString portKey = u"TestServer.Port"_s;
constexpr int defaultPort = 80;
constexpr int maxPort = 65535;
/// A modem that has not told its operator by now is not waited for.
constexpr auto codesPatience = 2s;
constexpr int homeCountry = 228;

/// A single plain word is rather a misspelt name of the table than a host in the local domain.
bool looksLikeHost(const QString &text)
{
    const auto isHostLike = [](QChar c) { return c == u'.' || c == u':' || c.isDigit(); };
    return text.compare("localhost"_L1, Qt::CaseInsensitive) == 0 ||
           std::any_of(text.begin(), text.end(), isHostLike);
}

} // namespace

ServerSelection::ServerSelection(Platform &devicePlatform, QObject *parent)
    : QObject(parent)
    , network(devicePlatform.createNetworkInfoSource())
    , table(Deployment::current(), nullptr)
{
    connect(&patience, &ClockTimer::timeout, this, &ServerSelection::settle);
    connect(network.get(), &NetworkInfoSource::changed, this, &ServerSelection::look);
    if (!useRemembered()) {
        useCodes();
    }
}

ServerSelection::~ServerSelection() = default;

// The settings are a file that anyone may edit, and the host goes into requests as it is.
bool ServerSelection::useRemembered()
{
    const QString hostname = Utils::getSettingsValue(hostKey);
    const QString port = Utils::getSettingsValue(portKey);
    if (port.isEmpty() || !Endpoint::parse(Endpoint::bracketed(hostname), 0)) {
        return false;
    }
    settled = true;
    use(hostname, port.toInt() > maxPort ? 0 : port.toInt());
    return true;
}

void ServerSelection::useCodes()
{
    const QString mcc = network->state().mcc.trimmed();
    const QString mnc = network->state().mnc.trimmed();
    const Deployment &deployment = Deployment::current();
    Endpoint endpoint = deployment.swisscom;
    if (mcc.toInt() == homeCountry && mnc.toInt() == 1) {
        Utils::addLogEntry(u"SELECTED SWISSCOM"_s);
    } else if (mcc.toInt() == homeCountry && mnc.toInt() == 2) {
        Utils::addLogEntry(u"SELECTED SUNRISE"_s);
        endpoint = deployment.sunrise;
    } else {
        Utils::addLogEntry(u"SELECTED DEFAULT"_s);
    }
    settled = !mcc.isEmpty() && !mnc.isEmpty();
    use(endpoint.host, endpoint.port);
    if (settled) {
        remember();
    }
}

void ServerSelection::use(const QString &hostname, int port)
{
    TestServer *server = table.find(hostname, port);
    if (!server) {
        Utils::addLogEntry(u"Test Server not found"_s);
        server = new TestServer(this);
        server->setHostname(hostname);
        server->setPort(port);
    }
    Utils::addLogEntry(
        u"Selected TestServer: %1:%2"_s.arg(server->getHostname(), QString::number(port)));
    if (std::exchange(chosen, server) != server) {
        Q_EMIT changed(server);
    }
}

void ServerSelection::remember() const
{
    Utils::setSettingsValue(hostKey, chosen->getHostname());
    Utils::setSettingsValue(portKey, QString::number(chosen->getPort()));
}

void ServerSelection::choose(TestServer *server)
{
    chosen = server;
    remember();
    adopt();
}

bool ServerSelection::choose(const QString &text, QString *error)
{
    const bool found = find(text, error);
    if (found) {
        choose(chosen);
    }
    return found;
}

bool ServerSelection::chooseForNow(const QString &text, QString *error)
{
    const bool found = find(text, error);
    if (found) {
        adopt();
    }
    return found;
}

void ServerSelection::adopt()
{
    settled = true;
    Q_EMIT changed(chosen);
    if (waiting) {
        settle();
    }
}

bool ServerSelection::find(const QString &text, QString *error)
{
    const QString shortened = text.left(100).simplified();
    if (TestServer *named = table.findByName(text)) {
        chosen = named;
        return true;
    }
    if (!looksLikeHost(text)) {
        QStringList names;
        for (const TestServer *server : table.servers()) {
            names.append(server->getName());
        }
        *error = tr("There is no server \"%1\"; use HOST[:PORT] or one of: %2.")
                     .arg(shortened, names.join(", "_L1));
        return false;
    }
    const auto endpoint = Endpoint::parse(text, defaultPort);
    if (!endpoint) {
        *error = tr("\"%1\" is no server address; write HOST[:PORT] with a port from 1 to 65535, "
                    "an IPv6 address in brackets.")
                     .arg(shortened);
        return false;
    }
    use(endpoint->host, endpoint->port);
    return true;
}

void ServerSelection::whenSettled(std::function<void()> ready)
{
    waiting = std::move(ready);
    patience.start(codesPatience);
    look();
}

void ServerSelection::cancelWait()
{
    waiting = nullptr;
    patience.stop();
}

// Codes may also come between two tests: until one was chosen by them, they decide.
void ServerSelection::look()
{
    if (!settled && network->state().hasCodes()) {
        useCodes();
    }
    if (waiting && (settled || !network->state().codesPending)) {
        settle();
    }
}

void ServerSelection::settle()
{
    const auto ready = std::exchange(waiting, nullptr);
    cancelWait();
    if (ready) {
        ready();
    }
}

} // namespace velometer
