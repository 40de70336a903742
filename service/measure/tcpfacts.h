#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velometer {

/// What this machine's kernel knows about one TCP connection.
struct TcpFacts
{
    std::uint32_t mss = 0;           ///< bytes of payload in the segments we send
    std::uint32_t windowScale = 0;   ///< shift that the peer announced; 0 when it did not
    std::uint32_t receiveWindow = 0; ///< bytes the peer takes; 0 where the kernel does not tell
    bool selectiveAck = false;
    bool timestamps = false;

    /// Nothing when the kernel gives nothing for @p socket.
    static std::optional<TcpFacts> of(int socket);
};

/// Asks for the congestion control @p name where the kernel has it ready, else for BBR, which fills
/// a lossy mobile link; without that one the system's stays. No name makes the kernel load a
/// module.
void chooseCongestionControl(int socket, std::string_view name);

/// "bbr"; empty where the kernel does not tell.
std::string congestionControl(int socket);

} // namespace velometer
