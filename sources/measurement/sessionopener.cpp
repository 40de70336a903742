#include "measurement/sessionopener.h"

#include "platform/platform.h"
#include "utils/utils.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString described(const NetworkConfiguration &configuration)
{
    return u"%1:%2:%3:%4"_s.arg(configuration.bearer, configuration.name,
                                QString::number(configuration.purpose),
                                QString::number(configuration.state));
}

} // namespace

SessionOpener::SessionOpener(Platform &devicePlatform, QObject *parent)
    : QObject(parent)
    , platform(devicePlatform)
{}

SessionOpener::~SessionOpener() = default;

void SessionOpener::open()
{
    if (session) {
        session->disconnect(this);
        session.release()->deleteLater(); // its error signal may have ended the last test
    }
    session = platform.createNetworkSession();
    const auto configurations = session->allConfigurations();
    for (const NetworkConfiguration &configuration : configurations) {
        Utils::addLogEntry("Connection:"_L1 + described(configuration));
    }
    const NetworkConfiguration chosen = session->defaultConfiguration();
    Utils::addLogEntry("Default Connection:"_L1 + described(chosen));
    if (!chosen.valid && !session->canStartAndStopInterfaces() &&
        chosen.state != NetworkConfiguration::Active) {
        Utils::addLogEntry(u"No default access point available"_s);
    }
    connect(session.get(), &NetworkSession::opened, this, &SessionOpener::opened);
    connect(session.get(), &NetworkSession::error, this, &SessionOpener::failed);
    session->open();
}

} // namespace velometer
