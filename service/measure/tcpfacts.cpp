#include "measure/tcpfacts.h"

#include <array>
#include <cstddef>
#include <fstream>

// The kernel's own header: that of the C library ends before the send window.
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace velometer {

std::optional<TcpFacts> TcpFacts::of(int socket)
{
    tcp_info info{};
    socklen_t length = sizeof info;
    if (getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &length) != 0 ||
        length < offsetof(tcp_info, tcpi_snd_mss) + sizeof info.tcpi_snd_mss ||
        info.tcpi_snd_mss == 0) {
        return std::nullopt;
    }
    TcpFacts facts;
    facts.mss = info.tcpi_snd_mss;
    if ((info.tcpi_options & TCPI_OPT_WSCALE) != 0) {
        facts.windowScale = info.tcpi_snd_wscale;
    }
    // An older kernel fills less of the structure and says so.
    if (length >= offsetof(tcp_info, tcpi_snd_wnd) + sizeof info.tcpi_snd_wnd) {
        facts.receiveWindow = info.tcpi_snd_wnd;
    }
    facts.selectiveAck = (info.tcpi_options & TCPI_OPT_SACK) != 0;
    facts.timestamps = (info.tcpi_options & TCPI_OPT_TIMESTAMPS) != 0;
    return facts;
}

namespace {

bool prefer(int socket, std::string_view name)
{
    return setsockopt(socket, IPPROTO_TCP, TCP_CONGESTION, name.data(),
                      static_cast<socklen_t>(name.size())) == 0;
}

/// Whoever runs as root may have the kernel load any module by naming it, and a client names one.
bool isReady(std::string_view name)
{
    std::ifstream list("/proc/sys/net/ipv4/tcp_available_congestion_control");
    std::string each;
    while (list >> each) {
        if (each == name) {
            return true;
        }
    }
    return false;
}

} // namespace

void chooseCongestionControl(int socket, std::string_view name)
{
    if (name.empty() || !isReady(name) || !prefer(socket, name)) {
        prefer(socket, "bbr");
    }
}

std::string congestionControl(int socket)
{
    std::array<char, 16> name{}; // the kernel's bound
    socklen_t length = name.size() - 1;
    return getsockopt(socket, IPPROTO_TCP, TCP_CONGESTION, name.data(), &length) == 0
               ? std::string(name.data())
               : std::string();
}

} // namespace velometer
