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
    bool reload(QString *error);

    /// Takes no new connections, gives the running ones their grace, writes the store out.
    void stop();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace velometer
