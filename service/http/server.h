#pragma once

#include "http/serveroptions.h"

#include <memory>

namespace velometer {

/// The measurement service: listeners, the threads that serve them, and the store behind. start()
/// and stop() belong to one thread; nothing here needs an event loop.
class Server
{
public:
    explicit Server(ServerOptions options);
    ~Server(); ///< stops

    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    /// Opens the store, listens, and serves from then on. False when that cannot be; @p error then
    /// says in a sentence why. Makes the process ignore SIGPIPE.
    bool start(QString *error);

    /// "127.0.0.1:41234", "[::1]:8443 (TLS)": one for each listener, public ones first, each kind
    /// in the order of the options.
    std::vector<std::string> addresses() const;

    /// Reads the certificate anew, for connections that come from now on. After a failure, which
    /// @p error explains, the one before stays.
    /// Takes the salts of @p options as well; all else of them needs a new process.
    bool reload(const ServerOptions &options, QString *error);

    /// What a process that takes this one's place needs: its listeners, and the store's lock.
    std::vector<Inherited> sockets() const;
    int storeLock() const;

    /// Whether the event loop still comes to its work.
    bool isAlive() const;

    /// Takes no new connections, gives the running ones their grace, writes the store out.
    void stop();
    /// Likewise, when another process has the listeners: all that is under way, and what was
    /// accepted and has not asked yet, gets the time it takes.
    void stopGently();

private:
    void stopWithin(std::chrono::milliseconds grace);

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace velometer
