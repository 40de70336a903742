#include "data/testservertable.h"

#include "utils/deployment.h"

namespace velometer {

TestServerTable::TestServerTable(const Deployment &deployment, QObject *parent)
    : QObject(parent)
{
    add({"Swisscom", QT_TR_NOOP("Zürich"), QT_TR_NOOP("Zürich")}, deployment.swisscom, "CH");
    add({"Sunrise", QT_TR_NOOP("Bern"), QT_TR_NOOP("Bern")}, deployment.sunrise, "CH");
    add({"HSR", QT_TR_NOOP("Rapperswil"), QT_TR_NOOP("St. Gallen")}, deployment.hsr, "CH");
    add({QT_TR_NOOP("IP-Plus Germany"), QT_TR_NOOP("Frankfurt"), ""}, deployment.ipPlusGermany,
        "DE");
    add({QT_TR_NOOP("IP-Plus Italy"), QT_TR_NOOP("Mailand"), ""}, deployment.ipPlusItaly, "IT");
    add({QT_TR_NOOP("IP-Plus New York"), QT_TR_NOOP("New York"), ""}, deployment.ipPlusNewYork,
        "US");
    retranslate();
}

void TestServerTable::add(const Texts &texts, const Endpoint &endpoint, const char *country)
{
    auto *server = new TestServer(this);
    server->setHostname(endpoint.host);
    server->setPort(endpoint.port);
    server->setCountry(QString::fromLatin1(country));
    table.append(server);
    ownTexts.append(texts);
}

void TestServerTable::retranslate()
{
    const auto translated = [](const char *text) { return *text ? tr(text) : QString(); };
    for (qsizetype i = 0; i < table.size(); ++i) {
        table[i]->setName(translated(ownTexts[i].name));
        table[i]->setCity(translated(ownTexts[i].city));
        table[i]->setState(translated(ownTexts[i].state));
    }
}

TestServer *TestServerTable::find(const QString &hostname, int port) const
{
    for (TestServer *server : table) {
        if (server->getHostname() == hostname && server->getPort() == port) {
            return server;
        }
    }
    return nullptr;
}

TestServer *TestServerTable::findByName(const QString &name) const
{
    for (qsizetype i = 0; i < table.size(); ++i) {
        if (table[i]->getName().compare(name, Qt::CaseInsensitive) == 0 ||
            QString::fromUtf8(ownTexts[i].name).compare(name, Qt::CaseInsensitive) == 0) {
            return table[i];
        }
    }
    return nullptr;
}

} // namespace velometer
