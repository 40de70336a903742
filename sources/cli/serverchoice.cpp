#include "cli/serverchoice.h"

#include "data/testservertable.h"
#include "utils/endpoint.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int defaultPort = 80;

/// A single plain word is rather a misspelt name of the table than a host in the local domain.
bool looksLikeHost(const QString &text)
{
    const auto isHostLike = [](QChar c) { return c == u'.' || c == u':' || c.isDigit(); };
    return text.compare("localhost"_L1, Qt::CaseInsensitive) == 0 ||
           std::any_of(text.begin(), text.end(), isHostLike);
}

} // namespace

ServerChoice::ServerChoice(const QString &text, const TestServerTable &table)
    : chosen(table.findByName(text))
{
    if (chosen) {
        return;
    }
    const QString shortened = text.left(100).simplified();
    if (!looksLikeHost(text)) {
        QStringList names;
        for (const TestServer *server : table.servers()) {
            names.append(server->getName());
        }
        failure = tr("There is no server \"%1\"; use HOST[:PORT] or one of: %2.")
                      .arg(shortened, names.join(", "_L1));
        return;
    }
    const auto endpoint = Endpoint::parse(text, defaultPort);
    if (!endpoint) {
        failure = tr("\"%1\" is no server address; write HOST[:PORT] with a port from 1 to 65535, "
                     "an IPv6 address in brackets.")
                      .arg(shortened);
        return;
    }
    chosen = table.find(endpoint->host, endpoint->port);
    if (chosen) {
        return;
    }
    own = std::make_unique<TestServer>(nullptr);
    own->setHostname(endpoint->host);
    own->setPort(endpoint->port);
    chosen = own.get();
}

ServerChoice::~ServerChoice() = default;

} // namespace velometer
