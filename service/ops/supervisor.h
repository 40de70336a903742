#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

/// What systemd, or an earlier process of this program, gives and wants to know. Without either,
/// nothing of it does anything.
namespace velometer::Supervisor {

struct Socket
{
    int descriptor = -1;
    std::string name; ///< "public", "tls", "admin"; a socket unit's FileDescriptorName
};

/// The sockets that the process was started with (sd_listen_fds(3)). To be called once, before
/// there are threads: the variables are taken out of the environment.
std::vector<Socket> takeSockets();

/// "READY=1", "STATUS=..." (sd_notify(3)).
void tell(const std::string &state);

/// How often "WATCHDOG=1" is awaited.
std::optional<std::chrono::milliseconds> watchdogPeriod();

} // namespace velometer::Supervisor
