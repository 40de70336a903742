#include "data/testservertable.h"

#include "utils/deployment.h"

TestServerTable::TestServerTable(const Deployment &deployment, QObject *parent)
    : QObject(parent)
{
    add("Swisscom", deployment.swisscom, QT_TR_NOOP("Zürich"), QT_TR_NOOP("Zürich"), "CH");
    add("Sunrise", deployment.sunrise, QT_TR_NOOP("Bern"), QT_TR_NOOP("Bern"), "CH");
    add("HSR", deployment.hsr, QT_TR_NOOP("Rapperswil"), QT_TR_NOOP("St. Gallen"), "CH");
    add(QT_TR_NOOP("IP-Plus Germany"), deployment.ipPlusGermany, QT_TR_NOOP("Frankfurt"), "", "DE");
    add(QT_TR_NOOP("IP-Plus Italy"), deployment.ipPlusItaly, QT_TR_NOOP("Mailand"), "", "IT");
    add(QT_TR_NOOP("IP-Plus New York"), deployment.ipPlusNewYork, QT_TR_NOOP("New York"), "", "US");
}

void TestServerTable::add(const char *name, const Endpoint &endpoint, const char *city,
                          const char *state, const char *country)
{
    const auto translated = [](const char *text) { return *text ? tr(text) : QString(); };
    table.append(new TestServer(translated(name), endpoint.host, endpoint.port, QString(),
                                translated(city), translated(state), QString::fromLatin1(country),
                                this));
    ownNames.append(QString::fromUtf8(name));
}

TestServer *TestServerTable::find(const QString &hostname, int port) const
{
    for (TestServer *server : table) {
        if (server->getHostname() == hostname && server->getPort() == port)
            return server;
    }
    return nullptr;
}

TestServer *TestServerTable::findByName(const QString &name) const
{
    for (qsizetype i = 0; i < table.size(); ++i) {
        if (table[i]->getName().compare(name, Qt::CaseInsensitive) == 0 ||
            ownNames[i].compare(name, Qt::CaseInsensitive) == 0)
            return table[i];
    }
    return nullptr;
}
