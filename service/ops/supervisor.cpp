#include "ops/supervisor.h"

#include <cstdint>
#include <cstdlib>

#include <systemd/sd-daemon.h>

namespace velometer::Supervisor {

std::vector<Socket> takeSockets()
{
    char **names = nullptr;
    const int count = sd_listen_fds_with_names(1, &names);
    std::vector<Socket> sockets;
    for (int i = 0; i < count; ++i) {
        sockets.push_back(
            {.descriptor = SD_LISTEN_FDS_START + i, .name = names != nullptr ? names[i] : ""});
        if (names != nullptr) {
            std::free(names[i]);
        }
    }
    std::free(static_cast<void *>(names));
    return sockets;
}

void tell(const std::string &state)
{
    sd_notify(0, state.c_str());
}

std::optional<std::chrono::milliseconds> watchdogPeriod()
{
    std::uint64_t micros = 0;
    return sd_watchdog_enabled(0, &micros) > 0
               ? std::optional(std::chrono::milliseconds(static_cast<std::int64_t>(micros / 1000)))
               : std::nullopt;
}

} // namespace velometer::Supervisor
