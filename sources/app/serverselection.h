#pragma once

#include "data/testservertable.h"
#include "utils/clocktimer.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace velometer {

class NetworkInfoSource;
class Platform;

/// Which server the tests go to: the one that the user chose last, else the one of the operator
/// whose network the device is in, else a default. Owns the table of the deployment's servers.
///
/// The operator is chosen when its codes are known: a modem answers a moment after the program has
/// started. Only a choice, the user's or the operator's, is remembered; a default taken without
/// codes is not, so that the next start looks again. Main thread only.
class ServerSelection : public QObject
{
    Q_OBJECT

public:
    /// Makes its own source from @p platform, which outlives this.
    ServerSelection(Platform &platform, QObject *parent);
    ~ServerSelection() override;

    TestServerTable &servers() { return table; }
    /// Never null; lives as long as this.
    TestServer *current() const { return chosen; }

    /// The user's choice, remembered. @p server is one of the table's, or lives as long as this.
    void choose(TestServer *server);
    /// The same by what he wrote: a name of the table in any letter case, or an endpoint (port 80
    /// when it names none), which need not be in the table. False, and @p error says so in one
    /// sentence with the names there are, when it is neither.
    bool choose(const QString &text, QString *error);
    /// The same for this program alone: the remembered server stays what it was.
    bool chooseForNow(const QString &text, QString *error);

    /// Calls @p ready once the choice will not change for the next test: at once when it is made,
    /// else when the codes of a modem that is there are known, at the latest after two seconds. A
    /// later call replaces one that waits; cancelWait() drops it.
    void whenSettled(std::function<void()> ready);
    void cancelWait();

Q_SIGNALS:
    void changed(TestServer *server);

private:
    bool useRemembered();
    void useCodes();
    void use(const QString &hostname, int port);
    bool find(const QString &text, QString *error);
    void adopt();
    void remember() const;
    void look();
    void settle();

    std::unique_ptr<NetworkInfoSource> network;
    TestServerTable table;
    TestServer *chosen = nullptr;
    bool settled = false; ///< remembered, or chosen by codes
    std::function<void()> waiting;
    ClockTimer patience;
};

} // namespace velometer
