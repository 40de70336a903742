#include "limits/subscriber.h"

#include <array>
#include <charconv>

namespace velometer {

Subscriber Subscriber::of(const boost::asio::ip::address &address)
{
    if (address.is_v4()) {
        return {.network = address.to_v4().to_uint(), .isV6 = false};
    }
    const auto bytes = address.to_v6().to_bytes();
    std::uint64_t network = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        network = network << 8 | bytes.at(i);
    }
    return {.network = network, .isV6 = true};
}

std::string Subscriber::name() const
{
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), network, 16).ptr;
    return (isV6 ? "v6 " : "v4 ") + std::string(digits.data(), end);
}

} // namespace velometer
