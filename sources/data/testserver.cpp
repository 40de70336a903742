#include "data/testserver.h"

#include "utils/endpoint.h"

using namespace Qt::StringLiterals;

namespace velometer {

TestServer::TestServer(QObject *parent)
    : QObject(parent)
{}

TestServer::TestServer(QString serverName, QString host, int serverPort, QString serverLogo,
                       QString serverCity, QString serverState, QString serverCountry,
                       QObject *parent)
    : QObject(parent)
    , name(std::move(serverName))
    , hostname(std::move(host))
    , port(serverPort)
    , logo(std::move(serverLogo))
    , city(std::move(serverCity))
    , state(std::move(serverState))
    , country(std::move(serverCountry))
{}

QString TestServer::getDomain() const
{
    return Endpoint::domain(hostname);
}

QString TestServer::getHostHeader() const
{
    return u"%1:%2"_s.arg(Endpoint::bracketed(hostname), QString::number(port));
}

} // namespace velometer
