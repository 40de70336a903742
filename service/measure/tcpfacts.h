#pragma once

#include <cstdint>
#include <optional>

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

/// Asks for the congestion control that fills a lossy mobile link; without it the system's stays.
void preferBbr(int socket);

} // namespace velometer
