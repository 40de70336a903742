#include "measure/tcpfacts.h"

#include <cstddef>
#include <string_view>

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

void preferBbr(int socket)
{
    constexpr std::string_view name = "bbr";
    setsockopt(socket, IPPROTO_TCP, TCP_CONGESTION, name.data(),
               static_cast<socklen_t>(name.size()));
}

} // namespace velometer
