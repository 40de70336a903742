#pragma once

#include "data/testserver.h"

#include <QList>
#include <QObject>

namespace velometer {

struct Deployment;

/// The six servers that this deployment offers, in the order in which they are shown and looked up.
/// Owns its servers. Display texts are in the language of the last construction or retranslate().
class TestServerTable : public QObject
{
    Q_OBJECT

public:
    TestServerTable(const Deployment &deployment, QObject *parent);

    const QList<TestServer *> &servers() const { return table; }

    /// The first server with exactly this host name and port; null when there is none.
    TestServer *find(const QString &hostname, int port) const;

    /// The server with this name in any letter case, in its own or in its display language; null
    /// when there is none.
    TestServer *findByName(const QString &name) const;

    /// Sets the display texts of the same servers in the language that is installed now.
    void retranslate();

private:
    /// Display texts before translation.
    struct Texts
    {
        const char *name;
        const char *city;
        const char *state;
    };

    void add(const Texts &texts, const struct Endpoint &endpoint, const char *country);

    QList<TestServer *> table;
    QList<Texts> ownTexts; ///< as long as the table
};

} // namespace velometer
